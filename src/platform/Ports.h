#pragma once

#include <QList>
#include <QString>

namespace quorvik
{

class SettingsStore;

/** A serial device of this computer. */
struct SerialDevice {
    QString path;        ///< what a port number can stand for
    QString description; ///< what is plugged in there, for the user
};

/**
 * Which device a port number stands for: the one that the user chose (section `Ports`, key `Com` and the
 * number), or else a fixed one: 1 to 4 the built-in ports, 5 to 8 USB adapters, 9 to 12 USB modems, 16 the
 * simulated drive.
 */
class Ports
{
public:
    static constexpr int First = 1;
    static constexpr int Last = 16;
    static constexpr int SimulatedDrive = 16;

    explicit Ports(SettingsStore &settings);

    /** @param number 1 to 16. @return a path, or an empty text for a number without a device. */
    QString DeviceOf(int number) const;
    /** Chooses a device; an empty path goes back to the fixed one. */
    void SetDevice(int number, const QString &path);

    /** What stands behind a number that the user chose nothing for; empty for none. */
    static QString DefaultDevice(int number);
    /** Where the simulated drive puts the link to its port unless told otherwise. */
    static QString SimulatedDriveLink();
    /** The serial devices that are there now. */
    static QList<SerialDevice> Present();
    /** What is plugged in behind a path, or that nothing is, in words. */
    static QString PluggedIn(const QString &path);

private:
    SettingsStore &settings_;
};

} // namespace quorvik
