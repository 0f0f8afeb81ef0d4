#include "shell/ShellFixture.h"

#include "platform/SingleInstance.h"
#include "platform/Termination.h"
#include "platform/Waiting.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QSignalSpy>
#include <QWindow>
#include <csignal>

namespace quorvik::testing
{

TEST_F(ShellTest, DefaultsOnTheFirstRunAndPlaceColoursAndOptionsComeBack)
{
    LoadQuietly();
    EXPECT_TRUE(main->isVisible());
    EXPECT_EQ(main->pos(), QPoint(10, 7));    // 150 and 100 twips
    EXPECT_EQ(main->size(), QSize(733, 467)); // 11000 by 7000 twips
    // Read/write black, stop-only green, refused red, read only grey, linked blue; empty boxes have none yet.
    EXPECT_EQ(Colors().Colors, (std::array<std::int32_t, 6>{0, 0x00FF00, 0x0000FF, 0x7F7F7F, 0xFF0000, 0}));
    EXPECT_EQ(Link().MSComm1.CommPort(), 16);

    main->move(40, 50);
    main->resize(640, 480);
    Colors().Colors[3] = 0x123456;
    Link().MSComm1.SetCommPort(5);
    EXPECT_TRUE(main->AllEngines().guards.Asking);
    for (const char *option : {"mnuOptionsShowTipsonStartup", "mnuOptionsAskBeforeRisky"})
        Trigger(option);
    EXPECT_FALSE(main->AllEngines().guards.Asking);
    ASSERT_TRUE(main->close());
    EXPECT_EQ(Setting("Startup", "Left"), Name("600"));
    EXPECT_EQ(Setting("Options", "Show Tips at Startup"), Name("True"));
    Store("Options", "Show Tips at Startup", "False");

    MakeWindow();
    LoadQuietly();
    EXPECT_EQ(main->pos(), QPoint(40, 50));
    EXPECT_EQ(main->size(), QSize(640, 480));
    EXPECT_EQ(Colors().Colors[3], 0x123456);
    EXPECT_EQ(Link().MSComm1.CommPort(), 5);
    EXPECT_FALSE(main->AllEngines().guards.Asking || Entry("mnuOptionsAskBeforeRisky")->isChecked());
}

TEST_F(ShellTest, AMinimisedStateIsNotStored)
{
    Store("Startup", "WindowState", "2");
    LoadQuietly();
    EXPECT_TRUE(main->isMaximized());
    main->setWindowState(Qt::WindowMinimized);
    ASSERT_TRUE(main->close());
    EXPECT_EQ(Setting("Startup", "WindowState"), Name("2"));
}

TEST_F(ShellTest, APlaceOnNoScreenIsBroughtBack)
{
    Store("Startup", "Left", "900000");
    Store("Startup", "Top", "-900000");
    Store("Startup", "Width", "nonsense");
    Store("Startup", "Height", "900000");
    LoadQuietly();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(screen.contains(main->geometry()));
    EXPECT_LT(main->height() + 10, screen.height()) << "with room for the frame";
}

TEST_F(ShellTest, ACancelKeepsTheWindowWithSettingsSavedAndTheLinkDown)
{
    const SimulatedDrive drive;
    GoOnLine(drive);
    Set().FileModified = true;
    QSignalSpy unloaded(main.get(), &MDIFormMain::Unloaded);
    asker.WhileShown = [this] {
        EXPECT_FALSE(Link().PortOpen());
        EXPECT_EQ(Setting("Startup", "Left"), Name("150"));
    };
    for (const MsgAnswer answer : {MsgAnswer::Cancel, MsgAnswer::No}) {
        asker.Expect("Save changes?", answer);
        EXPECT_TRUE(main->isVisible());
        EXPECT_EQ(main->close(), answer == MsgAnswer::No);
        EXPECT_EQ(unloaded.size(), answer == MsgAnswer::No ? 1 : 0);
    }
}

TEST_F(ShellTest, ASecondInstanceOrAMissingFactoryTableEndsTheRun)
{
    {
        SingleInstance first(folder.filePath(QStringLiteral("Quorvik.lock")));
        ASSERT_TRUE(first.Acquire());
        asker.Expect("Quorvik is already running!");
        EXPECT_FALSE(main->Load(QString()));
        EXPECT_EQ(asker.Shown.first().icon, MsgIcon::Exclamation);
        EXPECT_FALSE(main->isVisible());
    }
    ASSERT_TRUE(QFile::remove(folder.filePath(QStringLiteral("Presets.fil"))));
    asker.Expect("Presets.fil");
    EXPECT_FALSE(main->Load(QString()));
}

TEST_F(ShellTest, AFileOnTheCommandLineOpensWithoutADialog)
{
    LoadQuietly();
    const QString path = folder.filePath(QStringLiteral("my [*] \\set.Svx"));
    asker.ExpectSave(path);
    for (const char *entry : {"mnuFileSave(1)", "mnuFileSave(0)"}) {
        Table().SetParamValue(226, Table().Value(226) + 1, true, false);
        Trigger(entry);
    }
    const std::int32_t saved = Table().Value(226);
    ASSERT_TRUE(main->close());

    MakeWindow();
    ASSERT_TRUE(main->Load(u'"' + path + u'"'));
    EXPECT_EQ(Set().FileName, path);
    EXPECT_TRUE(main->windowHandle()->title().startsWith(QStringLiteral("Quorvik - [my [*] \\set.Svx]")));
    EXPECT_EQ(Table().Value(226), saved);
    EXPECT_FALSE(Link().PortOpen());
}

TEST_F(ShellTest, WhatACrashLeftIsOfferedInsteadOfTheLink)
{
    LoadQuietly();
    {
        Engines &engines = main->AllEngines();
        RecoveryCopy soon(engines.document, engines.file,
                          folder.filePath(QStringLiteral("data/quorvik/recovery")), 20);
        engines.table.SetParamValue(217, 77, true, false);
        ASSERT_TRUE(PumpWhile([&] { return !QFile::exists(soon.Path()); }, QDeadlineTimer(10000)));
    }
    // A window that goes without being closed is a crash.
    MakeWindow();
    asker.Expect("Recover them?", MsgAnswer::Yes);
    ASSERT_TRUE(main->Load(folder.filePath(QStringLiteral("other.Svx"))));
    EXPECT_TRUE(Find<QLabel>("Message")->text().startsWith(QStringLiteral("\"other.Svx\" was not opened")));
    EXPECT_EQ(Table().Value(217), 77);
    EXPECT_EQ(main->windowTitle(), Name("Quorvik - [unnamed*]"));
    EXPECT_FALSE(Link().PortOpen());
    const QString copy = main->AllEngines().recoveryCopy.Path();
    ASSERT_TRUE(PumpWhile([&] { return !QFile::exists(copy); }, QDeadlineTimer(10000)));

    for (const MsgAnswer answer : {MsgAnswer::Cancel, MsgAnswer::No}) {
        asker.Expect("Save changes?", answer);
        EXPECT_EQ(main->close(), answer == MsgAnswer::No);
        EXPECT_EQ(QFile::exists(copy), answer == MsgAnswer::Cancel);
    }
}

TEST_F(ShellTest, AnEndFromOutsideAsksNothingAndLosesNothing)
{
    SimulatedDrive drive;
    GoOnLine(drive);
    ParameterTable &table = Table();
    asker.Expect("all inputs must be unassigned", MsgAnswer::Yes);
    Trigger("mnuToolsVirtualOperator");
    table.SetParamValue(226, 123, true, false);
    table.SetParamValue(Param::Jog, 1, true, false);
    ASSERT_TRUE(PumpWhile([&] { return table.WritePending; }, QDeadlineTimer(10000)));
    ASSERT_EQ(drive.Value(Param::Jog), 1);
    const Termination termination;
    QObject::connect(&termination, &Termination::Requested, main.get(), &MDIFormMain::EndUnasked);
    QSignalSpy unloaded(main.get(), &MDIFormMain::Unloaded);
    std::raise(SIGTERM);
    ASSERT_TRUE(PumpWhile([&] { return unloaded.isEmpty(); }, QDeadlineTimer(10000)));
    EXPECT_FALSE(Link().PortOpen());
    EXPECT_EQ(drive.Value(Param::Jog), 0);
    EXPECT_EQ(Setting("Startup", "Left"), Name("150"));

    MakeWindow();
    asker.Expect("Recover them?", MsgAnswer::Yes);
    ASSERT_TRUE(main->Load(QString()));
    EXPECT_EQ(Table().Value(226), 123);
}

} // namespace quorvik::testing
