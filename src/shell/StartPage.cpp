#include "shell/StartPage.h"

#include "desktop/PlainText.h"
#include "link/forms/PortList.h"
#include "model/ModelList.h"
#include "model/PathFunctions.h"
#include "platform/Guard.h"
#include "shell/Lessons.h"
#include "shell/RecentFiles.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <utility>

namespace quorvik
{

namespace
{

/** So wide that the list of ports shows all its columns, in widths of a letter. */
constexpr int TwoColumnsFrom = 165;
constexpr int RecentShown = 5;
/** What a technician meets most. */
constexpr const char *UsualModel = "SVR100-000";

QLabel *MakeText(const QString &text, QWidget *parent, const char *name = nullptr)
{
    auto *label = new QLabel(text, parent);
    if (name)
        label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QPushButton *MakeButton(const QString &text, const char *name, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

/** A button as wide as its words need, at the left. */
void AddLeft(QVBoxLayout *layout, QWidget *button)
{
    layout->addWidget(button, 0, Qt::AlignLeft);
}

} // namespace

StartPage::StartPage(const ParameterTable &table, const Ports &ports, const LinkTimings &timings,
                     RecentFiles &recent, StartCommands commands, QWidget *parent)
    : QScrollArea(parent)
    , commands_(std::move(commands))
    , sheet_(new QWidget)
{
    setObjectName(QStringLiteral("StartPage"));
    setAccessibleName(QStringLiteral("Start page"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    // What lies below it must not shine through.
    setAutoFillBackground(true);
    setFocusPolicy(Qt::NoFocus);
    setWidget(sheet_);
    parts_ = {MakeConnect(table, ports, timings), MakeFiles(recent), MakeSimulation(), MakeSetUp(),
              MakeLessons()};
    new QGridLayout(sheet_);
    Arrange();
    Enable();
}

QWidget *StartPage::MakeConnect(const ParameterTable &table, const Ports &ports, const LinkTimings &timings)
{
    auto *part = new QGroupBox(QStringLiteral("Connect to a drive"), sheet_);
    auto *layout = new QVBoxLayout(part);
    layout->addWidget(MakeText(
        QStringLiteral("Choose the port that the cable is plugged into. \"Find drive\" asks each free port "
                       "and writes nothing. \"Connect\" reads all parameters of the drive."),
        part));
    portList_ = new PortList(table, ports, timings, part);
    portList_->ShowOnlyPresent();
    layout->addWidget(portList_);
    commandConnect_ = MakeButton(QStringLiteral("&Connect"), "CommandConnect", part);
    labelLink_ = MakeText({}, part, "LabelLink");
    auto *foot = new QHBoxLayout;
    foot->addWidget(commandConnect_);
    foot->addWidget(labelLink_, 1);
    layout->addLayout(foot);
    On(portList_, &PortList::Chosen, this, [this](int number) { Q_EMIT PortChosen(number); });
    On(commandConnect_, &QPushButton::clicked, this, [this] {
        portList_->StopFinding();
        commands_.goOnLine();
    });
    return part;
}

QWidget *StartPage::MakeSimulation()
{
    auto *part = new QGroupBox(QStringLiteral("Try it with a simulated drive"), sheet_);
    auto *layout = new QVBoxLayout(part);
    layout->addWidget(MakeText(
        QStringLiteral("A program plays the drive and its motor, over the same protocol. No machine moves."),
        part));
    comboModel_ = new QComboBox(part);
    comboModel_->setObjectName(QStringLiteral("ComboModel"));
    comboModel_->addItems(ModelListItems());
    comboModel_->setCurrentIndex(comboModel_->findText(QLatin1String(UsualModel), Qt::MatchStartsWith));
    auto *labelModel = new QLabel(QStringLiteral("Mode&l:"), part);
    labelModel->setBuddy(comboModel_);
    auto *row = new QHBoxLayout;
    row->addWidget(labelModel);
    row->addWidget(comboModel_);
    row->addStretch();
    layout->addLayout(row);
    checkMoves_ = new QCheckBox(QStringLiteral("Its machine starts and stops by &itself"), part);
    checkMoves_->setObjectName(QStringLiteral("CheckMoves"));
    checkMoves_->setChecked(true);
    layout->addWidget(checkMoves_);
    commandSimulate_ = MakeButton(QStringLiteral("&Start and Connect"), "CommandSimulate", part);
    labelSimulation_ = MakeText({}, part, "LabelSimulation");
    auto *foot = new QHBoxLayout;
    foot->addWidget(commandSimulate_);
    foot->addWidget(labelSimulation_, 1);
    layout->addLayout(foot);
    layout->addStretch();
    On(commandSimulate_, &QPushButton::clicked, this, [this] {
        portList_->StopFinding();
        commands_.simulate(ModelOfListItem(comboModel_->currentText()), checkMoves_->isChecked());
    });
    return part;
}

QWidget *StartPage::MakeFiles(RecentFiles &recent)
{
    auto *part = new QGroupBox(QStringLiteral("Settings files"), sheet_);
    auto *layout = new QVBoxLayout(part);
    layout->addWidget(MakeText(
        QStringLiteral("A set can be opened and prepared without a drive, and written to it later."), part));
    QPushButton *open = MakeButton(QStringLiteral("O&pen..."), "CommandOpen", part);
    AddLeft(layout, open);
    recentRows_ = new QVBoxLayout;
    layout->addLayout(recentRows_);
    layout->addStretch();
    On(open, &QPushButton::clicked, this, [this] { commands_.open(); });
    On(&recent, &RecentFiles::Changed, this, [this, &recent] { ListRecent(recent); });
    ListRecent(recent);
    return part;
}

void StartPage::ListRecent(RecentFiles &recent)
{
    while (QLayoutItem *item = recentRows_->takeAt(0)) {
        // The one that was clicked may still be at work.
        item->widget()->deleteLater();
        item->widget()->hide();
        delete item;
    }
    const QStringList paths = recent.Paths().mid(0, RecentShown);
    for (int place = 0; place < paths.size(); ++place) {
        const QString &path = paths.at(place);
        auto *button =
            new QPushButton(FileTitle(path).replace(u'&', QStringLiteral("&&")) + QStringLiteral("  -  ") +
                                QFontMetrics(font())
                                    .elidedText(QFileInfo(path).path(), Qt::ElideMiddle,
                                                fontMetrics().averageCharWidth() * 36)
                                    .replace(u'&', QStringLiteral("&&")),
                            sheet_);
        button->setObjectName(QStringLiteral("CommandRecent(%1)").arg(place));
        button->setFlat(true);
        button->setCursor(Qt::PointingHandCursor);
        SetPlainToolTip(button, path);
        recentRows_->addWidget(button, 0, Qt::AlignLeft);
        // Later, since the list changes by it.
        connect(
            button, &QPushButton::clicked, this,
            [&recent, path] { Guarded([&recent, &path] { recent.Choose(path); }); }, Qt::QueuedConnection);
    }
}

QWidget *StartPage::MakeSetUp()
{
    auto *part = new QGroupBox(QStringLiteral("Set a drive up"), sheet_);
    auto *layout = new QVBoxLayout(part);
    layout->addWidget(MakeText(QStringLiteral("The Basic Setup Mentor asks for the motor's nameplate and a "
                                              "few choices, and sets what follows from them."),
                               part));
    QPushButton *mentor = MakeButton(QStringLiteral("Basic Set&up Mentor..."), "CommandMentor", part);
    AddLeft(layout, mentor);
    QPushButton *procedure =
        MakeButton(QStringLiteral("First Commissionin&g, Step by Step"), "CommandProcedure", part);
    AddLeft(layout, procedure);
    layout->addStretch();
    On(mentor, &QPushButton::clicked, this, [this] { commands_.mentor(); });
    On(procedure, &QPushButton::clicked, this,
       [this] { commands_.help(QStringLiteral("Procedure First Commissioning.htm")); });
    return part;
}

QWidget *StartPage::MakeLessons()
{
    auto *part = new QGroupBox(QStringLiteral("Learn"), sheet_);
    auto *layout = new QVBoxLayout(part);
    layout->addWidget(MakeText(QStringLiteral("Three short lessons, a few minutes each. They stand beside "
                                              "the windows and tick off what was done."),
                               part));
    auto *buttons = new QGridLayout;
    for (int number = 1; const Lesson &lesson : Lessons()) {
        QPushButton *button = MakeButton(
            QStringLiteral("&%1  %2").arg(number).arg(QString::fromLatin1(lesson.title)), "", part);
        button->setObjectName(QStringLiteral("CommandLesson(%1)").arg(number));
        buttons->addWidget(button, (number - 1) / 2, (number - 1) % 2);
        ++number;
        On(button, &QPushButton::clicked, this, [this, &lesson] { commands_.learn(lesson); });
    }
    QPushButton *news = MakeButton(QStringLiteral("What Is &New"), "CommandNews", part);
    buttons->addWidget(news, 1, 1);
    buttons->setColumnStretch(2, 1);
    layout->addLayout(buttons);
    layout->addStretch();
    On(news, &QPushButton::clicked, this, [this] { commands_.help(QStringLiteral("What Is New.htm")); });
    return part;
}

void StartPage::SetPort(int number)
{
    portList_->SetNumber(number);
    portList_->RefreshSoon();
}

bool StartPage::HasChosen(int number) const
{
    return portList_->HasChosen(number);
}

void StartPage::FollowLink(const QString &sentence)
{
    isOnLine_ = !sentence.isEmpty();
    labelLink_->setText(sentence);
    Enable();
}

void StartPage::FollowSimulation(bool isStarting, const QString &sentence)
{
    isStarting_ = isStarting;
    labelSimulation_->setText(sentence);
    Enable();
}

void StartPage::Enable()
{
    const bool mayChoose = !isOnLine_ && !isStarting_;
    portList_->SetMayChoose(mayChoose);
    for (QWidget *control : QList<QWidget *>{commandConnect_, comboModel_, checkMoves_, commandSimulate_})
        control->setEnabled(mayChoose);
}

void StartPage::Arrange()
{
    const int columns = viewport()->width() >= fontMetrics().averageCharWidth() * TwoColumnsFrom ? 2 : 1;
    if (columns == columns_)
        return;
    columns_ = columns;
    delete sheet_->layout();
    auto *grid = new QGridLayout(sheet_);
    const int gap = fontMetrics().height();
    grid->setContentsMargins(gap, gap, gap, gap);
    grid->setSpacing(gap);
    // Beside the tall list of ports stand the files; the tab order goes the same way.
    if (columns == 2) {
        grid->addWidget(parts_[0], 0, 0);
        grid->addWidget(parts_[1], 0, 1);
        grid->addWidget(parts_[2], 1, 0);
        grid->addWidget(parts_[3], 1, 1);
        grid->addWidget(parts_[4], 2, 0, 1, 2);
        grid->setColumnStretch(0, 3);
        grid->setColumnStretch(1, 2);
    } else {
        for (int row = 0; QWidget * part : parts_)
            grid->addWidget(part, row++, 0);
    }
    grid->setRowStretch(grid->rowCount(), 1);
}

void StartPage::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    Arrange();
}

void StartPage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        Arrange();
    QScrollArea::changeEvent(event);
}

void StartPage::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F1 && event->modifiers() == Qt::NoModifier)
        Guarded([this] { commands_.help(QStringLiteral("Start Page.htm")); });
    else
        QScrollArea::keyPressEvent(event);
}

} // namespace quorvik
