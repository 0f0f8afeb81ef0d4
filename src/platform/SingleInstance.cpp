#include "platform/SingleInstance.h"

#include <QDir>
#include <QFileInfo>

namespace quorvik
{

SingleInstance::SingleInstance(const QString &lockFile)
    : folder_(QFileInfo(lockFile).absolutePath())
    , lock_(lockFile)
{
    // A running owner never grows stale, however long it runs.
    lock_.setStaleLockTime(0);
}

bool SingleInstance::Acquire()
{
    QDir().mkpath(folder_);
    return lock_.tryLock() || lock_.error() != QLockFile::LockFailedError;
}

} // namespace quorvik
