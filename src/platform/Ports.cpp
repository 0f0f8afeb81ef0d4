#include "platform/Ports.h"

#include "platform/PortAddress.h"
#include "platform/PortLock.h"
#include "platform/SettingsStore.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

struct DefaultRange {
    int first;
    int last;
    const char *device; ///< followed by the place in the range, from 0
};

constexpr DefaultRange Defaults[] = {
    {1, 4, "/dev/ttyS"},
    {5, 8, "/dev/ttyUSB"},
    {9, 12, "/dev/ttyACM"},
};

const QString &Section()
{
    static const QString section = QStringLiteral("Ports");
    return section;
}

QString KeyOf(int number)
{
    return QStringLiteral("Com%1").arg(number);
}

QString AdapterKeyOf(int number)
{
    return KeyOf(number) + QStringLiteral("Adapter");
}

QString AdapterOf(const QSerialPortInfo &info)
{
    QStringList words;
    for (const QString &word : {info.manufacturer(), info.description()})
        if (!word.isEmpty() && !words.join(u' ').contains(word))
            words.append(word);
    return words.isEmpty() ? QStringLiteral("Serial port") : words.join(u' ');
}

QString Hex(quint16 number)
{
    return QStringLiteral("%1").arg(number, 4, 16, QLatin1Char('0'));
}

SerialDevice Describe(const QSerialPortInfo &info)
{
    SerialDevice device;
    device.path = info.systemLocation();
    device.description = device.adapter = AdapterOf(info);
    device.serialNumber = info.serialNumber();
    if (!device.serialNumber.isEmpty())
        device.description += QStringLiteral(" (%1)").arg(device.serialNumber);
    if (info.hasVendorIdentifier() && info.hasProductIdentifier())
        device.product = Hex(info.vendorIdentifier()) + u':' + Hex(info.productIdentifier());
    return device;
}

/** What tells an adapter from all others; empty where nothing does. */
QString IdentityOf(const SerialDevice &device)
{
    return device.serialNumber.isEmpty() ? QString() : device.product + u':' + device.serialNumber;
}

/** The device at a path, or behind the link that it is. */
const SerialDevice *FindDevice(const QList<SerialDevice> &devices, const QString &path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    const auto isThere = [&](const SerialDevice &device) {
        return device.path == path || device.path == real;
    };
    const auto found = std::find_if(devices.cbegin(), devices.cend(), isThere);
    return path.isEmpty() || found == devices.cend() ? nullptr : &*found;
}

bool IsPseudoTerminal(const QString &path)
{
    return QFileInfo(path).canonicalFilePath().startsWith(QStringLiteral("/dev/pts/"));
}

PortStatus StatusOf(int number, const QString &path, const QList<SerialDevice> &present)
{
    PortStatus port{.number = number, .device = path};
    if (PortAddress::IsMeant(path)) {
        port.adapter = QStringLiteral("Network");
        port.use = PortStatus::Use::Network;
    } else if (const SerialDevice *device = FindDevice(present, path)) {
        port.adapter = device->adapter.isEmpty() ? device->description : device->adapter;
        port.serialNumber = device->serialNumber;
        port.use = PortStatus::Use::Free;
    } else if (IsPseudoTerminal(path)) {
        port.adapter = QStringLiteral("Pseudo-terminal");
        port.use = PortStatus::Use::Free;
    }
    return port;
}

} // namespace

QString PortStatus::Name() const
{
    return number > 0 ? QStringLiteral("Com%1").arg(number) : device;
}

QString PortStatus::Text() const
{
    switch (use) {
    case Use::Free:
        return QStringLiteral("free");
    case Use::Network:
        return QStringLiteral("not asked");
    case Use::InUse:
        return isOurs ? QStringLiteral("in use by this program")
                      : QStringLiteral("in use by another program");
    case Use::NoPermission:
        return group.isEmpty() ? QStringLiteral("no permission")
                               : QStringLiteral("no permission (group %1)").arg(group);
    case Use::NotPresent:
        break;
    }
    return QStringLiteral("not present");
}

Ports::Ports(SettingsStore &settings, Source present)
    : settings_(settings)
    , present_(std::move(present))
{
}

QString Ports::ChosenDevice(int number) const
{
    const QString chosen = settings_.GetSetting(Section(), KeyOf(number));
    return chosen.isEmpty() ? DefaultDevice(number) : chosen;
}

QString Ports::DeviceOf(int number) const
{
    if (number < First || number > Last)
        return {};
    // Whoever remembers no adapter needs no list of those that are there.
    if (settings_.GetSetting(Section(), AdapterKeyOf(number)).isEmpty())
        return ChosenDevice(number);
    return DeviceOf(number, present_());
}

