#include "batch/BatchFixture.h"
#include "model/ParameterNumbers.h"

#include <QDir>
#include <QFile>
#include <functional>

namespace quorvik
{

namespace
{

const QString Json = QStringLiteral("--json");
const QString Yes = QStringLiteral("--yes");
const QString Accept = QStringLiteral("--accept");
const QString Set = QStringLiteral("a.Svx");

int WritesOf(SimulatedDrive &drive)
{
    return int(drive.Stat(QStringLiteral("writes")));
}

} // namespace

TEST_F(BatchTest, WriteHoldsTheRulesOfAnEntry)
{
    struct Case {
        QStringList words;
        int code;
        QMap<int, int> written; ///< what the drive holds afterwards; nothing is sent where it is empty
    };
    const Case cases[] = {
        {{QStringLiteral("226=6.5")}, 0, {{226, 65}}},
        {{QStringLiteral("fwd accel a=7 sec"), QStringLiteral("227=raw:81")}, 0, {{226, 70}, {227, 81}}},
        {{QStringLiteral("248=true")}, 0, {{248, 1}}},
        {{QStringLiteral("226=8.0"), QStringLiteral("--dry-run")}, 0, {}},
        // One that is refused keeps the others back.
        {{QStringLiteral("226=9999"), QStringLiteral("227=6")}, 1, {}},
        {{QStringLiteral("226=abc")}, 1, {}},
        {{QStringLiteral("411=SVN100-000")}, 1, {}},
        {{QStringLiteral("222=true")}, 1, {}}, // an input sets it
        {{QStringLiteral("1=240")}, 4, {}},    // another input is there
        {{QStringLiteral("1=240"), Accept, QStringLiteral("destination")}, 0, {{1, 240}, {2, 0}}},
        {{QStringLiteral("226")}, 2, {}},
        {{QStringLiteral("226=1"), QStringLiteral("226=2")}, 2, {}},
        {{QStringLiteral("406=1")}, 2, {}},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.words.join(u' ').toStdString());
        const int before = WritesOf(Drive());
        const Ended ended = RunAtDrive(QStringList{QStringLiteral("write"), Json} + one.words);
        EXPECT_EQ(ended.code, one.code) << ended.errors.constData();
        for (const auto &[p, raw] : one.written.toStdMap())
            EXPECT_EQ(Drive().Value(p), raw) << p;
        EXPECT_EQ(WritesOf(Drive()) > before, !one.written.isEmpty());
    }
}

TEST_F(BatchTest, ACommandIsGivenWhereItWasAcceptedOnly)
{
    // Nothing drives the input, so that a write decides.
    Drive().Set(1, 0);
    const QStringList words{QStringLiteral("write"), QStringLiteral("239=true")};
    EXPECT_EQ(RunAtDrive(words).code, 4);
    EXPECT_EQ(Drive().Value(Param::Run), 0);
    EXPECT_EQ(RunAtDrive(words + QStringList{Accept, QStringLiteral("commands")}).code, 0);
    EXPECT_EQ(Drive().Value(Param::Run), 1);
}

TEST_F(BatchTest, WhatTheDriveRefusesIsAPartOfTheResult)
{
    Drive().Send(QStringLiteral("fault refuse:226"));
    const Ended ended = RunAtDrive({QStringLiteral("write"), Json, QStringLiteral("226=6.5"),
                                    QStringLiteral("227=6.5"), QStringLiteral("--save")});
    EXPECT_EQ(ended.code, 1) << ended.errors.constData();
    QMap<int, QString> results;
    for (const QJsonObject &row : ended.Rows())
        results[row.value(QStringLiteral("number")).toInt()] = row.value(QStringLiteral("result")).toString();
    EXPECT_EQ(results,
              (QMap<int, QString>{{226, QStringLiteral("refused")}, {227, QStringLiteral("verified")}}));
    // What got through was saved.
    Drive().Send(QStringLiteral("power-cycle"));
    EXPECT_EQ(Drive().Value(227), 65);
}

