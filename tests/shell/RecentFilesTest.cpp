#include "shell/RecentFiles.h"
#include "shell/ShellFixture.h"

#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMimeData>

namespace quorvik::testing
{

/** Files that are opened by a drop or from the list of recent ones. */
class RecentFilesTest : public ShellTest
{
protected:
    QString MakeFile(const Name &name) const
    {
        QString path = folder.filePath(name);
        QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), path);
        return path;
    }
    QList<QAction *> Recent() const
    {
        QList<QAction *> entries = main->Menus().Menu(QStringLiteral("mnuFileRecent"))->actions();
        entries.removeIf([](const QAction *entry) { return entry->toolTip().indexOf(u'/') < 0; });
        return entries;
    }
    ::testing::AssertionResult Opens(const QString &path) const
    {
        if (QTest::qWaitFor([&] { return Set().FileName == path; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << Set().FileName.toStdString() << " is open";
    }
    bool Says(const char *words) const
    {
        const auto *message = main->findChild<QLabel *>(QStringLiteral("Message"));
        return QTest::qWaitFor([&] { return message->isVisible() && message->text().contains(Name(words)); });
    }
    /** Drops on a widget as the display does. @return the action that the source is told. */
    static Qt::DropAction Drop(QWidget *target, const QList<QUrl> &urls)
    {
        QMimeData data;
        data.setUrls(urls);
        const auto send = [&](auto &&event) {
            event.setDropAction(Qt::MoveAction);
            event.ignore();
            QCoreApplication::sendEvent(target, &event);
            return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
        };
        const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
        if (send(QDragEnterEvent({5, 5}, actions, &data, Qt::LeftButton, Qt::NoModifier)) == Qt::IgnoreAction)
            return Qt::IgnoreAction;
        return send(QDropEvent({5, 5}, actions, &data, Qt::LeftButton, Qt::NoModifier));
    }
};

TEST_F(RecentFilesTest, ADropOpensTheFirstFileWithTheQuestionsOfOpen)
{
    LoadQuietly();
    const QString first = MakeFile("first & only.Svx");
    const QString second = MakeFile("second.Svx");
    EXPECT_EQ(Drop(main.get(), {QUrl(QStringLiteral("https://halvane.example/a.Svx"))}), Qt::IgnoreAction);
    EXPECT_EQ(Drop(main.get(), {QUrl(QStringLiteral("file://server/a.Svx"))}), Qt::IgnoreAction);

    Trigger("mnuBlockAccelDecel");
    const auto *area = main->findChild<QMdiArea *>();
    ASSERT_EQ(area->subWindowList().size(), 1);
    QWidget *child = area->subWindowList().first()->widget();
    EXPECT_EQ(Drop(child, {QUrl::fromLocalFile(first), QUrl::fromLocalFile(second)}), Qt::CopyAction)
        << "a file manager would delete the file after a move";
    EXPECT_TRUE(Opens(first));
    EXPECT_TRUE(Says("2 files were dropped. Only the first"));

    Table().SetParamValue(Param::FwdAccelA, 77, true, true);
    asker.Expect("has been modified", MsgAnswer::Cancel);
    Drop(main.get(), {QUrl::fromLocalFile(second)});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !asker.Shown.isEmpty(); }));
    EXPECT_EQ(Set().FileName, first);
    asker.Expect("has been modified", MsgAnswer::No);
    Drop(main.get(), {QUrl::fromLocalFile(second)});
    EXPECT_TRUE(Opens(second));
    // Save writes to the dropped file.
    QFile::remove(second);
    Trigger("mnuFileSave(0)");
    EXPECT_TRUE(QFile::exists(second));
}

TEST_F(RecentFilesTest, TheNewestStayAcrossRunsAndMissingOnesGo)
{
    LoadQuietly();
    EXPECT_FALSE(Entry("mnuFileRecent")->isEnabled());
    QStringList paths;
    for (int i = 0; i <= RecentFiles::Newest; ++i) {
        paths.prepend(MakeFile(QStringLiteral("set & %1.Svx").arg(i)));
        asker.ExpectOpen(paths.first());
        Trigger("mnuFileOpen");
    }
    main.reset();
    MakeWindow();
    LoadQuietly();
    main->show();
    ASSERT_EQ(Recent().size(), RecentFiles::Newest);
    EXPECT_TRUE(Recent().front()->text().startsWith(QStringLiteral("&1  set && 8.Svx")));
    EXPECT_TRUE(Recent().front()->text().endsWith(folder.path()));
    EXPECT_EQ(Recent().back()->toolTip(), paths.at(7)) << "the oldest has gone";

    Recent().at(2)->trigger();
    EXPECT_TRUE(Opens(paths.at(2)));
    EXPECT_EQ(Recent().front()->toolTip(), paths.at(2));

    QFile::remove(paths.at(0));
    Recent().at(1)->trigger();
    EXPECT_TRUE(Says("is no longer there"));
    EXPECT_EQ(Recent().size(), RecentFiles::Newest - 1);
    EXPECT_EQ(Set().FileName, paths.at(2));

    main->Menus().Menu(QStringLiteral("mnuFileRecent"))->actions().last()->trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Entry("mnuFileRecent")->isEnabled(); }));
    EXPECT_TRUE(Setting("Recent", "File1").isEmpty()) << "nothing of it stays in the settings";
}

} // namespace quorvik::testing
