#pragma once

#include "history/Bursts.h"
#include "history/Journal.h"
#include "history/JournalReader.h"
#include "platform/Waiting.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <memory>
#include <random>

namespace quorvik::testing
{

/** A journal in a folder of its own, and what it told. */
class JournalTest : public ::testing::Test
{
protected:
    static constexpr int LongMs = 60'000;

    JournalTest() { timings.retryMs = 20; }

    /** A program on the journal begins, in place of the one that there was. */
    Journal &Start(bool begins = true)
    {
        journal.reset();
        bursts = {};
        journal = std::make_unique<Journal>(path, timings);
        const auto keep = [](QStringList &list) { return [&list](const QString &text) { list += text; }; };
        QObject::connect(journal.get(), &Journal::Trouble, keep(troubles));
        QObject::connect(journal.get(), &Journal::News, keep(news));
        QObject::connect(journal.get(), &Journal::Recovered, [this] { ++recovered; });
        if (begins)
            journal->Begin(QStringLiteral("somebody"));
        return *journal;
    }
    void Settle()
    {
        ASSERT_TRUE(journal->Flush(LongMs));
        QCoreApplication::processEvents();
    }
    void Add(int actions, int rows = 3)
    {
        for (int i = 0; i < actions; ++i)
            journal->Add(bursts.Next(rows));
        Settle();
    }
    bool WaitFor(const std::function<bool()> &isTrue)
    {
        return PumpWhile([&] { return !isTrue(); }, QDeadlineTimer(LongMs));
    }
    /** The numbers in the first column that a query gives on the file, by a connection of its own. */
    std::vector<qint64> Ask(const QString &statement) const
    {
        std::vector<qint64> numbers;
        const QString name = QStringLiteral("asking");
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
            database.setDatabaseName(path);
            QSqlQuery query(database.open() ? database : QSqlDatabase());
            for (query.exec(statement); query.next();)
                numbers.push_back(query.value(0) == QLatin1String("ok") ? 1 : query.value(0).toLongLong());
        }
        QSqlDatabase::removeDatabase(name);
        return numbers;
    }
    qint64 Count(const char *table) const
    {
        const std::vector<qint64> found = Ask(QStringLiteral("SELECT count(*) FROM ") + QLatin1String(table));
        return found.empty() ? -1 : found.front();
    }
    /** Every action has the rows that it was written with, and nothing belongs to nothing. */
    void ExpectWhole() const
    {
        EXPECT_EQ(Ask(QStringLiteral("PRAGMA integrity_check")), std::vector<qint64>{1});
        EXPECT_EQ(
            Count("actions a WHERE CAST(title AS INTEGER) <> (SELECT count(*) FROM entries e WHERE e.run = "
                  "a.run AND e.action = a.number)"),
            0);
        for (const char *strays :
             {"actions WHERE run NOT IN (SELECT id FROM runs)",
              "entries WHERE (run, action) NOT IN (SELECT run, number FROM actions)",
              "notes WHERE (run, action) NOT IN (SELECT run, number FROM actions)",
              "results WHERE (run, sequence) NOT IN (SELECT run, sequence FROM entries)",
              "entries WHERE (run, sequence) NOT IN (SELECT run, sequence FROM results)"})
            EXPECT_EQ(Count(strays), 0) << strays;
    }
    QStringList Aside() const { return QDir(folder.path()).entryList({QStringLiteral("*damaged*.sqlite")}); }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("data/history.sqlite"));
    JournalTimings timings;
    std::unique_ptr<Journal> journal;
    Bursts bursts;
    QStringList troubles;
    QStringList news;
    int recovered = 0;
};

} // namespace quorvik::testing
