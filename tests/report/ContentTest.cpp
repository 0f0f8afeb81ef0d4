#include "ReportFixture.h"
#include "history/JournalReader.h"
#include "report/JournalOfDay.h"
#include "report/PdfProgram.h"
#include "report/RecordingFigures.h"
#include "report/ReportTables.h"

#include <cmath>
#include <gmock/gmock.h>

namespace quorvik::testing
{

using ::testing::HasSubstr;

TEST_F(ReportTest, TheLogIsToldAsItWasReadAndABadDayHidesNothing)
{
    ReadDrive();
    EXPECT_THAT(Report().faults.remark.toStdString(), HasSubstr("is empty"));
    int value = 1;
    for (int p = Param::FaultLog2Faults; p < Param::FaultLog2Faults + 8; ++p)
        drive->Set(p, value++);
    drive->Set(Param::FaultLog2Faults + 4, 99);
    EXPECT_THAT(RowOf(Report().faults, QStringLiteral("Log 2")), HasSubstr("|no day, "));
}

TEST_F(ReportTest, TheJournalOfADayListsItsLastChangesInOrder)
{
    {
        const Intent intent(engines.table, Origin::EditDialog);
        Enter(60);
        Enter(70);
    }
    Enter(80);
    const CommissioningTable all = Report().journal;
    ASSERT_EQ(all.rows.size(), 3);
    EXPECT_EQ(all.rows[0][3], QStringLiteral("6.0 Sec"));
    EXPECT_EQ(all.rows[2][3], QStringLiteral("8.0 Sec"));

    JournalReader reader(engines.journal.Path());
    const QDate today = QDate::currentDate();
    JournalWish wish{.day = today, .drive = {}, .setPath = engines.document.FileName, .mostRows = 2};
    const CommissioningTable last = JournalOfDay(reader, wish);
    ASSERT_EQ(last.rows.size(), 2);
    EXPECT_EQ(last.rows[0][3], QStringLiteral("7.0 Sec"));
    EXPECT_THAT(last.remark.toStdString(), HasSubstr("1 earlier"));
    // Neither another day's, nor those of a nameless set beside a drive.
    wish.day = today.addDays(-1);
    EXPECT_TRUE(JournalOfDay(reader, wish).rows.isEmpty());
    wish = {.day = today, .drive = DriveIdentity{}, .setPath = engines.document.FileName};
    EXPECT_TRUE(JournalOfDay(reader, wish).rows.isEmpty());
}

TEST_F(ReportTest, AChangeOfTheDriveIsInItsJournal)
{
    ReadDrive();
    Enter(75);
    // A drive is asked who it is after the first thing that is written to it.
    const auto isMissing = [this] {
        const CommissioningTable journal = Report(NotVerified({})).journal;
        return std::ranges::none_of(journal.rows, [](const QStringList &row) {
            return row[1] == QStringLiteral("(226) Fwd Accel A");
        });
    };
    EXPECT_TRUE(PumpWhile(isMissing, QDeadlineTimer(20000)));
}

/** A velocity loop that follows each change of its reference by a tenth of a second. */
TrendData Answers()
{
    constexpr qint64 upUs = 1'000'000;
    constexpr qint64 downUs = 2'500'000;
    TrendData data;
    for (const int p : {Param::FinalVelDemand, Param::VelFeedback})
        data.tracks.push_back({{.param = p, .attributes = 2, .name = {}}, {}});
    double answer = 1000;
    for (qint64 t = 1; t < 4'000'000; t += 2000) {
        const std::int32_t demand = t < upUs || t >= downUs ? 1000 : 2000;
        answer += (demand - answer) * (1 - std::exp(-0.02));
        data.tracks[0].samples.Append({.timeUs = t, .rawValue = demand});
        data.tracks[1].samples.Append({.timeUs = t, .rawValue = std::int32_t(std::lround(answer))});
    }
    data.marks = {{upUs, TrendMarkKind::Edit, Param::Reference0, QStringLiteral("up")},
                  {downUs, TrendMarkKind::Edit, Param::Reference0, QStringLiteral("down")},
                  {3'500'000, TrendMarkKind::Edit, Param::PropGainA, QStringLiteral("a gain")}};
    return data;
}

TEST(RecordingFiguresTest, EachChangeOfAReferenceIsAStep)
{
    TrendData data = Answers();
    const CommissioningTable steps = StepsIn(data);
    ASSERT_EQ(steps.rows.size(), 2) << "a gain is no reference";
    for (const QStringList &row : steps.rows) {
        ASSERT_EQ(row.size(), steps.heads.size());
        EXPECT_EQ(row[1], QStringLiteral("Velocity"));
        // 10 to 90 % of an answer of the first order are 2.2 of its times.
        EXPECT_NEAR(row[3].section(u' ', 0, 0).toDouble(), 220, 5) << row[3].toStdString();
    }
    data = data.Cut(0, 2'400'000);
    // Aligned at a change that is no reference, the loop whose demand moves has answered to it.
    data.marks = {{1'000'000, TrendMarkKind::Edit, Param::DigitalIn1Destination, QStringLiteral("a link")}};
    EXPECT_TRUE(StepsIn(data).rows.isEmpty());
    data.triggerUs = 1'000'000;
    EXPECT_EQ(StepsIn(data).rows.size(), 1);
}

TEST(CommissioningReportTest, AnotherProcessGetsTheSameReport)
{
    const QString hostile =
        QString::fromUtf8("<b>\"x\"</b>&\n\t=1+1 \\u0000 \u202e \xf0\x9f\x94\xa7") + QChar(0);
    CommissioningReport report;
    report.place = {hostile, QStringLiteral("m"), QStringLiteral("c"), QStringLiteral("p")};
    report.made = report.program = report.setName = report.notes = report.verificationText = hostile;
    for (CommissioningTable *table : {&report.identity, &report.motor, &report.settings, &report.faults,
                                      &report.journal, &report.differences})
        *table = {{QStringLiteral("a"), hostile}, {{hostile, QString::number(table->rows.size())}}, hostile};
    report.recordings = {{QStringLiteral("/tmp/x.trend"), hostile, report.motor}};
    report.verification = Verification::Differs;
    report.rawValues = {{0, -2147483647 - 1}, {433, 2147483647}};
    QString failure;
    EXPECT_EQ(ReportFromJson(ToJson(report), failure), report);
    EXPECT_EQ(failure, QString());
    for (const char *bad : {"", "[]", "{}", "{\"verification\":1}", "{\"verification\":\"same\""}) {
        EXPECT_EQ(ReportFromJson(bad, failure), CommissioningReport{}) << bad;
        EXPECT_NE(std::exchange(failure, {}), QString()) << bad;
    }
}

TEST(PdfProgramTest, WhatItsProgramCannotDoIsASentence)
{
    const QTemporaryDir folder;
    PdfWish wish{.path = QStringLiteral("x.pdf"),
                 .paper = QStringLiteral("letter"),
                 .presets = QStringLiteral("Presets.fil"),
                 .program = folder.filePath(QStringLiteral("program"))};
    EXPECT_THAT(WritePdf({}, wish).toStdString(), HasSubstr("cannot be started"));
    const auto sentence = [&wish](const char *script) {
        QFile file(wish.program);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(QByteArrayLiteral("#!/bin/sh\n") + script);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        file.close();
        return WritePdf({}, wish).toStdString();
    };
    EXPECT_EQ(sentence("[ \"$*\" = \"--out x.pdf --paper letter --presets Presets.fil\" ]"), "");
    EXPECT_EQ(sentence("echo 'The disk is full.' >&2; echo more >&2; exit 1"), "The disk is full.");
    EXPECT_THAT(sentence("kill -9 $$"), HasSubstr("failed"));
    wish.waitMs = 200;
    EXPECT_THAT(sentence("exec sleep 600"), HasSubstr("took too long"));
}

} // namespace quorvik::testing
