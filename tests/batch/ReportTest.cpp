#include "batch/BatchFixture.h"
#include "model/ParameterNumbers.h"

#include <QFile>

namespace quorvik
{

/** The report of a set "press.Svx" that lies in the program's working folder. */
class ReportVerbTest : public BatchTest
{
protected:
    ReportVerbTest() { EXPECT_EQ(RunAtDrive(Words("backup press.Svx")).code, 0); }

    static QStringList Words(const char *words) { return QString::fromLatin1(words).split(u' '); }
    static std::string TextOf(const Ended &ended, const char *key)
    {
        return ended.Rows().value(0).value(QLatin1String(key)).toString().toStdString();
    }
};

TEST_F(ReportVerbTest, AFileIsComparedWithTheDriveAndTheExitCodeSaysSo)
{
    // A port that is set up asks no drive for a file; a report of the drive alone is what was read.
    const Ended alone = Run(Words("report --json --file press.Svx"));
    EXPECT_EQ(alone.code, 0) << alone.errors.constData();
    EXPECT_EQ(TextOf(alone, "verification"), "not_compared");
    EXPECT_EQ(TextOf(RunAtDrive(Words("report --json")), "verification"), "same");
    const QStringList compared = Words("report --json --file press.Svx --site <b>&");
    const Ended same = RunAtDrive(compared);
    EXPECT_EQ(same.code, 0) << same.errors.constData();
    EXPECT_EQ(TextOf(same, "verification"), "same");
    EXPECT_EQ(TextOf(same, "site"), "<b>&");
    Drive().Set(Param::FwdAccelA, 75);
    const Ended differs = RunAtDrive(compared);
    EXPECT_EQ(differs.code, 1) << differs.errors.constData();
    EXPECT_EQ(TextOf(differs, "verification"), "differs");

    Drive().Kill();
    EXPECT_EQ(RunAtDrive(compared).code, 3);
}

TEST_F(ReportVerbTest, WhatCannotBeMadeLeavesNoFile)
{
    const std::pair<const char *, int> cases[] = {
        {"report --file press.Svx", 2},
        {"report --file press.Svx --out press.pdf --paper a3", 2},
        {"report --file press.Svx --out press.pdf --day today", 2},
        {"report --file press.Svx --out press.pdf --recording none.trend", 5},
        {"report --file press.pdf --out press.pdf", 5},
        {"report --file press.Svx --out none/press.pdf", 5},
    };
    for (const auto &[words, code] : cases) {
        SCOPED_TRACE(words);
        const Ended ended = Run(Words(words));
        EXPECT_EQ(ended.code, code) << ended.errors.constData();
        EXPECT_FALSE(ended.errors.isEmpty());
        EXPECT_TRUE(ended.out.isEmpty());
    }
    // What is there already stays.
    QFile pdf(Path(QStringLiteral("press.pdf")));
    EXPECT_FALSE(pdf.exists());
    ASSERT_TRUE(pdf.open(QIODevice::WriteOnly));
    EXPECT_EQ(Run(Words("report --file press.Svx --out press.pdf")).code, 4);
    EXPECT_EQ(pdf.size(), 0);
}

} // namespace quorvik
