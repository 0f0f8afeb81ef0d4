#include "platform/Ports.h"
#include "platform/SettingsStore.h"
#include "support/Name.h"

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvik::testing
{

using Use = PortStatus::Use;

/** An adapter with a serial number of its own, or with none. */
SerialDevice Adapter(const QString &path, const QString &serialNumber)
{
    return {path, serialNumber, Name("Adapter"), serialNumber, Name("0403:6001")};
}

class PortSurveyTest : public ::testing::Test
{
protected:
    void PlugIn(std::initializer_list<SerialDevice> devices) { present = devices; }
    std::string Device(int number) const { return ports.DeviceOf(number).toStdString(); }
    /** The row of a number, or of a device without one. */
    PortStatus Row(int number, const QString &device = {}) const
    {
        const QList<PortStatus> rows = ports.Survey();
        const auto row = std::find_if(rows.cbegin(), rows.cend(), [&](const PortStatus &port) {
            return port.number == number && (number > 0 || port.device == device);
        });
        return row == rows.cend() ? PortStatus{.number = -1} : *row;
    }

    const QTemporaryDir folder;
    const QString usb0 = Name("/dev/ttyUSB0"), usb1 = Name("/dev/ttyUSB1"), usb2 = Name("/dev/ttyUSB2");
    QList<SerialDevice> present;
    SettingsStore settings{folder.filePath(Name("settings.ini"))};
    Ports ports{settings, [this] { return present; }};
};

TEST_F(PortSurveyTest, AChoiceFollowsTheSerialNumberOfItsAdapter)
{
    const SerialDevice other = Adapter(usb0, Name("B"));
    PlugIn({Adapter(usb0, Name("A")), Adapter(usb1, {})});
    ports.FollowAdapter(5);
    ports.FollowAdapter(6);
    PlugIn({other, Adapter(usb1, Name("A"))});
    EXPECT_EQ(Device(5), "/dev/ttyUSB1") << "plugged in after the other one";
    EXPECT_EQ(Device(6), "/dev/ttyUSB1") << "an adapter without a number is what its path is";
    PlugIn({other});
    EXPECT_EQ(Device(5), "/dev/ttyUSB0") << "not there: as before";
    ports.FollowAdapter(5);
    PlugIn({other, Adapter(usb2, Name("A"))});
    EXPECT_EQ(Device(5), "/dev/ttyUSB2") << "another one in its place is not taken for it";
    PlugIn({other});
    ports.FollowAdapter(5, true);
    PlugIn({other, Adapter(usb2, Name("A"))});
    EXPECT_EQ(Device(5), "/dev/ttyUSB0") << "but it can be chosen";

    ports.SetDevice(13, usb2);
    PlugIn({Adapter(usb1, Name("A")), Adapter(usb2, Name("A"))});
    EXPECT_EQ(Device(13), "/dev/ttyUSB2") << "an adapter with two ports";
    ports.SetDevice(13, {});
    EXPECT_EQ(Device(13), "");
    EXPECT_EQ(ports.NumberFor(usb1), 6);
    EXPECT_EQ(ports.NumberFor(Name("/dev/ttyUSB9")), 13) << "the first that stands for nothing";
}

TEST_F(PortSurveyTest, TheSurveyTellsWhatIsThereAndWhoHasIt)
{
    const QString tcu = Name("/dev/ttyTCU0");
    PlugIn({Adapter(usb0, Name("A")), Adapter(tcu, Name("T"))});
    const QList<PortStatus> rows = ports.Survey();
    ASSERT_EQ(rows.size(), 17);
    EXPECT_EQ(rows.at(0).number, 5);
    EXPECT_EQ(rows.at(1).Name(), tcu) << "without a number, but there";
    EXPECT_EQ(rows.at(1).serialNumber, Name("T"));
    EXPECT_EQ(rows.at(2).number, 1);
    EXPECT_EQ(rows.at(2).Text(), Name("not present"));

    int end = -1;
    int far = -1;
    char path[64];
    ASSERT_EQ(::openpty(&end, &far, path, nullptr, nullptr), 0);
    const QString device = folder.filePath(Name("port"));
    ASSERT_TRUE(QFile::link(QString::fromLatin1(path), device));
    ports.SetDevice(14, device);
    EXPECT_EQ(Row(14).Text(), Name("free")) << "who made it has both ends open";
    ASSERT_EQ(::flock(far, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(Row(14).Text(), Name("in use by this program"));
    ASSERT_EQ(::flock(far, LOCK_UN), 0);

    // Another program that has it open, and locks nothing.
    int tell[2];
    ASSERT_EQ(::pipe(tell), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(end);
        ::write(tell[1], "x", 1);
        ::pause();
    }
    char told = 0;
    ASSERT_EQ(::read(tell[0], &told, 1), 1);
    EXPECT_EQ(Row(14).Text(), Name("in use by another program"));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(Row(14).use, Use::Free);
    ::close(far);
    ::close(end);
    EXPECT_EQ(Row(14).use, Use::NotPresent);

    EXPECT_EQ((PortStatus{.use = Use::NoPermission, .group = Name("dialout")}.Text()),
              Name("no permission (group dialout)"));
}

} // namespace quorvik::testing
