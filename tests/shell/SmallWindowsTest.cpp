#include "model/Model.h"
#include "shell/FormAbout.h"
#include "shell/FormColorSettings.h"
#include "shell/FormGettingStarted.h"
#include "support/TestDesk.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

constexpr std::int32_t Orange = 0x0080ff; // blue, green, red

class ColorSettings : public ::testing::Test
{
protected:
    ColorSettings()
    {
        form = new FormColorSettings(desk.desk);
        form->ShowColor = [this](const QColor &present, QWidget *) {
            offered = present;
            return answer;
        };
        form->show();
    }

    QWidget *Find(const char *name) const { return form->findChild<QWidget *>(QLatin1String(name)); }
    void Click(const char *name) const { QTest::mouseClick(Find(name), Qt::LeftButton); }
    bool CanApply() const { return Find("CommandApply")->isEnabled(); }
    QColor Swatch(int index) const
    {
        return Find(qPrintable(ControlName("Shape1", index)))->palette().color(QPalette::Window);
    }

    TestDesk desk;
    QPointer<FormColorSettings> form;
    std::optional<QColor> answer = QColor(0xff, 0x80, 0x00);
    QColor offered;
};

TEST_F(ColorSettings, ApplyStoresWhatWasChosenAndOnlyThen)
{
    EXPECT_FALSE(CanApply());
    EXPECT_EQ(Swatch(2), QColor(Qt::red));
    EXPECT_EQ(Swatch(4), QColor(Qt::blue));
    Click("Image1(2)");
    EXPECT_EQ(offered, QColor(Qt::red));
    EXPECT_EQ(desk.model.Colors[2], 255);
    EXPECT_TRUE(CanApply());
    Click("CommandApply");
    EXPECT_EQ(desk.model.Colors[2], Orange);
    EXPECT_FALSE(CanApply());
    EXPECT_TRUE(form->isVisible());
}

TEST_F(ColorSettings, ACancelledChoiceChangesNothing)
{
    answer.reset();
    Click("Image1(0)");
    EXPECT_FALSE(CanApply());
    EXPECT_EQ(Swatch(0), QColor(Qt::black));
}

TEST_F(ColorSettings, DefaultIsStoredByOkAndDroppedByCancel)
{
    for (const char *button : {"CommandCancel", "CommandOK"}) {
        if (form == nullptr || !form->isVisible()) {
            form = new FormColorSettings(desk.desk);
            form->show();
        }
        desk.model.Colors.fill(Orange);
        desk.model.Colors[Access::Empty] = 0;
        Click("CommandDefault");
        EXPECT_EQ(Swatch(4), QColor(Qt::blue));
        EXPECT_TRUE(CanApply());
        EXPECT_EQ(desk.model.Colors[4], Orange) << "nothing is stored yet";
        Click(button);
        EXPECT_FALSE(form->isVisible());
        if (qstrcmp(button, "CommandOK") == 0) {
            EXPECT_EQ(desk.model.Colors, desk.model.DefaultColors);
        } else {
            EXPECT_EQ(desk.model.Colors[4], Orange);
            EXPECT_EQ(desk.model.Colors[Access::Empty], 0);
        }
        form = nullptr;
    }
}

TEST(GettingStarted, StandsInTheMiddleAndTellsItsBox)
{
    TestDesk desk;
    desk.mainWindow.setGeometry(300, 100, 1200, 700);
    auto *form = new FormGettingStarted(desk.desk, &desk.mainWindow, true);
    QList<bool> told;
    QObject::connect(form, &FormGettingStarted::ShowTipsChanged, &desk.mainWindow,
                     [&told](bool showTips) { told.append(showTips); });
    form->show();
    EXPECT_NEAR(form->x() - 300, (1200 - form->width()) / 2, 1);
    EXPECT_NEAR(form->y() - 100, (700 - form->height()) / 2, 1);
    auto *box = form->findChild<QCheckBox *>(QStringLiteral("chkLoadOnStartup"));
    EXPECT_TRUE(box->isChecked());
    box->click();
    box->click();
    EXPECT_EQ(told, (QList<bool>{false, true}));
    QTest::mouseClick(form->findChild<QWidget *>(QStringLiteral("cmdOK")), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
}

class About : public ::testing::Test
{
protected:
    About()
        : path_(qgetenv("PATH"))
    {
        qputenv("PATH", desk.folder.path().toLocal8Bit());
    }
    ~About() override { qputenv("PATH", path_); }

    /** Puts a viewer on PATH that leaves a mark with its arguments. */
    void AddViewer(const char *name) const
    {
        QFile viewer(desk.folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(viewer.open(QIODevice::WriteOnly));
        viewer.write("#!/bin/sh\necho " + QByteArray(name) + " $* > " + MarkPath().toUtf8() + "\n");
        viewer.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString MarkPath() const { return desk.folder.filePath(QStringLiteral("started")); }

    TestDesk desk;

private:
    QByteArray path_;
};

TEST_F(About, TellsTheVersionAndThatNoViewerIsThere)
{
    FormAbout form(desk.desk, &desk.mainWindow);
    EXPECT_EQ(form.windowTitle(), QStringLiteral("About Quorvik"));
    EXPECT_EQ(form.findChild<QLabel *>(QStringLiteral("lblVersion"))->text(),
              QStringLiteral("Version " QUORVIK_VERSION));
    desk.asker.Expect(QStringLiteral("System Information Is Unavailable At This Time"));
    QTest::mouseClick(form.findChild<QWidget *>(QStringLiteral("cmdSysInfo")), Qt::LeftButton);
}

TEST_F(About, StartsTheFirstViewerThatThereIs)
{
    AddViewer("xfce4-about");
    AddViewer("gnome-control-center");
    FormAbout form(desk.desk, &desk.mainWindow);
    QTest::mouseClick(form.findChild<QWidget *>(QStringLiteral("cmdSysInfo")), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return QFile(MarkPath()).size() > 0; }));
    QFile mark(MarkPath());
    ASSERT_TRUE(mark.open(QIODevice::ReadOnly));
    EXPECT_EQ(mark.readAll().trimmed(), QByteArray("gnome-control-center info-overview"));
}

} // namespace

} // namespace quorvik::testing
