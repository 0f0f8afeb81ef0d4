#pragma once

#include "report/DriveVerification.h"
#include "report/MakeReport.h"
#include "trend/StoredRecording.h"

#include <vector>

namespace quorvik
{

/** What the window of the commissioning report needs beside the desk. The shell answers with this run's
 * engines, a picture of the window with samples. */
class CommissioningHost
{
public:
    virtual ~CommissioningHost() = default;

    /** What the notes of the open set say. */
    virtual CommissioningPlace Place() = 0;
    /** Puts it into the notes of the open set. @return empty, or why they stay as they are. */
    virtual QString KeepPlace(const CommissioningPlace &place) = 0;
    /** The newest first. */
    virtual std::vector<StoredRecording> Recordings() = 0;
    /** Reads the drive, with its progress shown, and holds the open set against it. */
    virtual DriveVerification Compare() = 0;
    /** The report of the open set. */
    virtual CommissioningReport Make(ReportChoices choices, const DriveVerification &verification) = 0;
};

} // namespace quorvik
