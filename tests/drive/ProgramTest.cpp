#include "support/SimulatedDrive.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik
{

namespace
{

TEST(Program, PrintsItsTableAndTakesCommands)
{
    SimulatedDrive drive;
    ASSERT_TRUE(drive.IsRunning());
    EXPECT_TRUE(QFileInfo(drive.LinkPath()).isSymLink());
    drive.Set(217, -345);
    const auto table = drive.Table();
    EXPECT_EQ(table.size(), 434u);
    EXPECT_EQ(table.at(217), -345);
    EXPECT_EQ(drive.Value(217), -345);
    EXPECT_EQ(drive.Stat(QStringLiteral("reads")), 0);
    EXPECT_TRUE(drive.Ask(QStringLiteral("print 217")).value(0).contains(QStringLiteral("Reference 0")));
    for (const char *line :
         {"get 434", "get x", "set 217", "set 217 70000", "terminal analog 6 0", "terminal digital 1 2",
          "terminal frequency 60001", "fault nonsense", "trip 0", "dance"})
        EXPECT_EQ(drive.Ask(QString::fromLatin1(line)).size(), 1) << line;
}

TEST(Program, MachineStandsStillUntilItIsThawed)
{
    SimulatedDrive drive;
    drive.Send(QStringLiteral("terminal digital 2 1"));
    drive.Send(QStringLiteral("terminal analog 1 2047"));
    EXPECT_FALSE(QTest::qWaitFor([&] { return drive.Value(217) != 0; }, 200));
    drive.Send(QStringLiteral("thaw"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(217) > 9900; }, 3000));
    drive.Send(QStringLiteral("terminal digital 1 1"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(422) == 1 && drive.Value(193) > 200; }, 5000));
    drive.Send(QStringLiteral("trip 64"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(304) == 64; }, 3000));
    drive.Send(QStringLiteral("power-cycle"));
    EXPECT_EQ(drive.Value(422), 0);
}

TEST(Program, DemoRunsByItself)
{
    SimulatedDrive drive(SimulatedDrive::Live() << QStringLiteral("--demo"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return drive.Value(422) == 1 && drive.Value(193) > 500; }, 8000));
}

TEST(Program, ComesBackAtTheSamePath)
{
    SimulatedDrive drive(SimulatedDrive::Unpaced() << QStringLiteral("--model") << QStringLiteral("1"));
    EXPECT_EQ(drive.Value(411), 1);
    drive.Set(217, 5);
    drive.Kill();
    EXPECT_FALSE(QFileInfo::exists(drive.LinkPath())) << "the link leads nowhere";
    drive.Restart();
    EXPECT_TRUE(QFileInfo::exists(drive.LinkPath()));
    EXPECT_EQ(drive.Value(217), 0);
    EXPECT_EQ(drive.Value(122), 36);
}

TEST(Program, SaysWhatIsWrongAndEnds)
{
    QTemporaryDir folder;
    const QString inTheWay = folder.filePath(QStringLiteral("file"));
    QFile file(inTheWay);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString presets = QStringLiteral(QUORVIK_PRESETS_FILE);
    const struct {
        QStringList arguments;
        QString says;
    } rows[] = {
        {{QStringLiteral("--link"), inTheWay}, QStringLiteral("in the way")},
        {{QStringLiteral("--presets"), inTheWay}, inTheWay},
        {{QStringLiteral("--fault"), QStringLiteral("noise")}, QStringLiteral("noise")},
        {{QStringLiteral("--model"), QStringLiteral("11")}, QStringLiteral("model")},
        {{QStringLiteral("--baud"), QStringLiteral("-1")}, QStringLiteral("--baud")},
    };
    for (const auto &row : rows) {
        QStringList arguments{QStringLiteral("--link"), folder.filePath(QStringLiteral("link")),
                              QStringLiteral("--presets"), presets};
        QProcess process;
        process.start(QStringLiteral(QUORVIK_DRIVE_PROGRAM), arguments + row.arguments);
        EXPECT_TRUE(process.waitForFinished(10000));
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_TRUE(QString::fromUtf8(process.readAllStandardError()).contains(row.says))
            << qPrintable(row.says);
    }
    EXPECT_TRUE(QFileInfo(inTheWay).isFile());
}

} // namespace

} // namespace quorvik
