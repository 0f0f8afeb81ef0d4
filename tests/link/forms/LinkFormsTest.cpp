#include "link/DriveLink.h"
#include "link/ScriptedPeer.h"
#include "link/forms/FormCommunications.h"
#include "link/forms/FormDebug.h"
#include "link/forms/FormProgressBar.h"
#include "link/forms/FormSelectCommMode.h"
#include "platform/Guard.h"
#include "platform/Ports.h"
#include "platform/Waiting.h"
#include "support/TestDesk.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest/QTest>
#include <gtest/gtest.h>

namespace quorvik::testing
{

class LinkFormsTest : public ::testing::Test
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
        auto *control = form.findChild<Control *>(QLatin1String(name));
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    void Click(QWidget &form, const char *button)
    {
        QTest::mouseClick(Find<QPushButton>(form, button), Qt::LeftButton);
    }
    QString StoredDevice(int number) { return Ports(desk.settings).DeviceOf(number); }

    TestDesk desk;
    ScriptedPeer peer;
    DriveLink link{desk.model,
                   desk.rules,
                   desk.asker,
                   {.scanPause = 40, .replyTimeout = 150, .sizeErrorPause = 60, .progressUpdate = 5}};
};

TEST_F(LinkFormsTest, CommunicationsKeepsTheChoiceHoweverItCloses)
{
    for (const bool byButton : {true, false}) {
        link.MSComm1.SetCommPort(3);
        FormCommunications form(desk.desk, &desk.mainWindow, link);
        form.show();
        auto *ports = Find<QComboBox>(form, "ComboCommPort");
        EXPECT_EQ(ports->currentText(), QStringLiteral("Com3"));
        EXPECT_EQ(ports->itemText(15), QStringLiteral("Com16"));
        QTest::keyClick(ports, Qt::Key_Down);
        EXPECT_EQ(link.MSComm1.CommPort(), 3) << "not before the window closes";
        if (byButton)
            Click(form, "CommandOK");
        else
            QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(link.MSComm1.CommPort(), 4);
    }
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
}

TEST_F(LinkFormsTest, CommunicationsChangesNothingOnLine)
{
    link.MSComm1.SetCommPort(2);
    link.GoOnLine();
    ASSERT_TRUE(link.PortOpen());
    FormCommunications form(desk.desk, &desk.mainWindow, link);
    form.show();
    auto *ports = Find<QComboBox>(form, "ComboCommPort");
    EXPECT_FALSE(ports->isEnabled());
    EXPECT_EQ(ports->currentText(), QStringLiteral("Com2"));
    ports->setCurrentIndex(9);
    Click(form, "CommandOK");
    EXPECT_EQ(link.MSComm1.CommPort(), 2);
    EXPECT_EQ(StoredDevice(2), QStringLiteral("/dev/ttyS1"));
}

TEST_F(LinkFormsTest, CommunicationsKeepsAPortBeyondItsListUnlessOneIsChosen)
{
    link.MSComm1.SetCommPort(20);
    FormCommunications form(desk.desk, &desk.mainWindow, link);
    form.show();
    EXPECT_EQ(Find<QComboBox>(form, "ComboCommPort")->currentIndex(), -1);
    Click(form, "CommandOK");
    EXPECT_EQ(link.MSComm1.CommPort(), 20);
}

TEST_F(LinkFormsTest, OfflineAsksForTheModel)
{
    desk.model.ParamTable[Param::DriveModel].Value = 0;
    FormSelectCommMode form(desk.desk, &desk.mainWindow);
    form.show();
    auto *models = Find<QComboBox>(form, "ComboModels");
    EXPECT_EQ(models->currentIndex(), 0) << "an undefined model";
    EXPECT_FALSE(models->isVisible());
    const int height = form.height();
    Find<QRadioButton>(form, "OptionSerialCommMode(1)")->click();
    EXPECT_TRUE(models->isVisible());
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Select Comm Mode & Model"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.height() >= height + 40; }));
    Find<QRadioButton>(form, "OptionSerialCommMode(0)")->click();
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Select Comm Mode"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.height() == height; }));

    Find<QRadioButton>(form, "OptionSerialCommMode(1)")->click();
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
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        Find<QComboBox>(form, "ComboModels")->setCurrentIndex(4);
        QTest::keyClick(&form, Qt::Key_F1);
        if (accept)
            QTest::keyClick(&form, Qt::Key_Return);
        else
            QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_EQ(form.OnlineChosen(), accept);
        EXPECT_EQ(desk.model.Value(Param::DriveModel), before);
    }
    EXPECT_EQ(desk.help.Topics.count(QStringLiteral("Select Comm Mode.htm")), 2);
}

TEST_F(LinkFormsTest, AReadingEndsTheWindowAndRunsTheRules)
{
    peer.Values[3] = 226; // a selector whose dependants must follow what was read
    link.GoOnLine();
    const std::uint8_t readFlag = desk.model.ParamTable[Param::DriveState].ReadFlag;
    link.SetAllReadFlags(1);
    link.ScanKind = 1;
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Reading Parameters from Drive"));
    EXPECT_EQ(Find<QProgressBar>(form, "ProgressBarRead")->maximum(), 434);
    form.exec();
    EXPECT_EQ(desk.model.Value(3), 226);
    EXPECT_EQ(desk.model.ParamTable[10].Max, desk.model.ParamTable[226].Max);
    EXPECT_EQ(desk.model.ParamTable[Param::DriveState].ReadFlag, readFlag);
    EXPECT_EQ(desk.model.ParamTable[433].ReadFlag, 0);
}

TEST_F(LinkFormsTest, ABrokenReadingGivesBackWhatItTookAndRunsNoRules)
{
    peer.LastParam = 300;
    link.GoOnLine();
    ASSERT_EQ(desk.model.LastParam, 300);
    peer.Values[3] = 226;
    const std::int32_t max = desk.model.ParamTable[10].Max;
    peer.Answer = [this](const QByteArray &frame) {
        return desk.model.Value(3) == 226 ? QByteArray() : peer.DriveAnswer(frame);
    };
    link.SetAllReadFlags(1);
    link.ScanKind = 1;
    desk.asker.Expect(QStringLiteral("Drive not Responding!"));
    FormProgressBar form(desk.desk, &desk.mainWindow, link);
    QStringList failures;
    SetFailureReporter([&](const RuntimeFailure &failure) { failures.append(failure.Sentence()); });
    form.exec();
    SetFailureReporter([](const RuntimeFailure &) {});
    EXPECT_FALSE(link.PortOpen());
    EXPECT_EQ(desk.model.LastParam, 433) << "grown again behind the window's back";
    EXPECT_TRUE(failures.isEmpty());
    EXPECT_EQ(desk.model.ParamTable[300].ReadFlag + desk.model.ParamTable[301].ReadFlag, 0);
    EXPECT_EQ(desk.model.ParamTable[10].Max, max);
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
    EXPECT_EQ(desk.model.ParamTable[433].ReadFlag, 0);
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
