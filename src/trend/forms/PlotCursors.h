#pragma once

#include <QString>
#include <optional>

class QPainter;

namespace quorvik
{

class PlotBoard;
class TrendView;

/** The cursors' letters, "A" and "B". */
QString CursorLetter(int which);
/** Paints both cursors over the plots. @param active the one that the keys move; -1 for none */
void PaintCursors(QPainter &painter, const PlotBoard &board, const TrendView &view, int active);
/** The time of the next sample of any curve that is seen, after a time or before it; nothing at the end. */
std::optional<qint64> NextSampleUs(const TrendView &view, qint64 timeUs, bool isForward);
/** What a channel was at a cursor, as the program shows it; empty where it is not known. */
QString ValueAtCursor(const TrendView &view, int param, int which);
/** The time of a cursor from the beginning or the trigger, "1.2345 s"; empty without one. */
QString CursorTime(const TrendView &view, int which);
/** The time from cursor A to B; empty while one is missing. */
QString CursorDistance(const TrendView &view);
/** A screen reader's words for plots, time and cursors. */
QString SpokenPlots(const TrendView &view);

} // namespace quorvik
