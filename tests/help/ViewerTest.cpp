#include "desktop/HelpViewer.h"
#include "platform/SettingsStore.h"
#include "support/Controls.h"

#include <QApplication>
#include <QDialog>
#include <QHelpSearchQueryWidget>
#include <QTemporaryDir>
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

TEST_F(HelpViewerTest, SearchLeadsToPages)
{
    viewer.DisplaySearch(nullptr);
    auto *query = Window()->findChild<QHelpSearchQueryWidget *>();
    query->setSearchInput(QStringLiteral("\"crossover\""));
    auto *entry = query->findChild<QLineEdit *>();
    QTextBrowser *hits = nullptr;
    // The first search may come before the index is made.
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            QTest::keyClick(entry, Qt::Key_Return);
            for (QTextBrowser *browser : Window()->findChildren<QTextBrowser *>())
                if (browser != Page() && browser->toPlainText().contains(QStringLiteral("Field Crossover")))
                    hits = browser;
            return hits != nullptr;
        },
        IndexMs));
    FollowLink(hits);
    EXPECT_TRUE(QTest::qWaitFor([] { return Page()->toPlainText().contains(QStringLiteral("rossover")); }));
}

} // namespace

} // namespace quorvik::testing
