#include "batch/BatchFixture.h"
#include "model/ParameterNumbers.h"

#include <QFile>
#include <QFileInfo>

namespace quorvik
{

TEST_F(BatchTest, ReportComparesAFileWithTheDriveAndEndsAsCompareDoes)
{
    const QString set = Path(QStringLiteral("press.Svx"));
    ASSERT_EQ(RunAtDrive({QStringLiteral("backup"), set}).code, 0);
    const QStringList report{QStringLiteral("report"), QStringLiteral("--json"), QStringLiteral("--file"),
                             set};
    const auto word = [](const Ended &ended) {
        return ended.Rows().value(0).value(QStringLiteral("verification")).toString();
    };
    // A port that is set up asks no drive for a file; a report of the drive alone is what was read.
    const Ended alone = Run(report);
    EXPECT_EQ(alone.code, 0) << alone.errors.constData();
    EXPECT_EQ(word(alone), QStringLiteral("not_compared"));
    EXPECT_EQ(word(RunAtDrive({QStringLiteral("report"), QStringLiteral("--json")})), QStringLiteral("same"));
    const Ended same = RunAtDrive(report + QStringList{QStringLiteral("--site"), QStringLiteral("<b>&")});
    EXPECT_EQ(same.code, 0) << same.errors.constData();
    EXPECT_EQ(word(same), QStringLiteral("same"));
    EXPECT_EQ(same.Rows().value(0).value(QStringLiteral("site")).toString(), QStringLiteral("<b>&"));
    Drive().Set(Param::FwdAccelA, 75);
    const Ended differs = RunAtDrive(report);
    EXPECT_EQ(differs.code, 1) << differs.errors.constData();
    EXPECT_EQ(word(differs), QStringLiteral("differs"));

    Drive().Kill();
    const Ended lost = RunAtDrive(report);
    EXPECT_EQ(lost.code, 3);
    EXPECT_TRUE(lost.out.isEmpty());
}

TEST_F(BatchTest, AReportThatIsNotWantedSoOrCannotBeMadeLeavesNoFile)
{
    const QString set = Path(QStringLiteral("press.Svx"));
    const QString pdf = Path(QStringLiteral("press.pdf"));
    ASSERT_EQ(RunAtDrive({QStringLiteral("backup"), set}).code, 0);
    struct Case {
        QStringList words;
        int code;
    };
    const QStringList whole{QStringLiteral("--file"), set, QStringLiteral("--out"), pdf};
    const Case cases[] = {
        {{QStringLiteral("--file"), set}, 2},
        {whole + QStringList{QStringLiteral("--paper"), QStringLiteral("a3")}, 2},
        {whole + QStringList{QStringLiteral("--day"), QStringLiteral("today")}, 2},
        {whole + QStringList{QStringLiteral("x")}, 2},
        {whole + QStringList{QStringLiteral("--recording"), Path(QStringLiteral("none.trend"))}, 5},
        {{QStringLiteral("--file"), pdf, QStringLiteral("--out"), pdf}, 5},
        {{QStringLiteral("--file"), set, QStringLiteral("--out"), Path(QStringLiteral("none/x.pdf"))}, 5},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.words.join(u' ').toStdString());
        const Ended ended = Run(QStringList{QStringLiteral("report")} + one.words);
        EXPECT_EQ(ended.code, one.code) << ended.errors.constData();
        EXPECT_FALSE(ended.errors.isEmpty());
        EXPECT_TRUE(ended.out.isEmpty());
    }
    EXPECT_FALSE(QFileInfo::exists(pdf));
    // What is there already stays.
    QFile there(pdf);
    ASSERT_TRUE(there.open(QIODevice::WriteOnly));
    there.close();
    EXPECT_EQ(Run(QStringList{QStringLiteral("report")} + whole).code, 4);
    EXPECT_EQ(QFileInfo(pdf).size(), 0);
}

} // namespace quorvik
