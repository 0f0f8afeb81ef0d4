#include "drive/Instruments.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>

namespace quorvik::drive
{

namespace
{

constexpr double Ambient = 27;      // degrees
constexpr double HeatsinkRise = 28; // degrees at nominal current
constexpr double HeatsinkLag = 120; // seconds
constexpr double LineVolts = 460;
constexpr double ConverterMid = 2048;
constexpr int DaysOfWeek = 7;

struct Supply {
    int param;
    double volts;
};
constexpr Supply Supplies[] = {{Param::Plus12VSupply, 12.0},
                               {Param::Plus15VSupply, 15.0},
                               {Param::Plus24VSupply, 24.0},
                               {Param::BatterySupply, 3.2}};

/** A raw converter reading: what is left of the middle of its range, and how much of another value. */
struct Reading {
    int param;
    double offset;
    int follows; ///< 0 for nothing
    double share;
};
constexpr Reading Readings[] = {
    {144, ConverterMid, Param::TFB, 0.1},
    {145, 0, Param::TFB, 0.1},
    {146, ConverterMid, Param::AFB, 0.1},
    {147, 0, Param::CurrentFeedback, 0.08},
    {148, 0, Param::FieldIFeedback, 0.2},
    {149, 2760, 0, 0},
    {150, 0, Param::FieldVoltageFeedback, 0.2},
    {151, 0, Param::CurrentFeedback, 0.08},
    {152, 0, Param::FieldIFeedback, 0.2},
    {153, 1510, Param::HeatsinkTemp, 1},
    {154, 2620, 0, 0},
    {155, 0, Param::CurrentFeedback, 0.08},
    {156, 0, Param::FieldIFeedback, 0.2},
    {157, 2457, 0, 0},
    {158, 3071, 0, 0},
    {159, 0, Param::CurrentFeedback, 0.08},
    {160, 0, Param::FieldIFeedback, 0.2},
    {162, 2949, 0, 0},
    {163, 0, Param::EFB, 0.4},
};

namespace SystemBit
{
constexpr int Ready = 1;
constexpr int Running = 2;
constexpr int Faulted = 4;
constexpr int AtZero = 8;
constexpr int Foldback = 16;
constexpr int LoopOn = 32;
} // namespace SystemBit

} // namespace

void Instruments::SetClock()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    table_.PutWithin(Param::ClockSeconds, now.time().second());
    table_.PutWithin(Param::ClockMinutes, now.time().minute());
    table_.PutWithin(Param::ClockHours, now.time().hour());
    table_.PutWithin(Param::ClockDay, date.dayOfWeek() % DaysOfWeek + 1); // Sunday is 1
    table_.PutWithin(Param::ClockDate, date.day());
    table_.PutWithin(Param::ClockMonth, date.month());
    table_.PutWithin(Param::ClockYear, date.year() % 100);
}

void Instruments::RunClock(double seconds)
{
    second_ += seconds;
    // A nanosecond's grace: twenty ticks of a twentieth make one second, whatever their sum in binary is.
    if (second_ + 1e-9 < 1)
        return;
    second_ -= 1;
    // A part that carries over hands one on to the next; the parts may have been set to anything.
    const auto carries = [this](int part, int first, int last) {
        const bool isOver = table_.Get(part) >= last;
        table_.Put(part, isOver ? first : table_.Get(part) + 1);
        return isOver;
    };
    if (!carries(Param::ClockSeconds, 0, 59) || !carries(Param::ClockMinutes, 0, 59) ||
        !carries(Param::ClockHours, 0, 23))
        return;
    carries(Param::ClockDay, 1, DaysOfWeek);
    const QDate month(2000 + table_.Get(Param::ClockYear), std::clamp(table_.Get(Param::ClockMonth), 1, 12),
                      1);
    if (carries(Param::ClockDate, 1, month.daysInMonth()) && carries(Param::ClockMonth, 1, 12))
        carries(Param::ClockYear, 0, 99);
}

void Instruments::Tick(double seconds, double current)
{
    RunClock(seconds);
    for (const Supply &supply : Supplies)
        table_.PutScaledWithin(supply.param, supply.volts + noise_(supply.volts * 0.002));
    table_.PutScaledWithin(Param::LineVoltage, LineVolts - 4 * std::abs(current) + noise_(1.5));
    const double goal = Ambient + HeatsinkRise * current * current;
    heatsink_ += (goal - heatsink_) * (1 - std::exp(-seconds / HeatsinkLag));
    table_.PutScaledWithin(Param::HeatsinkTemp, heatsink_ + noise_(0.2));
    for (const Reading &reading : Readings)
        table_.PutWithin(reading.param,
                         reading.offset + reading.share * table_.Get(reading.follows) + noise_(2));

    int status = 0;
    status |= table_.IsOn(Param::DriveReady) ? SystemBit::Ready : 0;
    status |= table_.IsOn(Param::RunStatus) ? SystemBit::Running : 0;
    status |= table_.IsOn(Param::LatchedFault) ? SystemBit::Faulted : 0;
    status |= table_.IsOn(Param::AtZeroSpeed) ? SystemBit::AtZero : 0;
    status |= table_.IsOn(Param::ArmIFoldbackStatus) ? SystemBit::Foldback : 0;
    status |= table_.IsOn(Param::LoopEnable) ? SystemBit::LoopOn : 0;
    table_.PutWithin(Param::SystemStatus, status);
    const std::int32_t watchdog = table_.Get(Param::WatchdogStatus) + 1;
    table_.PutWithin(Param::WatchdogStatus,
                     table_.Has(Param::WatchdogStatus) && watchdog > table_.Record(Param::WatchdogStatus).Max
                         ? 0
                         : watchdog);
}

} // namespace quorvik::drive
