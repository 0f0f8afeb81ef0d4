#include "blocks/BlockFixture.h"

#include "blocks/FormTripRecord.h"
#include "model/DriveClock.h"

#include <QFile>
#include <QListWidget>
#include <QLocale>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace quorvik::testing
{

using namespace Param;

class ClockTest : public BlockFixture
{
protected:
    ClockTest() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
    ~ClockTest() override { QLocale::setDefault(QLocale::system()); }

    /** Fills consecutive parameters. */
    void Fill(int first, std::initializer_list<std::int32_t> rawValues)
    {
        for (const std::int32_t rawValue : rawValues)
            Set({{first++, rawValue}});
    }

    QString Log() const { return Find<QPlainTextEdit>("TextFaultLog")->toPlainText(); }
};

TEST_F(ClockTest, ATwoDigitYearIsOfThisCenturyUpTo29)
{
    QLocale::setDefault(QLocale(QLocale::Swedish, QLocale::Sweden));
    const std::tuple<int, int, const char *> dates[] = {
        {0, 29, "2000-02-29"}, {29, 29, "no date"},   {96, 29, "1996-02-29"},
        {29, 1, "2029-02-01"}, {30, 1, "1930-02-01"},
    };
    for (const auto &[year, day, text] : dates)
        EXPECT_EQ(DriveDateText(year, 2, day), QLatin1String(text)) << year;
}

TEST_F(ClockTest, TheLogShowsFiveRecordsMostRecentFirst)
{
    Open("FormFaultLog");
    for (int p = 263; p <= 302; ++p)
        EXPECT_EQ(ReadFlag(p), before.at(std::size_t(p)) + 1) << p;
    const std::initializer_list<std::int32_t> records[] = {{0xFFFF, 5, 4, 15, 1, 2, 1, 5},
                                                           {1024 + 0x8000, 0, 0, 0, 0, 0, 0, 0},
                                                           {512 + 64 + 2048, 60, 0, 12, 7, 31, 4, 99},
                                                           {1, 0, 0, 24, 2, 30, 4, 99},
                                                           {2, 5, 4, 15, 1, 3, 1, 5}};
    for (int record = 0; record < 5; ++record)
        Fill(263 + 8 * record, records[record]);
    Tick();
    EXPECT_EQ(Log(), QStringLiteral(
                         "Field Loss, VFB Loss, OverVoltage, OverSpeed, OverCurrent, OverTemp, PhaseLoss, "
                         "CT ID Board Error, Phase Lock Error, Thermistor Open, Sunday, 1/2/05, 3:04:05 PM\n"
                         "None, Null, no date, 12:00:00 AM\n"
                         "PhaseLoss, Thermistor Open, Saturday, no date, no time\n"
                         "Field Loss, Monday, 4/30/99, no time\n"
                         "VFB Loss, Sunday, 1/3/05, 3:04:05 PM\n"));
}

TEST_F(ClockTest, ADayOutsideTheTableIsToldOnceAndStopsNoOtherWindow)
{
    Open("FormFaultLog");
    BlockForm *log = form;
    Set({{263, 2}, {267, 8}, {271, 1}, {304, 16}});
    Tick();
    Tick();
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(Log().startsWith(Name("VFB Loss, no day, no date, 12:00:00 AM\nField Loss, Null, ")));
    EXPECT_TRUE(Find<QPushButton>("CommandClearFault")->isEnabled());
    Open("FormMOP");
    Set({{322, 1}});
    Tick();
    EXPECT_EQ(State("LineReset"), 1);
    window = form = log;
    Set({{267, 7}});
    Tick();
    EXPECT_TRUE(Log().startsWith(Name("VFB Loss, Saturday, ")));
    EXPECT_EQ(told.size(), 1);
}

TEST_F(ClockTest, FaultsAreNamedAndExplainedAndUnfilledRecordsAreBlank)
{
    Open("FormFaultLog");
    const auto remedies = [this] { return Find<QTextEdit>("TextRemedies")->toPlainText(); };
    EXPECT_EQ(Log(), QString(5, u'\n'));
    EXPECT_EQ(Text("LabelPresentFaults"), "None");
    EXPECT_TRUE(remedies().startsWith(Name("No fault is latched")));

    Set({{PresentFault, 64}, {LatchedFault, 64 + 1}});
    Fill(FaultLog1Faults, {1, 5, 4, 15, 1, 2, 1, 5});
    Fill(FaultLog3Faults, {0x8000 + 8, 5, 4, 15, 1, 2, 1, 5});
    Tick();
    EXPECT_EQ(Text("LabelPresentFaults"), "Phase Loss");
    EXPECT_EQ(Text("LabelLatchedFaults"), "Field Loss, Phase Loss");
    EXPECT_TRUE(
        remedies().startsWith(Name("Field Loss (latched, record 1)\nWhat it means: The field current, "
                                   "(336) Field I Feedback, fell below (249) Field Loss Level.")));
    EXPECT_TRUE(remedies().contains(Name("\nPhase Loss (latched, present)\n")));
    EXPECT_EQ(remedies().count(Name("What to check: ")), 2);

    auto *log = Find<QPlainTextEdit>("TextFaultLog");
    log->setFocus();
    for (int line = 0; line < 2; ++line)
        QTest::keyClick(log, Qt::Key_Down);
    EXPECT_TRUE(remedies().contains(Name("\nOverSpeed (record 3)\n"))) << "by keyboard";
    EXPECT_TRUE(remedies().contains(Name("\nbit 15 (record 3)\n")));
    Fill(FaultLog2Faults, {2, 5, 4, 15, 1, 2, 1, 5});
    Tick();
    EXPECT_EQ(log->textCursor().blockNumber(), 2) << "another record does not move the cursor";

    Set({{PresentFault, 0xFFFF}});
    Tick();
    const auto *names = Find<QLabel>("LabelPresentFaults");
    EXPECT_THAT(names->text().toStdString(), ::testing::EndsWith(" more"));
    EXPECT_THAT(names->toolTip().toStdString(), ::testing::HasSubstr("bit 15"));
    const int width = log->width();
    form->resize(form->size() + QSize(200, 200));
    QCoreApplication::processEvents();
    EXPECT_EQ(log->width(), width + 200);
}

TEST_F(ClockTest, TheTripsAreShownAndExported)
{
    Open("FormFaultLog");
    Click("CommandAtTheTrip");
    auto *trips = qobject_cast<FormTripRecord *>(desk.forms.At(desk.forms.Count() - 1));
    ASSERT_NE(trips, nullptr);
    Click("CommandAtTheTrip");
    EXPECT_EQ(desk.forms.At(desk.forms.Count() - 1), trips) << "one window for all";
    window = trips;
    EXPECT_FALSE(Enabled("CommandExport"));

    const auto tell = [this](int p, std::int32_t rawValue) { Q_EMIT desk.link.Confirmed(p, rawValue); };
    tell(DriveState, 1);
    tell(ArmatureAmps, 77);
    tell(DriveState, 8);
    tell(LatchedFault, 64);
    auto *list = Find<QListWidget>("ListTrips");
    tell(DriveState, 0);
    tell(DriveState, 8);
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->currentRow(), 1) << "the one that is looked at stays";
    auto *recording = Find("CommandRecording");
    EXPECT_FALSE(recording->isVisible()) << "nothing was recorded before it";
    QString opened;
    desk.desk.RecordingOfTrip = [](int number) { return number == 1 ? QStringLiteral("one") : QString(); };
    desk.desk.ShowRecording = [&](const QString &shown) { opened = shown; };
    Tick();
    Click("CommandRecording");
    EXPECT_EQ(opened, QStringLiteral("one"));
    list->setCurrentRow(0);
    EXPECT_FALSE(recording->isVisible()) << "of the other trip there is none";
    list->setCurrentRow(1);
    const QString path = desk.folder.filePath(QStringLiteral("trip.csv"));
    trips->ChooseExport = [&](const QString &suggested) {
        EXPECT_TRUE(suggested.endsWith(QStringLiteral(".csv")));
        return path;
    };
    desk.document.FileName = QStringLiteral("=pump.Svx");
    Click("CommandExport");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray csv = file.readAll();
    EXPECT_TRUE(csv.contains("\"Faults\",\"Phase Loss\"\r\n")) << csv.toStdString();
    EXPECT_TRUE(csv.contains("\"Set\",\"'=pump.Svx\"\r\n"));
    EXPECT_TRUE(csv.contains("\"Currents\",\"114\",\"Armature Amps\",\"77 Amps\","));
    EXPECT_TRUE(csv.contains("\"Field Amps\",\"\",\"not read\"\r\n"));
    trips->ChooseExport = [&](const QString &) {
        return desk.folder.path() + QStringLiteral("/none/trip.csv");
    };
    desk.asker.Expect(QStringLiteral("was not written"));
    Click("CommandExport");
}

