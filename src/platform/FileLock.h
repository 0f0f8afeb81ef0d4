#pragma once

#include <QFile>

namespace quorvik
{

/** A lock that the system keeps on a file, between programs as within one; it goes with this object or with
 * the process. The file is made when it is missing, and stays. */
class FileLock
{
public:
    enum class Outcome {
        Held,
        Refused, ///< somebody else holds it
        Missing, ///< no file can be made there
    };

    explicit FileLock(const QString &path);

    /** Waits for it, so many milliseconds at most. */
    Outcome Acquire(int milliseconds);

private:
    QFile file_;
};

} // namespace quorvik
