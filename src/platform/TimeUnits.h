#pragma once

#include <QtGlobal>

namespace quorvik
{

inline constexpr qint64 UsPerMs = 1000;
inline constexpr qint64 UsPerSecond = 1'000'000;
inline constexpr qint64 MsPerSecond = 1000;
inline constexpr qint64 MsPerMinute = 60'000;
inline constexpr qint64 MsPerHour = 3'600'000;
inline constexpr qint64 MsPerDay = 86'400'000;
inline constexpr int SecondsPerMinute = 60;
inline constexpr int SecondsPerHour = 3600;
inline constexpr int MinutesPerHour = 60;

} // namespace quorvik
