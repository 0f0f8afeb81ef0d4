#include "history/JournalFixture.h"
#include "support/Name.h"

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace quorvik::testing
{

using ::testing::IsEmpty;
using ::testing::SizeIs;

struct Obstacle {
    const char *name;
    /** Makes the journal at the path impossible to write. @return whether that can be done here. */
    bool (*set)(const QString &path);
    void (*remove)(const QString &path);
};

rlim_t SetFileLimit(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = {};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return before;
}

bool Mount(const QString &path, const char *options, unsigned long flags = 0)
{
    const QByteArray at = QFile::encodeName(QFileInfo(path).path());
    return ::mount("tmpfs", at.constData(), "tmpfs", flags, options) == 0;
}

void Unmount(const QString &path)
{
    ::umount2(QFile::encodeName(QFileInfo(path).path()).constData(), MNT_DETACH);
}

const Obstacle Obstacles[] = {
    {"FolderIsAFile",
     [](const QString &path) {
         const QString at = QFileInfo(path).path();
         QFile file(at);
         return QDir(at).removeRecursively() && file.open(QIODevice::WriteOnly);
     },
     [](const QString &path) { QFile::remove(QFileInfo(path).path()); }},
    {"FileTooLarge", [](const QString &) { return SetFileLimit(8192) > 8192; },
     [](const QString &) { SetFileLimit(RLIM_INFINITY); }},
    {"DiskFull",
     [](const QString &path) {
         if (!Mount(path, "size=16k"))
             return false;
         QFile file(QFileInfo(path).path() + QStringLiteral("/filler"));
         return file.open(QIODevice::WriteOnly) && file.write(QByteArray(16384, 'x')) > 0;
     },
     Unmount},
    {"DiskReadOnly", [](const QString &path) { return Mount(path, "", MS_RDONLY); }, Unmount},
};

class JournalObstacleTest : public JournalTest, public ::testing::WithParamInterface<Obstacle>
{
};

TEST_P(JournalObstacleTest, WaitsAndCatchesUp)
{
    constexpr int Kept = 6; // of three rows and as many results
    timings.mostWaiting = Kept * 7;
    Start();
    Add(10);
    if (!GetParam().set(path)) {
        GetParam().remove(path);
        GTEST_SKIP() << "cannot be made here";
    }
    for (int i = 0; i < 20; ++i)
        Add(1);
    const QStringList told = troubles;
    const int told0 = recovered;
    GetParam().remove(path);
    ASSERT_TRUE(WaitFor([this] { return recovered > 0; }));
    Settle();
    EXPECT_THAT(told, SizeIs(1));
    EXPECT_EQ(told0, 0);
    EXPECT_EQ(news,
              QStringList{QStringLiteral("42 of the changes meanwhile could not be kept in the history.")});
    Add(1);
    EXPECT_EQ(recovered, 1);
    EXPECT_EQ(Count("actions WHERE number > 10"), Kept + 1);
    ExpectWhole();
}

INSTANTIATE_TEST_SUITE_P(All, JournalObstacleTest, ::testing::ValuesIn(Obstacles),
                         [](const auto &test) { return test.param.name; });

TEST_F(JournalTest, IsBegunAgainWhereItWasTakenAway)
{
    for (const bool takesFolder : {false, true}) {
        Start();
        Add(5);
        if (takesFolder)
            QDir(QFileInfo(path).path()).removeRecursively();
        else
            for (const char *end : {"", "-wal", "-shm"})
                QFile::remove(path + QLatin1String(end));
        JournalReader reader(path);
        // A late row of what is gone has nothing to stand under.
        JournalBatch late = bursts.Next(2);
        late.rows.push_back(late.rows.front());
        late.rows.back().action = 1;
        late.results.push_back(late.results.front());
        late.results.back().sequence = 1;
        journal->Add(late);
        Settle();
        EXPECT_THAT(reader.Actions({}, 0, 10), SizeIs(1));
        EXPECT_EQ(Count("entries"), 2);
        EXPECT_THAT(std::exchange(news, {}), SizeIs(1));
        ExpectWhole();
    }
    EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(JournalTest, AReaderFollowsTheFile)
{
    JournalReader reader(path);
    EXPECT_THAT(reader.Actions({}, 0, 10), IsEmpty());
    EXPECT_EQ(reader.Failure(), QString());
    Start();
    Add(3);
    EXPECT_THAT(reader.Actions({}, 0, 10), SizeIs(3));
    ASSERT_TRUE(QDir().rename(QFileInfo(path).path(), folder.filePath(QStringLiteral("elsewhere"))));
    Add(2);
    EXPECT_THAT(reader.Actions({}, 0, 10), SizeIs(2));
}

TEST_F(JournalTest, ADamagedFileIsSetAside)
{
    std::mt19937 random(7);
    Start();
    Add(200);
    journal.reset();
    QFile sound(path);
    ASSERT_TRUE(sound.open(QIODevice::ReadOnly));
    const QByteArray bytes = sound.readAll();
    constexpr int Rounds = 60;
    int aside = 0;
    for (int i = 0; i < Rounds; ++i) {
        QByteArray spoilt = bytes;
        const auto at = qsizetype(random() % std::uint32_t(bytes.size()));
        if (i % 6 == 0)
            spoilt.truncate(at);
        else
            for (qsizetype j = at; j < std::min(bytes.size(), at + 1 + qsizetype(random() % 2000)); ++j)
                spoilt[j] = char(random());
        // Some while a program has it open, which may not see it before the next begins.
        if (i % 2 == 0)
            journal.reset();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.resize(0) && file.write(spoilt) == spoilt.size());
        file.close();
        JournalReader(path).Actions({}, 0, 100);
        if (i % 2 == 1)
            Add(3);
        Start();
        Add(3);
        EXPECT_EQ(Ask(QStringLiteral("PRAGMA integrity_check")), std::vector<qint64>{1}) << i;
        EXPECT_GE(Count("actions"), 3);
        const QStringList files =
            QDir(QFileInfo(path).path()).entryList({QStringLiteral("*-damaged-*.sqlite")});
        EXPECT_EQ(files.size(), aside + news.size()) << i;
        if (i % 2 == 0 && news.isEmpty()) {
            EXPECT_EQ(Count("entries WHERE text_after = raw_after || ' %'"), 609) << i;
        }
        aside = int(files.size());
        for (const QString &line : std::exchange(news, {}))
            EXPECT_THAT(files, ::testing::Contains(line.section(u'/', -1).chopped(1)));
    }
    EXPECT_GT(aside, Rounds / 4);
    EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(JournalTest, WhatIsNoneOfItsOwnStaysWhole)
{
    const auto make = [this](const char *statement) {
        journal.reset();
        QDir(QFileInfo(path).path()).removeRecursively();
        QDir().mkpath(QFileInfo(path).path());
        Ask(QLatin1String(statement));
        Start();
        Add(1);
    };
    make("CREATE TABLE theirs (it)");
    EXPECT_EQ(Count("actions"), 1);
    EXPECT_THAT(troubles, IsEmpty());
    ASSERT_THAT(news, SizeIs(1));
    path = news.front().section(u' ', -1).chopped(1);
    EXPECT_EQ(Count("theirs"), 0);

    path = folder.filePath(QStringLiteral("newer/history.sqlite"));
    Start();
    Add(1);
    journal.reset();
    Ask(QStringLiteral("PRAGMA user_version=2"));
    Start();
    Add(2);
    EXPECT_THAT(news, SizeIs(1));
    EXPECT_THAT(troubles, SizeIs(1));
    EXPECT_EQ(Count("actions"), 1);
}

TEST_F(JournalTest, IsNobodyElsesBusiness)
{
    const mode_t before = ::umask(0);
    Start();
    Add(1);
    for (const char *end : {"", "-wal", "-shm"}) {
        const QFile::Permissions others =
            QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
        EXPECT_EQ(QFile::permissions(path + QLatin1String(end)) & others, QFile::Permissions()) << end;
    }
    ::umask(before);
}

} // namespace quorvik::testing
