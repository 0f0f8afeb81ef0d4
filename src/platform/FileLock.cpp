#include "platform/FileLock.h"

#include <QDeadlineTimer>
#include <QThread>
#include <cerrno>
#include <sys/file.h>

namespace quorvik
{

namespace
{

constexpr unsigned long PauseMs = 2;

} // namespace

FileLock::FileLock(const QString &path)
    : file_(path)
{
}

FileLock::Outcome FileLock::Acquire(int milliseconds)
{
    if (!file_.isOpen() && !file_.open(QIODevice::ReadWrite, QFile::ReadOwner | QFile::WriteOwner))
        return Outcome::Missing;
    const QDeadlineTimer deadline(milliseconds);
    while (::flock(file_.handle(), LOCK_EX | LOCK_NB) != 0) {
        // A file system that knows no locks is as good as none.
        const Outcome outcome = errno == EWOULDBLOCK ? Outcome::Refused : Outcome::Missing;
        if (outcome == Outcome::Missing || deadline.hasExpired()) {
            file_.close();
            return outcome;
        }
        QThread::msleep(PauseMs);
    }
    return Outcome::Held;
}

} // namespace quorvik
