#pragma once

#include <QString>

namespace quorvik
{

class PlotCanvas;
class TrendView;

/**
 * Writes the plots as they are seen, on white, with their title, drive and date, what the curves are, and the
 * figures of the cursors.
 * @param path ends in .png, .svg or .pdf. @return empty, or the sentence that says why it was not written.
 */
QString ExportPlots(const QString &path, PlotCanvas &canvas, const TrendView &view);

} // namespace quorvik
