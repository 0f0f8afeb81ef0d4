#pragma once

#include <QLockFile>
#include <QString>

namespace quorvik
{

/**
 * Lets one instance of the program run for each user. The lock is a file that names its owner, so that a
 * lock left behind by a crash does not count.
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
    QLockFile lock_;
};

} // namespace quorvik
