#include "platform/SingleInstance.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <sys/file.h>

namespace quorvik
{

SingleInstance::SingleInstance(const QString &lockFile)
    : lockFile_(lockFile)
{
}

bool SingleInstance::Acquire()
{
    QDir().mkpath(QFileInfo(lockFile_).absolutePath());
    if (!lockFile_.isOpen() && !lockFile_.open(QIODevice::ReadWrite))
        return true;
    if (::flock(lockFile_.handle(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return true;
    lockFile_.close();
    return false;
}

} // namespace quorvik
