#include "model/TextTables.h"
#include "shell/LessonCard.h"
#include "shell/ShellFixture.h"
#include "shell/WindowCommands.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

namespace quorvik::testing
{

namespace
{

constexpr int startLimitMs = 20000;

class StartPageTest : public ShellTest
{
protected:
    bool IsShown() const { return Find("StartPage")->isVisible(); }
    /** Has the program find the simulated drive of this build. */
    void FindProgram()
    {
        QFile::link(QStringLiteral(QUORVIK_DRIVE_PROGRAM), folder.filePath(QStringLiteral("sarvex-drive")));
    }
    bool GoesOnLine() const
    {
        return QTest::qWaitFor([this] { return Link().PortOpen() && !Table().DriveStateUnread; },
                               startLimitMs);
    }
    bool Says(const char *words) const
    {
        const auto *message = main->findChild<QLabel *>(QStringLiteral("Message"));
        return QTest::qWaitFor([&] { return message->isVisible() && message->text().contains(Name(words)); },
                               startLimitMs);
    }
    int PortNumber() const { return Link().MSComm1.CommPort(); }
};

TEST_F(StartPageTest, StandsWhereNoWindowIsOpenInTheFrame)
{
    LoadQuietly();
    EXPECT_TRUE(IsShown());
    Trigger("mnuBlockAccelDecel");
    EXPECT_FALSE(IsShown());
    Trigger("mnuBlockVloop");
    main->Windows().MinimizeAll();
    EXPECT_FALSE(QTest::qWaitFor([this] { return IsShown(); }, 50)) << "what is minimised is open";
    main->Windows().RestoreAll();
    Trigger("mnuWindowFrame");
    const auto *area = main->findChild<QMdiArea *>();
    ASSERT_EQ(area->subWindowList().size(), 1);
    EXPECT_FALSE(IsShown());
    area->subWindowList().first()->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return IsShown(); })) << "one that stands outside does not count";
    main->Windows().CloseAll();
    EXPECT_TRUE(IsShown());
}

TEST_F(StartPageTest, ConnectsToTheMarkedPort)
{
    const SimulatedDrive drive;
    UseDrive(drive);
    LoadQuietly();
    Click("CommandConnect");
    EXPECT_TRUE(GoesOnLine());
    EXPECT_FALSE(Enabled("CommandConnect"));
    EXPECT_FALSE(Enabled("CommandSimulate"));
    EXPECT_TRUE(Find<QLabel>("LabelLink")->text().contains(Name("Com16")));
    Drive().GoOffLine(OffLineReason::CommandEnded);
    EXPECT_TRUE(Enabled("CommandConnect"));
}

TEST_F(StartPageTest, ASimulatedDriveIsStartedPlayedAndEnded)
{
    FindProgram();
    LoadQuietly();
    auto *models = Find<QComboBox>("ComboModel");
    models->setCurrentIndex(models->findText(Name("SVN060-000"), Qt::MatchStartsWith));
    Find<QCheckBox>("CheckMoves")->setChecked(false);
    Click("CommandSimulate");
    EXPECT_FALSE(Enabled("CommandSimulate")) << "it is starting";
    ASSERT_TRUE(GoesOnLine());
    EXPECT_TRUE(ModelText(Table().Value(Param::DriveModel)).contains(Name("SVN060-000")));
    EXPECT_TRUE(Says("On line with a simulated drive."));
    EXPECT_EQ(PortNumber(), 0);

    Drive().GoOffLine(OffLineReason::CommandEnded);
    Drive().GoOnLine();
    EXPECT_TRUE(Link().PortOpen()) << "it is still there";
    Drive().GoOffLine(OffLineReason::CommandEnded);

    main->EndUnasked();
    EXPECT_EQ(PortNumber(), 16);
    EXPECT_EQ(Setting("Options", "CommPort").toStdString(), "16") << "the user's own port is kept";
}

TEST_F(StartPageTest, ADriveThatDoesNotStartIsToldWithoutHarm)
{
    // Neither beside the program, nor in the one folder of programs that there is.
    LoadQuietly();
    Click("CommandSimulate");
    EXPECT_TRUE(Says("sarvex-drive is not there"));
    EXPECT_EQ(PortNumber(), 16);
    EXPECT_TRUE(Enabled("CommandSimulate"));

    QFile broken(folder.filePath(QStringLiteral("sarvex-drive")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("#!/bin/sh\nexit 3\n");
    broken.close();
    broken.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    Click("CommandSimulate");
    EXPECT_TRUE(Says("could not be started"));
    EXPECT_EQ(PortNumber(), 16);
    EXPECT_TRUE(Enabled("CommandSimulate"));
}

TEST_F(StartPageTest, ALessonTicksOffWhatWasDoneAndNothingElse)
{
    LoadQuietly();
    Click("CommandLesson(2)");
    auto *card = main->findChild<LessonCard *>();
    const auto reaches = [card](int count) {
        return QTest::qWaitFor([card, count] { return card->DoneCount() >= count; }) &&
               card->DoneCount() == count;
    };
    ASSERT_TRUE(card->isVisible());
    Trigger("mnuBlockVloop");
    Table().SetParamValue(Param::FwdAccelA, 77, true, true);
    Trigger("mnuBlockAccelDecel");
    EXPECT_TRUE(reaches(1)) << "the value was entered before its step";
    Table().SetParamValue(Param::FwdAccelA, 88, true, true);
    EXPECT_TRUE(reaches(2));
    Table().SetParamValue(Param::FwdAccelA, 77, true, true);
    EXPECT_TRUE(reaches(3));
    Table().SetParamValue(Param::FwdAccelA, 88, true, true);
    // Off line there is no drive to keep it in.
    EXPECT_TRUE(QTest::qWaitFor([card] { return card->DoneCount() == 5; }));
    Set().FileModified = false;
    EXPECT_FALSE(QTest::qWaitFor([card] { return card->DoneCount() > 5; }, 500)) << "there is no file";
    Click("CommandCloseLesson");
    EXPECT_FALSE(card->isVisible());
}

} // namespace

} // namespace quorvik::testing
