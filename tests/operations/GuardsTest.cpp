#include "operations/Guards.h"

#include "operations/OperationsFixture.h"
#include "platform/RuntimeFailure.h"

#include <QSignalSpy>

namespace quorvik::testing
{

namespace
{

using enum MsgAnswer;

/** The ways in which a whole set goes to the drive. */
enum class Route { OpenOnLine, WriteSettings, GoOnLineYes };

constexpr int Marked = Param::Reference1; ///< a setting whose value tells whose set is in the drive
constexpr int InSet = 100;
constexpr int InDrive = 55;
constexpr int Edited = Param::Reference2; ///< changed off line, and so queued

class GuardsTest : public OperationsTest
{
protected:
    int Writes() const
    {
        return int(std::ranges::count_if(peer.Frames, [](const auto &f) { return f.startsWith("\2\1"); }));
    }

    /** Program and peer have the factory set, but for one value each; the program's lies in a file where that
     * is to be opened. A drive whose state is negative has no state. */
    void Prepare(Route way, const ParamValue &ofSet, const ParamValue &ofDrive)
    {
        StartAnew();
        table.DropAllWrites();
        for (int p = 0; p <= table.LastParam; ++p)
            peer.Values[p] = table.PresetTable[p].Value;
        peer.Values[Marked] = InDrive;
        peer.Values[ofDrive.param] = ofDrive.rawValue;
        peer.LastParam = peer.Values[Param::DriveState] < 0 ? 400 : 433;
        const std::int32_t factory = std::exchange(table.Row(ofSet.param).Value, ofSet.rawValue);
        if (way == Route::OpenOnLine) {
            SavedSet();
            table.Row(ofSet.param).Value = factory;
            ASSERT_TRUE(drive.GoOnLine().IsDone());
        } else {
            table.Row(Marked).Value = InSet;
            table.SetParamValue(Edited, 7, true, false);
        }
        document.FileName = Path("x.Svx");
        document.MarkFile(false);
        peer.Frames.clear();
    }

    OperationResult Send(Route way)
    {
        if (way == Route::WriteSettings)
            return commands.WriteToDrive();
        if (way == Route::GoOnLineYes)
            return drive.ToggleComStatus();
        asker.ExpectOpen(Path("saved.Svx"));
        return commands.Open();
    }

