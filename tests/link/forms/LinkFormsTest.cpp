#include "link/DriveLink.h"
#include "link/ScriptedPeer.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormDebug.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "platform/Ports.h"
#include "platform/Waiting.h"
#include "support/WindowTest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

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
            peer.Values[p] = desk.model.Value(p);
    }

    template<typename Control> Control *Find(QWidget &form, const char *name)
    {
        return FindIn<Control>(&form, name);
    }
    void Click(QWidget &form, const char *button) { ClickIn(&form, button); }
    ParamRecord &P(int p) { return desk.model.ParamTable[p]; }
    QString StoredDevice(int number) { return Ports(desk.settings).DeviceOf(number); }

    ScriptedPeer peer;
    DriveLink link{desk.model,
                   desk.rules,
                   desk.asker,
                   {.scanPause = 40, .replyTimeout = 150, .sizeErrorPause = 60, .progressUpdate = 5}};
};

TEST_F(LinkFormsTest, CommunicationsKeepsTheChoiceHoweverItCloses)
{
    const struct {
        int before;
        int steps;
        bool byButton;
        bool online;
        int after;
    } cases[] = {
        {3, 1, true, false, 4},
        {3, 1, false, false, 4},
        {20, 0, true, false, 20}, // a port beyond the list stays unless one is chosen
        {2, 1, true, true, 2},    // on line nothing changes
    };
    for (const auto &c : cases) {
        link.MSComm1.SetCommPort(c.before);
        if (c.online)
            link.GoOnLine();
        FormCommunications form(desk.desk, &desk.mainWindow, link);
        form.show();
        auto *ports = Find<QComboBox>(form, "ComboCommPort");
        EXPECT_EQ(ports->count(), 16);
        EXPECT_EQ(ports->currentIndex(), c.before > 16 ? -1 : c.before - 1);
        EXPECT_EQ(ports->isEnabled(), !c.online);
        ports->setCurrentIndex(ports->currentIndex() + c.steps);
        EXPECT_EQ(link.MSComm1.CommPort(), c.before) << "not before the window closes";
        if (c.byButton)
            Click(form, "CommandOK");
        else
            QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(link.MSComm1.CommPort(), c.after);
    }
    EXPECT_EQ(StoredDevice(2), QStringLiteral("/dev/ttyS1"));
}

TEST_F(LinkFormsTest, CommunicationsShowsAndStoresTheDeviceBehindThePort)
{
    link.MSComm1.SetCommPort(6);
    FormCommunications form(desk.desk, &desk.mainWindow, link);
    form.show();
    auto *device = Find<QComboBox>(form, "ComboDevice");
    auto *pluggedIn = Find<QLabel>(form, "LabelPluggedIn");
    EXPECT_EQ(device->currentText(), QStringLiteral("/dev/ttyUSB1"));
    EXPECT_EQ(pluggedIn->text(), QStringLiteral("Nothing is plugged in there."));
    device->lineEdit()->selectAll();
    QTest::keyClicks(device->lineEdit(), peer.Device());
    EXPECT_TRUE(pluggedIn->text().contains(QStringLiteral("Pseudo-terminal")));
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    device->setFocus();
    device->addItem(peer.Device() + u'0');
    device->lineEdit()->end(false);
    QTest::keyClick(device->lineEdit(), Qt::Key_Backspace);
    QTest::keyClicks(device->lineEdit(), peer.Device().right(1));
    EXPECT_EQ(device->currentText(), peer.Device()) << "typed, not completed from the list";
    auto *ports = Find<QComboBox>(form, "ComboCommPort");
    QTest::keyClick(ports, Qt::Key_Down);
    EXPECT_EQ(StoredDevice(6), peer.Device());
    EXPECT_EQ(device->currentText(), QStringLiteral("/dev/ttyUSB2"));
    QTest::keyClick(ports, Qt::Key_Up);
    EXPECT_EQ(device->currentText(), peer.Device());
    device->lineEdit()->clear();
    Click(form, "CommandOK");
    EXPECT_EQ(StoredDevice(6), QStringLiteral("/dev/ttyUSB1"))
        << "an empty path goes back to the fixed device";
    EXPECT_EQ(StoredDevice(9), QStringLiteral("/dev/ttyACM0"));
    EXPECT_EQ(StoredDevice(16), Ports::SimulatedDriveLink());
    for (const int number : {0, 13, 17})
        EXPECT_EQ(StoredDevice(number), QString()) << number;
}