TEST_F(ClockTest, ClearFaultIsForALatchedFaultOnly)
{
    Open("FormFaultLog");
    auto *clear = Find<QPushButton>("CommandClearFault");
    EXPECT_FALSE(clear->isEnabled());
    Set({{304, 16}});
    Tick();
    ASSERT_TRUE(clear->isEnabled());
    Click("CommandClearFaultLog");
    EXPECT_FALSE(desk.document.FileModified);
    clear->click();
    EXPECT_EQ(P(420), 1);
    EXPECT_EQ(Record(420).WriteFlag, WriteState::Queued);
    EXPECT_TRUE(clear->isEnabled()) << "until the drive says that the fault is gone";
    Set({{304, 0}});
    Tick();
    EXPECT_FALSE(clear->isEnabled());
}

TEST_F(ClockTest, TheClockWindowShowsBothClocksAndSetsEachWordByAFreshReading)
{
    desk.desk.Now = [] { return QDateTime(QDate(2005, 12, 31), QTime(23, 58, 9)); };
    Open("FormDateTime");
    EXPECT_EQ(Text("LabelDriveDate"), "Null, no date");
    Fill(256, {5, 4, 0, 7, 1, 1, 5});
    Tick();
    EXPECT_EQ(Text("LabelDriveDate"), "Saturday, 1/1/05");
    EXPECT_EQ(Text("LabelDriveTime"), "12:04:05 AM");
    EXPECT_EQ(Text("LabelSystemDate"), "Saturday, 12/31/05");
    EXPECT_EQ(Text("LabelSystemTime"), "11:58:09 PM");

    // The last second of a year: the clock runs on by one between two readings.
    QDateTime clock(QDate(2005, 12, 31), QTime(23, 59, 59));
    desk.desk.Now = [&clock] { return std::exchange(clock, clock.addSecs(1)); };
    Click("CommandSet");
    const std::int32_t expected[] = {59, 0, 0, 1, 1, 1, 6};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(P(256 + i), expected[i]) << 256 + i;
        EXPECT_EQ(Record(256 + i).WriteFlag, WriteState::Queued);
    }
}

} // namespace quorvik::testing
