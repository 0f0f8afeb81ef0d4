#pragma once

namespace quorvik::EmulatorTimings
{

inline constexpr int EmulateMs = 500;      ///< TimerEmulateSvx: how soon a change off line shows
inline constexpr int UpdateScreenMs = 500; ///< TimerUpdateScreen of the I/O simulator
inline constexpr int TimerBlockMs = 1000;  ///< TimerEmulator: one step of the timer block

} // namespace quorvik::EmulatorTimings
