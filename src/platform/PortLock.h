#pragma once

#include <QStringList>
#include <map>
#include <optional>

namespace quorvik
{

/** Who locked a serial port by a file, the way in which programs keep each other off a port. */
struct PortHolder {
    qint64 process = 0;
    QString program;     ///< its name, empty where the file does not tell
    bool isGone = false; ///< the process runs no more on this computer, and left the file behind
};

/** @param device path of the port's real device. @return nothing where no lock can be read. */
std::optional<PortHolder> HolderOfPort(const QString &device);

/**
 * Who uses which of these ports, as far as it can be known without opening one: by a lock file, by a lock on
 * the device, or by having it open, which shows of the user's own programs only.
 * @return process by device, for those in use.
 */
std::map<QString, qint64> UsersOfPorts(const QStringList &devices);

/** Another path of the same device. A port opened by it has a lock file of its own, and so passes by one that
 * was left behind and may not be removed. */
QString OtherPathOf(const QString &device);

} // namespace quorvik
