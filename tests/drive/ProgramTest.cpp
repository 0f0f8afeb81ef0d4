#include "support/Name.h"
#include "support/SimulatedDrive.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik
{

using testing::Name;

TEST(Program, PrintsItsTableAndTakesCommands)
{
    SimulatedDrive drive(SimulatedDrive::Unpaced() << Name("--model") << Name("1"));
    drive.Set(217, -345);
    const auto table = drive.Table();
    EXPECT_EQ(table.size(), 434u);
    EXPECT_EQ(table.at(217), -345);
    EXPECT_EQ(table.at(411), 1);
    EXPECT_TRUE(drive.Ask(Name("print 217")).value(0).contains(Name("Reference 0")));
    for (const char *line :
         {"get 434", "get x", "set 217", "set 217 70000", "terminal analog 6 0", "terminal digital 1 2",
          "terminal frequency 60001", "fault nonsense", "trip 0", "dance"})
        EXPECT_EQ(drive.Ask(Name(line)).size(), 1) << line;
    drive.Kill();
    drive.Restart();
    EXPECT_TRUE(QFileInfo::exists(drive.LinkPath()));
    EXPECT_EQ(drive.Value(217), 0);
    EXPECT_EQ(drive.Value(122), 36);
}

TEST(Program, MachineStandsStillUntilItIsThawed)
{
    SimulatedDrive drive;
    drive.Send(Name("terminal digital 2 1"));
    drive.Send(Name("terminal analog 1 2047"));
    EXPECT_FALSE(QTest::qWaitFor([&] { return drive.Value(217) != 0; }, 200));
    drive.Send(Name("thaw"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(217) > 9900; }, 3000));
    drive.Send(Name("terminal digital 1 1"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(422) == 1 && drive.Value(193) > 200; }, 5000));
    drive.Send(Name("trip 64"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(304) == 64; }, 3000));
    drive.Send(Name("power-cycle"));
    EXPECT_EQ(drive.Value(422), 0);
}

TEST(Program, DemoRunsByItself)
{
    SimulatedDrive drive(SimulatedDrive::Live() << Name("--demo"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(422) == 1 && drive.Value(193) > 500; }, 8000));
}

TEST(Program, SaysWhatIsWrongAndEnds)
{
    QTemporaryDir folder;
    const QString inTheWay = folder.filePath(Name("obstacle"));
    QFile file(inTheWay);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const std::pair<const char *, const char *> rows[] = {{"--link %1", "in the way"},
                                                          {"--presets %1", "obstacle"},
                                                          {"--fault noise", "noise"},
                                                          {"--model 11", "model"},
                                                          {"--baud -1", "--baud"}};
    for (const auto &[arguments, says] : rows) {
        QStringList all{Name("--link"), folder.filePath(Name("link")), Name("--presets"),
                        QStringLiteral(QUORVIK_PRESETS_FILE)};
        for (const QString &argument : Name(arguments).split(u' '))
            all << QString(argument).replace(Name("%1"), inTheWay);
        QProcess process;
        process.start(QStringLiteral(QUORVIK_DRIVE_PROGRAM), all);
        EXPECT_TRUE(process.waitForFinished(10000));
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_TRUE(process.readAllStandardError().contains(says)) << arguments;
    }
    EXPECT_TRUE(QFileInfo(inTheWay).isFile());
}

} // namespace quorvik
