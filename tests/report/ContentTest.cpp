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
    const CommissioningTable faults = Report().faults;
    ASSERT_EQ(faults.rows.size(), 1);
    EXPECT_EQ(faults.rows[0][0], QStringLiteral("Log 2"));
    EXPECT_THAT(faults.rows[0][2].toStdString(), HasSubstr("no day, "));
    EXPECT_FALSE(faults.rows[0][1].isEmpty());
}

TEST_F(ReportTest, TheJournalOfADayListsItsLastChangesInOrder)
{
    const auto enter = [this](std::int32_t rawValue) {
        const Intent intent(engines.table, Origin::EditDialog);
        engines.table.SetParamValue(Param::FwdAccelA, rawValue, true, true);
    };
    for (const int rawValue : {60, 70, 80})
        enter(rawValue);
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
    // Neither another day's, nor those of another set, nor of a nameless set beside a drive.
    wish.day = today.addDays(-1);
    EXPECT_TRUE(JournalOfDay(reader, wish).rows.isEmpty());
    EXPECT_TRUE(
        JournalOfDay(reader, {.day = today, .drive = {}, .setPath = Path("other.Svx")}).rows.isEmpty());
    wish = {.day = today, .drive = DriveIdentity{}, .setPath = engines.document.FileName};
    EXPECT_TRUE(JournalOfDay(reader, wish).rows.isEmpty());
}

TEST_F(ReportTest, AChangeOfTheDriveIsInItsJournal)
{
    ReadDrive();
    {
        const Intent intent(engines.table, Origin::EditDialog);
        engines.table.SetParamValue(Param::FwdAccelA, 75, true, true);
    }
    ASSERT_TRUE(PumpWhile([this] { return engines.table[Param::FwdAccelA].WriteFlag != WriteState::None; },
                          QDeadlineTimer(20000)));
    // A drive is asked who it is after the first thing that is written to it.
    PumpWhile([this] { return Report().journal.rows.isEmpty(); }, QDeadlineTimer(20000));
    const CommissioningTable journal = Report().journal;
    const auto isChange = [](const QStringList &row) {
        return row[1] == QStringLiteral("(226) Fwd Accel A");
    };
    EXPECT_EQ(std::ranges::count_if(journal.rows, isChange), 1);
}

/** A velocity loop that follows each change of its reference by a tenth of a second. */
TrendData Answers()
{
    constexpr qint64 sampleUs = 2000;
    constexpr qint64 stepsUs[] = {1'000'000, 2'500'000};
    constexpr std::int32_t decimals = 2;
    TrendData data;
    for (const int p : {Param::FinalVelDemand, Param::VelFeedback})
        data.tracks.push_back({{.param = p, .attributes = decimals, .name = {}}, {}});
    for (qint64 t = 1; t < 4'000'000; t += sampleUs) {
        const std::int32_t demand = t < stepsUs[0] ? 1000 : t < stepsUs[1] ? 2000 : 1000;
        const double from = t < stepsUs[0] ? 1000 : t < stepsUs[1] ? 1000 : 2000;
        const qint64 began = t < stepsUs[0] ? t : t < stepsUs[1] ? stepsUs[0] : stepsUs[1];
        const double answer = demand + (from - demand) * std::exp(-double(t - began) / 100'000);
        data.tracks[0].samples.Append({.timeUs = t, .rawValue = demand});
        data.tracks[1].samples.Append({.timeUs = t, .rawValue = std::int32_t(std::lround(answer))});
    }
    data.marks = {{stepsUs[0], TrendMarkKind::Edit, Param::Reference0, QStringLiteral("up")},
                  {1'800'000, TrendMarkKind::Note, -1, QStringLiteral("a note")},
                  {stepsUs[1], TrendMarkKind::Edit, Param::Reference0, QStringLiteral("down")},
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
        failure.clear();
        EXPECT_EQ(ReportFromJson(bad, failure), CommissioningReport{}) << bad;
        EXPECT_NE(failure, QString()) << bad;
    }
}

TEST(PdfProgramTest, WhatItsProgramCannotDoIsASentence)
{
    const QTemporaryDir folder;
    const auto sentence = [&folder](const char *script, int waitMs = 20000) {
        const QString path = folder.filePath(QStringLiteral("quorvik-report"));
        QFile::remove(path);
        QFile file(path);
        if (*script != '\0' && file.open(QIODevice::WriteOnly)) {
            file.write(QByteArrayLiteral("#!/bin/sh\n") + script);
            file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
            file.close();
        }
        return WritePdf({}, {.path = QStringLiteral("x.pdf"),
                             .paper = QStringLiteral("letter"),
                             .presets = QStringLiteral("Presets.fil"),
                             .program = path,
                             .waitMs = waitMs})
            .toStdString();
    };
    EXPECT_THAT(sentence(""), HasSubstr("cannot be started"));
    EXPECT_EQ(sentence("cat >/dev/null; [ \"$*\" = \"--out x.pdf --paper letter --presets Presets.fil\" ]"),
              "");
    EXPECT_EQ(sentence("echo 'The disk is full.' >&2; echo more >&2; exit 1"), "The disk is full.");
    EXPECT_THAT(sentence("kill -9 $$"), HasSubstr("failed"));
    EXPECT_THAT(sentence("exec sleep 600", 200), HasSubstr("took too long"));
}

} // namespace quorvik::testing
