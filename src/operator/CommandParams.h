#pragma once

namespace quorvik::CommandParam
{

/** The parameters of the start/stop logic that the panel writes and shows. */
inline constexpr int Run = 239;
inline constexpr int Stop = 240;
inline constexpr int Jog = 241;
inline constexpr int RunStatus = 242;
inline constexpr int LogicSelect = 245;

} // namespace quorvik::CommandParam
