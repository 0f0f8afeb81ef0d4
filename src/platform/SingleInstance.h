#pragma once

#include "platform/FileLock.h"

#include <QString>

namespace quorvik
{

/**
 * Lets one instance of the program run for each user. The lock is the system's own on a file, so that it goes
 * with the process that holds it; what the file holds, and whether it was left behind, does not count.
 */
class SingleInstance
{
public:
    /** @param lockFile its path; the folder is made when it is missing. */
    explicit SingleInstance(const QString &lockFile);

    /** Takes the lock until this object goes. @return False when another instance holds it. Where no lock can
     * be made at all, as in a folder that cannot be written, the program may run. */
    bool Acquire();

private:
    QString folder_;
    FileLock lock_;
};

} // namespace quorvik
