#include "drive/FaultMonitor.h"

#include "drive/StartStopLogic.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace quorvik::drive
{

namespace
{

constexpr int Records = 5;
constexpr int RecordWords = 8;
constexpr double FieldBuildUp = 2.0;  // seconds after power-on in which the field may still be weak
constexpr double DetectionTime = 0.5; // seconds that a feedback must be missing
constexpr std::int32_t OvervoltageAt = 13000;
constexpr std::int32_t OverloadAbove = 10200;
constexpr std::int32_t OvercurrentAbove = 15500; // what the current limits cannot let through
constexpr double HottestHeatsink = 95.0;         // degrees

} // namespace

void FaultMonitor::PowerOn()
{
    sincePowerOn_ = 0;
    overload_ = 0;
    overcurrent_ = 0;
    if (table_.IsOn(Param::PowerOnReset))
        Clear();
}

void FaultMonitor::Clear()
{
    table_.Put(Param::LatchedFault, 0);
}

void FaultMonitor::WatchOverload(double seconds)
{
    const std::int32_t current = std::abs(table_.Get(Param::CurrentFeedback));
    const bool isOver = current > OverloadAbove;
    const double foldbackTime = table_.Scaled(Param::ArmIFoldbackTime);
    overload_ = std::clamp(overload_ + (isOver ? seconds : -seconds), 0.0, std::max(foldbackTime, 0.0) + 1);
    overcurrent_ = current > OvercurrentAbove ? overcurrent_ + seconds : 0;
    if (foldbackTime > 0 && overload_ > foldbackTime)
        table_.Put(Param::ArmIFoldbackStatus, 1);
    else if (overload_ <= 0)
        table_.Put(Param::ArmIFoldbackStatus, 0);
}

std::int32_t FaultMonitor::Present(double seconds)
{
    std::int32_t bits = std::exchange(external_, 0);
    sincePowerOn_ += seconds;
    const bool isFieldWeak = table_.IsOn(Param::FieldEnable) && sincePowerOn_ > FieldBuildUp &&
                             table_.Get(Param::FieldIFeedback) < table_.Get(Param::FieldLossLevel);
    fieldMissing_ = isFieldWeak ? fieldMissing_ + seconds : 0;
    if (fieldMissing_ > DetectionTime && !table_.IsOn(Param::FieldLossInhibit))
        bits |= Fault::FieldLoss;

    const std::int32_t armature = std::abs(table_.Get(Param::AFB));
    const std::int32_t feedback = std::abs(table_.Get(Param::VelFeedback));
    const bool isMissing = armature - feedback > table_.Get(Param::VFBLossLevel);
    feedbackMissing_ = isMissing ? feedbackMissing_ + seconds : 0;
    if (feedbackMissing_ > DetectionTime && !table_.IsOn(Param::VFBLossInhibit))
        bits |= Fault::FeedbackLoss;

    if (armature > OvervoltageAt)
        bits |= Fault::Overvoltage;
    if (const std::int32_t level = table_.Get(Param::OverspeedLevel); level > 0 && feedback > level)
        bits |= Fault::Overspeed;
    const double patience = table_.Scaled(Param::ArmOverCurrentTime);
    if (patience > 0 && overcurrent_ > patience)
        bits |= Fault::Overcurrent;
    if (table_.Scaled(Param::HeatsinkTemp) > HottestHeatsink)
        bits |= Fault::OverTemperature;
    return bits;
}

void FaultMonitor::Log(std::int32_t bits)
{
    for (int word = Records * RecordWords - 1; word >= RecordWords; --word)
        table_.Put(Param::FaultLog1Faults + word, table_.Get(Param::FaultLog1Faults + word - RecordWords));
    table_.Put(Param::FaultLog1Faults, bits);
    for (int word = 1; word < RecordWords; ++word)
        table_.Put(Param::FaultLog1Faults + word, table_.Get(Param::ClockSeconds + word - 1));
}

void FaultMonitor::Tick(double seconds)
{
    const bool reset = table_.IsOn(Param::FaultReset);
    if (reset && !resetBefore_)
        Clear();
    resetBefore_ = reset;
    WatchOverload(seconds);
    const std::int32_t present = Present(seconds);
    table_.Put(Param::PresentFault, present);
    const std::int32_t latched = table_.Get(Param::LatchedFault);
    if ((present & ~latched) == 0)
        return;
    table_.Put(Param::LatchedFault, latched | present);
    Log(present);
}

} // namespace quorvik::drive
