#include "operations/StepTest.h"
#include "UndoFixture.h"
#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "drive/MotorModel.h"
#include "emulator/DriveEmulator.h"
#include "link/ValueStates.h"
#include "platform/Waiting.h"
#include "trend/TrendRecorder.h"

#include <QElapsedTimer>
#include <gmock/gmock.h>

namespace quorvik::testing
{

using drive::State;
using ::testing::ElementsAre;

/** A program on line with a drive in this process that runs at 30 %. Of the drive's own we see all. */
class StepTestTest : public UndoCommandsTest
{
protected:
    static constexpr std::int32_t Before = 3000;
    static constexpr std::int32_t Size = 500;

    StepTestTest()
    {
        EXPECT_EQ(terminal.Open(), QString());
        link.MSComm1.DeviceOf = [this](int) { return terminal.DevicePath(); };
        ServeAnew();
        for (ParameterTable *one : {&driveParameters, &table})
            for (const int p : {int(Param::Reference0), int(Param::Reference1), int(Param::Run),
                                int(Param::Stop), int(Param::Jog)})
                while (const int source = one->FindLinkSource(p))
                    one->Row(source).Value = 0;
        for (const int ramp : {Param::FwdAccelA, Param::FwdDecelA})
            driveTable.Put(ramp, 0);
        driveTable.Put(Param::Reference0, Before);
        driveTable.Put(Param::LogicSelect, 1);
        Turn(1);
        driveTable.Put(Param::Run, 1);
        Turn(4);
        EXPECT_EQ(driveTable.DriveState(), State::Run);
        EXPECT_NEAR(driveTable.Get(Param::VelFeedback), Before, 30);

        turning.setTimerType(Qt::PreciseTimer);
        QObject::connect(&turning, &QTimer::timeout, &turning, [this] { Turn(TickSeconds); });
        sinceTick.start();
        turning.start(int(TickSeconds * 1000));
        for (const int p : {Param::Reference0, Param::VelFeedback, Param::DriveState, Param::GainSelect})
            table.AddReadInterest(p);
    }

    void ServeAnew()
    {
        // What is sent to a dead line is lost.
        terminal.Read();
        server = std::make_unique<drive::DriveServer>(driveTable, commands, faults, terminal, 0);
    }
    void Turn(double seconds)
    {
        for (; seconds > 0; seconds -= TickSeconds) {
            machine.Tick(TickSeconds);
            const std::int32_t reference = driveTable.Get(Param::Reference0);
            if (references.empty() || references.back() != reference)
                references.push_back(reference);
        }
    }
    void GoOnLine()
    {
        drive.GoOnLine();
        ASSERT_TRUE(Comes(
            [this] { return states.Of(Param::Reference0) == ValueState::Live && !table.DriveStateUnread; }));
        references.clear();
    }
    static bool Comes(const std::function<bool()> &condition)
    {
        return PumpWhile([&] { return !condition(); }, QDeadlineTimer(8000));
    }
    bool Comes(StepState state)
    {
        return Comes([&] { return steps.State() == state; });
    }
    std::int32_t InDrive() const { return driveTable.Get(Param::Reference0); }

    static constexpr double TickSeconds = 0.005;
    static constexpr StepTimings Short{
        .leastHoldMs = 50, .beforeMs = 60, .samplesMs = 2000, .writeMs = 1500, .checkMs = 100};
    const StepWish wish{.param = Param::Reference0, .rawSize = Size, .holdMs = 30000};

    ParameterTable driveParameters = Factory();
    drive::DriveTable driveTable{driveParameters};
    drive::MotorModel machine{driveTable, 1};
    drive::DriveCommands commands{driveTable, {30, 40}};
    drive::FaultInjector faults;
    drive::PseudoTerminal terminal;
    std::unique_ptr<drive::DriveServer> server;
    QTimer turning;
    QElapsedTimer sinceTick;
    std::vector<std::int32_t> references; ///< what the drive held, one after the other

