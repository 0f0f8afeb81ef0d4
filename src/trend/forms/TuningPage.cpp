#include "trend/forms/TuningPage.h"

#include "desktop/Desk.h"
#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "platform/TimeUnits.h"
#include "trend/forms/GainFields.h"
#include "trend/forms/TrendHost.h"
#include "trend/forms/TryTable.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int TickMs = 200;
constexpr int WidthInCharacters = 54;
constexpr double UsualHoldSeconds = 3;

QPushButton *MakeButton(QWidget *parent, const char *name, const char *caption, const char *toolTip)
{
    auto *button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(toolTip));
    return button;
}

QLabel *MakeLine(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QComboBox *MakeList(QWidget *parent, const char *name, const char *spokenName)
{
    auto *list = new QComboBox(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setAccessibleName(QString::fromLatin1(spokenName));
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(12);
    return list;
}

QDoubleSpinBox *MakeNumber(QWidget *parent, const char *name, const char *spokenName)
{
    auto *number = new QDoubleSpinBox(parent);
    number->setObjectName(QString::fromLatin1(name));
    number->setAccessibleName(QString::fromLatin1(spokenName));
    return number;
}

} // namespace

TuningPage::TuningPage(Desk &desk, TrendHost &host, QWidget *parent)
    : QScrollArea(parent)
    , desk_(desk)
    , steps_(host.Steps())
    , polled_(desk.table)
{
    setObjectName(QStringLiteral("TuningPage"));
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    auto *page = new QWidget(this);
    comboLoop_ = MakeList(page, "ComboLoop", "Loop to tune");
    comboLoop_->addItems({QStringLiteral("Velocity loop"), QStringLiteral("Current loop")});
    labelSet_ = MakeLine(page, "LabelGainSet");
    gains_ = new GainFields(desk, page);
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(comboLoop_);
    layout->addWidget(labelSet_);
    layout->addWidget(gains_);
    layout->addWidget(MakeStepFields(page));
    layout->addWidget(MakeTries(page), 1);
    setWidget(page);
    setFocusProxy(comboLoop_);

    On(comboLoop_, &QComboBox::currentIndexChanged, this, [this] { FollowLoop(); });
    On(&steps_, &StepTest::StateChanged, this, [this] { ShowState(); });
    On(&steps_, &StepTest::TriesChanged, this, [this] {
        tries_->Show(steps_.Tries());
        ShowState();
    });
    On(&desk.states, &ValueStates::StateChanged, this, [this] { gains_->Tick(); });
    tick_.setInterval(TickMs);
    On(&tick_, &QTimer::timeout, this, [this] { tickGuard_.Run([this] { Tick(); }); });
    tries_->Show(steps_.Tries());
    FollowLoop();
}

TuningPage::~TuningPage()
{
    qApp->removeEventFilter(this);
}

QWidget *TuningPage::MakeStepFields(QWidget *parent)
{
    auto *fields = new QWidget(parent);
    comboReference_ = MakeList(fields, "ComboStepReference", "Reference to step");
    spinSize_ = MakeNumber(fields, "SpinStepSize", "Size of the step");
    spinHold_ = MakeNumber(fields, "SpinStepHold", "How long the step holds, in seconds");
    spinHold_->setDecimals(1);
    spinHold_->setRange(double(steps_.Timings().leastHoldMs) / MsPerSecond,
                        double(steps_.Timings().mostHoldMs) / MsPerSecond);
    spinHold_->setValue(UsualHoldSeconds);
    spinHold_->setSuffix(QStringLiteral(" s"));
    commandStep_ =
        MakeButton(fields, "CommandStep", "Make a Step...",
                   "Changes the reference for this time, after a question, and puts it back by itself");
    commandRestore_ = MakeButton(fields, "CommandRestore", "Put Back", "Ends the step at once, as Esc does");
    commandRecordNext_ =
        MakeButton(fields, "CommandRecordNext", "Record the Next Change",
                   "Takes the figures of the answer to the next value that is entered in any window");
    commandLeftover_ = MakeButton(fields, "CommandLeftover", "Put Back",
                                  "Writes what stood in the drive before the step that was broken off");
    labelSource_ = MakeLine(fields, "LabelStepSource");
    labelState_ = MakeLine(fields, "LabelStepState");
    // What comes and goes must not push a button from under the pointer.
    for (QLabel *label : {labelSource_, labelState_}) {
        label->setMinimumHeight(2 * label->fontMetrics().lineSpacing());
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Step of"), comboReference_);
    auto *numbers = new QHBoxLayout;
    numbers->addWidget(spinSize_, 1);
    numbers->addWidget(new QLabel(QStringLiteral("for"), fields));
    numbers->addWidget(spinHold_, 1);
    form->addRow(QStringLiteral("by"), numbers);
    auto *commands = new QHBoxLayout;
    commands->addWidget(commandStep_, 1);
    commands->addWidget(commandRestore_, 1);
    auto *layout = new QVBoxLayout(fields);
    layout->setContentsMargins({});
    layout->addLayout(form);
    layout->addWidget(labelSource_);
    layout->addLayout(commands);
    layout->addWidget(commandRecordNext_);
    layout->addWidget(labelState_);
    layout->addWidget(commandLeftover_);

    On(comboReference_, &QComboBox::currentIndexChanged, this, [this] {
        TakeUsualSize();
        FollowSources();
    });
    On(commandStep_, &QPushButton::clicked, this, [this] { CommandStep_Click(); });
    On(commandRestore_, &QPushButton::clicked, this, [this] { steps_.Restore(); });
    On(commandLeftover_, &QPushButton::clicked, this, [this] { steps_.RestoreLeftover(); });
    On(commandRecordNext_, &QPushButton::clicked, this,
       [this] { steps_.RecordNext(Loop(), int(std::lround(spinHold_->value() * MsPerSecond))); });
    return fields;
}

QWidget *TuningPage::MakeTries(QWidget *parent)
{
    auto *area = new QWidget(parent);
    tries_ = new TryTable(desk_.table, area);
    commandCopy_ =
        MakeButton(area, "CommandCopyTries", "Copy the Answers", "Puts all figures on the clipboard as text");
    auto *layout = new QVBoxLayout(area);
    layout->setContentsMargins({});
    layout->addWidget(tries_);
    layout->addWidget(commandCopy_);
    layout->addStretch(1);
    On(tries_, &TryTable::Picked, this, [this](int index) {
        const StepTry &made = steps_.Tries().at(std::size_t(index));
        Q_EMIT OverlayWanted(made.data, TitleOf(made, desk_.table));
    });
    On(commandCopy_, &QPushButton::clicked, this,
       [this] { QApplication::clipboard()->setText(tries_->AsText()); });
    return area;
}

QSize TuningPage::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * WidthInCharacters + verticalScrollBar()->sizeHint().width(),
            widget()->sizeHint().height()};
}

