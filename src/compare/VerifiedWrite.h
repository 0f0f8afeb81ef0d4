#pragma once

#include "compare/ParameterSet.h"
#include "compare/WriteReport.h"

#include <QObject>
#include <map>
#include <set>

namespace quorvik
{

class Backups;
class DriveLink;
struct ScanResult;

/** All that a resumption has to know of a write that ended early. */
struct UnfinishedWrite {
    WriteReport report;
    std::map<int, std::int32_t> rawBefore; ///< the drive when the write was begun, by parameter
    qint64 begunAt = 0;                    ///< seconds since 1970
};

/**
 * Writes a list of values to the drive and can answer for each: first the drive's set is read and kept as a
 * file, then the values are sent in an order in which none is refused for what is still to come, then all
 * that was sent is read back and compared. Needs the link up, asks and shows nothing, and ends with
 * Finished().
 *
 * The table follows what the drive has taken, and what was read back.
 */
class VerifiedWrite : public QObject
{
    Q_OBJECT

public:
    enum class Phase : std::uint8_t { Idle, KeepingBackup, Writing, ReadingBack };

    VerifiedWrite(ParameterTable &table, DriveLink &link, const Backups &backups);

    /** Begins a new write; the report of the last one is gone. */
    void Begin(const std::vector<ParamValue> &values);
    /**
     * Goes on with a write that ended early. The drive is read anew, and must be the same one; what it holds
     * already counts as verified.
     * @param acceptsChanged goes on also where settings that were not to be written are other ones now.
     */
    void Resume(bool acceptsChanged);
    /** Sends what was refused once more. */
    void RetryRefused();
    /** What another run of the program has to know to resume the last write, also while it is under way. */
    UnfinishedWrite Unfinished() const;
    /** Takes up such a write for Resume(); the last one's report is gone. Not while one is under way. */
    void TakeUp(const UnfinishedWrite &unfinished);
    /** Stops between two parameters; what was sent is still read back. A second call ends that, too. */
    void Cancel();

    bool IsUnderWay() const { return phase_ != Phase::Idle; }
    Phase CurrentPhase() const { return phase_; }
    const WriteReport &Report() const { return report_; }

Q_SIGNALS:
    /** So many values of all that are to be read, written and read back are through.
     * @param inPhase of them in the present phase, which has so many: allInPhase. */
    void Progressed(int done, int all, int inPhase, int allInPhase);
    /** The rows that were not sent yet are sent now. */
    void WritingBegins();
    /** The drive has taken a value. */
    void Taken(int p);
    void Finished();

private:
    void BeginReading();
    void BeginWriting();
    void BeginReadingBack();
    void OnFetched(int p, std::int32_t rawValue);
    void OnStored(int p, bool isTaken);
    void OnScanProgress(int count);
    void OnScanFinished(const ScanResult &result);
    void TakeBackup(const ScanResult &result);
    bool TakeSet();
    QString MissingText(const std::set<int> &missing) const;
    void TakeReadBack(const ScanResult &result);
    void FollowInTable();
    void TakeIntoTable(int p, std::int32_t rawValue);
    void Finish(WriteReport::End end);
    WrittenRow *RowOf(int p);

    ParameterTable &table_;
    DriveLink &link_;
    const Backups &backups_;
    Phase phase_ = Phase::Idle;
    WriteReport report_;
    WriteReport::End endOfWriting_ = WriteReport::End::Complete;
    ParameterSet before_;                 ///< the drive when the write was begun
    std::map<int, std::int32_t> fetched_; ///< of the reading under way
    std::set<int> sent_;                  ///< in this go
    qint64 begunAt_ = 0;                  ///< seconds since 1970
    bool isResumed_ = false;
    bool acceptsChanged_ = false;
    int doneBefore_ = 0; ///< values that earlier phases had
    int allInPhase_ = 0;
};

} // namespace quorvik
