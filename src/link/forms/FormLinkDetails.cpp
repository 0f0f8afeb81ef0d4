#include "link/forms/FormLinkDetails.h"

#include "desktop/SaveDialog.h"
#include "link/LinkReport.h"
#include "link/LinkStatistics.h"
#include "link/PacketLog.h"
#include "link/forms/PacketModel.h"
#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/Asker.h"
#include "platform/AtomicFile.h"
#include "platform/Guard.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int TickMs = 250;
/** The figures are shown anew with each so many ticks. */
constexpr int FigureTicks = 2;
/** The columns are as wide as these in bold; the last one takes the rest. */
constexpr const char *WidestTexts[] = {"00:00:00.000 ", "from drive ", "00 00 00 00 00 00 00", "000.0 ms "};
constexpr int MeaningCharacters = 48;
constexpr int FewestRows = 2;
constexpr int RowsInSight = 20;
constexpr int LinesOfSilences = 4;

struct KindChoice {
    const char *caption;
    std::optional<Packet::Kind> kind;
};

constexpr KindChoice KindChoices[] = {{"All", std::nullopt},
                                      {"Requests", Packet::Kind::Request},
                                      {"Answers", Packet::Kind::Answer},
                                      {"Faults", Packet::Kind::Fault}};

QPushButton *MakeButton(QWidget *form, const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QPushButton(caption, form);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    return button;
}

QString StopCaption(bool isRecording)
{
    return isRecording ? QStringLiteral("Sto&p") : QStringLiteral("&Go on");
}

} // namespace

const QString &FormLinkDetails::Name()
{
    static const QString name = QStringLiteral("FormLinkDetails");
    return name;
}

FormLinkDetails::FormLinkDetails(Desk &givenDesk, const LinkStatistics &statistics, PacketLog &log)
    : Form(givenDesk, Name(), QStringLiteral("Link Details"), QStringLiteral("Link Details.htm"))
    , ChooseFile([this](const QString &folder) { return ShowSaveDialog(folder); })
    , statistics_(statistics)
    , log_(log)
    , model_(new PacketModel(log, givenDesk.table, this))
    , labelState_(new QLabel(this))
    , listSilences_(new QListWidget(this))
    , textFilter_(new QLineEdit(this))
    , comboKind_(new QComboBox(this))
    , labelCount_(new QLabel(this))
    , packets_(MakePackets())
    , labelOutcome_(new QLabel(this))
    , timerUpdateScreen_(new QTimer(this))
{
    labelState_->setObjectName(QStringLiteral("LabelState"));
    labelState_->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(labelState_);
    auto *top = new QHBoxLayout;
    top->addLayout(MakeFigures());
    top->addSpacing(fontMetrics().height());
    top->addLayout(MakeSilences(), 1);
    layout->addLayout(top);
    layout->addLayout(MakeFilter());
    layout->addWidget(packets_, 1);
    layout->addLayout(MakeCommands());

    log_.SetRecording(true);
    model_->SetFilter({});
    ShowFigures();
    FollowPackets();
    timerUpdateScreen_->setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(timerUpdateScreen_, &QTimer::timeout, this, [this] { TimerUpdateScreen_Timer(); });
    timerUpdateScreen_->start(TickMs);
    packets_->setFocus();
}

void FormLinkDetails::Unload()
{
    log_.SetRecording(false);
}

QLayout *FormLinkDetails::MakeFigures()
{
    auto *layout = new QGridLayout;
    const QList<LinkFigure> figures = Figures(statistics_);
    for (int i = 0; i < figures.size(); ++i) {
        auto *caption = new QLabel(figures[i].caption + u':', this);
        auto *value = new QLabel(this);
        value->setObjectName(QString::fromLatin1(figures[i].name));
        value->setMinimumWidth((i < FirstFailure ? 20 : 13) * fontMetrics().averageCharWidth());
        const int column = i < FirstFailure ? 0 : 2;
        layout->addWidget(caption, i % FirstFailure, column);
        layout->addWidget(value, i % FirstFailure, column + 1);
        labelFigures_.append(value);
    }
    layout->setRowStretch(FirstFailure, 1);
    return layout;
}

