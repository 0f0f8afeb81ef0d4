#include "trend/forms/FormTrend.h"

#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "trend/TrendRecorder.h"
#include "trend/forms/CaptureBar.h"
#include "trend/forms/ChannelLegend.h"
#include "trend/forms/FiguresPanel.h"
#include "trend/forms/FormRecordings.h"
#include "trend/forms/StateText.h"
#include "trend/forms/TemplatesMenu.h"
#include "trend/forms/TrendExport.h"
#include "trend/forms/TrendHost.h"
#include "trend/forms/TrendPlot.h"
#include "trend/forms/TriggerPanel.h"
#include "trend/forms/TripPanel.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTabWidget>
#include <algorithm>
#include <array>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int TickMs = 250;
constexpr int WidthCharacters = 183;
constexpr int HeightLines = 43;
constexpr int TabLines = 13;
constexpr QSize MostSize(1300, 640);

struct KeepTime {
    const char *caption;
    int milliseconds;
};

constexpr std::array<KeepTime, 5> KeepTimes = {
    {{"10 s", 10000}, {"60 s", 60000}, {"5 min", 300000}, {"15 min", 900000}, {"1 h", 3600000}}};

/** A page whose fields can be reached by scrolling where the window is small. */
QWidget *Scrolled(QWidget *page)
{
    auto *area = new QScrollArea;
    area->setWidget(page);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    return area;
}

} // namespace

FormTrend::FormTrend(Desk &givenDesk, TrendHost &host)
    : Form(givenDesk, Name(), QStringLiteral("Trend"), QStringLiteral("Trend.htm"))
    , ChooseExport([this](const QString &suffix, const QString &folder) {
        return ShowTrendExportDialog(suffix, folder, this, desk().settings, desk().asker);
    })
    , host_(host)
    , view_(host.Recorder())
{
    above_ = new QSplitter(Qt::Vertical, this);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeRecordingRow());
    layout->addWidget(MakeStateRow());
    // Made in the order in which the Tab key goes.
    plot_ = new TrendPlot(view_, this);
    plot_->setObjectName(QStringLiteral("TrendPlot"));
    above_->addWidget(plot_);
    above_->addWidget(MakeTabs());
    above_->setStretchFactor(0, 1);
    above_->setChildrenCollapsible(false);
    beside_ = new QSplitter(Qt::Horizontal, this);
    beside_->addWidget(above_);
    beside_->setStretchFactor(0, 1);
    beside_->setChildrenCollapsible(false);
    layout->addWidget(beside_, 1);
    layout->addWidget(MakeCommands());

    On(plot_, &TrendPlot::ParameterDropped, this, [this](int p, int plot) {
        if (view_.CurveOf(p) == nullptr)
            AddChannel(p);
        view_.Move(p, plot);
    });
    TrendRecorder &recorder = host.Recorder();
    On(&recorder, &TrendRecorder::StateChanged, this, [this] { Follow(); });
    On(&recorder, &TrendRecorder::ChannelsChanged, this, [this] { Follow(); });
    On(&recorder, &TrendRecorder::Captured, this,
       [this](const TrendDataPtr &capture) { TakeCapture(capture); });
    On(&view_, &TrendView::DataChanged, this, [this] { Follow(); });
    On(&view_, &TrendView::CurvesChanged, this,
       [this] { commandNoOverlay_->setVisible(!view_.Overlays().empty()); });
    On(&view_, &TrendView::WindowChanged, this, [this] {
        const QSignalBlocker quiet(commandFollow_);
        commandFollow_->setChecked(view_.Follows());
    });
    timerTold_.setObjectName(QStringLiteral("TimerTold"));
    timerTold_.setSingleShot(true);
    On(&timerTold_, &QTimer::timeout, this, [this] { labelTold_->hide(); });
    timerUpdateScreen_.setObjectName(QStringLiteral("TimerUpdateScreen"));
    On(&timerUpdateScreen_, &QTimer::timeout, this, [this] { Refresh(); });
    Restore();
    Follow();
    timerUpdateScreen_.start(TickMs);
    resize(FormTrend::sizeHint());
    legend_->FocusAdding();
}

void FormTrend::showEvent(QShowEvent *event)
{
    Form::showEvent(event);
    // The tabs take what they need, and never the larger part.
    const int room = above_->height();
    const int tabs = std::min(TabLines * fontMetrics().height(), room / 2);
    if (!std::exchange(isLaidOut_, true))
        above_->setSizes({room - tabs, tabs});
}

