#include "report/forms/FormCommissioningReport.h"

#include "desktop/UsualPaper.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "report/pages/ReportPages.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QSplitter>
#include <QToolButton>
#include <utility>

namespace quorvik
{

namespace
{

/** So long after the last key the pages follow, in milliseconds. */
constexpr int FollowMs = 600;
constexpr int TickMs = 500;
constexpr int PreviewColumns = 50;
constexpr int FieldColumns = 26;
constexpr int RecordingRows = 4;

struct PlaceField {
    const char *caption;
    const char *name;
    QString CommissioningPlace::*text;
};
constexpr PlaceField PlaceFields[] = {{"&Site:", "TextSite", &CommissioningPlace::site},
                                      {"Mach&ine:", "TextMachine", &CommissioningPlace::machine},
                                      {"C&ustomer:", "TextCustomer", &CommissioningPlace::customer},
                                      {"Perso&n:", "TextPerson", &CommissioningPlace::person}};

struct PartField {
    const char *caption;
    const char *name;
    ReportPart part;
};
constexpr PartField PartFields[] = {{"Changed settin&gs", "CheckSettings", ReportPart::Settings},
                                    {"Fau&lt history", "CheckFaults", ReportPart::Faults},
                                    {"&Journal of the day", "CheckJournal", ReportPart::Journal},
                                    {"Not&es", "CheckNotes", ReportPart::Notes}};

QLabel *MakeLine(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

/** Those that a control is made of are reached by the keys in its place. */
void NameAll(QWidget *control, const QString &name)
{
    control->setAccessibleName(name);
    for (auto *inner : control->findChildren<QWidget *>())
        if (inner->focusPolicy() != Qt::NoFocus)
            inner->setAccessibleName(name);
}

QString TitleOf(const StoredRecording &recording)
{
    const QString when =
        QDateTime::fromMSecsSinceEpoch(recording.firstUtcMs).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return recording.head.title.isEmpty() ? when : when + QStringLiteral("  ") + recording.head.title;
}

} // namespace

const QString &FormCommissioningReport::Name()
{
    static const QString name = QStringLiteral("FormCommissioningReport");
    return name;
}

FormCommissioningReport::FormCommissioningReport(Desk &givenDesk, CommissioningHost &host)
    : Form(givenDesk, Name(), QStringLiteral("Commissioning Report"),
           QStringLiteral("Commissioning Report.htm"))
    , ChooseFile([this](const QString &name) { return ShowSaveDialog(name); })
    , ChoosePrinter([this](QPrinter &printer) { return ShowPrinterDialog(printer); })
    , host_(host)
    , verification_(NotVerified(QStringLiteral("The settings were not compared with the drive yet.")))
{
    auto *fields = new QScrollArea(this);
    fields->setObjectName(QStringLiteral("Fields"));
    fields->setFrameShape(QFrame::NoFrame);
    fields->setWidgetResizable(true);
    fields->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fields->setFocusPolicy(Qt::NoFocus);
    fields->setWidget(MakeFields());
    fields->setFixedWidth(fields->widget()->sizeHint().width() + fontMetrics().height() * 2);
    auto *middle = new QHBoxLayout;
    middle->addWidget(fields);
    middle->addWidget(MakePreview(), 1);
    labelVerification_ = MakeLine(this, "LabelVerification");
    labelOutcome_ = MakeLine(this, "LabelOutcome");
    labelOutcome_->hide();
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(middle, 1);
    layout->addWidget(labelVerification_);
    layout->addWidget(labelOutcome_);
    layout->addWidget(MakeCommands());

    timerFollow_.setObjectName(QStringLiteral("TimerFollow"));
    timerFollow_.setSingleShot(true);
    timerFollow_.setInterval(FollowMs);
    On(&timerFollow_, &QTimer::timeout, this, [this] { Follow(); });
    On(&desk().table.Signals(), &TableSignals::Changed, this, [this](const ParamChange &change) {
        // What a drive tells of itself moves all the time; what is compared are settings.
        if (change.cause != ChangeCause::Drive && change.cause != ChangeCause::Emulated)
            ForgetComparison();
    });
    On(&desk().document, &Document::TitleChanged, this, [this] {
        TakePlace();
        FollowSoon();
    });
    timerUpdateScreen_.setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] {
        const bool isOnLine = desk().table.PortOpen();
        // Behind another link may be another drive.
        if (std::exchange(wasOnLine_, isOnLine) != isOnLine)
            ForgetComparison();
    });
    timerUpdateScreen_.start(TickMs);
    Follow();
}

