#include "batch/BatchFixture.h"
#include "model/ParameterNumbers.h"

namespace quorvik
{

TEST_F(BatchTest, InfoTellsNumbersAsNumbersAndTheStateAsItsWord)
{
    Drive().Set(Param::OperatingHours, 1234);
    const Ended ended = RunAtDrive({QStringLiteral("info"), QStringLiteral("--json")});
    EXPECT_EQ(ended.code, 0) << ended.errors.constData();
    ASSERT_EQ(ended.Rows().size(), 1);
    const QJsonObject row = ended.Rows().front();
    EXPECT_EQ(row.value(QStringLiteral("operating_hours")).toInt(), 1234);
    EXPECT_EQ(row.value(QStringLiteral("state")).toString(), QStringLiteral("Stop"));
}

TEST_F(BatchTest, ReadFindsParametersAndTellsWhatIsMissing)
{
    struct Case {
        QStringList words;
        int code;
        QList<int> numbers; ///< of the rows
        QList<int> unknown; ///< of them, those without a value
    };
    const Case cases[] = {
        {{QStringLiteral("226"), QStringLiteral("220-222"), QStringLiteral("226")},
         0,
         {226, 220, 221, 222},
         {}},
        {{QStringLiteral("reference 0")}, 0, {217}, {}},
        {{QStringLiteral("ward accel")}, 2, {}, {}},
        {{QStringLiteral("accel")}, 2, {}, {}},
        {{QStringLiteral("30-20")}, 2, {}, {}},
        {{QStringLiteral("9000"), QStringLiteral("226")}, 1, {9000, 226}, {9000}},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.words.join(u' ').toStdString());
        const Ended ended =
            RunAtDrive(QStringList{QStringLiteral("read"), QStringLiteral("--json")} + one.words);
        EXPECT_EQ(ended.code, one.code) << ended.errors.constData();
        QList<int> numbers;
        QList<int> unknown;
        for (const QJsonObject &row : ended.Rows()) {
            numbers << row.value(QStringLiteral("number")).toInt();
            if (row.value(QStringLiteral("raw")).isNull())
                unknown << numbers.back();
        }
        EXPECT_EQ(numbers, one.numbers);
        EXPECT_EQ(unknown, one.unknown);
    }
    EXPECT_EQ(RunAtDrive({QStringLiteral("read"), QStringLiteral("--json")}).Rows().size(), 434);
    // A relay's threshold has the unit of its source, which was not asked for.
    Drive().Set(Param::RelayOut1Source, Param::FwdAccelA);
    EXPECT_EQ(RunAtDrive({QStringLiteral("read"), QStringLiteral("--json"),
                          QString::number(Param::RelayOut1OnValue)})
                  .Rows()
                  .value(0)
                  .value(QStringLiteral("unit"))
                  .toString(),
              QStringLiteral("Sec"));
}

TEST_F(BatchTest, NoDriveIsAnExitCodeOfItsOwnAndSaysWhy)
{
    const Ended nowhere = Run({QStringLiteral("read"), QStringLiteral("226"), QStringLiteral("--port"),
                               Path(QStringLiteral("none"))});
    EXPECT_EQ(nowhere.code, 3);
    EXPECT_FALSE(nowhere.errors.isEmpty());
    Drive().Send(QStringLiteral("fault drop"));
    const Ended silent = RunAtDrive({QStringLiteral("info")});
    EXPECT_EQ(silent.code, 3);
    EXPECT_TRUE(silent.errors.contains("not Responding")) << silent.errors.constData();
    // Without a port, and with a word too many.
    EXPECT_EQ(Run({QStringLiteral("info")}).code, 2);
    EXPECT_EQ(RunAtDrive({QStringLiteral("info"), QStringLiteral("x")}).code, 2);
}

TEST_F(BatchTest, WatchEndsAsItWasTold)
{
    const QStringList watch =
        AtDrive({QStringLiteral("watch"), QStringLiteral("217"), QStringLiteral("--json")});
    const Ended counted = Run(watch + QStringList{QStringLiteral("--count"), QStringLiteral("20")});
    EXPECT_EQ(counted.code, 0) << counted.errors.constData();
    const QList<QJsonObject> rows = counted.Rows();
    ASSERT_EQ(rows.size(), 20);
    EXPECT_GT(rows.back().value(QStringLiteral("us")).toDouble(),
              rows.front().value(QStringLiteral("us")).toDouble());

    const auto firstLine = [](QProcess &process) {
        while (!process.canReadLine() && process.waitForReadyRead(WaitMs)) {
        }
        EXPECT_TRUE(process.canReadLine());
    };
    auto interrupted = Start(watch);
    firstLine(*interrupted);
    // A second program at the same port is refused, and takes nothing from the first.
    const Ended second = RunAtDrive({QStringLiteral("info")});
    EXPECT_EQ(second.code, 3);
    EXPECT_TRUE(second.errors.contains("in use")) << second.errors.constData();
    interrupted->terminate();
    EXPECT_EQ(End(*interrupted).code, 0);

    // The reader of the pipe goes after a line.
    QProcess shell;
    shell.start(QStringLiteral("sh"),
                QStringList{QStringLiteral("-c"),
                            QStringLiteral("{ \"$0\" \"$@\"; echo ended $? >&2; } | head -n 1"),
                            QStringLiteral(QUORVIK_BATCH_PROGRAM)} +
                    watch);
    const Ended unread = End(shell);
    EXPECT_EQ(unread.Rows().size(), 1);
    EXPECT_TRUE(unread.errors.contains("ended 0")) << unread.errors.constData();

    auto lost = Start(watch);
    firstLine(*lost);
    Drive().Kill();
    EXPECT_EQ(End(*lost).code, 3);
}

} // namespace quorvik