QSize FormTrend::sizeHint() const
{
    const QSize wanted(WidthCharacters * fontMetrics().averageCharWidth(),
                       HeightLines * fontMetrics().height());
    return wanted.boundedTo(MostSize).expandedTo(minimumSizeHint());
}

QPushButton *FormTrend::MakeButton(QBoxLayout *layout, const char *name, const QString &caption,
                                   const QString &toolTip, std::function<void()> act)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(toolTip);
    if (act)
        On(button, &QPushButton::clicked, this, [act = std::move(act)] { act(); });
    layout->addWidget(button);
    return button;
}

QWidget *FormTrend::MakeRecordingRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    commandRecord_ =
        MakeButton(layout, "CommandRecord", QStringLiteral("&Record"), {}, [this] { RecordOrStop(); });
    commandPause_ = MakeButton(layout, "CommandPause", QStringLiteral("&Pause Picture"),
                               QStringLiteral("Holds the picture; the recording goes on (Pause key)"),
                               [this] { view_.Freeze(commandPause_->isChecked()); });
    commandPause_->setCheckable(true);
    commandFollow_ = MakeButton(layout, "CommandFollow", QStringLiteral("Fo&llow"),
                                QStringLiteral("The newest samples stay in sight (Ctrl+End)"),
                                [this] { view_.SetFollow(commandFollow_->isChecked()); });
    commandFollow_->setCheckable(true);
    MakeButton(layout, "CommandTrigger", QStringLiteral("Trigg&er..."),
               QStringLiteral("What starts a capture"), [this] {
                   tabs_->setCurrentWidget(tabs_->findChild<QWidget *>(QStringLiteral("PageTrigger")));
                   trigger_->FocusKind();
               });
    layout->addStretch(1);
    auto *label = new QLabel(QStringLiteral("&Keep:"), row);
    label->setObjectName(QStringLiteral("LabelKeep"));
    comboKeep_ = new QComboBox(row);
    comboKeep_->setObjectName(QStringLiteral("ComboKeep"));
    comboKeep_->setAccessibleName(QStringLiteral("Keep samples for"));
    comboKeep_->setToolTip(QStringLiteral("How long samples stay; older ones fall out"));
    for (const KeepTime &time : KeepTimes)
        comboKeep_->addItem(QString::fromLatin1(time.caption), time.milliseconds);
    label->setBuddy(comboKeep_);
    layout->addWidget(label);
    layout->addWidget(comboKeep_);
    On(comboKeep_, &QComboBox::activated, this,
       [this] { host_.Recorder().SetKeepMs(comboKeep_->currentData().toInt()); });

    const auto key = [this](const QKeySequence &keys, QPushButton *button) {
        auto *shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        On(shortcut, &QShortcut::activated, button, [button] { button->click(); });
    };
    key(QKeySequence(Qt::CTRL | Qt::Key_R), commandRecord_);
    key(QKeySequence(Qt::Key_Pause), commandPause_);
    key(QKeySequence(Qt::CTRL | Qt::Key_End), commandFollow_);
    return row;
}

QWidget *FormTrend::MakeStateRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QVBoxLayout(row);
    layout->setContentsMargins({});
    const auto line = [row](const char *name) {
        auto *label = new QLabel(row);
        label->setObjectName(QString::fromLatin1(name));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        return label;
    };
    labelState_ = line("LabelState");
    labelTold_ = line("LabelTold");
    labelTold_->hide();
    auto *state = new QHBoxLayout;
    state->addWidget(labelState_, 1);
    commandLive_ = MakeButton(state, "CommandLive", QStringLiteral("Back to Li&ve"),
                              QStringLiteral("Shows what is recorded now, or was recorded last"),
                              [this] { view_.ShowLive(); });
    commandNoOverlay_ = MakeButton(state, "CommandNoOverlay", QStringLiteral("No Overlay"),
                                   QStringLiteral("Takes away what is laid over the recording"),
                                   [this] { view_.RemoveOverlays(); });
    layout->addLayout(state);
    layout->addWidget(labelTold_);
    return row;
}

