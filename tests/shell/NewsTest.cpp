#include "shell/ShellFixture.h"

#include "history/JournalReader.h"
#include "platform/LoginName.h"
#include "platform/Ports.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace quorvik::testing
{

class NewsTest : public ShellTest
{
protected:
    QString News() const
    {
        const auto *message = main->findChild<QLabel *>(QStringLiteral("Message"));
        return message->isVisible() ? message->text() : QString();
    }
    ::testing::AssertionResult Says(const QString &words)
    {
        if (QTest::qWaitFor([&] { return News().contains(words); }, 6000))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << News().toStdString();
    }
    /** Clicks what the line in front offers. */
    void Choose(const QString &caption)
    {
        for (auto *button : main->findChildren<QPushButton *>())
            if (button->objectName().startsWith(QLatin1String("CommandNotice")) && button->isVisible() &&
                button->text() == caption)
                return button->click();
        FAIL() << caption.toStdString() << " is not offered by: " << News().toStdString();
    }
    ValueState StateOf(int p) const { return main->AllEngines().states.Of(p); }
};

TEST_F(NewsTest, ALostDriveIsFoundAtWhateverNumberItsAdapterReturns)
{
    const SimulatedDrive before;
    const SimulatedDrive after;
    QString path = before.LinkPath();
    devices = [&path] {
        return QList<SerialDevice>{{path, QStringLiteral("Adapter (A7)"), QStringLiteral("Adapter"),
                                    QStringLiteral("A7"), QStringLiteral("0403:6001")}};
    };
    GoOnLine(before);
    EXPECT_TRUE(Drive().ReadAll().IsDone());
    EXPECT_EQ(StateOf(Param::MotorRPM), ValueState::Live);

    asker.Expect("not Responding");
    const_cast<SimulatedDrive &>(before).Send(QStringLiteral("fault drop"));
    ASSERT_TRUE(Says(QStringLiteral("No answer from the drive since ")));
    EXPECT_TRUE(News().contains(QStringLiteral("on Com16 (%1). Values are old.").arg(path)));
    EXPECT_EQ(StateOf(Param::MotorRPM), ValueState::Lost);
    Table().SetValue(Param::MotorRPM, 4321, ChangeCause::Command);
    main->AllEngines().emulator.TimerEmulateSvx_Timer();
    EXPECT_EQ(Table().Value(Param::MotorRPM), 4321);

    path = after.LinkPath();
    ASSERT_TRUE(Says(QStringLiteral("The drive answers again on Com16 (%1).").arg(path)));
    Choose(QStringLiteral("Read from drive"));
    EXPECT_TRUE(Link().PortOpen());
    EXPECT_EQ(StateOf(Param::MotorRPM), ValueState::Live);
}

TEST_F(NewsTest, EntriesThatDidNotArriveAreReviewedAndNotSentAgain)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    EXPECT_TRUE(Drive().ReadAll().IsDone());
    const std::int32_t inDrive = drive.Value(Param::FwdAccelA);
    drive.Send(QStringLiteral("fault drop"));
    Table().SetParamValue(Param::FwdAccelA, 123, true, false);
    Set().DriveModified = false;
    asker.Expect("not Responding");
    ASSERT_TRUE(Says(QStringLiteral("No answer")));
    drive.Send(QStringLiteral("faults off"));
    ASSERT_TRUE(Says(QStringLiteral("The drive answers again")));
    asker.Expect("has been modified.", MsgAnswer::No);
    Choose(QStringLiteral("Read from drive"));
    ASSERT_TRUE(Says(QStringLiteral("1 entry had not reached the drive when the link was lost.")));
    EXPECT_EQ(drive.Value(Param::FwdAccelA), inDrive);
    EXPECT_EQ(Table().Value(Param::FwdAccelA), inDrive);
    const std::optional<ParameterSet> kept = main->Comparing().UnwrittenEntries();
    ASSERT_TRUE(kept);
    EXPECT_TRUE(kept->Knows(Param::FwdAccelA) && !kept->Knows(Param::FwdDecelA));
    EXPECT_EQ(kept->Value(Param::FwdAccelA), 123);
    Choose(QStringLiteral("Review"));
    EXPECT_TRUE(
        QTest::qWaitFor([this] { return main->findChild<QWidget *>(QStringLiteral("FormCompare")); }));
}

