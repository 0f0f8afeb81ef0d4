#pragma once

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "model/EntryRules.h"
#include "model/Model.h"
#include "settings/FileCommands.h"
#include "settings/RecoveryCopy.h"
#include "settings/SettingsFile.h"
#include "shell/Surroundings.h"

namespace quorvik
{

/** The engines of one run of the program, in the order in which they build on each other. */
struct Engines {
    explicit Engines(const Surroundings &surroundings);

    /**
     * Brings the table to the factory state.
     * @param programFolder where Presets.fil lies.
     * @return the engine's sentence where there is no factory table.
     */
    QString InitGlobals(const QString &programFolder);

    Model model;
    EntryRules rules;
    SettingsFile file;
    FileCommands fileCommands;
    RecoveryCopy recoveryCopy;
    DriveLink link;
    DriveEmulator emulator;
};

} // namespace quorvik
