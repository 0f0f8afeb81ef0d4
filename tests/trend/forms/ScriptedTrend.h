#pragma once

#include "emulator/DriveEmulator.h"
#include "operations/DriveOperations.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "operations/StepTest.h"
#include "settings/SettingsFile.h"
#include "support/TestDesk.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"
#include "trend/TripTrend.h"
#include "trend/forms/TrendHost.h"

namespace quorvik::testing
{

/** The engines of the trend window over a test's desk, and a clock that the test moves on. */
class ScriptedTrend : public TrendHost
{
public:
    explicit ScriptedTrend(TestDesk &desk)
        : table_(desk.table)
        , emulator(desk.table)
        , recorder(desk.table, desk.document, desk.link, emulator, {}, [this] { return nowUs; })
        , tripRecorder(desk.table, desk.document, desk.link, emulator, {}, [this] { return nowUs; })
        , store(desk.folder.filePath(QStringLiteral("recordings")))
        , trips(tripRecorder, store, desk.link)
        , file_(desk.table, desk.document)
        , saving_(desk.document, desk.asker, file_, desk.folder.path())
        , snapshots_(desk.table, desk.link, desk.asker)
        , drive_(desk.table, desk.document, desk.link, desk.rules, saving_, desk.asker, snapshots_,
                 desk.guards)
        , steps(desk.table, desk.link, desk.states, recorder, drive_, desk.asker)
    {
        emulator.TimerEmulateSvx.stop();
        store.Follow(recorder);
    }

    TrendRecorder &Recorder() override { return recorder; }
    TrendStore &Store() override { return store; }
    TripTrend &Trips() override { return trips; }
    StepTest &Steps() override { return steps; }

    /** The emulator's next ticks, with what a parameter is at each of them. */
    void Sample(int p, std::initializer_list<std::int32_t> rawValues, int stepMs = 100)
    {
        for (const std::int32_t rawValue : rawValues) {
            nowUs += stepMs * 1000;
            table_.Row(p).Value = rawValue;
            Q_EMIT emulator.Emulated();
        }
    }

private:
    ParameterTable &table_;

public:
    qint64 nowUs = 1'000'000;
    DriveEmulator emulator;
    TrendRecorder recorder;
    TrendRecorder tripRecorder;
    TrendStore store;
    TripTrend trips;

private:
    SettingsFile file_;
    SaveCommands saving_;
    Snapshots snapshots_;
    DriveOperations drive_;

public:
    StepTest steps;
};

} // namespace quorvik::testing
