#include "platform/PortLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>
#include <utility>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
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

/** By the name under which the system lists its locks: numbers of file system and file. */
QByteArray LockName(const QString &device)
{
    struct stat file {
    };
    if (::stat(QFile::encodeName(device).constData(), &file) != 0)
        return {};
    return QStringLiteral("%1:%2:%3")
        .arg(major(file.st_dev), 2, 16, QLatin1Char('0'))
        .arg(minor(file.st_dev), 2, 16, QLatin1Char('0'))
        .arg(file.st_ino)
        .toLatin1();
}

/** Processes that hold a lock on a file, by the name of the file. */
std::map<QByteArray, qint64> LocksOfFiles()
{
    std::map<QByteArray, qint64> locks;
    QFile list(QStringLiteral("/proc/locks"));
    if (!list.open(QIODevice::ReadOnly))
        return locks;
    const QList<QByteArray> lines = list.readAll().split('\n');
    for (const QByteArray &line : lines) {
        // Such as "1: FLOCK  ADVISORY  WRITE 1234 00:05:97 0 EOF"; "->" stands before one that waits.
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() >= 6 && words.at(1) == "FLOCK")
            locks[words.at(5)] = words.at(4).toLongLong();
    }
    return locks;
}

/** Calls use with each file that the process has open. */
template<typename Use> void ForOpenFiles(const QByteArray &process, Use use)
{
    const QByteArray folder = "/proc/" + process + "/fd";
    const std::unique_ptr<DIR, int (*)(DIR *)> files(::opendir(folder.constData()), &::closedir);
    if (!files)
        return;
    char target[256];
    while (const dirent *file = ::readdir(files.get())) {
        const ssize_t length = ::readlinkat(::dirfd(files.get()), file->d_name, target, sizeof target);
        if (length > 5 && std::strncmp(target, "/dev/", 5) == 0)
            use(QByteArray(target, length));
    }
}

/** Processes that have one of these devices open. */
std::map<QByteArray, qint64> OpenersOf(const QList<QByteArray> &devices)
{
    std::map<QByteArray, qint64> openers;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        const qint64 process = entry.toLongLong();
        if (process <= 0)
            continue;
        QList<QByteArray> opened;
        bool isMaker = false;
        ForOpenFiles(entry.toLatin1(), [&](const QByteArray &file) {
            isMaker = isMaker || file.endsWith("/ptmx");
            if (devices.contains(file))
                opened.append(file);
        });
        for (const QByteArray &device : std::as_const(opened)) {
            // Whoever makes a pseudo-terminal often keeps both ends of it open, and uses one.
            if (!isMaker || !device.startsWith("/dev/pts/"))
                openers.emplace(device, process);
        }
    }
    return openers;
}

} // namespace

std::map<QString, qint64> UsersOfPorts(const QStringList &devices)
{
    std::map<QString, qint64> users;
    std::map<QString, QByteArray> unlocked; // by the path that was asked for: the real one
    const std::map<QByteArray, qint64> locks =
        devices.isEmpty() ? std::map<QByteArray, qint64>() : LocksOfFiles();
    for (const QString &device : devices) {
        const QString real = QFileInfo(device).canonicalFilePath();
        if (real.isEmpty())
            continue;
        const std::optional<PortHolder> holder = HolderOfPort(real);
        const auto lock = locks.find(LockName(real));
        if (holder && !holder->isGone)
            users[device] = holder->process;
        else if (lock != locks.end())
            users[device] = lock->second;
        else
            unlocked[device] = QFile::encodeName(real);
    }
    if (unlocked.empty())
        return users;
    QList<QByteArray> paths;
    for (const auto &[device, real] : unlocked)
        paths.append(real);
    const std::map<QByteArray, qint64> openers = OpenersOf(paths);
    for (const auto &[device, real] : unlocked)
        if (const auto opener = openers.find(real); opener != openers.end())
            users[device] = opener->second;
    return users;
}

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
