#include "link/DriveLink.h"
#include "link/ScriptedPeer.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormDebug.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "platform/Ports.h"
#include "platform/Waiting.h"
#include "support/WindowTest.h"

#include <QProgressBar>

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

    QString StoredDevice(int number) { return Ports(desk.settings).DeviceOf(number); }

    ScriptedPeer peer;
    DriveLink link{
        desk.model, desk.rules, desk.asker,
        LinkTimings{.scanPause = 40, .replyTimeout = 150, .sizeErrorPause = 60, .progressUpdate = 5}};
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
        if (online)
            link.GoOnLine();
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

TEST_F(LinkFormsTest, OfflineAsksForTheModel)
{
    P(Param::DriveModel) = 0;
    const auto *form = Show<FormSelectCommMode>(&desk.mainWindow);
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
    EXPECT_FALSE(desk.model.FileModified);
}

TEST_F(LinkFormsTest, OnlineLeavesTheModelToTheDrive)
{
    const std::int32_t before = P(Param::DriveModel);
    for (const bool accept : {true, false}) {
        const auto *form = Show<FormSelectCommMode>(&desk.mainWindow);
        Pick("ComboModels", 4);
        Press(accept ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_EQ(form->OnlineChosen(), accept);
        EXPECT_EQ(P(Param::DriveModel), before);
    }
}

TEST_F(LinkFormsTest, AReadingEndsTheWindowAndRunsTheRules)
{
    peer.Values[3] = 226; // a selector whose dependants must follow what was read
    link.GoOnLine();
    const std::uint8_t readFlag = Record(Param::DriveState).ReadFlag;
    link.SetAllReadFlags(1);
    link.ScanKind = 1;
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Reading Parameters from Drive"));
    EXPECT_EQ(FindIn<QProgressBar>(&form, "ProgressBarRead")->maximum(), 434);
    form.exec();
    EXPECT_EQ(P(3), 226);
    EXPECT_EQ(Record(10).Max, Record(226).Max);
    EXPECT_EQ(Record(Param::DriveState).ReadFlag, readFlag);
    EXPECT_EQ(Record(433).ReadFlag, 0);
}

TEST_F(LinkFormsTest, ABrokenReadingGivesBackWhatItTookAndRunsNoRules)
{
    peer.LastParam = 300;
    link.GoOnLine();
    ASSERT_EQ(desk.model.LastParam, 300);
    peer.Values[3] = 226;
    const std::int32_t max = Record(10).Max;
    peer.Answer = [this](const QByteArray &frame) {
        return P(3) == 226 ? QByteArray() : peer.DriveAnswer(frame);
    };
    link.SetAllReadFlags(1);
    link.ScanKind = 1;
    desk.asker.Expect("Drive not Responding!");
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    form.exec();
    EXPECT_FALSE(link.PortOpen());
    EXPECT_EQ(desk.model.LastParam, 433) << "grown again behind the window's back";
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(Record(300).ReadFlag + Record(301).ReadFlag, 0);
    EXPECT_EQ(Record(10).Max, max);
}

TEST_F(LinkFormsTest, CancelStopsAWrite)
{
    link.GoOnLine();
    desk.model.SetAllWriteFlags(WriteState::Queued);
    link.ScanKind = 2;
    Show<FormProgressBar>(&desk.mainWindow, link);
    EXPECT_EQ(window->windowTitle(), Name("Writing Parameters to Drive"));
    peer.Frames.clear();
    ASSERT_TRUE(QTest::qWaitFor([&] { return link.CurrentParam > 20; }));
    Click("CommandCancel");
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(desk.model.WritePending) << "until the scan finds nothing";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !desk.model.WritePending; }));
    EXPECT_LT(peer.Frames.size(), 300);
    EXPECT_EQ(Record(433).ReadFlag, 0);
}

TEST_F(LinkFormsTest, DebugAsksForPropertiesAndListsWhoIsPolled)
{
    Show<FormDebug>(link);
    link.GoOnLine();
    peer.Values[9] = 5;
    Find<QLineEdit>("Text2")->setText(Name("9"));
    Click("CommandReadProps");
    EXPECT_EQ(link.ReadPropsIndex, 9);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Text("Text1(1)") == "433" && Text("Text1(4)") == "5"; }));
    EXPECT_EQ(Text("TextReadFlags"), "422 1\n");
    Click("CommandClose");
    EXPECT_TRUE(QTest::qWaitFor([&] { return desk.forms.Count() == 1; }));
}

} // namespace quorvik::testing
