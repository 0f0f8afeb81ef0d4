#pragma once

#include "wizards/frame/WritePlan.h"

#include <QObject>

namespace quorvik
{

class DriveLink;

/**
 * Follows the writes of a plan on their way to the drive, after its window has closed. What the drive refuses
 * is taken back: the parameter gets the value it had before, and then the one that the drive reports.
 */
class WriteWatch : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        Waiting,
        Written,
        HasAlready, ///< refused, and the drive's value is the same
        Refused,
        NotWritten
    };

    /**
     * Belongs to the link.
     * @param plan has just been committed.
     * @param before the table as it was before that.
     */
    WriteWatch(ParameterTable &table, Document &document, DriveLink &link, WritePlan plan,
               RecordArray before);

    /** To be called once Settled() is connected: what is settled already is announced then. */
    void Start() { Check(); }

    const WritePlan &Plan() const { return plan_; }
    Outcome OutcomeOf(std::size_t write) const { return outcomes_[write]; } ///< by place in the plan
    bool Has(Outcome outcome) const;
    /** A write has not reached the drive, and the drive has another value. */
    bool IsLost(std::size_t write) const
    {
        return OutcomeOf(write) == Outcome::Refused || OutcomeOf(write) == Outcome::NotWritten;
    }

Q_SIGNALS:
    /** Every write has come to its end, or the link has. Emitted once, from the event loop. */
    void Settled();

private:
    void Note(int p, Outcome outcome);
    void TakeBack(int p, std::int32_t rawValue, bool *told);
    void Check();
    void Settle();

    ParameterTable &table_;
    Document &document_;
    DriveLink &link_;
    WritePlan plan_;
    RecordArray before_;
    std::vector<Outcome> outcomes_; ///< one for each write of the plan
    QList<int> unread_;             ///< to be read before the outcome can be told
    bool settled_ = false;
};

} // namespace quorvik
