#include "shell/ShellFixture.h"

namespace quorvik::testing
{

/** A whole set-up as a user makes it: through menus, clicks and keys, with a drive behind. */
TEST_F(ShellTest, ABasicSetupArrivesInTheDriveAndOutlivesItsPower)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    InModal([this] { Trigger("mnuMentorsBasic"); },
            [](const Controls &mentor) {
                const auto goForward = [&mentor](int pages) {
                    for (int i = 0; i < pages; ++i)
                        mentor.Click("CmdNav(3)");
                };
                goForward(2); // introduction, operating mode; the model comes from the drive
                mentor.TypeAll("TextMotorData", {"120", "240", "1150", "3.20"});
                goForward(3);
                mentor.Type("TextRef(1)", "12.5");
                goForward(1);
                mentor.Type("TextRunAccelDecel(0)", "7.5");
                goForward(1);
                mentor.Click("OptionStartStopLogic(0)");
                goForward(1);
                mentor.Type("TextCurrentLimit(0)", "110");
                goForward(1);
                mentor.Click("CheckSaveDriveParameters");
                mentor.Click("CmdNav(4)");
                EXPECT_FALSE(mentor.window->isVisible());
            });
    EXPECT_FALSE(Set().DriveModified);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !Table().WritePending && drive.Value(Param::SaveParameters) == 0; }, 8000));
    const std::map<int, std::int32_t> expected = {{123, 120},  {128, 240},   {199, 1150}, {125, 1150},
                                                  {339, 4000}, {218, 1250},  {226, 75},   {245, 1},
                                                  {99, 11000}, {100, -15000}};
    drive.Set(expected.begin()->first, 0);
    drive.Send(Name("power-cycle"));
    for (const auto &[number, rawValue] : expected)
        EXPECT_EQ(drive.Value(number), rawValue) << "parameter " << number;
}

} // namespace quorvik::testing