QLayout *FormLinkDetails::MakeSilences()
{
    auto *layout = new QVBoxLayout;
    auto *label = new QLabel(QStringLiteral("S&ilences, the last one first:"), this);
    label->setBuddy(listSilences_);
    listSilences_->setObjectName(QStringLiteral("ListSilences"));
    listSilences_->setAccessibleName(QStringLiteral("Silences"));
    listSilences_->setUniformItemSizes(true);
    listSilences_->setMinimumSize(18 * fontMetrics().averageCharWidth(),
                                  LinesOfSilences * fontMetrics().lineSpacing());
    listSilences_->setMaximumHeight((FirstFailure + 1) * fontMetrics().lineSpacing());
    listSilences_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(label);
    layout->addWidget(listSilences_, 1);
    return layout;
}

QLayout *FormLinkDetails::MakeFilter()
{
    auto *layout = new QHBoxLayout;
    auto *label = new QLabel(QStringLiteral("Filt&er:"), this);
    label->setBuddy(textFilter_);
    textFilter_->setObjectName(QStringLiteral("TextFilter"));
    textFilter_->setAccessibleName(QStringLiteral("Filter"));
    textFilter_->setPlaceholderText(QStringLiteral("Number, name, bytes or meaning"));
    textFilter_->setClearButtonEnabled(true);
    auto *kinds = new QLabel(QStringLiteral("&Show:"), this);
    kinds->setBuddy(comboKind_);
    comboKind_->setObjectName(QStringLiteral("ComboKind"));
    comboKind_->setAccessibleName(QStringLiteral("Which packets are shown"));
    for (const KindChoice &choice : KindChoices)
        comboKind_->addItem(QString::fromLatin1(choice.caption));
    labelCount_->setObjectName(QStringLiteral("LabelCount"));
    labelCount_->setMinimumWidth(14 * fontMetrics().averageCharWidth());
    labelCount_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    On(textFilter_, &QLineEdit::textChanged, this, [this] { OnFilterChanged(); });
    On(comboKind_, &QComboBox::currentIndexChanged, this, [this] { OnFilterChanged(); });
    layout->addWidget(label);
    layout->addWidget(textFilter_, 1);
    layout->addWidget(kinds);
    layout->addWidget(comboKind_);
    layout->addWidget(labelCount_);
    return layout;
}

QTableView *FormLinkDetails::MakePackets()
{
    auto *view = new QTableView(this);
    view->setObjectName(QStringLiteral("TablePackets"));
    view->setAccessibleName(QStringLiteral("Packets"));
    view->setModel(model_);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setTabKeyNavigation(false);
    view->setAlternatingRowColors(true);
    view->setShowGrid(false);
    view->setWordWrap(false);
    view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->verticalHeader()->hide();
    // One height for all, or each row would be measured.
    const int rowHeight = view->fontMetrics().height() * 5 / 4;
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setMinimumSectionSize(rowHeight);
    view->verticalHeader()->setDefaultSectionSize(rowHeight);
    view->horizontalHeader()->setHighlightSections(false);
    view->horizontalHeader()->setStretchLastSection(true);
    const QFont fixed = PacketModel::BytesFont();
    int column = 0;
    for (const char *widest : WidestTexts) {
        QFont font = PacketColumn(column) == PacketColumn::Bytes ? fixed : view->font();
        font.setBold(true);
        view->setColumnWidth(column++, QFontMetrics(font).horizontalAdvance(QString::fromLatin1(widest)) +
                                           view->fontMetrics().height());
    }
    view->setMinimumHeight((FewestRows + 2) * rowHeight);
    return view;
}

QLayout *FormLinkDetails::MakeCommands()
{
    auto *layout = new QHBoxLayout;
    commandStop_ = MakeButton(this, QStringLiteral("CommandStop"), StopCaption(true),
                              QStringLiteral("Stops and continues the recording of packets"));
    auto *clear = MakeButton(this, QStringLiteral("CommandClear"), QStringLiteral("C&lear"),
                             QStringLiteral("Empties the list of packets"));
    auto *save = MakeButton(this, QStringLiteral("CommandSave"), QStringLiteral("Sa&ve..."),
                            QStringLiteral("Writes figures and shown packets to a text file"));
    On(commandStop_, &QPushButton::clicked, this, [this] { CommandStop_Click(); });
    On(clear, &QPushButton::clicked, this, [this] {
        log_.Clear();
        FollowPackets();
    });
    On(save, &QPushButton::clicked, this, [this] { CommandSave_Click(); });
    labelOutcome_->setObjectName(QStringLiteral("LabelOutcome"));
    labelOutcome_->setTextFormat(Qt::PlainText);
    labelOutcome_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(commandStop_);
    layout->addWidget(clear);
    layout->addWidget(save);
    layout->addWidget(labelOutcome_, 1);
    layout->addWidget(MakeCommandHelp());
    layout->addWidget(MakeCommandClose());
    return layout;
}

