#include "trend/forms/TriggerPanel.h"

#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "trend/TrendRecorder.h"
#include "trend/forms/ChannelModel.h"
#include "trend/forms/LevelField.h"
#include "trend/forms/TriggerText.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double LeastLength = 0.1;
constexpr double MostSeconds = 3600;
constexpr int MostCaptures = 10;
constexpr int ListCharacters = 12;

constexpr TriggerKind Kinds[] = {TriggerKind::Rising, TriggerKind::Falling, TriggerKind::Leaving,
                                 TriggerKind::Equals, TriggerKind::Edit,    TriggerKind::Fault,
                                 TriggerKind::ByHand};

int Milliseconds(const QDoubleSpinBox *seconds)
{
    return int(std::lround(seconds->value() * MsPerSecond));
}

template<typename Box> Box *MakeNumber(const char *name, const QString &spoken, QWidget *parent)
{
    auto *box = new Box(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleName(spoken);
    return box;
}

QComboBox *MakeList(const char *name, const QString &spoken, QWidget *parent)
{
    auto *list = new QComboBox(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setAccessibleName(spoken);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(ListCharacters);
    return list;
}

} // namespace

TriggerPanel::TriggerPanel(const ParameterTable &table, TrendRecorder &recorder, QWidget *parent)
    : QWidget(parent)
    , table_(table)
    , recorder_(recorder)
    , comboKind_(MakeList("ComboTriggerKind", QStringLiteral("Trigger"), this))
    , comboSignal_(MakeList("ComboTriggerSignal", QStringLiteral("Channel of the trigger"), this))
    , level_(new LevelField(QStringLiteral("TextLevel"), QStringLiteral("Level"), this))
    , high_(new LevelField(QStringLiteral("TextHigh"), QStringLiteral("Upper end of the range"), this))
    , band_(new LevelField(QStringLiteral("TextBand"), QStringLiteral("Hysteresis"), this))
    , length_(MakeNumber<QDoubleSpinBox>("SpinLength", QStringLiteral("Length of a capture"), this))
    , before_(MakeNumber<QSpinBox>("SpinBefore", QStringLiteral("Part before the trigger"), this))
    , holdOff_(MakeNumber<QDoubleSpinBox>("SpinHoldOff", QStringLiteral("Hold-off"), this))
    , count_(MakeNumber<QSpinBox>("SpinCaptures", QStringLiteral("Number of captures"), this))
    , commandArm_(new QPushButton(this))
{
    for (const TriggerKind kind : Kinds)
        comboKind_->addItem(NameOf(kind), int(kind));
    for (QDoubleSpinBox *seconds : {length_, holdOff_}) {
        seconds->setSuffix(QStringLiteral(" s"));
        seconds->setDecimals(1);
        seconds->setMaximum(MostSeconds);
    }
    length_->setMinimum(LeastLength);
    before_->setSuffix(QStringLiteral(" %"));
    before_->setRange(0, 100);
    count_->setRange(1, MostCaptures);
    auto *grid = new QGridLayout(this);
    MakeFields(grid);

    On(comboKind_, &QComboBox::currentIndexChanged, this, [this] { ShapeFields(); });
    On(comboSignal_, &QComboBox::currentIndexChanged, this, [this] {
        setting_.rawLevel = setting_.rawHigh = setting_.rawBand = 0;
        ShapeFields();
    });
    for (LevelField *field : {level_, high_, band_})
        On(field, &LevelField::Edited, this, [this] { Learn(); });
    for (QDoubleSpinBox *seconds : {length_, holdOff_})
        On(seconds, &QDoubleSpinBox::valueChanged, this, [this] { Learn(); });
    for (QSpinBox *number : {before_, count_})
        On(number, &QSpinBox::valueChanged, this, [this] { Learn(); });
    On(commandArm_, &QPushButton::clicked, this, [this] { ArmOrDisarm(); });
    On(&recorder, &TrendRecorder::ChannelsChanged, this, [this] { ListChannels(); });
    On(&recorder, &TrendRecorder::StateChanged, this, [this] { FollowState(); });
    ListChannels();
    SetSetting(recorder.Setting().kind == TriggerKind::None ? TriggerSetting{.kind = TriggerKind::Rising}
                                                            : recorder.Setting());
    FollowState();
}

void TriggerPanel::MakeFields(QGridLayout *grid)
{
    const auto add = [&](const QString &caption, QWidget *field, int row, int column) {
        auto *label = new QLabel(caption, this);
        label->setObjectName(QStringLiteral("LabelOf") + field->objectName());
        label->setBuddy(field);
        grid->addWidget(label, row, column);
        grid->addWidget(field, row + 1, column);
        return label;
    };
    add(QStringLiteral("Trigger"), comboKind_, 0, 1)->setToolTip(QStringLiteral("What is waited for"));
    labelSignal_ = add(QStringLiteral("Channel"), comboSignal_, 0, 0);
    labelLevel_ = add(QStringLiteral("Level"), level_, 0, 2);
    labelHigh_ = add(QStringLiteral("to"), high_, 0, 3);
    labelBand_ = add(QStringLiteral("H&ysteresis"), band_, 0, 4);
    const QString hysteresis = QStringLiteral(
        "So far the signal must have been on the other side before, so that noise makes one trigger only");
    labelBand_->setToolTip(hysteresis);
    add(QStringLiteral("Length"), length_, 2, 0);
    add(QStringLiteral("Before the trigger"), before_, 2, 1);
    auto *holdOff = add(QStringLiteral("Hold-off"), holdOff_, 2, 2);
    holdOff->setToolTip(QStringLiteral("For so long after a trigger no other one counts"));
    auto *count = add(QStringLiteral("Captures"), count_, 2, 3);
    count->setToolTip(QStringLiteral("How many are taken, one after the other"));
    commandArm_->setObjectName(QStringLiteral("CommandArm"));
    auto *now = new QPushButton(QStringLiteral("Tr&igger Now"), this);
    now->setObjectName(QStringLiteral("CommandTriggerNow"));
    now->setToolTip(QStringLiteral("Takes a capture around this moment, whatever is waited for"));
    On(now, &QPushButton::clicked, this, [this] { TriggerNow(); });
    auto *commands = new QHBoxLayout;
    commands->addWidget(commandArm_);
    commands->addWidget(now);
    grid->addLayout(commands, 3, 4);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(4, 1);
    grid->setVerticalSpacing(2);
}

TriggerKind TriggerPanel::Kind() const
{
    return TriggerKind(comboKind_->currentData().toInt());
}

int TriggerPanel::Signal() const
{
    return comboSignal_->currentIndex() < 0 ? -1 : comboSignal_->currentData().toInt();
}

void TriggerPanel::FocusKind()
{
    comboKind_->setFocus(Qt::ShortcutFocusReason);
}

void TriggerPanel::ListChannels()
{
    const int chosen = Signal() < 0 ? setting_.param : Signal();
    {
        const QSignalBlocker quiet(comboSignal_);
        comboSignal_->clear();
        for (const TrendTrack &track : recorder_.Data().tracks)
            comboSignal_->addItem(ChannelName(track.channel), track.channel.param);
        comboSignal_->setCurrentIndex(std::max(comboSignal_->findData(chosen), 0));
    }
    ShapeFields();
}

void TriggerPanel::ShapeFields()
{
    const TriggerKind kind = Kind();
    const int p = Signal();
    const bool isOfChannel = IsOfChannel(kind);
    for (QWidget *widget : {static_cast<QWidget *>(comboSignal_), labelSignal_})
        widget->setEnabled(isOfChannel);
    const auto show = [&](QWidget *field, QWidget *label, bool isWanted) {
        field->setVisible(isWanted && p >= 0);
        label->setVisible(isWanted && p >= 0);
    };
    show(level_, labelLevel_, isOfChannel);
    show(high_, labelHigh_, kind == TriggerKind::Leaving);
    show(band_, labelBand_, isOfChannel && kind != TriggerKind::Equals);
    if (p >= 0 && p <= table_.LastParam) {
        level_->SetRecord(table_[p], false);
        high_->SetRecord(table_[p], false);
        band_->SetRecord(table_[p], true);
    }
    level_->SetRaw(setting_.rawLevel);
    high_->SetRaw(setting_.rawHigh);
    band_->SetRaw(setting_.rawBand);
    Learn();
}

void TriggerPanel::SetSetting(const TriggerSetting &setting)
{
    const TriggerSetting kept = setting;
    {
        const QSignalBlocker quiet[] = {QSignalBlocker(comboKind_), QSignalBlocker(comboSignal_),
                                        QSignalBlocker(length_),    QSignalBlocker(before_),
                                        QSignalBlocker(holdOff_),   QSignalBlocker(count_)};
        comboKind_->setCurrentIndex(std::max(comboKind_->findData(int(kept.kind)), 0));
        if (const int index = comboSignal_->findData(kept.param); index >= 0)
            comboSignal_->setCurrentIndex(index);
        length_->setValue(double(kept.windowMs) / MsPerSecond);
        before_->setValue(kept.prePercent);
        holdOff_->setValue(double(kept.holdOffMs) / MsPerSecond);
        count_->setValue(kept.captures);
    }
    setting_ = kept;
    ShapeFields();
}

void TriggerPanel::Learn()
{
    if (const std::optional<TriggerSetting> setting = Setting(nullptr))
        setting_ = *setting;
}

std::optional<TriggerSetting> TriggerPanel::Setting(QString *refusal) const
{
    TriggerSetting setting{.kind = Kind(),
                           .param = std::max(Signal(), 0),
                           .rawLevel = setting_.rawLevel,
                           .rawHigh = setting_.rawHigh,
                           .rawBand = setting_.rawBand,
                           .windowMs = Milliseconds(length_),
                           .prePercent = before_->value(),
                           .holdOffMs = Milliseconds(holdOff_),
                           .captures = count_->value()};
    if (!IsOfChannel(setting.kind))
        return setting;
    const auto refuse = [refusal](const QString &sentence) {
        if (refusal != nullptr)
            *refusal = sentence;
        return std::nullopt;
    };
    if (Signal() < 0)
        return refuse(QStringLiteral("Add a channel first: a trigger looks at one."));
    const bool isRange = setting.kind == TriggerKind::Leaving;
    const bool hasBand = setting.kind != TriggerKind::Equals;
    const std::optional<std::int32_t> level = level_->Raw();
    const std::optional<std::int32_t> high = isRange ? high_->Raw() : setting.rawHigh;
    const std::optional<std::int32_t> band = hasBand ? band_->Raw() : setting.rawBand;
    if (!level || !high)
        return refuse(QStringLiteral("The level of the trigger must be %1.").arg(level_->LimitsSentence()));
    if (!band)
        return refuse(QStringLiteral("The hysteresis must be %1.").arg(band_->LimitsSentence()));
    if (isRange && *level >= *high)
        return refuse(QStringLiteral("The upper end of the range must be above the lower one."));
    if (isRange && 2 * std::int64_t(*band) > std::int64_t(*high) - *level)
        return refuse(QStringLiteral("The hysteresis leaves nothing of the range."));
    setting.rawLevel = *level;
    setting.rawHigh = *high;
    setting.rawBand = *band;
    return setting;
}

void TriggerPanel::ArmOrDisarm()
{
    if (recorder_.IsWaiting()) {
        recorder_.Arm({});
        return;
    }
    QString refusal;
    const std::optional<TriggerSetting> setting = Setting(&refusal);
    if (recorder_.Data().tracks.empty())
        refusal = QStringLiteral("Add a channel first: there is nothing to record.");
    if (!refusal.isEmpty()) {
        Q_EMIT Told(refusal);
        return;
    }
    if (!recorder_.IsRunning())
        recorder_.Start();
    recorder_.Arm(*setting);
    // With the decimals in which they are compared.
    ShapeFields();
}

void TriggerPanel::TriggerNow()
{
    if (!recorder_.IsRunning()) {
        Q_EMIT Told(QStringLiteral("Nothing is recorded just now: begin with Record."));
        return;
    }
    // A capture by hand is as long as the fields say, unless it comes before one that is waited for.
    if (!recorder_.IsWaiting()) {
        TriggerSetting setting = setting_;
        setting.kind = TriggerKind::ByHand;
        setting.captures = 1;
        recorder_.Arm(setting);
    }
    recorder_.Pull();
}

void TriggerPanel::FollowState()
{
    const bool isWaiting = recorder_.IsWaiting();
    commandArm_->setText(isWaiting ? QStringLiteral("Dis&arm") : QStringLiteral("&Arm"));
    commandArm_->setToolTip(isWaiting ? QStringLiteral("Does not wait any more; the recording goes on")
                                      : QStringLiteral("Waits for the trigger; begins a recording where none "
                                                       "is under way"));
}

} // namespace quorvik
