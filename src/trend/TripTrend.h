#pragma once

#include "trend/TrendData.h"

#include <QObject>
#include <utility>
#include <vector>

namespace quorvik
{

class DriveLink;
class TrendRecorder;
class TrendStore;

/**
 * Before a trip: while it is switched on and a drive is on line, six channels are recorded all the time, and
 * when a fault appears the last half minute is kept by itself. Has a recorder of its own, beside the
 * window's.
 */
class TripTrend : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t MostChannels = 6;

    /** @param recorder for this alone. All must outlive it. */
    TripTrend(TrendRecorder &recorder, TrendStore &store, DriveLink &link);

    bool IsOn() const { return isOn_; }
    void SetOn(bool on);
    const std::vector<int> &Channels() const { return channels_; }
    /** At most MostChannels; what is more is left out. */
    void SetChannels(const std::vector<int> &params);
    /** What is recorded unless told otherwise: speed and its setpoint, armature current and voltage, field
     * current, drive state. */
    static std::vector<int> UsualChannels();

    /** A trip was seen; number is that of its trip record. */
    void NoteTrip(int number, const QString &text);
    /** The recording of a trip of this run; empty for none. */
    QString PathOf(int tripNumber) const;

Q_SIGNALS:
    void Saved(int tripNumber, const QString &path);

private:
    void FollowLink();
    void ChooseChannels();
    void Await();
    void Keep(const TrendDataPtr &capture);

    TrendRecorder &recorder_;
    TrendStore &store_;
    DriveLink &link_;
    std::vector<int> channels_ = UsualChannels();
    std::vector<std::pair<int, QString>> paths_;
    std::vector<int> awaited_; ///< trips in the capture that is still running
    bool isOn_ = false;
};

} // namespace quorvik
