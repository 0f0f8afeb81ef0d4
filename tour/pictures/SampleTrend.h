#pragma once

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "operations/DriveOperations.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "operations/StepTest.h"
#include "settings/SettingsFile.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"
#include "trend/TripTrend.h"
#include "trend/forms/TrendHost.h"

#include <QTemporaryDir>

namespace quorvik
{

struct Desk;

/** Recordings of a morning at a machine, in a folder of their own. */
class SampleTrend : public TrendHost
{
public:
    explicit SampleTrend(Desk &desk);

    TrendRecorder &Recorder() override { return recorder_; }
    TrendStore &Store() override { return store_; }
    TripTrend &Trips() override { return trips_; }
    StepTest &Steps() override { return steps_; }

    /** The recording of a step and what the speed made of it. */
    QString StepPath() const { return stepPath_; }

    /** Adds a recording. @return its file. */
    QString Keep(const TrendData &data, RecordingKind kind, const char *title, const char *notes);

private:
    QTemporaryDir folder_;
    DriveLink link_;
    DriveEmulator emulator_;
    SettingsFile file_;
    SaveCommands saving_;
    Snapshots snapshots_;
    DriveOperations drive_;
    TrendRecorder recorder_;
    TrendRecorder beforeTrips_;
    TrendStore store_;
    TripTrend trips_;
    StepTest steps_;
    QString stepPath_;
};

} // namespace quorvik
