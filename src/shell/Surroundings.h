#pragma once

#include "operations/Engines.h"

#include <QString>

namespace quorvik
{

class Asker;
class HTMLHelp;

/** What one run of the program is given from outside; tests and the tour give it places of their own. */
struct Surroundings {
    Asker &asker;
    SettingsStore &settings;
    HTMLHelp &help;
    QString programFolder; ///< where Presets.fil and the help file lie
    QString programPath;   ///< the program itself, for the file association
    QString lockFile;      ///< held by the one instance that may run
    QString dataHome;      ///< the user's data folder, where desktops look for applications and file types
    LinkTimings timings;
    Ports::Source devices = &Ports::Present; ///< the serial devices that are there now

    EnginePlaces ForEngines() const
    {
        return {settings, programFolder, dataHome + QStringLiteral("/quorvik"), timings, devices};
    }
};

} // namespace quorvik