    ValueStates states{table, link};
    DriveEmulator emulator{table};
    TrendRecorder recorder{table, document, link, emulator};
    StepTest steps{table, link, states, recorder, drive, asker, Short};

private:
    static ParameterTable Factory()
    {
        ParameterTable parameters;
        EXPECT_EQ(LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), parameters), QString());
        return parameters;
    }
};

TEST_F(StepTestTest, PutsBackExactlyWhatStoodBefore)
{
    const struct {
        const char *title;
        int holdMs;
        std::function<void()> ends;
    } cases[] = {
        {"after its time", 80, [] {}},
        {"by the user", 30000, [this] { steps.Restore(); }},
        {"before the link goes down", 30000, [this] { drive.GoOffLine(OffLineReason::User); }},
    };
    for (const auto &c : cases) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, c.title);
        GoOnLine();
        StepWish timed = wish;
        timed.holdMs = c.holdMs;
        asker.Expect("will be changed by 5.00 %", MsgAnswer::Yes);
        ASSERT_TRUE(steps.Make(timed));
        EXPECT_TRUE(asker.Shown.last().text.startsWith(QStringLiteral("The motor runs at ")));
        EXPECT_EQ(asker.Shown.last().safe, MsgAnswer::Cancel);
        // Seen by the machine, which turns less often than the line speaks.
        ASSERT_TRUE(Comes([this] { return !references.empty() && references.back() == Before + Size; }));
        ASSERT_TRUE(Comes([this] { return steps.State() != StepState::Waiting; }));
        c.ends();
        ASSERT_TRUE(Comes(StepState::Idle)) << qPrintable(steps.Sentence());
        ASSERT_TRUE(Comes([this] { return InDrive() == Before; }));
        Turn(TickSeconds);
        EXPECT_THAT(references, ElementsAre(Before, Before + Size, Before));
        EXPECT_EQ(table.Value(Param::Reference0), Before);
        EXPECT_FALSE(document.DriveModified || document.FileModified || steps.Leftover());
        drive.GoOffLine(OffLineReason::User);
    }
    EXPECT_EQ(steps.Tries().size(), 3U);
}

TEST_F(StepTestTest, MakesNoneThatMayNotBe)
{
    const struct {
        const char *sentence;
        std::function<void()> before;
        StepWish made;
        bool isAsked = false;
    } cases[] = {
        {"on line", [this] { drive.GoOffLine(OffLineReason::User); }, wish},
        {"takes -100.00 % to 100.00 %", [] {}, {.param = Param::Reference0, .rawSize = 7001}},
        {"does not act", [] {}, {.param = Param::Reference1, .rawSize = Size}},
        {"overwrites it", [this] { table.Row(Param::AnalogIn1Destination).Value = Param::Reference0; }, wish},
        {"velocity loop is not in use", [this] { table.Row(Param::DriveModeLSB).Value = 1; }, wish},
        {"jogs", [this] { table.Row(Param::JogStatus).Value = 1; }, wish},
        {"changed while you were asked",
         [this] {
             asker.WhileShown = [this] {
                 driveTable.Put(Param::Reference0, 7);
                 Comes([this] { return table.Value(Param::Reference0) == 7; });
             };
         },
         wish, true},
        {"reference of its own", [] {}, {.loop = TunedLoop::Current, .param = 97, .rawSize = Size}},
    };
    for (const auto &c : cases) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, c.sentence);
        GoOnLine();
        c.before();
        if (c.isAsked)
            asker.Expect("Make the step?", MsgAnswer::Yes);
        EXPECT_FALSE(steps.Make(c.made));
        EXPECT_TRUE(steps.Sentence().contains(QString::fromLatin1(c.sentence)))
            << qPrintable(steps.Sentence());
        asker.WhileShown = {};
        for (const int p : {Param::AnalogIn1Destination, Param::DriveModeLSB, Param::JogStatus})
            table.Row(p).Value = 0;
        drive.GoOffLine(OffLineReason::User);
    }
    EXPECT_EQ(server->Counts().writes, 0);
}