FormCommissioningReport::~FormCommissioningReport() = default;

QSize FormCommissioningReport::sizeHint() const
{
    // A page that can be read, where there is room for it.
    return Form::sizeHint() + QSize(fontMetrics().averageCharWidth() * PreviewColumns * 2 / 3, 0);
}

void FormCommissioningReport::Unload()
{
    timerFollow_.stop();
    timerUpdateScreen_.stop();
}

QWidget *FormCommissioningReport::MakeFields()
{
    auto *sheet = new QWidget;
    auto *rows = new QFormLayout;
    const CommissioningPlace known = host_.Place();
    for (std::size_t i = 0; i < place_.size(); ++i) {
        const PlaceField &field = PlaceFields[i];
        place_[i] = new QLineEdit(known.*field.text, sheet);
        place_[i]->setObjectName(QString::fromLatin1(field.name));
        place_[i]->setMinimumWidth(fontMetrics().averageCharWidth() * FieldColumns);
        rows->addRow(QString::fromLatin1(field.caption), place_[i]);
        On(place_[i], &QLineEdit::textEdited, this, [this] {
            isPlaceOwn_ = true;
            FollowSoon();
        });
    }
    checkKeep_ = new QCheckBox(QStringLiteral("&Keep in the notes"), sheet);
    checkKeep_->setObjectName(QStringLiteral("CheckKeep"));
    checkKeep_->setToolTip(
        QStringLiteral("Puts these four into the notes of the set when the report is saved or printed"));
    rows->addRow(QString(), checkKeep_);
    day_ = new QDateEdit(desk().Now().date(), sheet);
    day_->setObjectName(QStringLiteral("DateJournal"));
    NameAll(day_, QStringLiteral("Day of the journal"));
    day_->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    day_->setToolTip(QStringLiteral("The day whose changes are listed"));
    rows->addRow(QStringLiteral("Da&y:"), day_);
    comboPaper_ = new QComboBox(sheet);
    comboPaper_->setObjectName(QStringLiteral("ComboPaper"));
    comboPaper_->addItem(QStringLiteral("A4"), QPageSize::A4);
    comboPaper_->addItem(QStringLiteral("Letter"), QPageSize::Letter);
    comboPaper_->setCurrentIndex(UsualPaper().id() == QPageSize::Letter ? 1 : 0);
    rows->addRow(QStringLiteral("P&aper:"), comboPaper_);

    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins({});
    layout->addLayout(rows);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        parts_[i] = new QCheckBox(QString::fromLatin1(PartFields[i].caption), sheet);
        parts_[i]->setObjectName(QString::fromLatin1(PartFields[i].name));
        parts_[i]->setChecked(true);
        layout->addWidget(parts_[i]);
        On(parts_[i], &QCheckBox::toggled, this, [this] { FollowSoon(); });
    }
    auto *labelRecordings = new QLabel(QStringLiteral("&Recordings:"), sheet);
    recordings_ = new QListWidget(sheet);
    recordings_->setObjectName(QStringLiteral("ListRecordings"));
    recordings_->setAccessibleName(QStringLiteral("Recordings in the report"));
    recordings_->setMinimumHeight(fontMetrics().lineSpacing() * RecordingRows);
    recordings_->setMinimumWidth(fontMetrics().averageCharWidth() * FieldColumns);
    recordings_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    labelRecordings->setBuddy(recordings_);
    layout->addWidget(labelRecordings);
    layout->addWidget(recordings_, 1);
    FillRecordings();

    On(day_, &QDateEdit::dateChanged, this, [this] { FollowSoon(); });
    On(comboPaper_, &QComboBox::currentIndexChanged, this, [this] { Follow(); });
    On(recordings_, &QListWidget::itemChanged, this, [this] { FollowSoon(); });
    return sheet;
}

