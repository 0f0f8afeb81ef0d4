#pragma once

#include <QString>

namespace quorvik
{

class TrendRecorder;
class TrendView;
struct TrendData;

/** What the recorder does and what is shown of it, in a line: "Recording 4 channels, 87 samples a second
 * each". */
QString StateText(const TrendRecorder &recorder, const TrendView &view, bool isOnLine);

/** "Recording of 2026-11-22 14:03, SVN100 ...: title". */
QString RecordingText(const TrendData &data);

} // namespace quorvik
