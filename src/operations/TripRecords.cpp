#include "operations/TripRecords.h"

#include "link/DriveLink.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "platform/Guard.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

constexpr std::int32_t EStop = 8; ///< of DriveState

constexpr TripRow Rows[] = {
    {"Speeds", Param::MotorRPM},
    {"Speeds", Param::VelFeedback},
    {"Speeds", Param::AFB},
    {"Speeds", Param::TFB},
    {"Speeds", Param::EFB},
    {"Currents", Param::ArmatureAmps},
    {"Currents", Param::CurrentFeedback},
    {"Currents", Param::FieldAmps},
    {"Currents", Param::FieldIFeedback},
    {"Voltages", Param::ArmatureVolts},
    {"Voltages", Param::FieldVolts},
    {"Voltages", Param::LineVoltage},
    {"Demands", Param::RampInput},
    {"Demands", Param::RampOutput},
    {"Demands", Param::VelocityDemand},
    {"Demands", Param::FinalVelDemand},
    {"Demands", Param::VelError},
    {"Demands", Param::VelLoopOutput},
    {"Demands", Param::CurrentDemand},
    {"Demands", Param::FinalIDemand},
    {"Demands", Param::ConductionAngle},
    {"Demands", Param::FinalFieldIDemand},
    {"Limits", Param::PositiveILimit},
    {"Limits", Param::NegativeILimit},
    {"Limits", Param::ForwardMaxSpeed},
    {"Limits", Param::ReverseMaxSpeed},
    {"Limits", Param::OverspeedLevel},
    {"Limits", Param::ArmIFoldbackStatus},
    {"Limits", Param::HeatsinkTemp},
    {"Logic", Param::PresentFault},
    {"Logic", Param::LatchedFault},
    {"Logic", Param::DriveState},
    {"Logic", Param::RunEnable},
    {"Logic", Param::RunStatus},
    {"Logic", Param::JogStatus},
    {"Logic", Param::LoopEnable},
    {"Logic", Param::DriveReady},
};

} // namespace

std::span<const TripRow> TripRows()
{
    return Rows;
}

TripRecords::TripRecords(ParameterTable &table, DriveLink &link, const ValueStates &states, MsClock clock)
    : table_(table)
    , link_(link)
    , states_(states)
    , clock_(std::move(clock))
{
    On(&link, &DriveLink::ComStatusChanged, this, [this] { FollowLink(); });
    // Not the table's Changed: a value that the drive repeats may be its first word on this connection, and
    // what is read beside the table counts as well.
    On(&link, &DriveLink::Confirmed, this, [this](int p, std::int32_t rawValue) { Confirm(p, rawValue); });
}

void TripRecords::FollowLink()
{
    const bool isOpen = link_.PortOpen();
    if (isOpen == std::exchange(wasOpen_, isOpen))
        return;
    GiveUp();
    rawState_.reset();
    rawLatched_.reset();
}

void TripRecords::Confirm(int p, std::int32_t rawValue)
{
    if (p == Param::DriveState)
        FollowState(rawValue);
    else if (p == Param::LatchedFault)
        FollowLatch(rawValue);
    Supply(p, rawValue);
}

void TripRecords::FollowState(std::int32_t rawState)
{
    const std::optional<std::int32_t> before = std::exchange(rawState_, rawState);
    if (rawState == EStop && before != EStop)
        See(before.has_value());
    // A fault may be latched shortly before the state tells of it, so that only a state that ends is an end.
    else if (rawState != EStop && (!before || before == EStop))
        isTripped_ = false;
}

void TripRecords::FollowLatch(std::int32_t rawFaults)
{
    const std::optional<std::int32_t> before = std::exchange(rawLatched_, rawFaults);
    if (rawFaults != 0 && before.value_or(0) == 0)
        See(before.has_value());
    else if (rawFaults == 0 && rawState_ != EStop)
        isTripped_ = false;
}

void TripRecords::See(bool isOfMoment)
{
    // State and latch tell of the same trip; so does a drive that stands tripped when a lost link is back.
    if (std::exchange(isTripped_, true))
        return;
    GiveUp();
    seenAt_ = clock_();
    TripRecord record{
        .number = ++seenCount_, .seen = QDateTime::currentDateTime(), .isOfBefore = !isOfMoment};
    for (const TripRow &row : Rows)
        if (isOfMoment && row.param <= table_.LastParam)
            record.values.push_back(Keep(row));
    records_.push_front(std::move(record));
    if (records_.size() > Most)
        records_.pop_back();
    // Of a trip of before, only what it was.
    Await(Param::PresentFault);
    Await(Param::LatchedFault);
    for (const TripValue &value : records_.front().values)
        if (value.state != ValueState::Live)
            Await(value.row.param);
    Q_EMIT Recorded();
}

TripValue TripRecords::Keep(const TripRow &row)
{
    TripValue value{.row = row, .state = states_.Of(row.param)};
    // Not the table's value: that may be an entry which the drive has not taken.
    const std::optional<std::int32_t> rawValue = states_.DriveValue(row.param);
    if (const std::optional<qint64> age = states_.Age(row.param); age && rawValue)
        value.before = {*rawValue, ShownText(*rawValue, table_[row.param].Attributes), *age};
    return value;
}

void TripRecords::Await(int p)
{
    if (awaited_.insert(p).second)
        table_.AddReadInterest(p);
}

void TripRecords::Supply(int p, std::int32_t rawValue)
{
    if (awaited_.erase(p) == 0)
        return;
    table_.RemoveReadInterest(p);
    TripRecord &record = records_.front();
    // What is present may be gone again; only the latch can tell that there was none.
    if (p == Param::LatchedFault || (p == Param::PresentFault && rawValue != 0))
        record.rawFaults = record.rawFaults.value_or(0) | rawValue;
    const auto value =
        std::ranges::find(record.values, p, [](const TripValue &each) { return each.row.param; });
    if (value != record.values.end())
        value->after = {rawValue, ShownText(rawValue, table_[p].Attributes), clock_() - seenAt_};
    if (awaited_.empty())
        Q_EMIT Completed();
}

void TripRecords::GiveUp()
{
    if (awaited_.empty())
        return;
    for (const int p : std::exchange(awaited_, {}))
        table_.RemoveReadInterest(p);
    Q_EMIT Completed();
}

} // namespace quorvik