TEST_F(StepTestTest, AsksOnceMoreBeforeALargeStep)
{
    GoOnLine();
    asker.Expect("larger than 20 %", MsgAnswer::Yes);
    asker.Expect("will be changed by -20.01 %", MsgAnswer::Cancel);
    EXPECT_FALSE(steps.Make({.param = Param::Reference0, .rawSize = -2001}));
    asker.Expect("will be changed by 20.00 %", MsgAnswer::Cancel);
    EXPECT_FALSE(steps.Make({.param = Param::Reference0, .rawSize = 2000}));
    EXPECT_EQ(server->Counts().writes, 0);
    EXPECT_EQ(steps.State(), StepState::Idle);
}

TEST_F(StepTestTest, LeavesWhatSomebodyElseHasEntered)
{
    constexpr std::int32_t Other = 1234;
    const auto atThePanel = [this] { driveTable.Put(Param::Reference0, Other); };
    const struct {
        const char *title;
        std::function<void()> happens;
    } cases[] = {
        {"at the drive", atThePanel},
        {"in another window", [this] { table.SetParamValue(Param::Reference0, Other, true, false); }},
        {"just before it is put back",
         [&] {
             steps.Restore();
             atThePanel();
         }},
    };
    for (const auto &c : cases) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, c.title);
        driveTable.Put(Param::Reference0, Before);
        GoOnLine();
        asker.Expect("Make the step?", MsgAnswer::Yes);
        ASSERT_TRUE(steps.Make(wish));
        ASSERT_TRUE(Comes(StepState::Holding)) << qPrintable(steps.Sentence());
        c.happens();
        ASSERT_TRUE(Comes(StepState::Idle));
        EXPECT_TRUE(steps.Sentence().contains(QStringLiteral("30.00 % was not put back")))
            << qPrintable(steps.Sentence());
        ASSERT_TRUE(Comes([this] { return !table.WritePending; }));
        EXPECT_EQ(InDrive(), Other);
        document.DriveModified = false;
        drive.GoOffLine(OffLineReason::User);
    }
}

TEST_F(StepTestTest, WritesNothingByItselfAfterABrokenLink)
{
    const struct {
        const char *told;
        std::function<void()> before;
    } cases[] = {
        {"is still at 35.00 % in the drive; before the step it was at 30.00 %", [] {}},
        // What is on its way back then must not leave later.
        {"may still be at 35.00 %", [this] { steps.Restore(); }},
    };
    for (const auto &c : cases) {
        const ::testing::ScopedTrace trace(__FILE__, __LINE__, c.told);
        asker.Shown.clear();
        GoOnLine();
        asker.Expect("Make the step?", MsgAnswer::Yes);
        ASSERT_TRUE(steps.Make(wish));
        ASSERT_TRUE(Comes(StepState::Holding)) << qPrintable(steps.Sentence());
        asker.Expect("not Responding");
        asker.Expect(c.told);
        server.reset();
        c.before();
        ASSERT_TRUE(Comes([this] { return !link.PortOpen() && asker.Shown.size() == 3; }));
        EXPECT_FALSE(steps.CanRestoreLeftover());

        ServeAnew();
        GoOnLine();
        ASSERT_TRUE(Comes([this] { return steps.CanRestoreLeftover(); }));
        EXPECT_FALSE(steps.Make(wish));
        EXPECT_EQ(server->Counts().writes, 0);
        EXPECT_EQ(InDrive(), Before + Size);
        steps.RestoreLeftover();
        ASSERT_TRUE(Comes(StepState::Idle));
        EXPECT_EQ(InDrive(), Before);
        EXPECT_FALSE(steps.Leftover());
        drive.GoOffLine(OffLineReason::User);
    }
}

