#include "platform/Ports.h"

#include "platform/SettingsStore.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik
{

TEST(Ports, StandForAFixedDeviceUntilOneIsChosen)
{
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(QStringLiteral("Quorvik.ini")));
    Ports ports(settings);
    const struct {
        int number;
        QString device;
    } cases[] = {
        {0, {}},
        {1, QStringLiteral("/dev/ttyS0")},
        {4, QStringLiteral("/dev/ttyS3")},
        {5, QStringLiteral("/dev/ttyUSB0")},
        {9, QStringLiteral("/dev/ttyACM0")},
        {12, QStringLiteral("/dev/ttyACM3")},
        {13, {}},
        {16, Ports::SimulatedDriveLink()},
        {17, {}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(ports.DeviceOf(c.number), c.device) << c.number;

    ports.SetDevice(13, QStringLiteral("/dev/ttyUSB7"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Ports"), QStringLiteral("Com13")),
              QStringLiteral("/dev/ttyUSB7"));
    EXPECT_EQ(ports.DeviceOf(13), QStringLiteral("/dev/ttyUSB7"));
    ports.SetDevice(13, QString());
    EXPECT_EQ(ports.DeviceOf(13), QString());
    EXPECT_EQ(Ports::PluggedIn(QStringLiteral("/dev/ttyUSB77")),
              QStringLiteral("Nothing is plugged in there."));
}

} // namespace quorvik
