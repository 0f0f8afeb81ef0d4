#pragma once

#include "history/Journal.h"
#include "history/forms/HistoryHost.h"

#include <QTemporaryDir>

namespace quorvik
{

/** A history over two runs, in a journal of its own. */
class SampleHistory : public HistoryHost
{
public:
    SampleHistory();

    const Journal &TheJournal() override { return *journal_; }
    JournalReader &Reader() override { return reader_; }
    void Refresh() override {}
    std::optional<JournalSighting> ThisDrive() override;
    void TakeBack(const std::vector<ShownRow> &) override {}
    std::vector<JournalSighting> Drives() override;
    void StateAt(const JournalSighting &, qint64) override {}

private:
    void BeginRun();
    /** @param params changed one after the other; result for all of them. */
    void Add(const JournalAction &given, const std::vector<JournalRow> &rows);
    /** Runs began at other times than this one. */
    void DateRuns();

    QTemporaryDir folder_;
    QString path_;
    JournalReader reader_;
    std::unique_ptr<Journal> journal_;
    int lastAction_ = 0;
    int lastSequence_ = 0;
};

} // namespace quorvik
