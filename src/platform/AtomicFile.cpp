#include "platform/AtomicFile.h"

#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvik
{

namespace
{

constexpr int MostLinks = 40;

/** The file that a path stands for, behind all links, whether it exists yet or not. */
QString FileBehind(const QString &path)
{
    std::filesystem::path file(QFile::encodeName(QFileInfo(path).absoluteFilePath()).toStdString());
    std::error_code ignored;
    for (int links = 0; links < MostLinks && std::filesystem::is_symlink(file, ignored); ++links)
        file = file.parent_path() / std::filesystem::read_symlink(file, ignored);
    return QFile::decodeName(file.c_str());
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

/**
 * Gives the sibling the owner and the mode of the file that it is to replace, with writing allowed, as far as
 * the file system knows either and lets us; the content is as good without.
 */
void KeepOwnerAndMode(const QString &target, const QString &sibling)
{
    struct stat old = {};
    if (::stat(QFile::encodeName(target).constData(), &old) != 0)
        return;
    const QByteArray name = QFile::encodeName(sibling);
    const bool hasGroup = ::chown(name.constData(), old.st_uid, old.st_gid) == 0 ||
                          ::chown(name.constData(), uid_t(-1), old.st_gid) == 0;
    // What one group might do must not pass to another.
    ::chmod(name.constData(), (old.st_mode & (hasGroup ? 0777U : 0707U)) | S_IWUSR);
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
    if (info.isSymLink() || (info.exists() && !info.isFile()))
        return Refusal(target_, QStringLiteral("something other than a file has that name"));
    // Without the target's name, which may be as long as a name can be.
    QFile sibling(info.path() + QStringLiteral("/.quorvik-") + QUuid::createUuid().toString(QUuid::Id128));
    if (!sibling.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return Refusal(target_, sibling.errorString());
    siblingPath_ = sibling.fileName();
    KeepOwnerAndMode(target_, siblingPath_);
    return {};
}

QString AtomicFile::Commit()
{
    if (!Flush(siblingPath_, O_RDONLY) ||
        std::rename(QFile::encodeName(siblingPath_).constData(), QFile::encodeName(target_).constData()) != 0)
        return Refusal(target_, SystemReason());
    siblingPath_.clear();
    // The new file is in place; a folder that cannot be flushed, as on some network shares, takes nothing
    // from it.
    Flush(QFileInfo(target_).path(), O_RDONLY | O_DIRECTORY);
    return {};
}

QString AtomicFile::Write(const QString &target, const QByteArray &content)
{
    AtomicFile file(target);
    if (QString failure = file.Create(); !failure.isEmpty())
        return failure;
    QFile sibling(file.SiblingPath());
    if (!sibling.open(QIODevice::WriteOnly) || sibling.write(content) != content.size() || !sibling.flush())
        return Refusal(file.target_, sibling.errorString());
    sibling.close();
    return file.Commit();
}

} // namespace quorvik
