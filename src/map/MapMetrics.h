#pragma once

namespace quorvik
{

/** The measures of the map, pixels at zoom 1. */
namespace MapMetrics
{
inline constexpr double CardWidth = 184;
inline constexpr double HeaderHeight = 23;
inline constexpr double RowHeight = 18;
inline constexpr double CardFoot = 5;
inline constexpr double SymbolHeight = 78; ///< of the motor
inline constexpr double GutterWidth = 48;
inline constexpr double ChannelHeight = 34;
inline constexpr double Margin = 18;
inline constexpr double LegendHeight = 26;
inline constexpr double TextHeight = 12; ///< pixel size of the font
} // namespace MapMetrics

} // namespace quorvik
