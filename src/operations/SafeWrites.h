#pragma once

#include "compare/VerifiedWrite.h"
#include "operations/Outcome.h"

#include <QObject>
#include <functional>

namespace quorvik
{

class Asker;
class Document;
class DriveOperations;
class Guards;
class ParameterTable;
class Snapshots;

/**
 * Writes to the drive that can be answered for: the drive's set is kept as a file before, what was written is
 * read back, and the report says of each value what became of it.
 */
class SafeWrites : public QObject
{
    Q_OBJECT

public:
    SafeWrites(ParameterTable &table, Document &document, VerifiedWrite &writing, DriveOperations &drive,
               Snapshots &snapshots, Guards &guards, Asker &asker);

    /** The whole open set, but for what is no setting; goes on line for it where the program is off line, and
     * stays there. */
    OperationResult WriteOpenSet();
    /**
     * A list of values, from wherever they come. On line only.
     * @param from the set that the values are of, for the questions: its model and rated current.
     */
    OperationResult Write(const std::vector<ParamValue> &values, const ParameterSet &from);
    /** The same of a whole set, which no drive that runs is given. */
    OperationResult WriteWholeSet(const std::vector<ParamValue> &values, const ParameterSet &from);
    /** The rest of a write that ended early: goes on line where needed, and goes on with the same drive only.
     */
    OperationResult Resume();
    /** The refused ones once more. */
    OperationResult RetryRefused();

    const WriteReport &Report() const { return writing_.Report(); }
    bool IsUnderWay() const { return writing_.IsUnderWay(); }

Q_SIGNALS:
    /** A write has ended, and its report is there to be shown. */
    void Reported();

private:
    OperationResult WriteGuarded(const std::vector<ParamValue> &values, const ParameterSet &from,
                                 bool isWhole, bool isOpenSet);
    OperationResult EnsureOnLine();
    OperationResult Run(const std::function<void()> &begin);
    OperationResult ResultOfReport() const;

    ParameterTable &table_;
    Document &document_;
    VerifiedWrite &writing_;
    DriveOperations &drive_;
    Snapshots &snapshots_;
    Guards &guards_;
    Asker &asker_;
    bool isOpenSet_ = false; ///< what is written is the open set, which stays the one of its file
};

} // namespace quorvik
