#include "history/Recorder.h"

#include "compare/Backups.h"
#include "compare/VerifiedWrite.h"
#include "history/Journal.h"
#include "history/JournalReader.h"
#include "history/UndoStack.h"
#include "link/DriveLink.h"
#include "platform/Waiting.h"
#include "settings/SetFixture.h"
#include "support/SimulatedDrive.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

namespace quorvik::testing
{

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/** What gets into the journal, and what does not. */
class RecorderTest : public SetTest
{
protected:
    RecorderTest()
    {
        QCoreApplication::setApplicationVersion(QStringLiteral("1"));
        QObject::connect(&journal, &Journal::Trouble,
                         [](const QString &sentence) { ADD_FAILURE() << sentence.toStdString(); });
    }
    ~RecorderTest() override { link.Close(); }

    void GoOnLine()
    {
        simulated.emplace();
        link.MSComm1.DeviceOf = [this](int) { return simulated->LinkPath(); };
        ASSERT_EQ(link.Open(), QString());
        PumpWhile([this] { return link.IsAskingForSize(); }, QDeadlineTimer(10000));
        ASSERT_TRUE(link.TakeSize());
    }
    void Enter(Origin origin, int p, std::int32_t rawValue)
    {
        const Intent intent(table, origin);
        table.SetParamValue(p, rawValue, true, true);
    }
    bool Waits(const std::function<bool()> &condition)
    {
        return PumpWhile([&] { return !condition(); }, QDeadlineTimer(10000));
    }
    bool Ends(int p)
    {
        return Waits([&] { return table[p].WriteFlag == WriteState::None; });
    }

    /** All that the journal says since the last call, oldest first: "edit dialog: (218) 0 to 5, kept off
     * line", and the title of an action without rows. */
    std::vector<std::string> Told()
    {
        recorder.HandOver();
        EXPECT_TRUE(journal.Flush(10000));
        JournalReader reader(journal.Path());
        std::vector<std::string> lines;
        std::vector<ShownAction> actions = reader.Actions({}, 0, 1000);
        std::ranges::reverse(actions);
        for (const ShownAction &shown : actions) {
            if (shown.id <= lastTold_)
                continue;
            lastTold_ = shown.id;
            const QString who = NameOf(shown.action.origin) + QStringLiteral(": ");
            const std::vector<ShownRow> rows = reader.RowsOf(shown, {});
            if (rows.empty())
                lines.push_back((who + shown.action.title).toStdString());
            for (const ShownRow &shownRow : rows) {
                const JournalRow &row = shownRow.row;
                lines.push_back((who + QStringLiteral("(%1) %2 to %3 %4")
                                           .arg(row.param)
                                           .arg(row.rawBefore.value_or(-1))
                                           .arg(row.rawAfter)
                                           .arg(NameOf(row.result)))
                                    .trimmed()
                                    .toStdString());
            }
        }
        EXPECT_EQ(reader.Failure(), QString());
        return lines;
    }

