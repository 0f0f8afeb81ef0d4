#include "model/Model.h"
#include "shell/FormAbout.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "shell/ShellFixture.h"
#include "support/WindowTest.h"

#include <QCheckBox>

namespace quorvik::testing
{

namespace
{

constexpr std::int32_t Orange = 0x0080ff; // blue, green, red

class ColorSettings : public WindowTest
{
protected:
    void Open()
    {
        form = new FormColorSettings(desk.desk);
        form->ShowColor = [this](const QColor &present, QWidget *) {
            offered = present;
            return answer;
        };
        form->show();
        window = form;
    }

    bool CanApply() const { return Find("CommandApply")->isEnabled(); }
    QColor Swatch(int index) const
    {
        return Find(ControlName("Shape1", index))->palette().color(QPalette::Window);
    }

    QPointer<FormColorSettings> form;
    std::optional<QColor> answer;
    QColor offered;
};

TEST_F(ColorSettings, ApplyStoresWhatWasChosenAndOnlyThen)
{
    Open();
    EXPECT_EQ(Swatch(4), QColor(Qt::blue));
    Click("Image1(2)");
    EXPECT_EQ(offered, QColor(Qt::red));
    EXPECT_FALSE(CanApply()) << "the choice was cancelled";
    EXPECT_EQ(Swatch(2), QColor(Qt::red));
    answer = QColor(0xff, 0x80, 0x00);
    Click("Image1(2)");
    EXPECT_EQ(desk.model.Colors[2], 255);
    EXPECT_TRUE(CanApply());
    Click("CommandApply");
    EXPECT_EQ(desk.model.Colors[2], Orange);
    EXPECT_FALSE(CanApply());
    EXPECT_TRUE(form->isVisible());
}

TEST_F(ColorSettings, DefaultIsStoredByOkAndDroppedByCancel)
{
    decltype(desk.model.Colors) own = desk.model.Colors;
    own.fill(Orange);
    own[Access::Empty] = 0;
    for (const bool ok : {false, true}) {
        Open();
        desk.model.Colors = own;
        Click("CommandDefault");
        EXPECT_EQ(Swatch(4), QColor(Qt::blue));
        EXPECT_TRUE(CanApply());
        EXPECT_EQ(desk.model.Colors, own) << "nothing is stored yet";
        Click(ok ? "CommandOK" : "CommandCancel");
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(desk.model.Colors, ok ? desk.model.DefaultColors : own);
    }
}

TEST(GettingStarted, StandsInTheMiddleAndTellsItsBox)
{
    TestDesk desk;
    desk.mainWindow.setGeometry(50, 100, 700, 500);
    auto *form = new FormGettingStarted(desk.desk, &desk.mainWindow, true);
    QList<bool> told;
    QObject::connect(form, &FormGettingStarted::ShowTipsChanged, &desk.mainWindow,
                     [&told](bool showTips) { told.append(showTips); });
    form->show();
    EXPECT_NEAR(form->x() - 50, (700 - form->width()) / 2, 1);
    EXPECT_NEAR(form->y() - 100, (500 - form->height()) / 2, 1);
    auto *box = FindIn<QCheckBox>(form, "chkLoadOnStartup");
    EXPECT_TRUE(box->isChecked());
    box->click();
    box->click();
    EXPECT_EQ(told, (QList<bool>{false, true}));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_FALSE(form->isVisible()) << "Enter is OK, on the check box too";
    desk.mainWindow.setGeometry(0, 0, 320, 240);
    auto *kept = new FormGettingStarted(desk.desk, &desk.mainWindow, true);
    EXPECT_TRUE(kept->screen()->availableGeometry().contains(kept->geometry()));
}

TEST(About, StartsTheFirstViewerThatThereIsOrSaysThatThereIsNone)
{
    TestDesk desk;
    const OnlyProgramsIn viewers(desk.folder);
    FormAbout form(desk.desk, &desk.mainWindow);
    EXPECT_EQ(FindIn<QLabel>(&form, "lblVersion")->text(), QStringLiteral("Version " QUORVIK_VERSION));
    desk.asker.Expect(QStringLiteral("System Information Is Unavailable At This Time"));
    ClickIn(&form, "cmdSysInfo");

    QFile mark(desk.folder.filePath(QStringLiteral("started")));
    for (const char *name : {"xfce4-about", "gnome-control-center"}) {
        QFile viewer(desk.folder.filePath(Name(name)));
        ASSERT_TRUE(viewer.open(QIODevice::WriteOnly));
        viewer.write("#!/bin/sh\necho " + QByteArray(name) + " $* > " + mark.fileName().toUtf8() + "\n");
        viewer.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ClickIn(&form, "cmdSysInfo");
    ASSERT_TRUE(QTest::qWaitFor([&] { return mark.size() > 0; }));
    ASSERT_TRUE(mark.open(QIODevice::ReadOnly));
    EXPECT_EQ(mark.readAll().trimmed(), QByteArray("gnome-control-center info-overview"));
}

} // namespace

} // namespace quorvik::testing
