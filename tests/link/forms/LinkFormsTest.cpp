#include "link/DriveLink.h"
#include "link/ScriptedPeer.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormDebug.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "platform/Ports.h"
#include "platform/Progress.h"
#include "platform/Waiting.h"
#include "support/WindowTest.h"

#include <QProgressBar>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTimer>
#include <QTreeWidget>

namespace quorvik::testing
{

class LinkFormsTest : public WindowTest
{
protected:
    LinkFormsTest()
    {
        link.MSComm1.DeviceOf = [this](int) { return peer.Device(); };
        peer.LastParam = 433;
        for (int p = 0; p <= 433; ++p)
            peer.Values[p] = P(p);
    }

    /** Of the row of a port: number, device, adapter, serial number, state. */
    QTreeWidgetItem *PortRow(const Name &device) const
    {
        return Find<QTreeWidget>("TreePorts")->findItems(device, Qt::MatchExactly, 1).value(0);
    }
    void ClickRow(const Name &device) const
    {
        auto *ports = Find<QTreeWidget>("TreePorts");
        ports->scrollToItem(PortRow(device));
        QTest::mouseClick(ports->viewport(), Qt::LeftButton, {},
                          ports->visualItemRect(PortRow(device)).center());
    }
    std::string State(const Name &device) const { return PortRow(device)->text(4).toStdString(); }
    QString StoredDevice(int number) { return Ports(desk.settings).DeviceOf(number); }

    ScriptedPeer peer;
    DriveLink link{desk.table, LinkTimings{.scanPause = 40, .replyTimeout = 150, .sizeErrorPause = 60}};
};

TEST_F(LinkFormsTest, CommunicationsKeepsTheChoiceHoweverItCloses)
{
    const std::tuple<int, int, bool, bool, int> cases[] = {
        {3, 1, true, false, 4},
        {3, 1, false, false, 4},
        {20, 0, true, false, 20}, // a port beyond the list stays unless one is chosen
        {2, 1, true, true, 2},    // on line nothing changes
    };
    for (const auto &[before, steps, byButton, online, after] : cases) {
        link.MSComm1.SetCommPort(before);
        if (online) {
            EXPECT_EQ(link.Open(), QString());
        }
        Show<FormCommunications>(&desk.mainWindow, link);
        auto *ports = Find<QComboBox>("ComboCommPort");
        EXPECT_EQ(ports->count(), 16);
        EXPECT_EQ(ports->currentIndex(), before > 16 ? -1 : before - 1);
        EXPECT_EQ(ports->isEnabled(), !online);
        ports->setCurrentIndex(ports->currentIndex() + steps);
        EXPECT_EQ(link.MSComm1.CommPort(), before) << "not before the window closes";
        if (byButton)
            Click("CommandOK");
        else
            Press(Qt::Key_Escape);
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(link.MSComm1.CommPort(), after);
    }
    EXPECT_EQ(StoredDevice(2), Name("/dev/ttyS1"));
}

TEST_F(LinkFormsTest, CommunicationsShowsAndStoresTheDeviceBehindThePort)
{
    link.MSComm1.SetCommPort(6);
    Show<FormCommunications>(&desk.mainWindow, link);
    auto *device = Find<QComboBox>("ComboDevice");
    EXPECT_EQ(Text("ComboDevice"), "/dev/ttyUSB1");
    EXPECT_EQ(Text("LabelPluggedIn"), "Nothing is plugged in there.");
    device->lineEdit()->selectAll();
    QTest::keyClicks(device->lineEdit(), peer.Device());
    EXPECT_THAT(Text("LabelPluggedIn"), ::testing::HasSubstr("Pseudo-terminal"));
    device->setFocus();
    device->addItem(peer.Device() + u'0');
    device->lineEdit()->end(false);
    QTest::keyClick(device->lineEdit(), Qt::Key_Backspace);
    QTest::keyClicks(device->lineEdit(), peer.Device().right(1));
    EXPECT_EQ(device->currentText(), peer.Device()) << "typed, not completed from the list";
    QTest::keyClick(Find("ComboCommPort"), Qt::Key_Down);
    EXPECT_EQ(StoredDevice(6), peer.Device());
    EXPECT_EQ(Text("ComboDevice"), "/dev/ttyUSB2");
    QTest::keyClick(Find("ComboCommPort"), Qt::Key_Up);
    EXPECT_EQ(device->currentText(), peer.Device());
    device->lineEdit()->clear();
    Click("CommandOK");
    EXPECT_EQ(StoredDevice(6), Name("/dev/ttyUSB1")) << "an empty path goes back to the fixed device";
    EXPECT_EQ(StoredDevice(9), Name("/dev/ttyACM0"));
    EXPECT_EQ(StoredDevice(16), Ports::SimulatedDriveLink());
    for (const int number : {0, 13, 17})
        EXPECT_EQ(StoredDevice(number), QString()) << number;
}

TEST_F(LinkFormsTest, TheDriveIsFoundAmongTheFreePortsAndItsAdapterRemembered)
{
    ScriptedPeer silent;
    silent.Answer = [](const QByteArray &) { return QByteArray(); };
    QString drive = peer.Device();
    const auto present = [&] {
        return QList<SerialDevice>{{silent.Device(), {}, Name("Silent adapter"), Name("A"), Name("1:2")},
                                   {drive, {}, Name("Drive's adapter"), Name("B"), Name("1:2")}};
    };
    Ports(desk.settings).SetDevice(2, silent.Device());
    link.MSComm1.SetCommPort(2);
    Show<FormCommunications>(&desk.mainWindow, link, present);
    EXPECT_EQ(Find<QTreeWidget>("TreePorts")->currentItem(), PortRow(silent.Device()));
    EXPECT_EQ(State(Name("/dev/ttyUSB1")), "not present");

    Click("CommandFindDrive");
    EXPECT_EQ(Text("CommandFindDrive"), "Stop");
    Click("CommandFindDrive");
    EXPECT_EQ(link.Open(), QString()) << "nothing is asked any more";
    link.Close();
    silent.Frames.clear();

    Click("CommandFindDrive");
    EXPECT_TRUE(QTest::qWaitFor([&] { return Text("CommandFindDrive") == "Find &drive"; }));
    EXPECT_EQ(silent.Count(PropsRequest(1)), silent.Frames.size()) << "no other question";
    EXPECT_EQ(Text("LabelFound"), drive.toStdString() + ": a Sarvex drive answers (last parameter 433)");
    EXPECT_EQ(State(silent.Device()), "no answer");
    EXPECT_EQ(Text("ComboCommPort"), "Com13") << "the first number that stood for nothing";
    EXPECT_EQ(Text("ComboDevice"), drive.toStdString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return PortRow(drive)->text(0) == Name("Com13"); }));
    Click("CommandOK");
    EXPECT_EQ(link.MSComm1.CommPort(), 13);
    EXPECT_EQ(StoredDevice(2), silent.Device());
    drive = Name("/dev/ttyUSB3");
    EXPECT_EQ(Ports(desk.settings, present).DeviceOf(13), drive) << "plugged in elsewhere";
}

