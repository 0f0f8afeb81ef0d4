#include "platform/Ports.h"

#include "platform/SettingsStore.h"

#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStandardPaths>
#include <QStringList>

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

QString Describe(const QSerialPortInfo &info)
{
    QStringList words;
    for (const QString &word : {info.manufacturer(), info.description()})
        if (!word.isEmpty() && !words.join(u' ').contains(word))
            words.append(word);
    if (words.isEmpty())
        words.append(QStringLiteral("Serial port"));
    if (!info.serialNumber().isEmpty())
        words.append(QStringLiteral("(%1)").arg(info.serialNumber()));
    return words.join(u' ');
}

} // namespace

Ports::Ports(SettingsStore &settings)
    : settings_(settings)
{
}

QString Ports::DeviceOf(int number) const
{
    if (number < First || number > Last)
        return {};
    const QString chosen = settings_.GetSetting(Section(), KeyOf(number));
    return chosen.isEmpty() ? DefaultDevice(number) : chosen;
}

void Ports::SetDevice(int number, const QString &path)
{
    if (path != DeviceOf(number))
        settings_.SaveSetting(Section(), KeyOf(number), path == DefaultDevice(number) ? QString() : path);
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
        devices.append({info.systemLocation(), Describe(info)});
    if (QFileInfo::exists(SimulatedDriveLink()))
        devices.append({SimulatedDriveLink(), QStringLiteral("Simulated drive")});
    return devices;
}

QString Ports::PluggedIn(const QString &path)
{
    if (path.isEmpty())
        return QStringLiteral("No device has been chosen for this port.");
    const QString real = QFileInfo(path).canonicalFilePath();
    const QList<SerialDevice> present = Present();
    for (const SerialDevice &device : present)
        if (device.path == path || device.path == real)
            return device.description;
    if (real.startsWith(QStringLiteral("/dev/pts/")))
        return QStringLiteral("Pseudo-terminal of another program, such as a simulated drive");
    return real.isEmpty() ? QStringLiteral("Nothing is plugged in there.")
                          : QStringLiteral("Nothing known is plugged in there.");
}

} // namespace quorvik