TunedLoop TuningPage::Loop() const
{
    return comboLoop_->currentIndex() == 0 ? TunedLoop::Velocity : TunedLoop::Current;
}

void TuningPage::FollowLoop()
{
    FollowSources();
    Tick();
}

void TuningPage::FollowSources()
{
    const StepSources sources = steps_.SourcesOf(Loop());
    labelSource_->setText(sources.whyNone);
    if (sources.params != sources_) {
        const int before = comboReference_->currentIndex() >= 0
                               ? sources_[std::size_t(comboReference_->currentIndex())]
                               : -1;
        const QSignalBlocker blocker(comboReference_);
        sources_ = sources.params;
        comboReference_->clear();
        for (const int p : sources_)
            comboReference_->addItem(desk_.table.FullName(p));
        const auto found = std::ranges::find(sources_, before);
        if (!sources_.empty())
            comboReference_->setCurrentIndex(found == sources_.end() ? 0 : int(found - sources_.begin()));
        TakeUsualSize();
    }
    const int chosen = comboReference_->currentIndex();
    if (chosen >= 0 && steps_.IsRamped(sources_[std::size_t(chosen)]))
        labelSource_->setText(QStringLiteral("The answer shows the ramp. A setpoint behind it shows the "
                                             "gains."));
}

void TuningPage::TakeUsualSize()
{
    const int chosen = comboReference_->currentIndex();
    const int p = chosen < 0 ? -1 : sources_[std::size_t(chosen)];
    if (p < 0 || p == std::exchange(sized_, p))
        return;
    const ParamRecord &record = desk_.table[p];
    const double most = std::max(std::abs(ShownNumber(record.Min, record.Attributes)),
                                 std::abs(ShownNumber(record.Max, record.Attributes)));
    spinSize_->setDecimals(DecimalsOf(record.Attributes));
    spinSize_->setRange(-most, most);
    spinSize_->setSuffix(u' ' + UnitText(record.Attributes));
    spinSize_->setValue(steps_.Timings().usualPercent);
}

