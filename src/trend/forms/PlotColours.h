#pragma once

#include <QColor>
#include <QPen>

namespace quorvik
{

/** How many curves have a colour of their own; the next ones have the same again with dashes. */
inline constexpr int PlotColourCount = 8;
/** The least contrast of a curve and its ground, as is asked of lines that carry meaning. */
inline constexpr double LeastCurveContrast = 3.0;

/** The colour of a curve on a ground: told apart by colour-blind people too, and never an alarm's red. */
QColor PlotColour(int colour, const QColor &ground);
/** Its pen, one pixel wide on any screen; dashed from the ninth curve on. */
QPen PlotPen(int colour, const QColor &ground);
/** The pen of the same curve in a recording that is laid over: paler, and dashed in another way. */
QPen PlotOverlayPen(int colour, const QColor &ground);

} // namespace quorvik