TEST_F(StepTestTest, IsNoPartOfWhatCanBeTakenBack)
{
    table.AddReadInterest(Param::PropGainA);
    GoOnLine();
    ASSERT_TRUE(Comes([this] { return states.Of(Param::PropGainA) == ValueState::Live; }));
    asker.Expect("Make the step?", MsgAnswer::Yes);
    ASSERT_TRUE(steps.Make(wish));
    ASSERT_TRUE(Comes(StepState::Holding)) << qPrintable(steps.Sentence());
    EXPECT_EQ(stack.Next(Way::Undo), nullptr);
    asker.OnEditValue = [this](int, std::int32_t) {
        steps.Restore();
        EXPECT_TRUE(Comes(StepState::Idle));
        return std::optional(1100);
    };
    rules.EditParameter(Access::ReadWrite, Param::PropGainA);
    EXPECT_EQ(InDrive(), Before);
    ASSERT_NE(stack.Next(Way::Undo), nullptr);
    EXPECT_EQ(stack.Next(Way::Undo)->rows.size(), 1U);
    EXPECT_TRUE(stack.Next(Way::Undo)->rows.contains(Param::PropGainA));
    document.DriveModified = false;
}

TEST_F(StepTestTest, SaysWhatTheDriveRefuses)
{
    GoOnLine();
    EXPECT_EQ(faults.Add(QStringLiteral("refuse:%1").arg(int(Param::Reference0)), drive::SteadyNow()),
              QString());
    asker.Expect("Make the step?", MsgAnswer::Yes);
    ASSERT_TRUE(steps.Make(wish));
    ASSERT_TRUE(Comes(StepState::Idle));
    EXPECT_TRUE(steps.Sentence().contains(QStringLiteral("refused 35.00 %"))) << qPrintable(steps.Sentence());
    EXPECT_EQ(table.Value(Param::Reference0), Before);
    EXPECT_TRUE(steps.Tries().empty());
}

TEST_F(StepTestTest, MeasuresWhatTheMachineDoes)
{
    GoOnLine();
    // Every tick of the machine, as no line could show it.
    TrendTrack truth{
        {.param = Param::VelFeedback, .attributes = table[Param::VelFeedback].Attributes, .name = {}}, {}};
    qint64 changedUs = 0;
    QTimer watch;
    QObject::connect(&turning, &QTimer::timeout, &watch, [&] {
        const qint64 now = MicrosecondsUp();
        if (changedUs == 0 && driveTable.Get(Param::SetpointB) == Size)
            changedUs = now - qint64(TickSeconds * 1e6);
        if (driveTable.Get(Param::SetpointB) == Size || changedUs == 0)
            truth.samples.Append({.timeUs = now, .rawValue = driveTable.Get(Param::VelFeedback)});
    });
    table.AddReadInterest(Param::SetpointB);
    ASSERT_TRUE(Comes([this] { return states.Of(Param::SetpointB) == ValueState::Live; }));
    asker.Expect("(234) Setpoint B goes from 0.00 % to 5.00 %", MsgAnswer::Yes);
    ASSERT_TRUE(steps.Make({.param = Param::SetpointB, .rawSize = Size, .holdMs = 2500}));
    ASSERT_TRUE(Comes(StepState::Idle)) << qPrintable(steps.Sentence());
    ASSERT_EQ(steps.Tries().size(), 1U);
    const StepTry &made = steps.Tries().front();
    ASSERT_EQ(made.result.failure, StepFailure::None) << qPrintable(SentenceOf(made.result.failure));
    EXPECT_THAT(made.gains,
                ElementsAre(std::pair(Param::PropGainA, 1000), std::pair(Param::IntegralTimeA, 500),
                            std::pair(Param::OvershootGainA, 0)));

    const StepResult real = StepResponseOf(truth, {.stepUs = changedUs, .target = {}});
    ASSERT_EQ(real.failure, StepFailure::None);
    const StepFigures &seen = made.result.figures;
    EXPECT_NEAR(seen.before, 30, 0.2);
    EXPECT_NEAR(seen.after, 35, 0.2);
    EXPECT_NEAR(seen.deadMs, real.figures.deadMs, 20 + seen.uncertaintyMs);
    EXPECT_NEAR(seen.riseMs, real.figures.riseMs, 15 + seen.uncertaintyMs);
    EXPECT_NEAR(seen.overshootPercent, real.figures.overshootPercent, 2 + seen.uncertaintyPercent);
    EXPECT_NEAR(seen.steadyError, 0, 0.2);
    EXPECT_LE(made.data->LastUs() - *made.data->triggerUs, 2'700'000);
}

} // namespace quorvik::testing
