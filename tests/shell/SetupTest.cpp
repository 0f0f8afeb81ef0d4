#include "shell/ShellFixture.h"

#include "shell/Engines.h"

#include <QComboBox>
#include <QTimer>

namespace quorvik::testing
{

namespace
{

constexpr int WaitMs = 8000;

/** Whole set-ups as a user makes them: through menus, clicks and keys, with a drive behind.
 */
class SetupTest : public ShellTest
{
protected:
    /** Runs steps on the modal window that open brings up, then waits until that window is gone. */
    void InModal(const std::function<void()> &open, const std::function<void(QWidget *)> &steps)
    {
        bool ran = false;
        QTimer::singleShot(0, main.get(), [&] {
            QWidget *modal = QApplication::activeModalWidget();
            ASSERT_NE(modal, nullptr);
            steps(modal);
            ran = true;
            if (modal->isVisible())
                modal->close();
        });
        open();
        EXPECT_TRUE(ran);
    }

    static void GoForward(QWidget *mentor, int pages)
    {
        for (int i = 0; i < pages; ++i)
            ClickIn(mentor, "CmdNav(3)");
    }

    /** The last page: ticks the save in the drive and finishes. */
    static void FinishWithSave(QWidget *mentor)
    {
        auto *save = FindIn<QAbstractButton>(mentor, "CheckSaveDriveParameters");
        EXPECT_TRUE(save->isEnabled());
        save->click();
        ClickIn(mentor, "CmdNav(4)");
        EXPECT_FALSE(mentor->isVisible());
    }

    /** Waits until all is written and saved; what the drive then holds it still holds after a loss of power.
     */
    void ExpectSaved(SimulatedDrive &drive, const std::map<int, std::int32_t> &expected)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !main->AllEngines().model.WritePending; }, WaitMs));
        EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(Param::SaveParameters) == 0; }, WaitMs));
        const auto expectAll = [&] {
            for (const auto &[number, rawValue] : expected)
                EXPECT_EQ(drive.Value(number), rawValue) << "parameter " << number;
        };
        expectAll();
        drive.Set(expected.begin()->first, 0);
        drive.Send(QStringLiteral("power-cycle"));
        expectAll();
    }
};

} // namespace

TEST_F(SetupTest, BasicSetupArrivesInTheDriveAndOutlivesItsPower)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    InModal([this] { Trigger("mnuMentorsBasic"); },
            [](QWidget *mentor) {
                GoForward(mentor, 2); // introduction, operating mode; the model comes from the drive
                TypeIn(mentor, "TextMotorData(0)", "120");
                TypeIn(mentor, "TextMotorData(1)", "240");
                TypeIn(mentor, "TextMotorData(2)", "1150");
                TypeIn(mentor, "TextMotorData(3)", "3.20");
                GoForward(mentor, 3);
                TypeIn(mentor, "TextRef(1)", "12.5");
                GoForward(mentor, 1);
                TypeIn(mentor, "TextRunAccelDecel(0)", "7.5");
                GoForward(mentor, 1);
                ClickIn(mentor, "OptionStartStopLogic(0)");
                GoForward(mentor, 1);
                TypeIn(mentor, "TextCurrentLimit(0)", "110");
                GoForward(mentor, 1);
                FinishWithSave(mentor);
            });
    EXPECT_FALSE(main->AllEngines().model.DriveModified);
    ExpectSaved(drive, {{123, 120},
                        {128, 240},
                        {199, 1150},
                        {125, 1150},
                        {339, 4000},
                        {218, 1250},
                        {226, 75},
                        {245, 1},
                        {99, 11000},
                        {100, -15000}});
}

TEST_F(SetupTest, TheMentorOfARelaysWindowSetsThatRelayUpInTheDrive)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    Trigger("mnuBlockRelayOutput(2)");
    QWidget *relay = Find("FormRelayOutputs");
    InModal([relay] { FindIn<QAbstractButton>(relay, "CommandIOMentor")->click(); },
            [](QWidget *mentor) {
                GoForward(mentor, 3); // introduction, outputs, relay 2: all chosen by where it was opened
                auto *source = FindIn<QComboBox>(mentor, "ComboSource");
                source->setCurrentIndex(source->findText(QStringLiteral("193 "), Qt::MatchStartsWith));
                GoForward(mentor, 1);
                TypeIn(mentor, "TextOutputBiasGain(0)", "80");
                TypeIn(mentor, "TextOutputBiasGain(1)", "20");
                GoForward(mentor, 1);
                FinishWithSave(mentor);
            });
    ExpectSaved(drive, {{70, 193}, {76, 8000}, {79, 2000}, {73, 1}});
}

} // namespace quorvik::testing