QWidget *FormTrend::MakeTabs()
{
    TrendRecorder &recorder = host_.Recorder();
    const ParameterTable &table = desk().table;
    const auto told = [this](const QString &sentence) { Tell(sentence); };
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("Tabs"));
    tabs_->setAccessibleName(QStringLiteral("Channels, figures, trigger and trips"));
    legend_ = new ChannelLegend(
        table, recorder, view_, [this](int colour) { return plot_->ColourOf(colour); }, this);
    On(legend_, &ChannelLegend::Told, this, told);
    tabs_->addTab(legend_, QStringLiteral("&Channels"));
    figures_ = new FiguresPanel(view_, this);
    tabs_->addTab(figures_, QStringLiteral("Figures"));

    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    trigger_ = new TriggerPanel(table, recorder, page);
    captures_ = new CaptureBar(page);
    layout->addWidget(trigger_);
    layout->addWidget(captures_);
    layout->addStretch(1);
    captures_->setContentsMargins(trigger_->layout()->contentsMargins());
    On(trigger_, &TriggerPanel::Told, this, told);
    On(captures_, &CaptureBar::ShowWanted, this,
       [this](const KeptCapture &capture) { ShowCapture(capture); });
    On(captures_, &CaptureBar::OverlayWanted, this,
       [this](const KeptCapture &capture) { view_.AddOverlay(capture.data, capture.title); });
    On(captures_, &CaptureBar::OverlayAllWanted, this, [this] {
        view_.RemoveOverlays();
        for (const KeptCapture &capture : captures_->Captures())
            if (capture.data.get() != &view_.Shown())
                view_.AddOverlay(capture.data, capture.title);
    });
    QWidget *scrolled = Scrolled(page);
    scrolled->setObjectName(QStringLiteral("PageTrigger"));
    tabs_->addTab(scrolled, QStringLiteral("Trigger"));

    auto *trips = new TripPanel(table, recorder, host_.Trips(), this);
    On(trips, &TripPanel::Told, this, told);
    On(trips, &TripPanel::Changed, this, [this] { StoreTripTrend(desk().settings, host_.Trips()); });
    tabs_->addTab(Scrolled(trips), QStringLiteral("Before a Trip"));
    return tabs_;
}

QWidget *FormTrend::MakeCommands()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    templates_ = new TemplatesMenu(
        desk(), [this] { return Arrangement(); }, row);
    On(templates_, &TemplatesMenu::Chosen, this,
       [this](const TrendArrangement &channels) { Arrange(channels); });
    On(templates_, &TemplatesMenu::Told, this, [this](const QString &sentence) { Tell(sentence); });
    layout->addWidget(templates_);
    MakeButton(layout, "CommandRecordings", QStringLiteral("Recordin&gs..."),
               QStringLiteral("What was recorded before, captures and trips"), [this] { ShowRecordings(); });
    MakeButton(layout, "CommandNotes", QStringLiteral("&Notes..."),
               QStringLiteral("Gives the shown recording a title and notes, and keeps it"),
               [this] { AskForNotes(); });
    FillExportMenu(MakeButton(layout, "CommandExport", QStringLiteral("E&xport"),
                              QStringLiteral("Writes the shown recording, or its picture, to a file"), {}));
    commandTuning_ = MakeButton(layout, "CommandTuning", QStringLiteral("T&uning"),
                                QStringLiteral("Steps on a loop, and what its gains do"),
                                [this] { ShowTuning(commandTuning_->isChecked()); });
    commandTuning_->setCheckable(true);
    layout->addStretch(1);
    layout->addWidget(MakeCommandHelp());
    layout->addWidget(MakeCommandClose());
    return row;
}

void FormTrend::FillExportMenu(QPushButton *button)
{
    struct Entry {
        const char *suffix;
        const char *caption;
    };
    static constexpr std::array<Entry, 4> entries = {{{"csv", "&Values as CSV..."},
                                                      {"png", "Picture as &PNG..."},
                                                      {"svg", "Picture as &SVG..."},
                                                      {"pdf", "Picture as P&DF..."}}};
    auto *menu = new QMenu(button);
    menu->setObjectName(QStringLiteral("MenuExport"));
    for (const Entry &entry : entries) {
        const QString suffix = QString::fromLatin1(entry.suffix);
        QAction *action = menu->addAction(QString::fromLatin1(entry.caption));
        action->setObjectName(QStringLiteral("mnuTrendExport") + suffix.toUpper());
        On(action, &QAction::triggered, this, [this, suffix] { Export(suffix); });
    }
    button->setMenu(menu);
}

} // namespace quorvik
