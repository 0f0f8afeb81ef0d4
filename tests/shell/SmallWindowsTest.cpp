#include "model/ParameterTable.h"
#include "shell/FormAbout.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "shell/ShellFixture.h"
#include "support/WindowTest.h"

#include <QSignalSpy>

namespace quorvik::testing
{

constexpr std::int32_t Orange = 0x0080ff; // blue, green, red

class ColorSettings : public WindowTest
{
protected:
    void Open()
    {
        Show<FormColorSettings>()->ShowColor = [this](const QColor &present, QWidget *) {
            offered = present;
            return answer;
        };
    }

    QColor Swatch(int index) const
    {
        return Find(ControlName("Shape1", index))->palette().color(QPalette::Window);
    }

    std::optional<QColor> answer;
    QColor offered;
};

TEST_F(ColorSettings, ApplyStoresWhatWasChosenAndOnlyThen)
{
    Open();
    EXPECT_EQ(Swatch(4), QColor(Qt::blue));
    Click("Image1(2)");
    EXPECT_EQ(offered, QColor(Qt::red));
    EXPECT_FALSE(Enabled("CommandApply")) << "the choice was cancelled";
    EXPECT_EQ(Swatch(2), QColor(Qt::red));
    answer = QColor(0xff, 0x80, 0x00);
    Click("Image1(2)");
    EXPECT_EQ(desk.colors.Colors[2], 255);
    EXPECT_TRUE(Enabled("CommandApply"));
    Click("CommandApply");
    EXPECT_EQ(desk.colors.Colors[2], Orange);
    EXPECT_FALSE(Enabled("CommandApply"));
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ColorSettings, DefaultIsStoredByOkAndDroppedByCancel)
{
    decltype(desk.colors.Colors) own = desk.colors.Colors;
    own.fill(Orange);
    own[Access::Empty] = 0;
    for (const bool ok : {false, true}) {
        Open();
        desk.colors.Colors = own;
        Click("CommandDefault");
        EXPECT_EQ(Swatch(4), QColor(Qt::blue));
        EXPECT_TRUE(Enabled("CommandApply"));
        EXPECT_EQ(desk.colors.Colors, own) << "nothing is stored yet";
        Click(ok ? "CommandOK" : "CommandCancel");
        EXPECT_FALSE(window->isVisible());
        EXPECT_EQ(desk.colors.Colors, ok ? desk.colors.DefaultColors : own);
    }
}

using GettingStarted = WindowTest;

TEST_F(GettingStarted, StandsInTheMiddleAndTellsItsBox)
{
    desk.mainWindow.setGeometry(50, 100, 700, 500);
    const auto *form = Show<FormGettingStarted>(&desk.mainWindow, true);
    const QSignalSpy changes(form, &FormGettingStarted::ShowTipsChanged);
    EXPECT_NEAR(form->x() - 50, (700 - form->width()) / 2, 1);
    EXPECT_NEAR(form->y() - 100, (500 - form->height()) / 2, 1);
    for (const bool isChecked : {true, false}) {
        EXPECT_EQ(Checked("chkLoadOnStartup"), isChecked);
        Click("chkLoadOnStartup");
        EXPECT_EQ(changes.last().first(), !isChecked);
    }
    QTest::keyClick(Find("chkLoadOnStartup"), Qt::Key_Return);
    EXPECT_FALSE(form->isVisible()) << "Enter is OK, on the check box too";
    desk.mainWindow.setGeometry(0, 0, 320, 240);
    form = Show<FormGettingStarted>(&desk.mainWindow, true);
    EXPECT_TRUE(form->screen()->availableGeometry().contains(form->geometry()));
}

using About = WindowTest;

TEST_F(About, StartsTheFirstViewerThatThereIsOrSaysThatThereIsNone)
{
    const OnlyProgramsIn viewers(desk.folder);
    Show<FormAbout>(&desk.mainWindow);
    EXPECT_EQ(Text("lblVersion"), "Version " QUORVIK_VERSION);
    desk.asker.Expect("System Information Is Unavailable At This Time");
    Click("cmdSysInfo");

    QFile mark(desk.folder.filePath(QStringLiteral("started")));
    for (const char *name : {"xfce4-about", "gnome-control-center"}) {
        QFile viewer(desk.folder.filePath(Name(name)));
        ASSERT_TRUE(viewer.open(QIODevice::WriteOnly));
        viewer.write("#!/bin/sh\necho " + QByteArray(name) + " $* > " + mark.fileName().toUtf8() + "\n");
        viewer.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    Click("cmdSysInfo");
    ASSERT_TRUE(QTest::qWaitFor([&] { return mark.size() > 0; }));
    ASSERT_TRUE(mark.open(QIODevice::ReadOnly));
    EXPECT_EQ(mark.readAll().trimmed(), QByteArray("gnome-control-center info-overview"));
}

} // namespace quorvik::testing
