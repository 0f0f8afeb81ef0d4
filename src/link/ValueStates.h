#pragma once

#include "link/LinkTimings.h"
#include "platform/Clock.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvik
{

class DriveLink;
class ParameterTable;

/** Where a value of the table comes from, and how far it can be relied on. */
enum class ValueState : std::uint8_t {
    Live,     ///< the drive has just told or taken it
    Old,      ///< the drive told it on this connection, longer ago
    Never,    ///< on line, and the drive has not told it
    Queued,   ///< an entry that the drive has not taken yet, or had not when the link was lost
    Refused,  ///< the drive would not take what was entered
    Set,      ///< off line: the open set's
    Emulated, ///< off line: computed
    Lost,     ///< the last value of a drive that does not answer any more
};

/** The word for a state, as a list shows it. */
QString NameOf(ValueState state);

/** A time in milliseconds as far as it matters: "0.4 s", "41 s", "3 min". */
QString AgeText(qint64 ms);

/**
 * Beside each value of the table: where it comes from, and since when the drive has confirmed it. It only
 * watches table and link, and never says Live of a value that is not the one that the drive told.
 */
class ValueStates : public QObject
{
    Q_OBJECT

public:
    /** An entry that the drive had not taken when the link was lost. */
    struct Unwritten {
        int param = 0;
        std::int32_t rawEntered = 0;
    };

    /** What link.Timings() say of states; both must outlive it. */
    ValueStates(ParameterTable &table, DriveLink &link, MsClock clock = MillisecondsUp);

    /** @param p raises RuntimeFailure outside the table. */
    ValueState Of(int p) const;
    /** The same in a sentence: "read 0.4 s ago", "the drive refused 12.00 %, it keeps 10.00 %". Empty for
     * Set. */
    QString Describe(int p) const;
    /** Milliseconds since the drive confirmed p, on this connection or on the one that was lost. */
    std::optional<qint64> Age(int p) const;
    /** The raw value that the drive confirmed last, on this connection or on the one that was lost. */
    std::optional<std::int32_t> DriveValue(int p) const;
    /** The user turns to p: a refusal is seen. */
    void Touch(int p);

    /** From the moment in which a fault ended the link until a drive has told something again, or EndLoss().
     */
    bool IsLost() const { return isLost_; }
    /** When the drive answered last before the link was lost, by the computer's clock. */
    const QDateTime &LostSince() const { return lostSince_; }
    /** What had not reached the drive when a link was lost, in the order of numbers; kept, also on a new
     * connection, until the drive takes another value. */
    const std::vector<Unwritten> &UnwrittenEntries() const { return unwritten_; }
    /** From now on the table is the open set, and nothing of it the lost drive's. */
    void EndLoss();

Q_SIGNALS:
    /** The state of p or its value is another one; told within LinkTimings::stateUpdate. */
    void StateChanged(int p);
    /** IsLost() is another one. */
    void LossChanged();

private:
    struct Row {
        qint64 confirmedAt = -1;
        qint64 refusedAt = -1;
        qint64 computedAt = -1;
        std::int32_t rawConfirmed = 0;
        std::int32_t rawRefused = 0;
        int unanswered = 0;     ///< times it was asked for since it was confirmed
        bool isWritten = false; ///< it was confirmed by taking a write
        bool isEntered = false; ///< off line, after a loss: the user's own again
        ValueState told = ValueState::Set;
        std::int32_t rawTold = 0;
    };

    Row &At(int p);
    const Row &At(int p) const;
    ValueState OnLine(int p, const Row &row) const;
    ValueState OffLine(int p, const Row &row) const;
    bool IsUnwritten(int p) const;
    void Confirm(int p, std::int32_t rawValue, bool isWritten);
    void Refuse(int p, std::int32_t rawValue);
    void FollowLink();
    void ForgetPass();
    void Lose();
    void DropUnwritten(int p);
    void Tell();
    std::int32_t OnTheWire(int p) const; ///< what a write of the value carries
    QString Shown(int p, std::int32_t rawValue) const;

    ParameterTable &table_;
    DriveLink &link_;
    MsClock clock_;
    QTimer update_;
    std::vector<Row> rows_;
    std::vector<Row> lostRows_; ///< of a drive that was lost, while another connection is tried
    std::vector<Unwritten> unwritten_;
    QDateTime lostSince_;
    qint64 heardAt_ = -1;     ///< any value that was confirmed
    qint64 passBeganAt_ = -1; ///< what the link does between two pauses
    bool isBroken_ = false;
    bool isLost_ = false;
    bool wasOpen_ = false;
};

} // namespace quorvik
