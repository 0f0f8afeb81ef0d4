#pragma once

namespace quorvik::drive
{

/** The meanings of parameter 422. */
enum class State { Stop, Run, RampStop, Jog, JogStop, JogDelay, QuickStop, CoastStop, EStop };

/** The bits of a fault word. */
namespace Fault
{
inline constexpr int FieldLoss = 1;
inline constexpr int FeedbackLoss = 2;
inline constexpr int Overvoltage = 4;
inline constexpr int Overspeed = 8;
inline constexpr int Overcurrent = 16;
inline constexpr int OverTemperature = 32;
inline constexpr int All = 1023;
} // namespace Fault

inline constexpr double FullScale = 10000.0; ///< counts that are 100 %

} // namespace quorvik::drive
