#include "trend/StoreFixture.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QThread>
#include <random>

namespace quorvik::testing
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StoreSeedTest : public StoreTest, public ::testing::WithParamInterface<unsigned>
{
};

TEST_P(StoreSeedTest, TheFileHoldsWhatTheRecorderHolds)
{
    std::mt19937 random(GetParam());
    timings.storePruneMs = 0;
    timings.storeMs = 0;
    Begin();
    recorder.SetKeepMs(1000);
    recorder.Start();
    recorder.SetTitle(QStringLiteral("=1+1 \"ä\""));
    for (int i = 0; i < 3000; ++i) {
        Sample(std::int32_t(random()), int(random() % 8000));
        switch (random() % 60) {
        case 0: // What was told since the pass began is not true.
            Q_EMIT link.PassBegins();
            for (unsigned more = random() % 5; more > 0; --more)
                Sample(-1);
            if (random() % 2 != 0)
                Settle(); // It is in the file by now.
            Q_EMIT link.Received({}, false);
            break;
        case 1:
            recorder.AddNote(QString::number(i));
            break;
        case 2:
            recorder.RemoveChannel(Param::ArmatureAmps);
            break;
        case 3:
            recorder.AddChannel(Param::ArmatureAmps, TrendPace(random() % 2));
            break;
        case 4: // The file is written in the middle of all this, and old samples go.
            QThread::msleep(1);
            QCoreApplication::processEvents();
            break;
        case 5:
            recorder.SetNotes(QString::number(i));
            break;
        default:
            break;
        }
    }
    recorder.Stop();
    Settle();
    EXPECT_EQ(Loaded(store->RunningPath()), LinesOf(recorder.Data()));
    EXPECT_THAT(Files(), ::testing::SizeIs(1)) << "nothing lies beside it at the end";
    EXPECT_EQ(QFile::permissions(store->RunningPath()) & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());
    EXPECT_THAT(troubles, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Seeds, StoreSeedTest, ::testing::Range(1U, 7U));

TEST_F(StoreTest, ACaptureComesBackAsItWas)
{
    Begin();
    Record(300);
    auto data = std::make_shared<TrendData>(recorder.Data());
    data->head.drive = DriveIdentity{.model = 1, .driveAmps = -2, .firmware = 3, .lastParam = 433};
    data->triggerUs = nowUs - 5;
    const QString path = store->Save(data, RecordingKind::Capture);
    Settle();
    EXPECT_EQ(Loaded(path), LinesOf(*data));
    EXPECT_EQ(store->Keep(path, QStringLiteral("pump"), QStringLiteral("two\nlines")), QString());
    const std::vector<StoredRecording> listed = store->List();
    const auto found = std::ranges::find(listed, path, &StoredRecording::path);
    ASSERT_NE(found, listed.end());
    EXPECT_EQ(found->head.title, QStringLiteral("pump"));
    EXPECT_TRUE(found->isKept && found->isComplete && !found->isRunning);
    EXPECT_EQ(found->durationMs, 299 * 2);
    EXPECT_THAT(found->channels, ::testing::SizeIs(2));
}

TEST_F(StoreTest, ARecordingOfNothingLeavesNoFile)
{
    Begin();
    Record(0);
    EXPECT_THAT(Files(), IsEmpty());
    EXPECT_EQ(store->RunningPath(), QString());
}

TEST_F(StoreTest, WhatRunsIsListedAndNotDeletedAndWhatReplacesItTakesAnotherFile)
{
    Begin();
    recorder.Start();
    Sample(1);
    ASSERT_TRUE(WaitFor([this] { return !store->RunningPath().isEmpty(); }));
    Settle();
    const QString first = store->RunningPath();
    ASSERT_EQ(store->List().size(), 1U);
    EXPECT_TRUE(store->List().front().isRunning);
    EXPECT_NE(store->Remove(first), QString());
    EXPECT_EQ(store->Keep(first, QStringLiteral("mine"), {}), QString());
    // The file goes in spite of that: it is made anew, with all there is.
    QFile::remove(first);
    Sample(2);
    ASSERT_TRUE(WaitFor([&] {
        const TrendDataPtr data = store->Load(first, nullptr);
        return data && data->tracks.front().samples.Size() == 2;
    }));
    nowUs += 1000;
    recorder.Start();
    Sample(3);
    recorder.Stop();
    Settle();
    EXPECT_NE(store->RunningPath(), first);
    for (const StoredRecording &recording : store->List())
        EXPECT_TRUE(recording.isComplete && !recording.isRunning) << recording.path.toStdString();
    EXPECT_EQ(store->Remove(first), QString());
    EXPECT_EQ(store->List().size(), 1U);
}

TEST_F(StoreTest, TroubleIsToldOnceAndNothingIsLostWhenItIsOver)
{
    QFile inTheWay(where);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    Begin();
    recorder.Start();
    Sample(1);
    ASSERT_TRUE(WaitFor([this] { return !troubles.isEmpty(); }));
    const QString capture = store->Save(recorder.Snapshot(), RecordingKind::Capture);
    for (int i = 0; i < 20; ++i) {
        Sample(i);
        PumpWhile([] { return true; }, QDeadlineTimer(5));
    }
    recorder.Stop();
    EXPECT_EQ(troubles.size(), 1) << troubles.join(u'\n').toStdString();
    inTheWay.remove();
    ASSERT_TRUE(WaitFor([&] { return QFile::exists(store->RunningPath()) && QFile::exists(capture); }));
    Settle();
    EXPECT_EQ(Loaded(store->RunningPath()), LinesOf(recorder.Data()));
    EXPECT_EQ(recovered, 1);
    EXPECT_EQ(store->Load(capture, nullptr)->tracks.front().samples.Size(), 1U);
}

TEST_F(StoreTest, OnlyWhatNobodyKeptIsClearedAway)
{
    timings.mostRunning = 3;
    timings.mostTrips = 2;
    Begin();
    const QString kept = Record(2);
    EXPECT_EQ(store->Keep(kept, {}, {}), QString());
    QStringList running;
    QStringList trips;
    QStringList captures;
    for (int i = 0; i < 6; ++i) {
        QThread::msleep(2); // the head has milliseconds
        running += Record(2);
        trips += store->Save(recorder.Snapshot(), RecordingKind::Trip);
        captures += store->Save(recorder.Snapshot(), RecordingKind::Capture);
        Settle();
    }
    QStringList left;
    for (const StoredRecording &recording : store->List())
        left += recording.path;
    EXPECT_THAT(left, ::testing::UnorderedElementsAreArray(running.mid(3) + trips.mid(4) + captures << kept));
}

TEST_F(StoreTest, DamageGivesASentenceOrGoodData)
{
    Begin();
    recorder.AddNote(QStringLiteral("note"));
    const QString path = Record(400);
    const QByteArray whole = Content(path);
    const std::vector<std::string> good = Loaded(path);
    std::mt19937 random(3);
    int refused = 0;
    for (int i = 0; i < 400; ++i) {
        QByteArray bytes = whole;
        if (i % 4 == 0)
            bytes.truncate(qsizetype(random() % std::size_t(bytes.size())));
        else
            for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
                bytes[qsizetype(random() % std::size_t(bytes.size()))] = char(random());
        QFile damaged(path);
        ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
        damaged.write(bytes);
        damaged.close();
        store->List();
        QString failure;
        const TrendDataPtr data = store->Load(path, &failure);
        if (data)
            EXPECT_EQ(LinesOf(*data), good) << i;
        else
            EXPECT_FALSE(failure.isEmpty()) << i;
        refused += data == nullptr;
    }
    EXPECT_GT(refused, 100);
}

TEST_F(StoreTest, AForeignFileIsListedWithWhatIsWrong)
{
    Begin();
    struct Case {
        const char *statement;
        const char *said;
    };
    const Case cases[] = {
        {"PRAGMA user_version = 2", "newer version"},
        {"PRAGMA application_id = 7", "no recording"},
        {"CREATE VIEW more AS SELECT 1", "no recording"},
        {"UPDATE samples SET raw = raw + 1 WHERE position = 3", "damaged"},
        {"UPDATE samples SET time_us = 9000000000000000000 WHERE position = 3", "damaged"},
        {"DELETE FROM samples WHERE position = 3", "damaged"},
        {"UPDATE head SET value = 'x' WHERE key = 'began_us'", "damaged"},
    };
    for (const Case &one : cases) {
        const QString path = Record(9);
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("x"));
            database.setDatabaseName(path);
            ASSERT_TRUE(database.open());
            ASSERT_TRUE(QSqlQuery(database).exec(QLatin1String(one.statement)));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("x"));
        EXPECT_THAT(Loaded(path), ElementsAre(::testing::HasSubstr(one.said))) << one.statement;
        EXPECT_NO_THROW(store->List());
    }
    QFile text(where + QStringLiteral("/text.trend"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("no database at all, but long enough to be looked at");
    text.close();
    const std::vector<StoredRecording> listed = store->List();
    const auto found = std::ranges::find(listed, text.fileName(), &StoredRecording::path);
    ASSERT_NE(found, listed.end());
    EXPECT_NE(found->failure, QString());
}

TEST_F(StoreTest, AKilledProgramLeavesAWholeRecording)
{
    constexpr int Kills = 8;
    constexpr qint64 MostMissingUs = 2'000'000;
    std::mt19937 random(11);
    Begin();
    for (int i = 0; i < Kills; ++i) {
        QDir(where).removeRecursively();
        QProcess other;
        other.start(QStringLiteral(QUORVIK_TREND_CHILD), {where, QStringLiteral(QUORVIK_PRESETS_FILE)});
        ASSERT_TRUE(other.waitForStarted());
        int last = 0;
        qint64 lastUs = 0;
        const int wanted = 400 + int(random() % 300);
        while (last < wanted || other.canReadLine()) {
            ASSERT_TRUE(other.canReadLine() || other.waitForReadyRead(LongMs));
            const QList<QByteArray> words = other.readLine().trimmed().split(' ');
            last = words.front().toInt();
            lastUs = words.back().toLongLong();
        }
        if (i == 0) {
            EXPECT_TRUE(store->List().at(0).isRunning);
        }
        QThread::usleep(random() % 5000);
        other.kill();
        ASSERT_TRUE(other.waitForFinished());
        const std::vector<StoredRecording> listed = store->List();
        ASSERT_EQ(listed.size(), 1U);
        EXPECT_TRUE(!listed[0].isComplete && !listed[0].isRunning && listed[0].failure.isEmpty());
        QString failure;
        const TrendDataPtr data = store->Load(listed[0].path, &failure);
        ASSERT_TRUE(data) << failure.toStdString();
        for (const TrendTrack &track : data->tracks) {
            for (std::size_t j = 0; j < track.samples.Size(); ++j)
                ASSERT_EQ(track.samples[j].rawValue, std::int32_t(j) + 1);
            EXPECT_LT(lastUs - track.samples.Last().timeUs, MostMissingUs);
            EXPECT_EQ(track.samples.Size(), data->tracks[0].samples.Size()) << "no torn batch";
        }
    }
}

} // namespace quorvik::testing