    std::optional<SimulatedDrive> simulated;
    DriveLink link{table, LinkTimings{.scanPause = 5, .replyTimeout = 150}};
    Backups backups{Path("backups")};
    VerifiedWrite writing{table, link, backups};
    Journal journal{Path("history.sqlite")};
    Recorder recorder{table, document, link, writing, journal};
    UndoStack stack{table, document, link, writing};

private:
    qint64 lastTold_ = 0;
};

constexpr int Reference = Param::Reference1;

TEST_F(RecorderTest, OffLineEachChangeOnPurposeIsKept)
{
    Enter(Origin::EditDialog, Reference, 5);
    EXPECT_THAT(Told(), ElementsAre("edit dialog: (218) 0 to 5 kept off line"));
    // What follows by a rule goes with it.
    Enter(Origin::Switch, 28, 0);
    Enter(Origin::Mentor, 38, 0);
    Told();
    table.Row(38).Value = -9;
    Enter(Origin::Switch, 28, 1);
    Enter(Origin::Switch, 28, 0);
    EXPECT_THAT(Told(), ElementsAre("switch: (28) 0 to 1 kept off line", "switch: (28) 1 to 0 kept off line",
                                    "switch: (38) -9 to 0 kept off line"));
    {
        const Intent intent(table, Origin::IOSimulator);
        table.SetValue(Param::MinMaxMax, 3, ChangeCause::Emulated);
    }
    EXPECT_EQ(Told().size(), 1U);
    table.SetValue(Param::MinMaxMax, 4, ChangeCause::Emulated);
    table.SetValue(Reference, 77, ChangeCause::Drive);
    EXPECT_THAT(Told(), IsEmpty()) << "computed or polled, and nobody's doing";
}

TEST_F(RecorderTest, ASlidersMovementIsOneRow)
{
    for (int raw = 1; raw <= 30; ++raw) {
        const Intent intent(
            table,
            {.origin = Origin::VirtualOperator, .title = {}, .canBeTakenBack = false, .isMovement = true});
        table.SetParamValue(Reference, raw, true, false);
        if (raw % 10 == 0)
            recorder.HandOver();
    }
    EXPECT_THAT(Told(), ElementsAre("Virtual Operator: (218) 0 to 30 kept off line"));
}

TEST_F(RecorderTest, FilesAndWhatIsTakenBackAreTold)
{
    Enter(Origin::EditDialog, Reference, 5);
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", Path("").toUtf8());
    ASSERT_EQ(file.Save(Path("a.Svx")), QString());
    document.BecomeSaved(Path("a.Svx"));
    Enter(Origin::EditDialog, Reference, 6);
    ASSERT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    const std::vector<std::string> told = Told();
    ASSERT_EQ(told.size(), 4U);
    qputenv("HOME", home);
    EXPECT_EQ(told[1], "file: Saved ~/a.Svx") << "whose folder it is stays out of it";
    EXPECT_EQ(told[3], "file: (218) 6 to 5 kept off line");
    for (int i = 0; i < 2; ++i) {
        const Intent intent(table, {Origin::Undo, QStringLiteral("Undo"), false});
        stack.Restore(Way::Undo);
    }
    EXPECT_THAT(Told(), ElementsAre("undo: (218) 5 to 6 kept off line", "undo: (218) 6 to 5 kept off line"));
}

TEST_F(RecorderTest, OnLineItIsToldWhatBecameOfIt)
{
    GoOnLine();
    Enter(Origin::EditDialog, Reference, 5);
    ASSERT_TRUE(Ends(Reference));
    EXPECT_THAT(Told(), ElementsAre("edit dialog: (218) -1 to 5 acknowledged")) << "nobody had read it";
    Enter(Origin::Switch, Reference, 7);
    ASSERT_TRUE(Ends(Reference));
    table.AddReadInterest(Reference);
    int readings = 0;
    QObject::connect(&link, &DriveLink::ValueRead, &journal, [&](int p) { readings += p == Reference; });
    ASSERT_TRUE(Waits([&] { return readings > 1; }));
    EXPECT_THAT(Told(), ElementsAre("switch: (218) 5 to 7 verified"));
    simulated->Set(Reference, 99);
    ASSERT_TRUE(Waits([&] { return table.Value(Reference) == 99; }));
    EXPECT_THAT(Told(), IsEmpty()) << "nobody here did that";
    table.RemoveReadInterest(Reference);

    // Two before the first is sent.
    simulated->Send(QStringLiteral("fault drop"));
    Enter(Origin::EditDialog, Reference, 8);
    Enter(Origin::EditDialog, Reference, 9);
    simulated->Send(QStringLiteral("faults off"));
    ASSERT_TRUE(Ends(Reference));
    EXPECT_THAT(Told(), ElementsAre("edit dialog: (218) 99 to 8 given up",
                                    "edit dialog: (218) 99 to 9 acknowledged"));
    simulated->Send(QStringLiteral("fault refuse"));
    Enter(Origin::EditDialog, Reference, 10);
    ASSERT_TRUE(Ends(Reference));
    EXPECT_THAT(Told(), ElementsAre("edit dialog: (218) 9 to 10 refused"));
    simulated->Kill();
    Enter(Origin::EditDialog, Reference, 11);
    ASSERT_TRUE(Waits([&] { return !link.PortOpen(); }));
    EXPECT_THAT(Told(), ElementsAre("edit dialog: (218) 9 to 11 lost"));
}

TEST_F(RecorderTest, OfAVerifiedWriteWhatTheDriveHeld)
{
    GoOnLine();
    simulated->Set(Reference, 44);
    simulated->Set(Param::Reference2, 2);
    simulated->Send(QStringLiteral("fault refuse:%1").arg(int(Param::FwdAccelA)));
    const std::int32_t accel = table.Value(Param::FwdAccelA);
    bool isOver = false;
    QObject::connect(&writing, &VerifiedWrite::Finished, &journal, [&] { isOver = true; });
    {
        const Intent intent(table, Origin::Compare);
        writing.Begin({{Reference, 45}, {Param::Reference2, 2}, {Param::FwdAccelA, accel + 1}});
        ASSERT_TRUE(Waits([&] { return isOver; }));
    }
    EXPECT_THAT(Told(), ElementsAre("compare: (218) 44 to 45 verified",
                                    "compare: (226) " + std::to_string(accel) + " to " +
                                        std::to_string(accel + 1) + " refused"))
        << "and nothing of what it held already";
}

} // namespace quorvik::testing
