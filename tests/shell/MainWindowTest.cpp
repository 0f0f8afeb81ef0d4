#include "shell/ShellFixture.h"

#include "shell/Commands.h"
#include "shell/StatusBarMain.h"

#include <QLabel>
#include <QMenu>

namespace quorvik::testing
{

TEST_F(ShellTest, EveryEntryOfTheTreeDoesSomething)
{
    LoadQuietly();
    const CommandTable commands = AllCommands(*main);
    // The two hidden menus have no handlers; a menu's own entry has none either.
    for (auto entry = main->Menus().Entries().begin(); entry != main->Menus().Entries().end(); ++entry) {
        const bool isHidden = entry.key().startsWith(QLatin1String("mnuDebug")) ||
                              entry.key().startsWith(QLatin1String("mnuCheckout"));
        EXPECT_TRUE(isHidden || entry.value()->menu() || commands.contains(entry.key()))
            << qPrintable(entry.key());
    }
    for (auto command = commands.begin(); command != commands.end(); ++command)
        EXPECT_TRUE(main->Menus().Entry(command.key())) << qPrintable(command.key());
    EXPECT_FALSE(Entry("mnuDebug")->isVisible());
    EXPECT_FALSE(Entry("mnuCheckout")->isVisible());
}

TEST_F(ShellTest, TheTitleFollowsTheFileAndItsMark)
{
    LoadQuietly();
    Model &model = main->AllEngines().model;
    EXPECT_EQ(main->windowTitle(), QStringLiteral("Quorvik - [unnamed]"));
    model.FileName = folder.filePath(QStringLiteral("line 3.Svx"));
    model.SetParamValue(226, 120, true, false);
    EXPECT_TRUE(main->windowTitle().endsWith(QStringLiteral("*]"))) << qPrintable(main->windowTitle());
    EXPECT_TRUE(main->windowTitle().contains(QStringLiteral("line 3.Svx")));
}

TEST_F(ShellTest, OnlyThePanelOfTheLinkSwitchesIt)
{
    LoadQuietly();
    UseDrive(SimulatedDrive());
    QTest::mouseClick(Find("DriveModel"), Qt::LeftButton);
    EXPECT_TRUE(asker.Shown.isEmpty());

    asker.Expect(QStringLiteral("Write current parameter settings to drive?"), MsgAnswer::Cancel);
    QTest::mouseClick(Find("ComStatus"), Qt::LeftButton);
    EXPECT_EQ(asker.Shown.size(), 1);

    asker.Expect(QStringLiteral("Write current parameter settings to drive?"), MsgAnswer::Cancel);
    Find("ComStatus")->setFocus();
    QTest::keyClick(Find("ComStatus"), Qt::Key_Space);
    EXPECT_EQ(asker.Shown.size(), 2);
    EXPECT_FALSE(Entry("mnuToolsOnline")->isChecked());
}

TEST_F(ShellTest, TheCheckMarkStaysWithTheLinkWhenTheUserCancels)
{
    LoadQuietly();
    asker.Expect(QStringLiteral("Write current parameter settings to drive?"), MsgAnswer::Cancel);
    Trigger("mnuToolsOnline");
    EXPECT_FALSE(Entry("mnuToolsOnline")->isChecked());
}

TEST_F(ShellTest, LinkCommandsFollowTheLink)
{
    const SimulatedDrive drive;
    UseDrive(drive);
    LoadQuietly();
    const char *offlineOnly[] = {"mnuFileRead", "mnuFileWrite", "mnuFileNew", "mnuToolsSelectModel",
                                 "mnuToolsIOSimulator"};
    const char *onlineOnly[] = {"mnuToolsReInitDrive(1)", "mnuToolsReInitDrive(2)", "mnuToolsSaveDrive",
                                "mnuToolsLoadDrive"};
    const auto expectAll = [&](bool isOnline) {
        for (const char *name : offlineOnly)
            EXPECT_NE(Entry(name)->isEnabled(), isOnline) << name;
        for (const char *name : onlineOnly)
            EXPECT_EQ(Entry(name)->isEnabled(), isOnline) << name;
        EXPECT_EQ(Entry("mnuToolsOnline")->isChecked(), isOnline);
        EXPECT_EQ(Find<QToolButton>("ComStatus")->text(),
                  isOnline ? QStringLiteral("OnLine") : QStringLiteral("OffLine"));
    };
    expectAll(false);
    DriveLink &link = main->AllEngines().link;
    link.GoOnLine();
    ASSERT_TRUE(link.PortOpen());
    expectAll(true);
    link.GoOffLine(0);
    expectAll(false);
}

TEST_F(ShellTest, ASecondClickEndsTheWaitForASilentDrive)
{
    SimulatedDrive drive;
    UseDrive(drive);
    LoadQuietly();
    drive.Send(QStringLiteral("fault silent"));
    DriveLink &link = main->AllEngines().link;
    QTimer::singleShot(100, main.get(), [&] { QTest::mouseClick(Find("ComStatus"), Qt::LeftButton); });
    link.GoOnLine();
    EXPECT_FALSE(link.PortOpen());
    EXPECT_EQ(Find<QToolButton>("ComStatus")->text(), QStringLiteral("OffLine"));
}

TEST_F(ShellTest, AFailedSaveIsToldInTheStatusBar)
{
    LoadQuietly();
    asker.ExpectSave(folder.filePath(QStringLiteral("no such folder/a.Svx")));
    Trigger("mnuFileSave(1)");
    EXPECT_FALSE(Find<QLabel>("Message")->text().isEmpty());
    EXPECT_EQ(Find<QLabel>("Message")->textFormat(), Qt::PlainText);
}

TEST_F(ShellTest, HelpEntriesOpenTheirTopics)
{
    LoadQuietly();
    for (const char *name : {"mnuHelpContents", "mnuHelpSearch", "mnuHelpSarvexManual"})
        Trigger(name);
    EXPECT_EQ(help.Topics, QStringList({QStringLiteral("<contents>"), QStringLiteral("<search>"),
                                        QStringLiteral("Sarvex Manual.htm")}));
}

} // namespace quorvik::testing
