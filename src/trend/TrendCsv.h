#pragma once

#include "trend/TrendData.h"

#include <functional>

class QIODevice;

namespace quorvik
{

/**
 * Writes a recording as comma-separated values for any other program: one row of heads and then, in the order
 * of time, a line for each sample and each mark. Nothing is computed between samples: what was not read at
 * that moment is an empty cell. Channels share a line where they were taken at the same moment.
 *
 * Columns: seconds from the trigger, or else from the beginning; the computer's local time; when the value
 * was asked for and when the answer was there, in the same seconds; 1 after a gap; of each channel the raw
 * value and what the program shows for it; the text of a mark.
 *
 * @param device is open for writing.
 * @param goOn is asked now and then, with how much is written, 0 to 1; false ends the writing.
 * @return empty, or the sentence that says what failed.
 */
QString WriteTrendCsv(const TrendData &data, QIODevice &device,
                      const std::function<bool(double part)> &goOn = {});

} // namespace quorvik
