#pragma once

#include "link/ScriptedPeer.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/FileCommands.h"
#include "operations/Guards.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "settings/SetFixture.h"
#include "support/ScriptedAsker.h"

namespace quorvik::testing
{

/** The operations over a factory table, with a drive at the other end of the line. */
class OperationsTest : public SetTest
{
protected:
    OperationsTest()
    {
        link.MSComm1.DeviceOf = [this](int) { return portOpens ? peer.Device() : QString(); };
        peer.LastParam = 433;
    }

    /** Saves a set whose Reference 1 is 100, and empties Reference 1 again. @return where it lies. */
    QString SavedSet()
    {
        table.Row(218).Value = 100;
        EXPECT_EQ(file.Save(Path("saved.Svx")), QString());
        table.Row(218).Value = 0;
        return Path("saved.Svx");
    }

    ScriptedAsker asker;
    ScriptedPeer peer;
    DriveLink link{table, LinkTimings{.scanPause = 5, .replyTimeout = 150}};
    EntryRules rules{table, asker};
    SaveCommands saving{document, asker, file, Path("program")};
    Snapshots snapshots{table, link, asker};
    Guards guards{table, document, asker};
    DriveOperations drive{table, document, link, rules, saving, asker, snapshots, guards};
    FileCommands commands{table, document, rules, asker, file, saving, drive};
    bool portOpens = true;
};

} // namespace quorvik::testing