void FormCommissioningReport::FillRecordings()
{
    for (const StoredRecording &recording : host_.Recordings()) {
        if (!recording.failure.isEmpty())
            continue;
        auto *item = new QListWidgetItem(TitleOf(recording), recordings_);
        item->setData(Qt::UserRole, recording.path);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
        item->setToolTip(TitleOf(recording).toHtmlEscaped());
    }
    if (recordings_->count() == 0) {
        auto *none = new QListWidgetItem(QStringLiteral("No recording was kept."), recordings_);
        none->setFlags(Qt::NoItemFlags);
    }
}

QWidget *FormCommissioningReport::MakePreview()
{
    auto *part = new QWidget(this);
    previewPrinter_ = std::make_unique<QPrinter>(QPrinter::ScreenResolution);
    preview_ = new QPrintPreviewWidget(previewPrinter_.get(), part);
    preview_->setObjectName(QStringLiteral("Preview"));
    NameAll(preview_, QStringLiteral("Pages of the report"));
    preview_->setMinimumWidth(fontMetrics().averageCharWidth() * PreviewColumns);
    page_ = new QSpinBox(part);
    page_->setObjectName(QStringLiteral("SpinPage"));
    page_->setMinimum(1);
    NameAll(page_, QStringLiteral("Page"));
    labelPages_ = new QLabel(part);
    labelPages_->setObjectName(QStringLiteral("LabelPages"));
    auto *foot = new QHBoxLayout;
    foot->addWidget(new QLabel(QStringLiteral("Page:"), part));
    foot->addWidget(page_);
    foot->addWidget(labelPages_);
    foot->addStretch(1);
    const auto addTool = [this, part, foot](const char *name, const QString &text, const QString &toolTip,
                                            const auto &act) {
        auto *tool = new QToolButton(part);
        tool->setObjectName(QString::fromLatin1(name));
        tool->setText(text);
        tool->setToolTip(toolTip);
        tool->setAccessibleName(toolTip);
        tool->setFocusPolicy(Qt::StrongFocus);
        foot->addWidget(tool);
        On(tool, &QToolButton::clicked, this, act);
    };
    addTool("ToolZoomOut", QStringLiteral("-"), QStringLiteral("Smaller pages"),
            [this] { preview_->zoomOut(); });
    addTool("ToolZoomIn", QStringLiteral("+"), QStringLiteral("Larger pages"),
            [this] { preview_->zoomIn(); });
    addTool("ToolWidth", QStringLiteral("Width"), QStringLiteral("Pages as wide as the window"),
            [this] { preview_->fitToWidth(); });
    addTool("ToolWhole", QStringLiteral("Page"), QStringLiteral("Whole pages"),
            [this] { preview_->fitInView(); });
    auto *layout = new QVBoxLayout(part);
    layout->setContentsMargins({});
    layout->addWidget(preview_, 1);
    layout->addLayout(foot);

    On(preview_, &QPrintPreviewWidget::paintRequested, this, [this](QPrinter *printer) {
        if (pages_)
            pages_->Print(*printer);
    });
    On(preview_, &QPrintPreviewWidget::previewChanged, this, [this] { FollowPage(); });
    On(page_, &QSpinBox::valueChanged, this, [this](int page) { preview_->setCurrentPage(page); });
    return part;
}

