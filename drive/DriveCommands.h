#pragma once

#include "drive/DriveTable.h"

#include <QObject>
#include <QTimer>

namespace quorvik::drive
{

/** How long the drive takes for its own doings, in milliseconds. */
struct CommandTimings {
    int memory = 300;  ///< saving to and loading from the permanent memory
    int restart = 700; ///< from a restart until it answers again
};

/** What the drive does when 406, 407, 408 or 420 is written, and its restarts. */
class DriveCommands : public QObject
{
    Q_OBJECT

public:
    DriveCommands(DriveTable &table, CommandTimings timings, QObject *parent = nullptr);

    /** Acts on an accepted write of p. @return whether the write is answered; a restart leaves no time to. */
    bool Obey(int p);
    bool IsSilent() const { return restart_.isActive(); }
    /** As if the supply went off and on again. */
    void Restart();

Q_SIGNALS:
    void FaultCleared();
    void Restarted();

private:
    DriveTable &table_;
    CommandTimings timings_;
    QTimer save_;
    QTimer load_;
    QTimer restart_;
};

} // namespace quorvik::drive