void TuningPage::FollowInterest()
{
    std::set<int> params{Param::GainSelect,   Param::DriveModeMSB, Param::DriveModeLSB,
                         Param::RefSelectMSB, Param::RefSelectLSB, Param::JogStatus,
                         Param::RampBypass,   Param::VelFeedback,  Param::DriveState};
    for (const int p : steps_.GainsOf(Loop()))
        params.insert(p);
    params.insert(sources_.begin(), sources_.end());
    std::erase_if(params, [this](int p) { return p > desk_.table.LastParam; });
    if (params != polled_.Params())
        polled_.Set(params);
}

void TuningPage::Tick()
{
    if (Loop() == TunedLoop::Velocity)
        labelSet_->setText(
            QStringLiteral("Gain set %1 is in force, by %2.")
                .arg(desk_.table.Value(Param::GainSelect) != 0 ? QStringLiteral("B") : QStringLiteral("A"),
                     desk_.table.FullName(Param::GainSelect)));
    labelSet_->setVisible(Loop() == TunedLoop::Velocity);
    gains_->Show(steps_.GainsOf(Loop()));
    if (!steps_.IsUnderWay())
        FollowSources();
    if (isVisible())
        FollowInterest();
    ShowState();
}

void TuningPage::ShowState()
{
    const bool isIdle = steps_.State() == StepState::Idle;
    const bool isOnLine = desk_.table.PortOpen();
    const bool canStep = isIdle && isOnLine && !sources_.empty() && !steps_.Leftover();
    comboLoop_->setEnabled(isIdle);
    comboReference_->setEnabled(isIdle && !sources_.empty());
    spinSize_->setEnabled(isIdle && !sources_.empty());
    spinHold_->setEnabled(isIdle);
    commandStep_->setEnabled(canStep);
    commandRecordNext_->setEnabled(isIdle && isOnLine);
    commandRestore_->setEnabled(steps_.IsUnderWay());
    commandRestore_->setText(steps_.State() == StepState::Listening ? QStringLiteral("Stop Waiting")
                                                                    : QStringLiteral("Put Back"));
    commandCopy_->setEnabled(!steps_.Tries().empty());
    QString sentence = steps_.Sentence();
    if (steps_.State() == StepState::Holding)
        sentence += QStringLiteral(" %1 s left.").arg(double(steps_.LeftMs()) / MsPerSecond, 0, 'f', 1);
    else if (sentence.isEmpty() && !isOnLine)
        sentence = QStringLiteral("A step needs a drive on line.");
    labelState_->setText(sentence);

    const std::optional<StepLeftover> &leftover = steps_.Leftover();
    commandLeftover_->setVisible(leftover.has_value());
    commandLeftover_->setEnabled(steps_.CanRestoreLeftover());
    if (leftover)
        commandLeftover_->setText(
            QStringLiteral("Put %1 Back to %2")
                .arg(desk_.table.FullName(leftover->param),
                     ShownText(leftover->rawBefore, desk_.table[leftover->param].Attributes)));
}

void TuningPage::CommandStep_Click()
{
    const int chosen = comboReference_->currentIndex();
    if (chosen < 0)
        return;
    const int p = sources_[std::size_t(chosen)];
    const std::optional<std::int32_t> rawSize = RawOfShown(spinSize_->value(), desk_.table[p].Attributes);
    if (!rawSize)
        return;
    steps_.Make({.loop = Loop(),
                 .param = p,
                 .rawSize = *rawSize,
                 .holdMs = int(std::lround(spinHold_->value() * MsPerSecond))});
}

void TuningPage::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    qApp->installEventFilter(this);
    Guarded([this] {
        Tick();
        FollowInterest();
    });
    tick_.start();
}

void TuningPage::hideEvent(QHideEvent *event)
{
    QScrollArea::hideEvent(event);
    qApp->removeEventFilter(this);
    tick_.stop();
    Guarded([this] {
        steps_.Restore();
        polled_.Clear();
    });
}

bool TuningPage::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!isKey || !steps_.IsUnderWay() || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape)
        return QScrollArea::eventFilter(watched, event);
    Guarded([this] { steps_.Restore(); });
    // In a dialog or a list it means what it always does, too.
    const auto *const control = qobject_cast<QWidget *>(watched);
    if (control == nullptr || control->window() != window())
        return false;
    event->accept();
    return true;
}

} // namespace quorvik