TEST_F(NewsTest, ASetOfARunningDriveAndChangesOutsideTheDrivesMemoryCanBeSettledThere)
{
    SimulatedDrive drive;
    UseDrive(drive);
    LoadQuietly();
    EXPECT_TRUE(Says(QStringLiteral("Off line: values are this set's, outputs are emulated.")));
    Table().SetValue(Param::DriveState, 1, ChangeCause::File);
    ASSERT_TRUE(Says(QStringLiteral("This set was saved while the drive ran.")));
    Choose(QStringLiteral("Treat as stopped"));
    EXPECT_TRUE(Table().DriveIsStopped());

    Drive().GoOnLine();
    Table().SetParamValue(Param::FwdAccelA, 77, true, false);
    ASSERT_TRUE(Says(QStringLiteral("The drive runs with 1 change that is not in its memory.")));
    Choose(QStringLiteral("Save in drive"));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !Table().WritePending && drive.Value(Param::SaveParameters) == 0; }));
    drive.Send(QStringLiteral("power-cycle"));
    EXPECT_EQ(drive.Value(Param::FwdAccelA), 77);
    EXPECT_FALSE(News().contains(QStringLiteral("memory")));
}

TEST_F(NewsTest, WaitingSaysForWhatAndCanBeEnded)
{
    SimulatedDrive drive;
    drive.Send(QStringLiteral("fault drop"));
    UseDrive(drive);
    LoadQuietly();
    bool hasWaited = false;
    QTimer::singleShot(450, main.get(), [&] {
        hasWaited = bool(Says(QStringLiteral("Waiting for the first answer of the drive on Com16")));
        EXPECT_EQ(Text("DriveStatus"), "");
        Choose(QStringLiteral("Cancel"));
    });
    EXPECT_FALSE(Drive().GoOnLine().IsDone());
    EXPECT_TRUE(hasWaited && asker.Shown.isEmpty());
}

TEST_F(NewsTest, ATripIsNamedInThePanelAndTheLineAndLeadsToTheLog)
{
    SimulatedDrive drive(SimulatedDrive::Live());
    GoOnLine(drive);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !Table().DriveStateUnread; }));
    Engines &engines = main->AllEngines();
    engines.tripTrend.SetOn(true);
    engines.trend.AddChannel(Param::VelFeedback, TrendPace::Fast);
    engines.trend.Start();
    drive.Send(QStringLiteral("trip 64"));
    ASSERT_TRUE(Says(QStringLiteral("Phase Loss at ")));
    EXPECT_TRUE(QTest::qWaitFor([this] { return Text("DriveFault") == ": Phase Loss"; }));
    EXPECT_EQ(Text("DriveStatus"), "EStop");
    for (const TrendRecorder *recorder : {&engines.trend, &engines.beforeTrips}) {
        const std::vector<TrendMark> &marks = recorder->Data().marks;
        const auto fault = std::ranges::find(marks, TrendMarkKind::Fault, &TrendMark::kind);
        ASSERT_NE(fault, marks.end()) << (recorder == &engines.trend);
        EXPECT_TRUE(fault->text.startsWith(Name("Trip 1: "))) << fault->text.toStdString();
    }
    Click("DriveFault");
    EXPECT_TRUE(main->findChild<QWidget *>(QStringLiteral("FormFaultLog")));
    Drive().GoOffLine(OffLineReason::BrokenOff);
    EXPECT_FALSE(Find("DriveFault")->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !main->TheDesk().RecordingOfTrip(1).isEmpty(); }))
        << "what there was of it is kept when the link ends";
}

TEST_F(NewsTest, TheHistoryTellsWhatBecomesOfItAndWhoWorked)
{
    const QString path = folder.filePath(QStringLiteral("data/quorvik/history.sqlite"));
    for (const bool keepsName : {true, false}) {
        main.reset();
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write("no history") > 0);
        file.close();
        Store("Options", "Keep Login Name in History", keepsName ? "True" : "False");
        MakeWindow();
        LoadQuietly();
        EXPECT_TRUE(Says(QStringLiteral("was begun anew. The old one lies in ")));
        EXPECT_EQ(Entry("mnuOptionsKeepLoginName")->isChecked(), keepsName);
        {
            const Intent intent(Table(), Origin::EditDialog);
            Table().SetParamValue(Param::Reference0, 5, true, true);
        }
        Engines &engines = main->AllEngines();
        engines.recorder.HandOver();
        ASSERT_TRUE(engines.journal.Flush(6000));
        const std::vector<ShownAction> actions = JournalReader(path).Actions({}, 0, 9);
        ASSERT_EQ(actions.size(), 1U);
        EXPECT_EQ(actions[0].run.user, keepsName ? LoginName() : QString());

        // What cannot be written is told as long as that is so.
        const QString away = folder.filePath(QStringLiteral("away"));
        ASSERT_TRUE(QDir().rename(QFileInfo(path).path(), away));
        QFile obstacle(QFileInfo(path).path());
        ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
        Table().SetParamValue(Param::Reference0, 6, true, true);
        engines.recorder.HandOver();
        EXPECT_TRUE(Says(QStringLiteral("The history is not kept at present: its file cannot be made")));
        obstacle.remove();
        ASSERT_TRUE(QDir().rename(away, QFileInfo(path).path()));
    }
}

} // namespace quorvik::testing
