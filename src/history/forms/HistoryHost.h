#pragma once

#include "history/JournalReader.h"

#include <optional>

namespace quorvik
{

class Journal;

/** What the window of the history needs beside the desk. The shell answers with this run's journal, a picture
 * of the window with one of its own. */
class HistoryHost
{
public:
    virtual ~HistoryHost() = default;

    /** Says when there is something new to read. */
    virtual const Journal &TheJournal() = 0;
    /** Reads it. */
    virtual JournalReader &Reader() = 0;
    /** Hands over what is still being gathered; the journal tells when it is written. */
    virtual void Refresh() = 0;
    /** The drive that is on line, once it has told what it is. */
    virtual std::optional<JournalSighting> ThisDrive() = 0;

    /** Opens the comparison with what these values were before, ready to be copied back. */
    virtual void TakeBack(const std::vector<ShownRow> &rows) = 0;
    /** The drives that the journal knows, each once, as it was seen last. */
    virtual std::vector<JournalSighting> Drives() = 0;
    /** Opens the comparison with what a drive held at a moment. */
    virtual void StateAt(const JournalSighting &drive, qint64 utcMs) = 0;
};

} // namespace quorvik
