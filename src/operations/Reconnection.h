#pragma once

#include "compare/DriveIdentity.h"
#include "link/DriveProbe.h"
#include "operations/Outcome.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <optional>

namespace quorvik
{

class Document;
class DriveLink;
class DriveOperations;
class ParameterTable;
class ValueStates;

/**
 * Looks for a drive that was lost by a fault: once a second it asks the port whether a drive answers there
 * again, without a box and without writing anything, until the link is up or the user goes on without.
 */
class Reconnection : public QObject
{
    Q_OBJECT

public:
    enum class Finding : std::uint8_t {
        Nothing,      ///< not looking, or nothing is known yet
        NoAdapter,    ///< the device is not there
        InUse,        ///< another program holds the port, or the user may not open it
        Silent,       ///< the port is there and nobody answers
        Drive,        ///< a drive answers, and it may be the one that was lost
        AnotherDrive, ///< a drive answers that cannot be the one that was lost
    };

    Reconnection(ParameterTable &table, Document &document, DriveLink &link, ValueStates &states,
                 DriveOperations &drive);

    /** Reads a drive that answers again without being asked, where it may be the one that was lost and no
     * entry of the user's would be overwritten. */
    bool BySelf = false;

    Finding Found() const { return found_; }
    /** What the other drive is, where another one answers. */
    const QString &OtherDriveText() const { return otherDrive_; }

    /** Reads the drive over the open set, as the answer No to the question of going on line does. */
    OperationResult Read();
    /** Goes on line with the open set left alone, and asks for the comparison. */
    OperationResult Compare();

    /** How long to wait between two looks, in milliseconds. */
    static constexpr int LookMs = 1000;

Q_SIGNALS:
    /** Found() is another one. */
    void Changed();

private:
    void FollowLoss();
    void Look();
    void Take(const DriveProbe::Answer &answer);
    bool IsAnother(const DriveProbe::Answer &answer);
    void Tell(Finding found);

    ParameterTable &table_;
    Document &document_;
    DriveLink &link_;
    ValueStates &states_;
    DriveOperations &drive_;
    DriveProbe probe_;
    QTimer look_;
    QElapsedTimer sinceLoss_;
    std::optional<DriveIdentity> lost_; ///< where all of it was known
    int lastParam_ = -1;                ///< of the drive that was lost
    Finding found_ = Finding::Nothing;
    QString otherDrive_;
    bool isReading_ = false;
};

} // namespace quorvik
