#include "platform/PortLock.h"

#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#endif

namespace quorvik
{

namespace
{

/** Where lock files of ports are looked for, in this order. */
constexpr const char *LockFolders[] = {"/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
                                       "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};

bool IsRunning([[maybe_unused]] qint64 process)
{
#ifdef Q_OS_UNIX
    return ::kill(pid_t(process), 0) == 0 || errno != ESRCH;
#else
    return true;
#endif
}

} // namespace

std::optional<PortHolder> HolderOfPort(const QString &device)
{
    QString name = device.startsWith(QStringLiteral("/dev/")) ? device.mid(5) : device;
    name.replace(u'/', u'_');
    for (const char *folder : LockFolders) {
        const QString path = QLatin1String(folder) + QStringLiteral("/LCK..") + name;
        if (!QFileInfo::exists(path))
            continue;
        PortHolder holder;
        QString host;
        if (!QLockFile(path).getLockInfo(&holder.process, &host, &holder.program) || holder.process <= 0)
            return std::nullopt;
        holder.isGone = host == QSysInfo::machineHostName() && !IsRunning(holder.process);
        return holder;
    }
    return std::nullopt;
}

QString OtherPathOf(const QString &device)
{
    return device.section(u'/', 0, -2) + QStringLiteral("/./") + device.section(u'/', -1);
}

} // namespace quorvik
