#include "shell/ShellFixture.h"

#include "desktop/ValueBox.h"
#include "shell/Engines.h"

#include <QAbstractSlider>
#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

namespace quorvik::testing
{

namespace
{

constexpr int WaitMs = 8000;
constexpr int NextButton = 3;
constexpr int FinishButton = 4;

/** Whole set-ups as a user makes them: through menus, clicks and keys, with a drive or the emulator behind.
 */
class SetupTest : public ShellTest
{
protected:
    void GoOnLine(const SimulatedDrive &drive)
    {
        UseDrive(drive);
        LoadQuietly();
        main->AllEngines().link.GoOnLine();
        ASSERT_TRUE(main->AllEngines().link.PortOpen());
    }

    /** Runs steps on the modal window that open brings up, then waits until that window is gone. */
    void InModal(const std::function<void()> &open, const std::function<void(QWidget &)> &steps)
    {
        bool ran = false;
        QTimer::singleShot(0, main.get(), [&] {
            QWidget *modal = QApplication::activeModalWidget();
            ASSERT_NE(modal, nullptr);
            steps(*modal);
            ran = true;
            if (modal->isVisible())
                modal->close();
        });
        open();
        EXPECT_TRUE(ran);
    }

    static QWidget *Control(QWidget &window, const char *name, int index)
    {
        auto *control =
            window.findChild<QWidget *>(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index));
        EXPECT_NE(control, nullptr) << name << '(' << index << ')';
        return control;
    }

    static void Press(QWidget &window, const char *name, int index)
    {
        QTest::mouseClick(Control(window, name, index), Qt::LeftButton);
    }

    static void Type(QWidget &window, const char *name, int index, const char *text)
    {
        auto *box = qobject_cast<QLineEdit *>(Control(window, name, index));
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QString::fromLatin1(text));
    }

    static void GoForward(QWidget &mentor, int pages)
    {
        for (int i = 0; i < pages; ++i)
            Press(mentor, "CmdNav", NextButton);
    }

    /** The last page: ticks the save in the drive and finishes. */
    static void FinishWithSave(QWidget &mentor)
    {
        auto *save = mentor.findChild<QAbstractButton *>(QStringLiteral("CheckSaveDriveParameters"));
        ASSERT_NE(save, nullptr);
        EXPECT_TRUE(save->isEnabled());
        save->click();
        Press(mentor, "CmdNav", FinishButton);
        EXPECT_FALSE(mentor.isVisible());
    }

    /** Waits until nothing is left to write and the drive has saved. */
    void WaitUntilSaved(SimulatedDrive &drive)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !main->AllEngines().model.WritePending; }, WaitMs));
        EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(Param::SaveParameters) == 0; }, WaitMs));
    }

    void ExpectInDrive(SimulatedDrive &drive, const std::map<int, std::int32_t> &expected)
    {
        for (const auto &[number, rawValue] : expected)
            EXPECT_EQ(drive.Value(number), rawValue) << "parameter " << number;
    }

    template<typename Window> Window *OpenChild(const char *menu, const char *name)
    {
        Trigger(menu);
        auto *child = Find<Window>(name);
        EXPECT_NE(child, nullptr) << name;
        return child;
    }
};

} // namespace

TEST_F(SetupTest, BasicSetupArrivesInTheDriveAndOutlivesItsPower)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    InModal([this] { Trigger("mnuMentorsBasic"); },
            [](QWidget &mentor) {
                GoForward(mentor, 2); // introduction, operating mode; the model comes from the drive
                Type(mentor, "TextMotorData", 0, "120");
                Type(mentor, "TextMotorData", 1, "240");
                Type(mentor, "TextMotorData", 2, "1150");
                Type(mentor, "TextMotorData", 3, "3.20");
                GoForward(mentor, 3);
                Type(mentor, "TextRef", 1, "12.5");
                GoForward(mentor, 1);
                Type(mentor, "TextRunAccelDecel", 0, "7.5");
                GoForward(mentor, 1);
                Press(mentor, "OptionStartStopLogic", 0);
                GoForward(mentor, 1);
                Type(mentor, "TextCurrentLimit", 0, "110");
                GoForward(mentor, 1);
                FinishWithSave(mentor);
            });
    EXPECT_FALSE(main->AllEngines().model.DriveModified);
    WaitUntilSaved(drive);
    const std::map<int, std::int32_t> expected = {{123, 120},  {128, 240},   {199, 1150}, {125, 1150},
                                                  {339, 4000}, {218, 1250},  {226, 75},   {245, 1},
                                                  {99, 11000}, {100, -15000}};
    ExpectInDrive(drive, expected);
    drive.Set(218, 0);
    drive.Send(QStringLiteral("power-cycle"));
    ExpectInDrive(drive, expected);
}

TEST_F(SetupTest, TheMentorOfARelaysWindowSetsThatRelayUpInTheDrive)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    auto *relay = OpenChild<QWidget>("mnuBlockRelayOutput(2)", "FormRelayOutputs");
    InModal([relay] { relay->findChild<QAbstractButton *>(QStringLiteral("CommandIOMentor"))->click(); },
            [](QWidget &mentor) {
                GoForward(mentor, 3); // introduction, outputs, relay 2: all chosen by where it was opened
                auto *source = mentor.findChild<QComboBox *>(QStringLiteral("ComboSource"));
                source->setCurrentIndex(source->findText(QStringLiteral("193 "), Qt::MatchStartsWith));
                GoForward(mentor, 1);
                Type(mentor, "TextOutputBiasGain", 0, "80");
                Type(mentor, "TextOutputBiasGain", 1, "20");
                GoForward(mentor, 1);
                FinishWithSave(mentor);
            });
    WaitUntilSaved(drive);
    const std::map<int, std::int32_t> expected = {{70, 193}, {76, 8000}, {79, 2000}, {73, 1}};
    ExpectInDrive(drive, expected);
    drive.Send(QStringLiteral("power-cycle"));
    ExpectInDrive(drive, expected);
}

TEST_F(SetupTest, OffLineTheTerminalStripReachesTheBlockWindows)
{
    LoadQuietly();
    main->show();
    auto *simulator = OpenChild<QWidget>("mnuToolsIOSimulator", "FormIOSimulator");
    auto *logic = OpenChild<QWidget>("mnuBlockStartStopLogic", "FormStartStopLogic");
    auto *setpoints = OpenChild<QWidget>("mnuBlockSetpointS", "FormSetpoints");
    auto *relay = OpenChild<QWidget>("mnuBlockRelayOutput(2)", "FormRelayOutputs");
    const auto text = [](QWidget *window, int row) {
        return qobject_cast<ValueBox *>(Control(*window, "Text1", row))->text();
    };

    Press(*simulator, "OptionDigitalInputState", 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return text(logic, 4) == QStringLiteral("True"); }, WaitMs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return text(relay, 4) == QStringLiteral("1"); }, WaitMs));

    auto *level = simulator->findChild<QAbstractSlider *>(QStringLiteral("HScrollAnalogInputStatus"));
    level->setFocus();
    QTest::keyClick(level, Qt::Key_End);
    EXPECT_TRUE(QTest::qWaitFor([&] { return text(setpoints, 3) == QStringLiteral("100.00 %"); }, WaitMs));
    QTest::keyClick(level, Qt::Key_Home);
    EXPECT_TRUE(QTest::qWaitFor([&] { return text(setpoints, 3) == QStringLiteral("-100.00 %"); }, WaitMs));
}

} // namespace quorvik::testing
