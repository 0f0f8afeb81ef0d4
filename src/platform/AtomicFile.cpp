#include "platform/AtomicFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvik
{

namespace
{

QString FileBehind(const QString &path)
{
    const QString behind = QFileInfo(path).canonicalFilePath();
    return behind.isEmpty() ? QFileInfo(path).absoluteFilePath() : behind;
}

QString Refusal(const QString &path, const QString &reason)
{
    return QStringLiteral("\"%1\" was not written: %2.").arg(path, reason);
}

QString SystemReason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool Flush(const QString &path, int flags)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool flushed = ::fsync(descriptor) == 0;
    return ::close(descriptor) == 0 && flushed;
}

/** What the file's mode becomes: that of the old file with writing allowed, or a new file's. */
mode_t ModeOf(const QString &target)
{
    struct stat old = {};
    if (::stat(QFile::encodeName(target).constData(), &old) == 0)
        return (old.st_mode & 0777) | S_IWUSR;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

AtomicFile::AtomicFile(const QString &target)
    : target_(FileBehind(target))
{
}

AtomicFile::~AtomicFile()
{
    if (!siblingPath_.isEmpty())
        QFile::remove(siblingPath_);
}

QString AtomicFile::Create()
{
    const QFileInfo info(target_);
    if (info.exists() && !info.isFile())
        return Refusal(target_, QStringLiteral("something other than a file has that name"));
    QTemporaryFile sibling(info.path() + QStringLiteral("/.") + info.fileName());
    sibling.setAutoRemove(false);
    if (!sibling.open())
        return Refusal(target_, sibling.errorString());
    siblingPath_ = sibling.fileName();
    return {};
}

QString AtomicFile::Commit()
{
    const QByteArray from = QFile::encodeName(siblingPath_);
    const QByteArray to = QFile::encodeName(target_);
    if (::chmod(from.constData(), ModeOf(target_)) != 0 || !Flush(siblingPath_, O_RDONLY) ||
        std::rename(from.constData(), to.constData()) != 0)
        return Refusal(target_, SystemReason());
    siblingPath_.clear();
    // The new file is in place; a folder that cannot be flushed, as on some network shares, takes nothing
    // from it.
    Flush(QFileInfo(target_).path(), O_RDONLY | O_DIRECTORY);
    return {};
}

} // namespace quorvik
