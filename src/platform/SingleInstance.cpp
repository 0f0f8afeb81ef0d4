#include "platform/SingleInstance.h"

#include <QDir>
#include <QFileInfo>

namespace quorvik
{

SingleInstance::SingleInstance(const QString &lockFile)
    : folder_(QFileInfo(lockFile).absolutePath())
    , lock_(lockFile)
{
}

bool SingleInstance::Acquire()
{
    QDir().mkpath(folder_);
    return lock_.Acquire(0) != FileLock::Outcome::Refused;
}

} // namespace quorvik
