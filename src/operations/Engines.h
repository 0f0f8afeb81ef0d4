#pragma once

#include "compare/Backups.h"
#include "compare/VerifiedWrite.h"
#include "emulator/DriveEmulator.h"
#include "history/Journal.h"
#include "history/Recorder.h"
#include "history/UndoStack.h"
#include "link/DriveLink.h"
#include "link/LinkStatistics.h"
#include "link/PacketLog.h"
#include "link/ValueStates.h"
#include "model/Document.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/FileCommands.h"
#include "operations/Guards.h"
#include "operations/Reconnection.h"
#include "operations/SafeWrites.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "operations/StepTest.h"
#include "operations/TripRecords.h"
#include "operations/UndoCommands.h"
#include "platform/Ports.h"
#include "settings/RecoveryCopy.h"
#include "settings/SettingsFile.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"
#include "trend/TripTrend.h"

namespace quorvik
{

/** Where the engines of one run read and keep what outlives it. */
struct EnginePlaces {
    SettingsStore &settings;
    QString programFolder; ///< where Presets.fil lies
    QString dataFolder;    ///< of backups, history and recordings; made when it is needed
    LinkTimings timings = {};
    Ports::Source devices = &Ports::Present; ///< the serial devices that are there now
    bool keepsRecoveryCopy = true;           ///< of an open set with unsaved edits
};

/** The engines of one run of the program, in the order in which they build on each other. */
struct Engines {
    Engines(const EnginePlaces &places, Asker &asker);

    /**
     * Brings the table to the factory state.
     * @param programFolder where Presets.fil lies.
     * @return the engine's sentence where there is no factory table.
     */
    QString InitGlobals(const QString &programFolder);

    ParameterTable table;
    Document document;
    SettingsFile file;
    RecoveryCopy recoveryCopy;
    DriveLink link;
    LinkStatistics statistics;
    PacketLog packets;
    ValueStates states;
    TripRecords trips;
    DriveEmulator emulator;
    EntryRules rules;
    SaveCommands saving;
    Snapshots snapshots;
    Guards guards;
    DriveOperations drive;
    FileCommands fileCommands;
    Reconnection reconnection;
    Backups backups;
    VerifiedWrite verifiedWrite;
    SafeWrites safeWrites;
    Journal journal;
    Recorder recorder;
    UndoStack undoStack;
    UndoCommands undo;
    TrendRecorder trend;       ///< of the trend window
    TrendRecorder beforeTrips; ///< of tripTrend alone
    TrendStore recordings;
    TripTrend tripTrend;
    StepTest steps;
};

} // namespace quorvik
