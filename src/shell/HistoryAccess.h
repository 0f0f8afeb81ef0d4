#pragma once

#include "history/PastStates.h"
#include "history/forms/HistoryHost.h"

namespace quorvik
{

class MDIFormMain;
struct Engines;

/** Lets the window of the history reach the engines of this run. */
class HistoryAccess : public HistoryHost
{
public:
    explicit HistoryAccess(MDIFormMain &main);

    const Journal &TheJournal() override;
    JournalReader &Reader() override { return reader_; }
    void Refresh() override;
    std::optional<JournalSighting> ThisDrive() override;
    void TakeBack(const std::vector<ShownRow> &rows) override;
    std::vector<JournalSighting> Drives() override;
    void StateAt(const JournalSighting &drive, qint64 utcMs) override;

private:
    MDIFormMain &main_;
    Engines &engines_;
    JournalReader reader_;
    PastStates pastStates_;
};

} // namespace quorvik
