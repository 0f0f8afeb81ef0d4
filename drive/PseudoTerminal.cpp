#include "drive/PseudoTerminal.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace quorvik::drive
{

namespace
{

QString Failure(const QString &what)
{
    return what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

PseudoTerminal::~PseudoTerminal()
{
    // Another drive may have taken the path over meanwhile.
    if (!linkPath_.isEmpty() && QFile::symLinkTarget(linkPath_) == devicePath_)
        QFile::remove(linkPath_);
    if (far_ >= 0)
        ::close(far_);
    if (own_ >= 0)
        ::close(own_);
}

QString PseudoTerminal::Open()
{
    const QString failed = QStringLiteral("No pseudo-terminal could be opened");
    own_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (own_ < 0 || ::grantpt(own_) != 0 || ::unlockpt(own_) != 0)
        return Failure(failed);
    char path[128];
    if (::ptsname_r(own_, path, sizeof path) != 0)
        return Failure(failed);
    devicePath_ = QString::fromLocal8Bit(path);
    far_ = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings;
    if (far_ < 0 || ::tcgetattr(far_, &settings) != 0)
        return Failure(failed);
    ::cfmakeraw(&settings);
    return ::tcsetattr(far_, TCSANOW, &settings) == 0 ? QString() : Failure(failed);
}

QString PseudoTerminal::PublishAt(const QString &path)
{
    const QFileInfo there(path);
    if (there.exists() && !there.isSymLink())
        return QStringLiteral("%1 is in the way of the link.").arg(path);
    const QString fresh = path + QStringLiteral(".%1").arg(::getpid());
    const QByteArray freshName = QFile::encodeName(fresh);
    if (::symlink(QFile::encodeName(devicePath_).constData(), freshName.constData()) != 0)
        return Failure(QStringLiteral("The link %1 could not be made").arg(path));
    if (::rename(freshName.constData(), QFile::encodeName(path).constData()) != 0) {
        QString failure = Failure(QStringLiteral("The link %1 could not be made").arg(path));
        ::unlink(freshName.constData());
        return failure;
    }
    linkPath_ = path;
    return {};
}

QByteArray PseudoTerminal::Read()
{
    char buffer[4096];
    const ssize_t count = ::read(own_, buffer, sizeof buffer);
    return count > 0 ? QByteArray(buffer, int(count)) : QByteArray();
}

void PseudoTerminal::Write(const QByteArray &bytes)
{
    // Nobody reads a line whose buffer is full, and a serial line would lose the bytes as well.
    [[maybe_unused]] const ssize_t written = ::write(own_, bytes.constData(), std::size_t(bytes.size()));
}

} // namespace quorvik::drive
