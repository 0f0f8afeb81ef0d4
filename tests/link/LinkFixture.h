#pragma once

#include "link/DriveLink.h"
#include "link/ScriptedPeer.h"
#include "model/Document.h"
#include "operations/DriveOperations.h"
#include "operations/EntryRules.h"
#include "operations/Guards.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "platform/Guard.h"
#include "platform/Waiting.h"
#include "settings/SettingsFile.h"
#include "support/ScriptedAsker.h"

#include <QElapsedTimer>
#include <QStringList>
#include <climits>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvik::testing
{

/** The real engine over a pseudo-terminal, with short intervals and a table of parameters 0 to 500. */
class LinkFixture : public ::testing::Test
{
protected:
    static constexpr int FileLastParam = 500;

    LinkFixture()
    {
        table.FileLastParam = table.LastParam = FileLastParam;
        table.PresetTable.Resize(FileLastParam);
        for (int i = 0; i <= FileLastParam; ++i) {
            table.PresetTable[i].Max = 1000;
            table.PresetTable[i].Name = QStringLiteral("Name %1").arg(i);
        }
        table.ResetToDefaults();
        // What the link does is the same with and without questions before it.
        guards.Asking = false;
        link.MSComm1.DeviceOf = [this](int) { return peer.Device(); };
        SetFailureReporter([this](const RuntimeFailure &failure) { failures.append(failure.Sentence()); });
    }
    ~LinkFixture() override
    {
        SetFailureReporter([](const RuntimeFailure &) {});
    }

    /** The peer answers this frame so for the first times, by default not at all; else as a drive. */
    void Answer(const QByteArray &frame, const QByteArray &reply = {}, int times = INT_MAX)
    {
        peer.Answer = [=, this](const QByteArray &sent) {
            return sent == frame && peer.Count(frame) <= times ? reply : peer.DriveAnswer(sent);
        };
    }
    /** Goes on line with the peer as a well-behaved drive, and forgets what was sent for it. */
    void Connect()
    {
        Answer({});
        operations.GoOnLine();
        ASSERT_TRUE(link.PortOpen());
        peer.Frames.clear();
    }
    void Want(std::initializer_list<int> numbers)
    {
        for (const int p : numbers)
            table.AddReadInterest(p);
    }
    void Enter(int p, std::int32_t rawValue) { table.SetParamValue(p, rawValue, true, false); }
    /** Waits for the frame to have arrived so many times. */
    bool WaitFor(const QByteArray &frame, int times = 1)
    {
        return WaitUntil([&] { return peer.Count(frame) >= times; });
    }
    bool WaitForOffLine()
    {
        return WaitUntil([this] { return !link.PortOpen(); });
    }
    bool WaitForWrites()
    {
        return WaitUntil([this] { return !table.WritePending; });
    }
    /** Whether the link waits for nothing, and nothing of it will come due. */
    bool IsAtRest() const { return !link.SerialCommTimer.isActive() && !link.SerialCommTimeout.isActive(); }
    /** Runs the event loop for some scans' time. @return Whether nothing was sent meanwhile. */
    bool IsSilent()
    {
        peer.Frames.clear();
        PumpWhile([] { return true; }, QDeadlineTimer(5 * Short.scanPause));
        return peer.Frames.isEmpty();
    }
    ParamRecord &P(int p) { return table.Row(p); }

    static constexpr LinkTimings Short{.scanPause = 20, .replyTimeout = 150, .sizeErrorPause = 60};

    ParameterTable table;
    Document document{table};
    ScriptedAsker asker;
    EntryRules rules{table, asker};
    ScriptedPeer peer;
    DriveLink link{table, Short};
    SettingsFile file{table, document};
    SaveCommands saving{document, asker, file, QString()};
    Snapshots snapshots{table, link, asker};
    Guards guards{table, document, asker};
    DriveOperations operations{table, document, link, rules, saving, asker, snapshots, guards};
    QStringList failures;
};

} // namespace quorvik::testing
