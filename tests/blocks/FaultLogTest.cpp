#include "blocks/BlockFixture.h"

#include "blocks/DriveClock.h"
#include "blocks/FaultRecord.h"
#include "platform/Guard.h"

#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>

namespace quorvik::testing
{

namespace
{

class ClockTest : public BlockFixture
{
protected:
    ClockTest()
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        SetFailureReporter([this](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    }
    ~ClockTest() override
    {
        SetFailureReporter({});
        QLocale::setDefault(QLocale::system());
    }

    /** Fills consecutive parameters. */
    void Fill(int first, std::initializer_list<std::int32_t> rawValues)
    {
        for (const std::int32_t rawValue : rawValues)
            desk.model.ParamTable[first++].Value = rawValue;
    }

    QString Text(const char *label) const { return Find<QLabel>(QLatin1String(label))->text(); }

    QStringList told;
};

TEST_F(ClockTest, FaultWordsReadInTableOrder)
{
    const std::pair<std::int32_t, const char *> words[] = {
        {0, "None, "},
        {3, "Field Loss, VFB Loss, "},
        {1024, "None, "},
        {0x8000, "None, "},
        {0xFFFF, "Field Loss, VFB Loss, OverVoltage, OverSpeed, OverCurrent, OverTemp, PhaseLoss, "
                 "CT ID Board Error, Phase Lock Error, Thermistor Open, "},
        {512 + 64 + 2048, "PhaseLoss, Thermistor Open, "},
    };
    for (const auto &[word, text] : words)
        EXPECT_EQ(GetFault(word), QLatin1String(text)) << word;
}

TEST_F(ClockTest, ATwoDigitYearIsOfThisCenturyUpTo29)
{
    EXPECT_EQ(QLocale().toDate(DriveDateText(29, 2, 1), QLocale::ShortFormat).year() % 100, 29);
    QLocale::setDefault(QLocale(QLocale::Swedish, QLocale::Sweden));
    const std::pair<int, const char *> years[] = {
        {0, "2000-02-29"}, {29, "no date"}, {28, "2028-02-29"}, {30, "no date"}, {96, "1996-02-29"}};
    for (const auto &[year, text] : years)
        EXPECT_EQ(DriveDateText(year, 2, 29), QLatin1String(text)) << year;
    EXPECT_EQ(DriveDateText(29, 1, 1), QStringLiteral("2029-01-01"));
    EXPECT_EQ(DriveDateText(30, 1, 1), QStringLiteral("1930-01-01"));
}

TEST_F(ClockTest, ALineOfTheLogSaysWhatIsNoDateOrNoTime)
{
    struct Line {
        std::initializer_list<std::int32_t> words;
        const char *text;
    };
    const Line lines[] = {
        {{8, 5, 4, 15, 1, 2, 1, 5}, "OverSpeed, Sunday, 1/2/05, 3:04:05 PM"},
        {{0, 0, 0, 0, 0, 0, 0, 0}, "None, Null, no date, 12:00:00 AM"},
        {{1, 60, 0, 12, 7, 31, 4, 99}, "Field Loss, Saturday, no date, no time"},
        {{1, 0, 0, 24, 2, 30, 4, 99}, "Field Loss, Monday, 4/30/99, no time"},
    };
    for (const Line &line : lines) {
        Fill(FaultLog::First, line.words);
        EXPECT_EQ(GetFaultData(desk.model, FaultLog::First), QLatin1String(line.text));
    }
}

TEST_F(ClockTest, TheLogShowsFiveRecordsMostRecentFirst)
{
    const std::vector<int> before = ReadFlags();
    Open("FormFaultLog");
    for (int p = 263; p <= 302; ++p)
        EXPECT_EQ(ReadFlag(p), before.at(std::size_t(p)) + 1) << p;
    for (int record = 0; record < 5; ++record)
        Fill(263 + 8 * record, {1 << record, 5, 4, 15, 1, 2 + record, 1, 5});
    Tick();
    const QStringList lines =
        Find<QPlainTextEdit>(QStringLiteral("TextFaultLog"))->toPlainText().split(u'\n');
    EXPECT_EQ(lines, QStringList({QStringLiteral("Field Loss, Sunday, 1/2/05, 3:04:05 PM"),
                                  QStringLiteral("VFB Loss, Sunday, 1/3/05, 3:04:05 PM"),
                                  QStringLiteral("OverVoltage, Sunday, 1/4/05, 3:04:05 PM"),
                                  QStringLiteral("OverSpeed, Sunday, 1/5/05, 3:04:05 PM"),
                                  QStringLiteral("OverCurrent, Sunday, 1/6/05, 3:04:05 PM"), QString()}));
    Close();
    EXPECT_EQ(ReadFlags(), before);
}

TEST_F(ClockTest, ADayOutsideTheTableIsToldOnceAndStopsNoOtherWindow)
{
    Open("FormFaultLog");
    BlockForm *log = form;
    desk.model.ParamTable[267].Value = 8;
    Tick();
    Tick();
    EXPECT_EQ(told.size(), 1);
    Open("FormMOP");
    desk.model.ParamTable[322].Value = 1;
    Tick();
    EXPECT_EQ(State("LineReset"), 1);
    form = log;
    desk.model.ParamTable[267].Value = 7;
    Tick();
    EXPECT_TRUE(Find<QPlainTextEdit>(QStringLiteral("TextFaultLog"))
                    ->toPlainText()
                    .startsWith(QStringLiteral("None, Saturday, ")));
    EXPECT_EQ(told.size(), 1);
}

TEST_F(ClockTest, ClearFaultIsForALatchedFaultOnly)
{
    Open("FormFaultLog");
    auto *clear = Find<QPushButton>(QStringLiteral("CommandClearFault"));
    EXPECT_FALSE(clear->isEnabled());
    desk.model.ParamTable[304].Value = 16;
    Tick();
    ASSERT_TRUE(clear->isEnabled());
    Find<QPushButton>(QStringLiteral("CommandClearFaultLog"))->click();
    EXPECT_FALSE(desk.model.FileModified);
    clear->click();
    EXPECT_EQ(desk.model.Value(420), 1);
    EXPECT_EQ(desk.model.ParamTable[420].WriteFlag, WriteState::Queued);
    EXPECT_TRUE(clear->isEnabled()) << "until the drive says that the fault is gone";
    desk.model.ParamTable[304].Value = 0;
    Tick();
    EXPECT_FALSE(clear->isEnabled());
}

TEST_F(ClockTest, TheClockWindowShowsBothClocks)
{
    desk.desk.Now = [] { return QDateTime(QDate(2005, 12, 31), QTime(23, 58, 9)); };
    Open("FormDateTime");
    EXPECT_EQ(Text("LabelDriveDate"), QStringLiteral("Null, no date"));
    Fill(256, {5, 4, 0, 7, 1, 1, 5});
    Tick();
    EXPECT_EQ(Text("LabelDriveDate"), QStringLiteral("Saturday, 1/1/05"));
    EXPECT_EQ(Text("LabelDriveTime"), QStringLiteral("12:04:05 AM"));
    EXPECT_EQ(Text("LabelSystemDate"), QStringLiteral("Saturday, 12/31/05"));
    EXPECT_EQ(Text("LabelSystemTime"), QStringLiteral("11:58:09 PM"));
}

TEST_F(ClockTest, SetToSystemTakesAFreshReadingForEachWord)
{
    Open("FormDateTime");
    // The last second of a year: the clock runs on by one between two readings.
    QDateTime clock(QDate(2005, 12, 31), QTime(23, 59, 59));
    desk.desk.Now = [&clock] {
        const QDateTime now = clock;
        clock = clock.addSecs(1);
        return now;
    };
    Find<QPushButton>(QStringLiteral("CommandSet"))->click();
    const std::int32_t expected[] = {59, 0, 0, 1, 1, 1, 6};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(desk.model.Value(256 + i), expected[i]) << 256 + i;
        EXPECT_EQ(desk.model.ParamTable[256 + i].WriteFlag, WriteState::Queued);
    }
}

} // namespace

} // namespace quorvik::testing
