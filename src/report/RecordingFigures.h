#pragma once

#include "report/CommissioningReport.h"

namespace quorvik
{

class TrendStore;
struct TrendData;

/** A recording with the figures of the steps in it: of every change of a reference, and of the change that
 * the recording is aligned at. Where it cannot be read its remark says why. */
CommissioningRecording RecordingOf(TrendStore &store, const QString &path);

/** The figures alone. */
CommissioningTable StepsIn(const TrendData &data);

} // namespace quorvik
