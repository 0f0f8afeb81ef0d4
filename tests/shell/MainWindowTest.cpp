#include "shell/ShellFixture.h"

#include "platform/LastFolder.h"
#include "shell/StatusBarMain.h"
#include "shell/UserSettings.h"

#include <QDir>
#include <QLabel>

namespace quorvik::testing
{

TEST_F(ShellTest, OnlyItsPanelAndItsEntrySwitchTheLinkAndACancelLeavesItAsItWas)
{
    LoadQuietly();
    UseDrive(SimulatedDrive());
    Click("DriveModel");
    EXPECT_TRUE(asker.Shown.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([this] { return Text("DriveModel") == "SVR100-000"; }));
    EXPECT_EQ(Find("DriveModel")->accessibleDescription(), Find<QLabel>("DriveModel")->text());
    Find("ComStatus")->setFocus();
    const std::function<void()> ways[] = {[this] { Click("ComStatus"); },
                                          [this] { QTest::keyClick(Find("ComStatus"), Qt::Key_Space); },
                                          [this] { Trigger("mnuToolsOnline"); }};
    for (const auto &toggle : ways) {
        asker.Shown.clear();
        asker.Expect("Write current parameter settings to drive?", MsgAnswer::Cancel);
        toggle();
        EXPECT_EQ(asker.Shown.size(), 1);
        EXPECT_FALSE(Entry("mnuToolsOnline")->isChecked());
    }
}

TEST_F(ShellTest, LinkCommandsFollowTheLink)
{
    const auto expectAll = [this](bool isOnline) {
        for (const char *name :
             {"mnuFileRead", "mnuFileWrite", "mnuFileNew", "mnuToolsSelectModel", "mnuToolsIOSimulator"})
            EXPECT_NE(Entry(name)->isEnabled(), isOnline) << name;
        for (const char *name :
             {"mnuToolsReInitDrive(1)", "mnuToolsReInitDrive(2)", "mnuToolsSaveDrive", "mnuToolsLoadDrive"})
            EXPECT_EQ(Entry(name)->isEnabled(), isOnline) << name;
        EXPECT_EQ(Entry("mnuToolsOnline")->isChecked(), isOnline);
        EXPECT_EQ(Find<QToolButton>("ComStatus")->text(), Name(isOnline ? "OnLine" : "OffLine"));
    };
    expectAll(false);
    const SimulatedDrive drive;
    GoOnLine(drive);
    expectAll(true);
    for (const Restart command : {Restart::ReInitialize, Restart::Reset}) {
        asker.Expect("The drive has not told its state yet.", MsgAnswer::Yes);
        Trigger(ControlName("mnuToolsReInitDrive", int(command)));
        EXPECT_EQ(Link().DriveCommand, command);
    }
    Link().SetDriveCommand(Restart::None);
    Drive().GoOffLine(OffLineReason::User);
    expectAll(false);
}

TEST_F(ShellTest, FileDialogsOpenWhereTheyWereLastUsedOrBesideTheOpenFile)
{
    LoadQuietly();
    const auto openIn = [this] {
        asker.ExpectOpen({});
        Trigger("mnuFileOpen");
        return QDir(asker.Requests.last().folder);
    };
    EXPECT_TRUE(openIn().exists());
    EXPECT_NE(openIn(), QDir(folder.path())) << "the program's own folder";
    QDir pumps(folder.filePath(QStringLiteral("pumps")));
    pumps.mkpath(QStringLiteral("."));
    asker.ExpectSave(pumps.filePath(Name("a.Svx")));
    Trigger("mnuFileSave(1)");
    MakeWindow();
    LoadQuietly();
    EXPECT_EQ(openIn(), pumps) << "over runs";
    Set().FileName = folder.filePath(Name("b.Svx"));
    EXPECT_EQ(openIn(), QDir(folder.path()));
    EXPECT_EQ(QDir(FolderFor(FolderUse::Exports, settings, Set().FileName)), QDir(folder.path()));
    KeepFolder(FolderUse::Exports, settings, pumps.filePath(Name("map.pdf")));
    EXPECT_EQ(QDir(FolderFor(FolderUse::Exports, settings, Set().FileName)), pumps);
    pumps.removeRecursively();
    EXPECT_EQ(QDir(FolderFor(FolderUse::Exports, settings, Set().FileName)), QDir(folder.path()));
}

TEST(FirstPlace, TakesMostOfALargeScreenAndNothingOfASmallOne)
{
    const QMargins frame(4, 24, 4, 4);
    const QRect available(0, 30, 1366, 738);
    const QRect place = FirstPlace({1366, 768}, available, frame);
    const QRect whole(place.topLeft(), place.size().grownBy(frame));
    EXPECT_TRUE(available.contains(whole));
    EXPECT_NEAR(whole.width(), 0.85 * 1366, 1);
    EXPECT_NEAR(whole.height(), 0.85 * 738, 1);
    EXPECT_NEAR(whole.center().x(), available.center().x(), 1);
    EXPECT_NEAR(whole.center().y(), available.center().y(), 1);
    for (const QSize screen : {QSize(1024, 768), QSize(800, 1280), QSize(1280, 720)})
        EXPECT_TRUE(FirstPlace(screen, QRect({}, screen), frame).isEmpty());
}

TEST_F(ShellTest, AFailedSaveIsToldWholeUnderTheMenu)
{
    LoadQuietly();
    asker.ExpectSave(folder.filePath(QStringLiteral("no such folder/a.Svx")));
    Trigger("mnuFileSave(1)");
    auto *message = Find<QLabel>("Message");
    EXPECT_TRUE(message->isVisible() && message->text().contains(QStringLiteral("was not written")));
    EXPECT_EQ(message->textFormat(), Qt::PlainText);
    main->resize(main->minimumSizeHint().width(), main->height());
    QTest::qWait(0);
    EXPECT_GE(message->height(), message->heightForWidth(message->width()));
    Click("CommandCloseNotice");
    EXPECT_FALSE(message->isVisible());
}

} // namespace quorvik::testing
