#pragma once

#include <QList>
#include <QString>
#include <cstdint>
#include <functional>

namespace quorvik
{

class SettingsStore;

/** A serial device of this computer. */
struct SerialDevice {
    QString path;              ///< what a port number can stand for
    QString description;       ///< what is plugged in there, for the user
    QString adapter = {};      ///< the same without the serial number
    QString serialNumber = {}; ///< the adapter's own; empty where it has none
    QString product = {};      ///< maker's and product's number: whose serial number that is
};

/** What stands behind a port number now: a device of this computer, or an address (PortAddress). */
struct PortStatus {
    enum class Use : std::uint8_t {
        Free,
        Network, ///< behind the network, where nobody looks without being asked to
        InUse,
        NoPermission,
        NotPresent,
    };

    int number = 0; ///< 0 for a device that no number stands for
    QString device = {};
    QString adapter = {};
    QString serialNumber = {};
    Use use = Use::NotPresent;
    bool isOurs = false; ///< in use by this program
    QString group = {};  ///< whose members may use it, where the user may not

    bool operator==(const PortStatus &) const = default;
    /** "Com5", or the device where no number stands for it. */
    QString Name() const;
    /** The use in words. */
    QString Text() const;
    /** Whether a drive can be looked for there. */
    bool CanBeAsked() const { return use == Use::Free || use == Use::Network; }
};

/**
 * Which device a port number stands for: the one that the user chose (section `Ports`, key `Com` and the
 * number), or else a fixed one: 1 to 4 the built-in ports, 5 to 8 USB adapters, 9 to 12 USB modems, 16 the
 * simulated drive.
 *
 * A system numbers adapters in the order in which they are plugged in. So a choice is remembered with the
 * adapter's serial number (key `Com`, the number and `Adapter`), and follows it to whatever device it is now.
 */
class Ports
{
public:
    using Source = std::function<QList<SerialDevice>()>;

    static constexpr int First = 1;
    static constexpr int Last = 16;
    static constexpr int SimulatedDrive = 16;

    /** @param present what is plugged in now. */
    explicit Ports(SettingsStore &settings, Source present = &Ports::Present);

    /**
     * @param number 1 to 16. @return a path, or an empty text for a number without a device. Where the
     * remembered adapter is not there, it is the path that was chosen, whatever is plugged in at it.
     */
    QString DeviceOf(int number) const;
    /** Chooses a device; an empty path goes back to the fixed one. */
    void SetDevice(int number, const QString &path);
    /**
     * Has the number follow the adapter that it stands for now, if that can be told from others.
     * @param isChosenAnew whether it takes the place of an adapter that is remembered and not there.
     */
    void FollowAdapter(int number, bool isChosenAnew = false);
    /** What is plugged in now. */
    QList<SerialDevice> Devices() const { return present_(); }
    /** What is plugged in behind a path, or that nothing is, in words. */
    QString PluggedIn(const QString &path) const;
    /** The number that stands for a device, or else the first that stands for none; 0 for neither. */
    int NumberFor(const QString &path) const;

    /** All numbers, and the devices that no number stands for: those present first, then by number. */
    QList<PortStatus> Survey() const;
    /** The same without its use, which takes longer to find out. */
    QList<PortStatus> List() const;
    /** Finds out the use of each, without opening any: a port that is opened moves its lines. May run in
     * another thread. */
    static QList<PortStatus> WithUse(QList<PortStatus> ports);

    /** What stands behind a number that the user chose nothing for; empty for none. */
    static QString DefaultDevice(int number);
    /** Where the simulated drive puts the link to its port unless told otherwise. */
    static QString SimulatedDriveLink();
    /** The serial devices that are there now. */
    static QList<SerialDevice> Present();

private:
    void Store(const QString &key, const QString &value);
    QString ChosenDevice(int number) const;
    QString DeviceOf(int number, const QList<SerialDevice> &present) const;

    SettingsStore &settings_;
    Source present_;
};

} // namespace quorvik
