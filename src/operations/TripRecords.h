#pragma once

#include "link/ValueStates.h"
#include "platform/Clock.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <deque>
#include <optional>
#include <set>
#include <span>
#include <vector>

namespace quorvik
{

class DriveLink;
class ParameterTable;

/** A parameter of which a trip record keeps the value, under the head of its group. */
struct TripRow {
    const char *group;
    int param;
};

/** What a trip record keeps, in the order in which it is shown. */
std::span<const TripRow> TripRows();

/** What the drive told of a parameter before or after a trip. */
struct TripReading {
    std::int32_t rawValue = 0;
    QString text;  ///< as the program shows it
    qint64 ms = 0; ///< between reading and trip
};

/** One row of a trip record. */
struct TripValue {
    TripRow row;
    ValueState state = ValueState::Never;   ///< when the trip was seen
    std::optional<TripReading> before = {}; ///< the last one until the trip
    std::optional<TripReading> after = {};  ///< of what was not live then, and of the fault words
};

/** A trip of the drive as it was first seen. */
struct TripRecord {
    int number = 0; ///< counts the trips of this run, from 1
    QDateTime seen = {};
    /** The link came up to a drive that stood tripped: when it did is not known, and nothing is kept of it.
     */
    bool isOfBefore = false;
    std::optional<std::int32_t> rawFaults =
        {}; ///< all that was latched or present; not known until it is read
    std::vector<TripValue> values = {};
};

/**
 * Watches the drive for trips, and keeps what stood in the control path when each was seen: what was read
 * just before as it is, the rest read at once and marked with the time that it took. A trip is DriveState
 * becoming EStop, or a fault becoming latched. The records are those of this run of the program.
 *
 * What is to be read is polled until it has come, so that nothing else waits for it.
 */
class TripRecords : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t Most = 5;

    /** All three must outlive it; states must have been made for the same table and link. */
    TripRecords(ParameterTable &table, DriveLink &link, const ValueStates &states,
                MsClock clock = MillisecondsUp);

    /** The most recent first. */
    const std::deque<TripRecord> &Records() const { return records_; }

Q_SIGNALS:
    /** A trip was seen: it is the first of the records. */
    void Recorded();
    /** All that was read after it has come, or will not come any more. */
    void Completed();

private:
    void FollowLink();
    void Confirm(int p, std::int32_t rawValue);
    void FollowState(std::int32_t rawState);
    void FollowLatch(std::int32_t rawFaults);
    void See(bool isOfMoment);
    TripValue Keep(const TripRow &row);
    void Await(int p);
    void Supply(int p, std::int32_t rawValue);
    void GiveUp();

    ParameterTable &table_;
    DriveLink &link_;
    const ValueStates &states_;
    MsClock clock_;
    std::deque<TripRecord> records_;
    int seenCount_ = 0;
    qint64 seenAt_ = 0;     ///< the first of the records
    std::set<int> awaited_; ///< what is polled for it
    bool wasOpen_ = false;
    bool isTripped_ = false; ///< nothing said that the last trip is over
    // What the drive told last on this connection.
    std::optional<std::int32_t> rawState_;
    std::optional<std::int32_t> rawLatched_;
};

} // namespace quorvik