QSize FormLinkDetails::sizeHint() const
{
    int width = 3 * fontMetrics().height() + MeaningCharacters * fontMetrics().averageCharWidth();
    for (int column = 0; column < int(std::size(WidestTexts)); ++column)
        width += packets_->columnWidth(column);
    const QSize needed = Form::sizeHint();
    const int rows = RowsInSight * packets_->verticalHeader()->defaultSectionSize();
    return {std::max(needed.width(), width), needed.height() - packets_->sizeHint().height() + rows};
}

void FormLinkDetails::TimerUpdateScreen_Timer()
{
    FollowPackets();
    if (++ticks_ % FigureTicks == 0)
        ShowFigures();
}

void FormLinkDetails::ShowFigures()
{
    const auto show = [](QLabel *label, const QString &text) {
        if (label->text() != text)
            label->setText(text);
    };
    show(labelState_, StateSentence(statistics_));
    const QList<LinkFigure> figures = Figures(statistics_);
    for (int i = 0; i < figures.size(); ++i)
        show(labelFigures_[i], figures[i].text);

    const QStringList silences = SilenceLines(statistics_, desk().table);
    QStringList shown;
    for (int i = 0; i < listSilences_->count(); ++i)
        shown += listSilences_->item(i)->text();
    // Only on a change, or the user's place in the list would be lost.
    if (silences == shown)
        return;
    listSilences_->clear();
    listSilences_->addItems(silences);
}

void FormLinkDetails::FollowPackets()
{
    QScrollBar *bar = packets_->verticalScrollBar();
    const bool isAtEnd = bar->value() >= bar->maximum();
    const int place = bar->value();
    const int gone = model_->Follow();
    if (isAtEnd)
        packets_->scrollToBottom();
    else if (gone > 0)
        bar->setValue(place - gone); // what the user looks at stays where it is
    const auto known = log_.End() - log_.First();
    const QString count = QStringLiteral("%1 of %2").arg(model_->rowCount()).arg(known);
    if (count != labelCount_->text())
        labelCount_->setText(count);
}

void FormLinkDetails::OnFilterChanged()
{
    model_->SetFilter(
        {textFilter_->text().trimmed(), KindChoices[std::max(comboKind_->currentIndex(), 0)].kind});
    packets_->scrollToBottom();
    FollowPackets();
}

void FormLinkDetails::CommandStop_Click()
{
    log_.SetRecording(!log_.IsRecording());
    FollowPackets();
    commandStop_->setText(StopCaption(log_.IsRecording()));
}

std::optional<QString> FormLinkDetails::ShowSaveDialog(const QString &folder)
{
    QFileDialog dialog(this, QStringLiteral("Save Link Details"));
    dialog.setNameFilters({QStringLiteral("Text (*.txt)")});
    dialog.setDefaultSuffix(QStringLiteral("txt"));
    const QString name = QStringLiteral("Link Details %1.txt")
                             .arg(desk().Now().toString(QStringLiteral("yyyy-MM-dd HH-mm-ss")));
    return RunExportDialog(dialog, folder + name, desk().settings, desk().asker);
}

void FormLinkDetails::CommandSave_Click()
{
    // What is shown now; the line goes on while the file is chosen.
    FollowPackets();
    const QByteArray report = LinkReport(statistics_, model_->Shown(), desk().table);
    const std::optional<QString> path = ChooseFile(FilePath(desk().document.FileName));
    if (!path)
        return;
    const QString failure = AtomicFile::Write(*path, report);
    if (!failure.isEmpty()) {
        desk().asker.MsgBox(failure, MsgButtons::Ok, MsgIcon::Exclamation, windowTitle());
        return;
    }
    labelOutcome_->setText(QStringLiteral("Saved to \"%1\".").arg(FileTitle(*path)));
    QAccessibleEvent event(labelOutcome_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace quorvik