TEST_F(BatchTest, ABackupIsWholeOrNotThereAndReplacesNothingUnasked)
{
    const QStringList backup{QStringLiteral("backup"), Set};
    Drive().Send(QStringLiteral("fault drop:300,ms=60000"));
    EXPECT_EQ(RunAtDrive(backup).code, 3);
    EXPECT_FALSE(QFile::exists(Path(Set)));
    Drive().Restart();
    EXPECT_EQ(RunAtDrive(backup).code, 0);
    EXPECT_EQ(RunAtDrive(backup).code, 4);
    Drive().Set(226, 77);
    EXPECT_EQ(RunAtDrive({QStringLiteral("compare"), Set, QStringLiteral("drive")}).code, 1);
    EXPECT_EQ(RunAtDrive(backup + QStringList{QStringLiteral("--force")}).code, 0);
    EXPECT_EQ(RunAtDrive({QStringLiteral("compare"), Set, QStringLiteral("drive")}).code, 0);
    const Ended differing = Run({QStringLiteral("compare"), Set, QStringLiteral("factory"), Json});
    ASSERT_EQ(differing.Rows().size(), 1);
    EXPECT_EQ(differing.Rows().front().value(QStringLiteral("raw_a")).toInt(), 77);
    EXPECT_EQ(Run({QStringLiteral("list"), Set, QStringLiteral("--changed"), Json}).code, 0);
    EXPECT_EQ(Run({QStringLiteral("list"), QStringLiteral("none.Svx")}).code, 5);
}

TEST_F(BatchTest, ARestoreIsPlannedThenDoneAndAsksBeforeAnotherDrive)
{
    ASSERT_EQ(RunAtDrive({QStringLiteral("backup"), Set}).code, 0);
    const QStringList restore{QStringLiteral("restore"), Set, Json};
    EXPECT_EQ(RunAtDrive(restore).code, 0);
    Drive().Set(226, 99);
    const Ended plan = RunAtDrive(restore);
    EXPECT_EQ(plan.code, 1);
    ASSERT_EQ(plan.Rows().size(), 1);
    EXPECT_EQ(plan.Rows().front().value(QStringLiteral("raw_before")).toInt(), 99);
    EXPECT_EQ(WritesOf(Drive()), 0);
    EXPECT_EQ(RunAtDrive(restore + QStringList{Yes}).code, 0);
    EXPECT_EQ(Drive().Value(226), 50);
    EXPECT_EQ(QDir(DataFolder() + QStringLiteral("/backups")).entryList(QDir::Files).size(), 1);

    Drive().Set(226, 99);
    Drive().Set(Param::ControlFirmwareVersion, 222);
    EXPECT_EQ(RunAtDrive(restore + QStringList{Yes}).code, 4);
    EXPECT_EQ(Drive().Value(226), 99);
    // Of any origin, the firmware is no matter; a running drive is.
    Drive().Set(Param::DriveState, 3);
    const QStringList writeSet{QStringLiteral("write-set"), Set, Yes};
    EXPECT_EQ(RunAtDrive(writeSet).code, 4);
    EXPECT_EQ(Drive().Value(226), 99);
    Drive().Set(Param::DriveState, 0);
    EXPECT_EQ(RunAtDrive(writeSet).code, 0);
    EXPECT_EQ(Drive().Value(226), 50);

    Drive().Set(226, 99);
    EXPECT_EQ(RunAtDrive(restore + QStringList{Yes, Accept, QStringLiteral("other-drive")}).code, 0);
    EXPECT_EQ(Drive().Value(226), 50);
}

