#include "shell/ShellFixture.h"

#include "shell/Engines.h"

namespace quorvik::testing
{

constexpr int WaitMs = 8000;

/** Whole set-ups as a user makes them: through menus, clicks and keys, with a drive behind. */
class SetupTest : public ShellTest
{
protected:
    static void GoForward(const Controls &mentor, int pages)
    {
        for (int i = 0; i < pages; ++i)
            mentor.Click("CmdNav(3)");
    }

    /** The last page: ticks the save in the drive and finishes. */
    static void FinishWithSave(const Controls &mentor)
    {
        EXPECT_TRUE(mentor.Enabled("CheckSaveDriveParameters"));
        mentor.Click("CheckSaveDriveParameters");
        mentor.Click("CmdNav(4)");
        EXPECT_FALSE(mentor.window->isVisible());
    }

    /** Waits until all is written and saved; what the drive then holds it still holds after a loss of power.
     */
    void ExpectSaved(SimulatedDrive &drive, const std::map<int, std::int32_t> &expected)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !Table().WritePending; }, WaitMs));
        EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(Param::SaveParameters) == 0; }, WaitMs));
        const auto expectAll = [&] {
            for (const auto &[number, rawValue] : expected)
                EXPECT_EQ(drive.Value(number), rawValue) << "parameter " << number;
        };
        expectAll();
        drive.Set(expected.begin()->first, 0);
        drive.Send(Name("power-cycle"));
        expectAll();
    }
};

TEST_F(SetupTest, BasicSetupArrivesInTheDriveAndOutlivesItsPower)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    InModal([this] { Trigger("mnuMentorsBasic"); },
            [](const Controls &mentor) {
                GoForward(mentor, 2); // introduction, operating mode; the model comes from the drive
                mentor.TypeAll("TextMotorData", {"120", "240", "1150", "3.20"});
                GoForward(mentor, 3);
                mentor.Type("TextRef(1)", "12.5");
                GoForward(mentor, 1);
                mentor.Type("TextRunAccelDecel(0)", "7.5");
                GoForward(mentor, 1);
                mentor.Click("OptionStartStopLogic(0)");
                GoForward(mentor, 1);
                mentor.Type("TextCurrentLimit(0)", "110");
                GoForward(mentor, 1);
                FinishWithSave(mentor);
            });
    EXPECT_FALSE(Set().DriveModified);
    const std::map<int, std::int32_t> expected = {{123, 120},  {128, 240},   {199, 1150}, {125, 1150},
                                                  {339, 4000}, {218, 1250},  {226, 75},   {245, 1},
                                                  {99, 11000}, {100, -15000}};
    ExpectSaved(drive, expected);
}

TEST_F(SetupTest, TheMentorOfARelaysWindowSetsThatRelayUpInTheDrive)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    Trigger("mnuBlockRelayOutput(2)");
    const Controls relay(Find("FormRelayOutputs"));
    InModal([&relay] { relay.Click("CommandIOMentor"); },
            [](const Controls &mentor) {
                GoForward(mentor, 3); // introduction, outputs, relay 2: all chosen by where it was opened
                mentor.PickParam("ComboSource", 193);
                GoForward(mentor, 1);
                mentor.TypeAll("TextOutputBiasGain", {"80", "20"});
                GoForward(mentor, 1);
                FinishWithSave(mentor);
            });
    ExpectSaved(drive, {{70, 193}, {76, 8000}, {79, 2000}, {73, 1}});
}

} // namespace quorvik::testing
