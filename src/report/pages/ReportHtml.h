#pragma once

#include "report/CommissioningReport.h"

#include <functional>

namespace quorvik
{

/** The address of a recording's picture, or an empty text for none; the picture's width is what a page has
 * room for. */
using PictureAddress = std::function<QString(const CommissioningRecording &recording)>;

/** The report up to the map, as rich text with every text of the report as plain text in it: place, drive,
 * motor, verification, settings. */
QString FrontHtml(const CommissioningReport &report, const QString &title);
/** What follows the map: recordings, faults, journal, notes, signatures.
 * @param widthPx of a picture, in pixels of 1/96 inch. */
QString BackHtml(const CommissioningReport &report, const PictureAddress &picture, int widthPx);

} // namespace quorvik