TEST_F(LinkFormsTest, AnAddressStandsForAPortAndIsReachedWhenTheUserAsksForIt)
{
    QTcpServer nobody;
    ASSERT_TRUE(nobody.listen(QHostAddress::LocalHost));
    const QString address = QStringLiteral("tcp://127.0.0.1:%1").arg(nobody.serverPort());
    link.MSComm1.SetCommPort(3);
    Show<FormCommunications>(&desk.mainWindow, link, [] { return QList<SerialDevice>(); });
    auto *device = Find<QComboBox>("ComboDevice")->lineEdit();
    device->setText(Name("tcp://cabinet"));
    EXPECT_THAT(Text("LabelPluggedIn"), ::testing::HasSubstr("names no port"));
    device->setText(address);
    EXPECT_THAT(Text("LabelPluggedIn"), ::testing::HasSubstr("nothing proves who answers"));
    QTest::keyClick(device, Qt::Key_Return);
    EXPECT_EQ(StoredDevice(3), address);
    const auto row = [this] {
        const auto rows = Find<QTreeWidget>("TreePorts")->findItems(Name("Com3"), Qt::MatchExactly, 0);
        QStringList texts;
        for (int column = 0; column < 5 && !rows.isEmpty(); ++column)
            texts += rows.front()->text(column);
        return texts.join(u',').toStdString();
    };
    Show<FormCommunications>(&desk.mainWindow, link, [] { return QList<SerialDevice>(); });
    const std::string place = "Com3,tcp,127.0.0.1,port " + std::to_string(nobody.serverPort());
    EXPECT_EQ(row(), place + ",not asked");
    EXPECT_FALSE(nobody.hasPendingConnections()) << "nobody was asked yet";
    nobody.close();
    Click("CommandFindDrive");
    EXPECT_TRUE(QTest::qWaitFor([&] { return row() == place + ",not reached"; }));
}

TEST_F(LinkFormsTest, ARowOfTheListIsChosenAndOnLineNoneIs)
{
    const Name first("/dev/ttyUSB0"), second("/dev/ttyUSB1"), third("/dev/ttyXYZ");
    QList<SerialDevice> present = {{first, {}}, {second, {}}};
    const auto source = [&] { return present; };
    link.MSComm1.SetCommPort(5);
    Show<FormSelectCommMode>(&desk.mainWindow, link, source);
    ClickRow(second);
    EXPECT_EQ(link.MSComm1.CommPort(), 6);
    Click("OptionSerialCommMode(1)");
    EXPECT_FALSE(Enabled("TreePorts"));
    EXPECT_FALSE(Enabled("CommandFindDrive"));

    Show<FormCommunications>(&desk.mainWindow, link, source);
    QTest::keyClick(Find("TreePorts"), Qt::Key_Up);
    EXPECT_EQ(Text("ComboCommPort"), "Com5");
    EXPECT_EQ(Text("ComboDevice"), first.toStdString());
    present.append({third, {}});
    EXPECT_TRUE(QTest::qWaitFor([&] { return PortRow(third) != nullptr; })) << "plugged in meanwhile";
    QTest::keyClick(Find("TreePorts"), Qt::Key_Down);
    QTest::keyClick(Find("TreePorts"), Qt::Key_Down);
    EXPECT_EQ(Find<QTreeWidget>("TreePorts")->currentItem(), PortRow(third));
    EXPECT_EQ(Text("ComboCommPort"), "Com6");
    EXPECT_EQ(StoredDevice(13), QString()) << "the keys pass over a device without a number";
    ClickRow(third);
    EXPECT_EQ(StoredDevice(13), third);
    Close();

    link.MSComm1.SetCommPort(5);
    ASSERT_EQ(link.Open(), QString());
    Show<FormCommunications>(&desk.mainWindow, link, source);
    ClickRow(second);
    EXPECT_FALSE(Enabled("CommandFindDrive"));
    EXPECT_EQ(Text("ComboCommPort"), "Com5");
    Close();
    EXPECT_EQ(link.MSComm1.CommPort(), 5);
}

