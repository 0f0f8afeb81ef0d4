#pragma once

#include "history/Journal.h"
#include "history/forms/HistoryHost.h"
#include "support/TestDesk.h"

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <memory>

namespace quorvik::testing
{

/** A history's surroundings in a test: a journal of its own, in which the test writes. */
class ScriptedHistory : public HistoryHost
{
public:
    explicit ScriptedHistory(TestDesk &given)
        : path(given.folder.filePath(QStringLiteral("history.sqlite")))
        , reader(path)
    {
        BeginRun();
    }

    const Journal &TheJournal() override { return *journal; }
    JournalReader &Reader() override { return reader; }
    void Refresh() override { ++Refreshed; }
    std::optional<JournalSighting> ThisDrive() override { return Drive; }

    void TakeBack(const std::vector<ShownRow> &rows) override { TakenBack = rows; }
    std::vector<JournalSighting> Drives() override
    {
        return Drive ? std::vector{*Drive} : std::vector<JournalSighting>();
    }
    void StateAt(const JournalSighting &, qint64 utcMs) override { StateWanted = utcMs; }

    /** As the program does when it starts. */
    void BeginRun()
    {
        QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));
        journal = std::make_unique<Journal>(path);
        journal->Begin(QStringLiteral("anna"));
        lastAction_ = lastSequence_ = 0;
        Flush();
    }
    /** What is done is told by an origin, and more where it matters. */
    struct Deed {
        Origin origin = Origin::EditDialog;
        QString title = {};
        int link = 0;
    };
    /** One action, with a row for each of these values of a parameter, which was 10 less. @return the number
     * of the action's last row. */
    int Add(const Deed &deed, int p, std::initializer_list<int> values,
            EntryResult result = EntryResult::Kept)
    {
        JournalBatch batch{.actions = {{.number = ++lastAction_,
                                        .time = Time,
                                        .origin = deed.origin,
                                        .title = deed.title,
                                        .setName = QStringLiteral("/a/b.Svx"),
                                        .link = deed.link}}};
        for (const int value : values)
            batch.rows.push_back({.action = lastAction_,
                                  .sequence = ++lastSequence_,
                                  .time = Time,
                                  .param = p,
                                  .name = QStringLiteral("Reference %1").arg(p),
                                  .rawBefore = value - 10,
                                  .rawAfter = value,
                                  .textBefore = QStringLiteral("%1 %").arg(value - 10),
                                  .textAfter = QStringLiteral("%1 %").arg(value),
                                  .result = result});
        Write(batch);
        return lastSequence_;
    }
    void Write(const JournalBatch &batch) { journal->Add(batch); }
    /** Until all of it can be read. */
    void Flush() { EXPECT_TRUE(journal->Flush(10000)); }

    QString path;
    JournalReader reader;
    std::unique_ptr<Journal> journal;
    std::optional<JournalSighting> Drive;
    JournalTime Time = JournalTime::Now();
    int Refreshed = 0;
    std::vector<ShownRow> TakenBack;
    qint64 StateWanted = 0;

private:
    int lastAction_ = 0;
    int lastSequence_ = 0;
};

} // namespace quorvik::testing