TEST_F(BatchTest, AWriteThatEndedEarlySaysWhereAndIsResumedByAnotherRunWithTheSameDriveOnly)
{
    // As slow as in the field, so that there is a middle.
    Drive({QStringLiteral("--frozen"), QStringLiteral("--baud"), QStringLiteral("57600")});
    ASSERT_EQ(RunAtDrive({QStringLiteral("backup"), Set}).code, 0);
    const QStringList restore{QStringLiteral("restore"), Set, Yes, Json};
    const QStringList resume = restore + QStringList{QStringLiteral("--resume")};
    const QStringList compare{QStringLiteral("compare"), Set, QStringLiteral("drive")};
    EXPECT_EQ(RunAtDrive(resume).code, 5);
    const auto restoreUpToTheMiddle = [&](const std::function<void(QProcess &)> &strike) {
        Drive().Set(226, 99);
        Drive().Set(350, Drive().Value(350) + 1);
        const int before = WritesOf(Drive());
        const auto process = Start(AtDrive(restore));
        while (process->state() == QProcess::Running && WritesOf(Drive()) < before + 20)
            process->waitForReadyRead(20);
        strike(*process);
        Ended ended = End(*process);
        EXPECT_TRUE(ended.errors.contains("were sent, the last one (")) << ended.errors.constData();
        QMap<QString, int> results;
        for (const QJsonObject &row : ended.Rows())
            ++results[row.value(QStringLiteral("result")).toString()];
        EXPECT_GT(results[QStringLiteral("not_sent")], 0);
        return std::pair(ended.code, results);
    };

    const auto [code, results] = restoreUpToTheMiddle([](QProcess &process) { process.terminate(); });
    EXPECT_EQ(code, 130);
    // What was sent is read back before the end.
    EXPECT_GE(results[QStringLiteral("verified")], 20);
    EXPECT_EQ(results[QStringLiteral("sent")], 0);
    EXPECT_EQ(RunAtDrive(resume).code, 0);
    EXPECT_EQ(RunAtDrive(compare).code, 0);

    EXPECT_EQ(restoreUpToTheMiddle([&](QProcess &) { Drive().Send(QStringLiteral("fault drop")); }).first, 3);
    Drive().Send(QStringLiteral("faults off"));
    EXPECT_EQ(RunAtDrive(compare).code, 1);
    // Another drive is left alone, and the write stays to be resumed.
    const int firmware = Drive().Value(Param::ControlFirmwareVersion);
    Drive().Set(Param::ControlFirmwareVersion, 222);
    const int writes = WritesOf(Drive());
    EXPECT_EQ(RunAtDrive(resume).code, 4);
    EXPECT_EQ(WritesOf(Drive()), writes);
    Drive().Set(Param::ControlFirmwareVersion, firmware);
    EXPECT_EQ(
        RunAtDrive({QStringLiteral("restore"), QStringLiteral("b.Svx"), Yes, QStringLiteral("--resume")})
            .code,
        2);
    Drive().Set(Param::DriveState, 3);
    EXPECT_EQ(RunAtDrive(resume).code, 4);
    Drive().Set(Param::DriveState, 0);
    EXPECT_EQ(WritesOf(Drive()), writes);
    EXPECT_EQ(RunAtDrive(resume).code, 0);
    EXPECT_EQ(RunAtDrive(compare).code, 0);
    EXPECT_EQ(RunAtDrive(resume).code, 5);
}

TEST_F(BatchTest, RunsAtOnceLoseNothingOfTheJournal)
{
    // None of them finds a journal, and all of them write to it.
    constexpr int Runs = 4;
    std::vector<std::unique_ptr<SimulatedDrive>> drives;
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < Runs; ++i)
        drives.push_back(std::make_unique<SimulatedDrive>());
    for (int i = 0; i < Runs; ++i)
        processes.push_back(Start({QStringLiteral("write"), QStringLiteral("226=raw:%1").arg(60 + i),
                                   QStringLiteral("--port"), drives[std::size_t(i)]->LinkPath()}));
    for (const auto &process : processes)
        EXPECT_EQ(End(*process).code, 0);
    const Ended journal =
        Run({QStringLiteral("journal"), Json, QStringLiteral("--param"), QStringLiteral("226")});
    EXPECT_EQ(journal.code, 0) << journal.errors.constData();
    QSet<int> written;
    for (const QJsonObject &row : journal.Rows()) {
        written.insert(row.value(QStringLiteral("raw_after")).toInt());
        EXPECT_EQ(row.value(QStringLiteral("result")).toString(), QStringLiteral("verified"));
    }
    EXPECT_EQ(written, (QSet<int>{60, 61, 62, 63}));
    EXPECT_EQ(QDir(DataFolder() + QStringLiteral("/backups")).entryList(QDir::Files).size(), Runs);
    EXPECT_EQ(Run({QStringLiteral("journal"), QStringLiteral("--since"), QStringLiteral("yesterday")}).code,
              2);
}

} // namespace quorvik