TEST_F(LinkFormsTest, OfflineAsksForTheModel)
{
    P(Param::DriveModel) = 0;
    const auto *form = Show<FormSelectCommMode>(&desk.mainWindow, link);
    EXPECT_EQ(Find<QComboBox>("ComboModels")->currentIndex(), 0) << "an undefined model";
    EXPECT_FALSE(Visible("ComboModels"));
    const int height = form->height();
    Click("OptionSerialCommMode(1)");
    EXPECT_TRUE(Visible("ComboModels"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->height() >= height + 40; }));
    Click("OptionSerialCommMode(0)");
    EXPECT_EQ(form->windowTitle(), Name("Select Comm Mode"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->height() == height; }));

    Click("OptionSerialCommMode(1)");
    EXPECT_EQ(form->windowTitle(), Name("Select Comm Mode & Model"));
    Find<QComboBox>("ComboModels")->setCurrentText(Name("SVN150-000 (256 Amps)"));
    Click("CommandOK");
    EXPECT_FALSE(form->OnlineChosen());
    EXPECT_EQ(P(Param::DriveModel), 23) << "the lower of the two codes with this text";
    EXPECT_EQ(P(Param::DriveCurrent), 256);
    EXPECT_FALSE(desk.document.FileModified);
}

TEST_F(LinkFormsTest, OnlineLeavesTheModelToTheDrive)
{
    const std::int32_t before = P(Param::DriveModel);
    for (const bool accept : {true, false}) {
        const auto *form = Show<FormSelectCommMode>(&desk.mainWindow, link);
        Pick("ComboModels", 4);
        Press(accept ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_EQ(form->OnlineChosen(), accept);
        EXPECT_EQ(P(Param::DriveModel), before);
    }
}

TEST_F(LinkFormsTest, TheProgressWindowEndsWithTheOperationOrCancelsIt)
{
    Progress reading(Name("Reading Parameters from Drive"), 1, 434);
    QTimer::singleShot(0, &reading, [&] {
        reading.Advance(40);
        EXPECT_EQ(Find<QProgressBar>("ProgressBarRead")->value(), 40);
        reading.Advance(20); // a scan that starts over
        EXPECT_EQ(Find<QProgressBar>("ProgressBarRead")->value(), 20);
        reading.End();
    });
    FormProgressBar form(desk.desk, &desk.mainWindow, reading);
    window = &form;
    EXPECT_EQ(form.windowTitle(), Name("Reading Parameters from Drive"));
    EXPECT_EQ(form.property("Tag").toString(), Name("1"));
    EXPECT_EQ(form.exec(), QDialog::Accepted);

    const std::function<void()> ways[] = {[this] { Click("CommandCancel"); },
                                          [this] { QTest::keyClick(window, Qt::Key_Escape); },
                                          [this] { window->close(); }};
    for (const auto &leave : ways) {
        Progress writing(Name("Writing Parameters to Drive"), 2, 434);
        const QSignalSpy cancelled(&writing, &Progress::CancelWanted);
        Show<FormProgressBar>(&desk.mainWindow, writing);
        leave();
        EXPECT_EQ(cancelled.size(), 1);
        EXPECT_FALSE(window->isVisible());
    }
}

TEST_F(LinkFormsTest, DebugAsksForPropertiesAndListsWhoIsPolled)
{
    Show<FormDebug>(link);
    ASSERT_EQ(link.Open(), QString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !link.IsAskingForSize(); }));
    peer.Values[64] = 60000;
    Find<QLineEdit>("Text2")->setText(Name("64"));
    Click("CommandReadProps");
    EXPECT_EQ(link.ReadPropsIndex, 64);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Text("Text1(1)") == "433" && Text("Text1(4)") == "60000"; }));
    EXPECT_EQ(Text("TextReadFlags"), "422 1\n");
    Click("CommandClose");
    EXPECT_TRUE(QTest::qWaitFor([&] { return desk.forms.Count() == 1; }));
}

} // namespace quorvik::testing