TEST_F(LinkFormsTest, OfflineAsksForTheModel)
{
    P(Param::DriveModel).Value = 0;
    FormSelectCommMode form(desk.desk, &desk.mainWindow);
    form.show();
    auto *models = Find<QComboBox>(form, "ComboModels");
    auto *offline = Find<QRadioButton>(form, "OptionSerialCommMode(1)");
    EXPECT_EQ(models->currentIndex(), 0) << "an undefined model";
    EXPECT_FALSE(models->isVisible());
    const int height = form.height();
    offline->click();
    EXPECT_TRUE(models->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.height() >= height + 40; }));
    Find<QRadioButton>(form, "OptionSerialCommMode(0)")->click();
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Select Comm Mode"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.height() == height; }));

    offline->click();
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Select Comm Mode & Model"));
    models->setCurrentText(QStringLiteral("SVN150-000 (256 Amps)"));
    Click(form, "CommandOK");
    EXPECT_FALSE(form.OnlineChosen());
    EXPECT_EQ(desk.model.Value(Param::DriveModel), 23) << "the lower of the two codes with this text";
    EXPECT_EQ(desk.model.Value(Param::DriveCurrent), 256);
    EXPECT_FALSE(desk.model.FileModified);
}

TEST_F(LinkFormsTest, OnlineLeavesTheModelToTheDrive)
{
    const std::int32_t before = desk.model.Value(Param::DriveModel);
    for (const bool accept : {true, false}) {
        FormSelectCommMode form(desk.desk, &desk.mainWindow);
        form.show();
        Find<QComboBox>(form, "ComboModels")->setCurrentIndex(4);
        QTest::keyClick(&form, accept ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_EQ(form.OnlineChosen(), accept);
        EXPECT_EQ(desk.model.Value(Param::DriveModel), before);
    }
}

TEST_F(LinkFormsTest, AReadingEndsTheWindowAndRunsTheRules)
{
    peer.Values[3] = 226; // a selector whose dependants must follow what was read
    link.GoOnLine();
    const std::uint8_t readFlag = P(Param::DriveState).ReadFlag;
    link.SetAllReadFlags(1);
    link.ScanKind = 1;
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Reading Parameters from Drive"));
    EXPECT_EQ(Find<QProgressBar>(form, "ProgressBarRead")->maximum(), 434);
    form.exec();
    EXPECT_EQ(desk.model.Value(3), 226);
    EXPECT_EQ(P(10).Max, P(226).Max);
    EXPECT_EQ(P(Param::DriveState).ReadFlag, readFlag);
    EXPECT_EQ(P(433).ReadFlag, 0);
}

TEST_F(LinkFormsTest, ABrokenReadingGivesBackWhatItTookAndRunsNoRules)
{
    peer.LastParam = 300;
    link.GoOnLine();
    ASSERT_EQ(desk.model.LastParam, 300);
    peer.Values[3] = 226;
    const std::int32_t max = P(10).Max;
    peer.Answer = [this](const QByteArray &frame) {
        return desk.model.Value(3) == 226 ? QByteArray() : peer.DriveAnswer(frame);
    };
    link.SetAllReadFlags(1);
    link.ScanKind = 1;
    desk.asker.Expect(QStringLiteral("Drive not Responding!"));
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    form.exec();
    EXPECT_FALSE(link.PortOpen());
    EXPECT_EQ(desk.model.LastParam, 433) << "grown again behind the window's back";
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(P(300).ReadFlag + P(301).ReadFlag, 0);
    EXPECT_EQ(P(10).Max, max);
}

TEST_F(LinkFormsTest, CancelStopsAWrite)
{
    link.GoOnLine();
    desk.model.SetAllWriteFlags(WriteState::Queued);
    link.ScanKind = 2;
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Writing Parameters to Drive"));
    form.show();
    peer.Frames.clear();
    ASSERT_TRUE(QTest::qWaitFor([&] { return link.CurrentParam > 20; }));
    Click(form, "CommandCancel");
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(desk.model.WritePending) << "until the scan finds nothing";
    ASSERT_TRUE(QTest::qWaitFor([&] { return !desk.model.WritePending; }));
    EXPECT_LT(peer.Frames.size(), 300);
    EXPECT_EQ(P(433).ReadFlag, 0);
}

TEST_F(LinkFormsTest, DebugAsksForPropertiesAndListsWhoIsPolled)
{
    auto *form = new FormDebug(desk.desk, link);
    form->show();
    link.GoOnLine();
    peer.Values[9] = 5;
    Find<QLineEdit>(*form, "Text2")->setText(QStringLiteral("9"));
    Click(*form, "CommandReadProps");
    EXPECT_EQ(link.ReadPropsIndex, 9);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return Find<QLineEdit>(*form, "Text1(1)")->text() == QStringLiteral("433") &&
               Find<QLineEdit>(*form, "Text1(4)")->text() == QStringLiteral("5");
    }));
    EXPECT_EQ(Find<QPlainTextEdit>(*form, "TextReadFlags")->toPlainText(), QStringLiteral("422 1\n"));
    Click(*form, "CommandClose");
    EXPECT_TRUE(QTest::qWaitFor([&] { return desk.forms.Count() == 1; }));
}

} // namespace quorvik::testing