    void Leave()
    {
        document.DriveModified = false;
        drive.GoOffLine(OffLineReason::User);
    }
};

TEST_F(GuardsTest, AWholeSetWaitsForTheAnswer)
{
    const ParamValue none{Marked, InSet};
    const ParamValue same{Marked, InDrive};
    enum Then { Sent, LeftOut, NotSent, Refused };
    const struct {
        ParamValue ofSet;
        ParamValue ofDrive;
        const char *box; ///< null where nothing is asked
        MsgAnswer answer;
        Then then;
    } cases[] = {
        {none, same, nullptr, Yes, Sent},
        {{Param::Stop, 1}, {Param::Stop, 1}, nullptr, Yes, Sent},
        {none, {Param::DriveState, 8}, nullptr, Yes, Sent},
        {{Param::Run, 1}, same, "(239) Run = True", No, LeftOut},
        {{Param::Run, 1}, same, "(239) Run = True", Yes, Sent},
        {{Param::Run, 1}, same, "is in the state Stop.", Cancel, NotSent},
        {{Param::ClearFault, 1}, same, "(420) Clear Fault = True", No, LeftOut},
        {{Param::Stop, 0}, {Param::Stop, 1}, "(240) Stop = False", No, LeftOut},
        {none, {Param::DriveState, 1}, "is in the state Run.", Ok, Refused},
        {none, {Param::DriveState, -1}, "Write without knowing whether the drive runs?", Cancel, NotSent},
        {{Param::DriveModel, 6}, same, "The set: SVR125-000", Yes, Sent},
        {none, {Param::DriveCurrent, 36}, "rated at 36 Amps", Cancel, NotSent},
        {{Param::DriveModel, 0}, same, "The set: Undefined", Cancel, NotSent},
    };
    table.AddReadInterest(Marked);
    for (const Route way : {Route::OpenOnLine, Route::WriteSettings, Route::GoOnLineYes})
        for (const auto &c : cases) {
            SCOPED_TRACE(::testing::Message() << "way " << int(way) << ", case " << &c - cases);
            ASSERT_NO_FATAL_FAILURE(Prepare(way, c.ofSet, c.ofDrive));
            const int p = c.ofSet.param;
            const int before = peer.Values[p];
            const bool isSent = c.then == Sent || c.then == LeftOut;
            if (way == Route::GoOnLineYes)
                asker.Expect(QStringLiteral("Write current parameter settings"), Yes);
            if (c.box != nullptr)
                asker.Expect(QLatin1String(c.box), c.answer);
            if (way == Route::WriteSettings && isSent)
                asker.Expect(QStringLiteral("Save Changes in Drive?"), No);
            EXPECT_EQ(Send(way).outcome, isSent              ? Outcome::Done
                                         : c.then == Refused ? Outcome::Refused
                                                             : Outcome::Cancelled);
            if (c.then == Refused)
                PumpWhile([] { return true; }, QDeadlineTimer(60));
            EXPECT_EQ(Writes() > 100, isSent);
            EXPECT_EQ(Writes() == 0, !isSent) << "not even an edit of before";
            EXPECT_EQ(peer.Values[Marked], isSent ? InSet : InDrive);
            const bool arrives = c.then == Sent && !table.AttrBit(Attr::ReadOnly, p);
            EXPECT_EQ(peer.Values[p], arrives ? c.ofSet.rawValue : isSent && p == Marked ? InSet : before);
            EXPECT_TRUE(c.then != LeftOut || table.Value(p) == before) << "the set says what the drive has";
            EXPECT_EQ(document.FileName, Path(isSent && way == Route::OpenOnLine ? "saved.Svx" : "x.Svx"));
            EXPECT_TRUE(way == Route::OpenOnLine || table.Value(Marked) == InSet) << "held against polling";
            EXPECT_EQ(link.PortOpen(),
                      way == Route::OpenOnLine || c.then == Refused || (way == Route::GoOnLineYes && isSent));
            EXPECT_TRUE(!isSent || link.StopOnlyRefusals == 3) << "few boxes, should it start meanwhile";
            Leave();
        }
}

TEST_F(GuardsTest, WhatTheDriveWouldLoseIsSaidBeforeItRestartsOrLoads)
{
    enum Open { Nothing, DriveUnsaved, InNoFile, OnItsWay };
    const struct {
        int state; ///< -1 for one that the drive has not told
        Open open;
        const char *box; ///< null where nothing is asked
        MsgAnswer answer;
    } cases[] = {
        {0, Nothing, nullptr, Yes},
        {8, Nothing, nullptr, Yes},
        {1, Nothing, "The drive is in the state Run.", Cancel},
        {1, Nothing, "The drive is in the state Run.", Yes},
        {-1, Nothing, "The drive has not told its state yet.", Cancel},
        {77, Nothing, "The drive is in the state 77.", Cancel},
        {0, DriveUnsaved, "It loses the changes", Cancel},
        {0, InNoFile, "changes that are in no file", Cancel},
        {0, OnItsWay, "One value is still on its way", Yes},
    };
    const std::pair<std::function<OperationResult()>, QByteArray> given[] = {
        {[this] { return drive.RestartDrive(Restart::ReInitialize); },
         WriteRequest(Param::OneShotCommand, 1)},
        {[this] { return drive.RestartDrive(Restart::Reset); }, WriteRequest(Param::OneShotCommand, 2)},
        {[this] { return drive.LoadDriveParameters(); }, WriteRequest(Param::LoadParameters, 1)},
    };
    table.AddReadInterest(Param::DriveState);
    for (const auto &[give, frame] : given)
        for (const auto &c : cases) {
            SCOPED_TRACE(::testing::Message() << frame.toHex().toStdString() << ", case " << &c - cases);
            peer.Values[Param::DriveState] = std::max(c.state, 0);
            ASSERT_TRUE(drive.GoOnLine().IsDone());
            ASSERT_TRUE(WaitUntil([&] { return c.state < 0 || !table.DriveStateUnread; }));
            document.DriveModified = c.open == DriveUnsaved;
            document.HasUnsavedEdits = c.open == InNoFile;
            if (c.open == OnItsWay)
                table.QueueWrite(Edited, 7);
            peer.Frames.clear();
            if (c.box != nullptr)
                asker.Expect(QLatin1String(c.box), c.answer);
            EXPECT_EQ(give().IsDone(), c.answer == Yes);
            EXPECT_TRUE(c.answer != Yes || WaitUntil([&] { return peer.Count(frame) == 1; }));
            Leave();
            EXPECT_EQ(peer.Count(frame), c.answer == Yes ? 1 : 0);
        }
}

TEST_F(GuardsTest, GoingOnLineToCompareLeavesSetAndDriveAlone)
{
    peer.Values[Param::DriveCurrent] = 36;
    table.Row(Marked).Value = InSet;
    for (const int p : {Marked, Param::DriveCurrent, Param::Run})
        table.AddReadInterest(p);
    for (const int p : {Edited, Param::Run, Param::ClockSeconds})
        table.SetParamValue(p, 1, true, false);
    const QSignalSpy wanted(&drive, &DriveOperations::CompareWanted);
    asker.Expect(QStringLiteral("Write current parameter settings"), Other);
    EXPECT_TRUE(drive.ToggleComStatus().IsDone());
    EXPECT_EQ(asker.Shown.last().safe, No);
    EXPECT_EQ(wanted.size(), 1);
    ASSERT_TRUE(WaitUntil([this] { return table.Value(Param::DriveCurrent) == 36; })) << "polled";
    EXPECT_TRUE(WaitUntil([this] { return table.Value(Param::Run) == 0; })) << "who may start it sees it";
    EXPECT_EQ(table.Value(Marked), InSet);
    EXPECT_EQ(Writes(), 0);
    // What is entered from now on is meant for the drive.
    table.SetParamValue(Marked, 8, true, false);
    EXPECT_TRUE(WaitUntil([this] { return peer.Values[Marked] == 8 && !table.WritePending; }));
    EXPECT_EQ(Writes(), 1);
    peer.Values[Marked] = 9;
    EXPECT_TRUE(WaitUntil([this] { return table.Value(Marked) == 9; })) << "and polled like others";
    document.DriveModified = false;
}

TEST_F(GuardsTest, ALineThatBreaksBehindAQuestionLeavesTheSetAsItWas)
{
    table.AddReadInterest(Param::DriveState);
    for (const Route way : {Route::OpenOnLine, Route::WriteSettings}) {
        ASSERT_NO_FATAL_FAILURE(Prepare(way, {Param::Run, 1}, {Param::Stop, 1}));
        asker.Expect(QStringLiteral("(239) Run = True\r\n(240) Stop = False"), Yes);
        asker.WhileShown = [this, way] {
            asker.WhileShown = nullptr;
            asker.Expect(QStringLiteral("not Responding"));
            if (way == Route::WriteSettings)
                asker.Expect(QStringLiteral("have not been saved!"));
            peer.PullOut();
            EXPECT_TRUE(WaitUntil([this] { return !link.PortOpen(); }));
        };
        EXPECT_EQ(Send(way).outcome, Outcome::LinkLost);
        EXPECT_EQ(Writes(), 0);
        EXPECT_EQ(document.FileName, Path("x.Svx"));
        EXPECT_THROW(saving.Save(0), RuntimeFailure) << "to no file that was not opened";
        EXPECT_EQ(table.Row(Marked).WriteFlag, WriteState::None);
        const bool isQueued = table.Row(Edited).WriteFlag == WriteState::Queued && table.WritePending;
        EXPECT_EQ(isQueued, way == Route::WriteSettings) << "as before";
        Leave();
        peer.PlugIn();
    }
}

} // namespace

} // namespace quorvik::testing