QString Ports::DeviceOf(int number, const QList<SerialDevice> &present) const
{
    const QString adapter = settings_.GetSetting(Section(), AdapterKeyOf(number));
    QString chosen = ChosenDevice(number);
    if (adapter.isEmpty())
        return chosen;
    // An adapter of several ports has one serial number for all of them.
    const SerialDevice *there = FindDevice(present, chosen);
    if (there != nullptr && IdentityOf(*there) == adapter)
        return chosen;
    for (const SerialDevice &device : present)
        if (IdentityOf(device) == adapter)
            return device.path;
    return chosen;
}

void Ports::Store(const QString &key, const QString &value)
{
    if (settings_.GetSetting(Section(), key) != value)
        settings_.SaveSetting(Section(), key, value);
}

void Ports::SetDevice(int number, const QString &path)
{
    if (path == DeviceOf(number))
        return;
    Store(KeyOf(number), path == DefaultDevice(number) ? QString() : path);
    Store(AdapterKeyOf(number), {});
    FollowAdapter(number);
}

void Ports::FollowAdapter(int number, bool isChosenAnew)
{
    if (number < First || number > Last)
        return;
    const QList<SerialDevice> present = present_();
    const QString path = DeviceOf(number, present);
    const QString followed = settings_.GetSetting(Section(), AdapterKeyOf(number));
    const SerialDevice *device = FindDevice(present, path);
    // An adapter that is not there now is still the one that was chosen.
    if (device == nullptr || (!isChosenAnew && !followed.isEmpty() && IdentityOf(*device) != followed))
        return;
    Store(KeyOf(number), path == DefaultDevice(number) ? QString() : path);
    Store(AdapterKeyOf(number), IdentityOf(*device));
}

int Ports::NumberFor(const QString &path) const
{
    const QList<SerialDevice> present = present_();
    int unused = 0;
    for (int number = Last; number >= First; --number) {
        const QString device = DeviceOf(number, present);
        if (device == path)
            return number;
        if (device.isEmpty())
            unused = number;
    }
    return unused;
}

QList<PortStatus> Ports::List() const
{
    const QList<SerialDevice> present = present_();
    QList<PortStatus> ports;
    QStringList named;
    for (int number = First; number <= Last; ++number) {
        const QString path = DeviceOf(number, present);
        ports.append(StatusOf(number, path, present));
        if (const SerialDevice *device = FindDevice(present, path))
            named.append(device->path);
    }
    for (const SerialDevice &device : present)
        if (!named.contains(device.path))
            ports.append(StatusOf(0, device.path, present));
    std::stable_partition(ports.begin(), ports.end(),
                          [](const PortStatus &port) { return port.use != PortStatus::Use::NotPresent; });
    return ports;
}

QList<PortStatus> Ports::WithUse(QList<PortStatus> ports)
{
    QStringList devices;
    for (const PortStatus &port : std::as_const(ports))
        if (port.use == PortStatus::Use::Free)
            devices.append(port.device);
    const std::map<QString, qint64> users = UsersOfPorts(devices);
    for (PortStatus &port : ports) {
        if (port.use == PortStatus::Use::Network)
            continue;
        const QFileInfo info(port.device);
        if (const auto user = users.find(port.device); user != users.end()) {
            port.use = PortStatus::Use::InUse;
            port.isOurs = user->second == QCoreApplication::applicationPid();
        } else if (port.use == PortStatus::Use::Free && info.exists() &&
                   !(info.isReadable() && info.isWritable())) {
            port.use = PortStatus::Use::NoPermission;
            port.group = info.group();
        }
    }
    return ports;
}

QList<PortStatus> Ports::Survey() const
{
    return WithUse(List());
}

QString Ports::DefaultDevice(int number)
{
    for (const DefaultRange &range : Defaults)
        if (number >= range.first && number <= range.last)
            return QLatin1String(range.device) + QString::number(number - range.first);
    return number == SimulatedDrive ? SimulatedDriveLink() : QString();
}

QString Ports::SimulatedDriveLink()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/quorvik/sarvex-drive");
}

QList<SerialDevice> Ports::Present()
{
    QList<SerialDevice> devices;
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : ports)
        devices.append(Describe(info));
    if (QFileInfo::exists(SimulatedDriveLink()))
        devices.append({SimulatedDriveLink(), QStringLiteral("Simulated drive")});
    return devices;
}

QString Ports::PluggedIn(const QString &path) const
{
    if (path.isEmpty())
        return QStringLiteral("No device has been chosen for this port.");
    if (PortAddress::IsMeant(path)) {
        const QString why = PortAddress::WhyNot(path);
        return why.isEmpty()
                   ? QStringLiteral("Behind the network. Nothing on this line is secret, and nothing "
                                    "proves who answers: keep it inside the machine network or in a "
                                    "tunnel.")
                   : why;
    }
    const QList<SerialDevice> present = present_();
    if (const SerialDevice *device = FindDevice(present, path))
        return device->description;
    if (IsPseudoTerminal(path))
        return QStringLiteral("Pseudo-terminal of another program, such as a simulated drive");
    return !QFileInfo::exists(path) ? QStringLiteral("Nothing is plugged in there.")
                                    : QStringLiteral("Nothing known is plugged in there.");
}

} // namespace quorvik
