#include "desktop/HelpPlace.h"
#include "desktop/HelpViewer.h"
#include "platform/SettingsStore.h"
#include "support/Controls.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>

namespace quorvik::testing
{

namespace
{

constexpr int IndexMs = 30000;

/** The viewer over the help file of this build. */
class HelpViewerTest : public ::testing::Test
{
protected:
    static QWidget *Window()
    {
        for (QWidget *window : QApplication::allWidgets())
            if (window->objectName() == QLatin1String("HelpViewer"))
                return window;
        return nullptr;
    }
    static QTextBrowser *Page() { return FindIn<QTextBrowser>(Window(), "HelpPage"); }
    static QString Title() { return Window()->windowTitle().section(QStringLiteral(" - "), 0, 0); }
    /** Follows the first link of a page by the keyboard. */
    static void FollowLink(QWidget *page)
    {
        page->setFocus();
        QTest::keyClick(page, Qt::Key_Tab);
        QTest::keyClick(page, Qt::Key_Return);
    }

    QTemporaryDir folder;
    SettingsStore settings{folder.filePath(QStringLiteral("Quorvik.ini"))};
    HelpViewer viewer{QStringLiteral(QUORVIK_HELP_FILE), folder.filePath(QStringLiteral("index")), settings};
};

TEST_F(HelpViewerTest, OpensOnAPageFollowsLinksAndGoesBack)
{
    viewer.DisplayContents(nullptr);
    EXPECT_EQ(Title(), Name("Getting started"));
    FollowLink(Page());
    EXPECT_TRUE(Page()->toPlainText().startsWith(QStringLiteral("Attaching a drive")));
    FindIn<QAction>(Window(), "HelpBack")->trigger();
    EXPECT_TRUE(Page()->toPlainText().startsWith(QStringLiteral("Getting started")));
    viewer.DisplayTopic(QStringLiteral("velocity loop.htm"), nullptr);
    EXPECT_EQ(Title(), Name("Velocity Loop"));
    viewer.DisplayContents(nullptr);
    EXPECT_EQ(Title(), Name("Velocity Loop")) << "the page that is open stays";
    viewer.DisplayTopic(QStringLiteral("Nowhere.htm"), nullptr);
    EXPECT_TRUE(Page()->toPlainText().contains(QStringLiteral("no page \"Nowhere.htm\"")));

    QDialog dialog;
    dialog.setModal(true);
    viewer.DisplayTopic(QStringLiteral("Notes.htm"), &dialog);
    EXPECT_EQ(Window()->parentWidget(), &dialog) << "or it could not be used beside the dialog";
    viewer.DisplayTopic(QStringLiteral("Notes.htm"), nullptr);
    EXPECT_EQ(Window()->parentWidget(), nullptr);
}

TEST_F(HelpViewerTest, WhatIsTypedIsSearchedWhateverItWasOpenedFor)
{
    viewer.DisplayTopic(QStringLiteral("Notes.htm"), nullptr);
    auto *field = FindIn<QLineEdit>(Window(), "HelpField");
    auto *found = FindIn<QListWidget>(Window(), "HelpFound");
    EXPECT_EQ(Window()->focusWidget(), field);
    // A sentence as it was told, marks and all; the last word is half typed. The index has to be made first.
    QTest::keyClicks(field, QStringLiteral("Drive not Responding! Check connec"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return found->count() > 0; }, IndexMs));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(Title().startsWith(QStringLiteral("Troubleshooting"))) << qPrintable(Title());
    EXPECT_FALSE(Page()->extraSelections().isEmpty());
    // With what no page has, as it stands in one case.
    field->setText(QStringLiteral("The host \"panel7\" is there, but nobody answers at its port 4001."));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return found->count() == 1 && found->item(0)->text().contains(QStringLiteral("most like")); },
        IndexMs));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(Page()->textCursor().block().text().contains(QStringLiteral("nobody answers at its port")));
    Page()->setFocus();
    QTest::keyClick(Page(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(Window()->focusWidget(), field);
    EXPECT_EQ(field->selectedText(), field->text());
    QTest::keyClick(Window(), Qt::Key_Escape);
    EXPECT_TRUE(Window()->isVisible() && field->text().isEmpty());
    QTest::keyClick(Window(), Qt::Key_Escape);
    EXPECT_FALSE(Window()->isVisible());
}

TEST_F(HelpViewerTest, AMessageLeadsToItsRowAndTheHelpOutlivesTheBox)
{
    const auto marked = [] {
        const auto marks = Page()->extraSelections();
        return marks.isEmpty() ? QString() : marks.first().cursor.selectedText();
    };
    {
        QMessageBox box;
        box.setModal(true);
        box.show();
        viewer.DisplayMessage(Name("There is no host \"panel7\". Check the name, and whether this\r\n"
                                   "computer is in the machine's network."),
                              &box);
        EXPECT_TRUE(marked().startsWith(QStringLiteral("There is no host"))) << qPrintable(marked());
        box.accept();
    }
    ASSERT_NE(Window(), nullptr);
    EXPECT_TRUE(Window()->isVisible());
    viewer.DisplayFound(Name("Troubleshooting Tools.htm"), {Name("holds"), Name("torque")}, nullptr);
    EXPECT_TRUE(Page()->textCursor().block().text().contains(QStringLiteral("Nothing holds the speed")))
        << "where most of the words stand together";
    viewer.DisplayMessage(Name("Nobody wrote this."), nullptr);
    EXPECT_EQ(Title(), Name("Troubleshooting by message"));
    EXPECT_EQ(marked(), QString());
}

TEST_F(HelpViewerTest, StandsBesideWhatItExplainsAndKeepsTheSizeThatItWasGiven)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget left;
    left.setGeometry(QRect(screen.topLeft(), QSize(screen.width() / 8, screen.height() / 2)));
    left.show();
    viewer.DisplayTopic(QStringLiteral("Notes.htm"), &left);
    EXPECT_FALSE(Window()->frameGeometry().intersects(left.frameGeometry()));
    const QSize given(screen.width() / 2, screen.height() / 2);
    Window()->resize(given);
    const QPoint place = screen.center() - QPoint(10, 10);
    Window()->move(place);
    viewer.DisplayTopic(QStringLiteral("Velocity Loop.htm"), &left);
    EXPECT_EQ(Window()->pos(), place) << "it hides nothing there";
    // Where there is less room it is smaller for as long as that holds.
    left.setGeometry(screen.adjusted(0, 0, 0, -screen.height() / 6));
    viewer.DisplayTopic(QStringLiteral("Notes.htm"), &left);
    EXPECT_LT(Window()->height(), given.height());
    viewer.Close();
    EXPECT_EQ(settings.GetSetting(Name("Help"), Name("Width")).toInt(), given.width());
}

TEST(PlaceHelp, BesideElseSmallerElseWhereItHidesLeast)
{
    const QRect screen(0, 0, 1366, 768);
    const QSize least(600, 400);
    const std::tuple<QRect, QSize, QRect> cases[] = {
        {{0, 0, 500, 500}, {800, 600}, {510, 0, 800, 600}},
        {{700, 50, 600, 500}, {680, 600}, {10, 50, 680, 600}},
        {{700, 50, 666, 700}, {900, 900}, {0, 0, 690, 768}},
        {{0, 0, 1366, 300}, {700, 600}, {0, 310, 700, 458}},
        {{0, 0, 1200, 600}, {1200, 700}, {766, 368, 600, 400}},
    };
    for (const auto &[asked, wanted, place] : cases)
        EXPECT_EQ(PlaceHelp(asked, wanted, least, screen, 10), place)
            << "beside " << asked.width() << " x " << asked.height();
}

} // namespace

} // namespace quorvik::testing