QPushButton *FormCommissioningReport::MakeButton(const char *name, const QString &caption,
                                                 const QString &toolTip,
                                                 void (FormCommissioningReport::*act)())
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(toolTip);
    On(button, &QPushButton::clicked, this, [this, act] { (this->*act)(); });
    return button;
}

QWidget *FormCommissioningReport::MakeCommands()
{
    auto *commands = new QWidget(this);
    auto *layout = new QHBoxLayout(commands);
    layout->setContentsMargins({});
    commandCompare_ = MakeButton("CommandCompare", QStringLiteral("&Compare Now"),
                                 QStringLiteral("Reads the drive and holds the settings against it"),
                                 &FormCommissioningReport::CommandCompare_Click);
    layout->addWidget(commandCompare_);
    layout->addStretch(1);
    layout->addWidget(MakeButton("CommandPdf", QStringLiteral("Save as P&DF..."),
                                 QStringLiteral("Writes the pages to a file"),
                                 &FormCommissioningReport::CommandPdf_Click));
    layout->addWidget(MakeButton("CommandPrint", QStringLiteral("&Print..."),
                                 QStringLiteral("Prints the pages"),
                                 &FormCommissioningReport::CommandPrint_Click));
    layout->addWidget(MakeCommandHelp());
    layout->addWidget(MakeCommandClose());
    return commands;
}

CommissioningPlace FormCommissioningReport::Place() const
{
    CommissioningPlace place;
    for (std::size_t i = 0; i < place_.size(); ++i)
        place.*PlaceFields[i].text = place_[i]->text().trimmed();
    return place;
}

ReportChoices FormCommissioningReport::Choices() const
{
    ReportChoices choices;
    choices.place = Place();
    choices.journalDay = day_->date();
    for (int row = 0; row < recordings_->count(); ++row)
        if (recordings_->item(row)->checkState() == Qt::Checked)
            choices.recordings.append(recordings_->item(row)->data(Qt::UserRole).toString());
    for (std::size_t i = 0; i < parts_.size(); ++i)
        if (!parts_[i]->isChecked())
            choices.leftOut.insert(PartFields[i].part);
    return choices;
}

QPageSize::PageSizeId FormCommissioningReport::Paper() const
{
    return QPageSize::PageSizeId(comboPaper_->currentData().toInt());
}

void FormCommissioningReport::FollowSoon()
{
    timerFollow_.start();
}

void FormCommissioningReport::Follow()
{
    timerFollow_.stop();
    const int page = preview_->currentPage();
    pages_ = std::make_unique<ReportPages>(host_.Make(Choices(), verification_), desk().table, Paper());
    previewPrinter_->setPageLayout(pages_->Layout());
    preview_->updatePreview();
    preview_->setCurrentPage(page);
    ShowVerification();
}

void FormCommissioningReport::FollowPage()
{
    const QSignalBlocker quiet(page_);
    page_->setMaximum(std::max(preview_->pageCount(), 1));
    page_->setValue(preview_->currentPage());
    labelPages_->setText(QStringLiteral("of %1").arg(preview_->pageCount()));
}

void FormCommissioningReport::TakePlace()
{
    if (isPlaceOwn_)
        return;
    const CommissioningPlace known = host_.Place();
    for (std::size_t i = 0; i < place_.size(); ++i)
        place_[i]->setText(known.*PlaceFields[i].text);
}

void FormCommissioningReport::ForgetComparison()
{
    if (isBusy_)
        return;
    verification_ = NotVerified(QStringLiteral("The settings were not compared with the drive since they "
                                               "or the link have changed."));
    FollowSoon();
}

void FormCommissioningReport::ShowVerification()
{
    const bool isSame = verification_.verification == Verification::Same;
    QFont shown = font();
    shown.setBold(!isSame);
    labelVerification_->setFont(shown);
    labelVerification_->setText((isSame ? QString() : QChar(0x26a0) + QStringLiteral("  ")) +
                                verification_.text);
    commandCompare_->setEnabled(!isBusy_);
}

} // namespace quorvik
