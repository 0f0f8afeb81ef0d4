#include "blocks/BlockForm.h"
#include "help/HelpSource.h"
#include "model/Faults.h"
#include "model/TextTables.h"
#include "shell/EveryWindow.h"
#include "shell/ShellFixture.h"
#include "support/WindowTest.h"

#include <QRegularExpression>
#include <QSet>

namespace quorvik::testing
{

namespace
{

QString TopicText(const QString &topic)
{
    return FileText(QStringLiteral(QUORVIK_HELP_SOURCE "/topics/") +
                    QString(topic).replace(QStringLiteral(".htm"), QStringLiteral(".md")));
}

class WindowTopics : public WindowTest
{
protected:
    /** Presses F1 and expects the one topic that shows the window's own picture. */
    const Visit expectHelp = [this](QWidget &shown, const QString &picture) {
        desk.help.Topics.clear();
        const QPointer<QWidget> focus = shown.focusWidget();
        QTest::keyClick(focus ? focus.data() : &shown, Qt::Key_F1);
        ASSERT_EQ(desk.help.Topics.size(), 1);
        EXPECT_TRUE(TopicText(desk.help.Topics.first()).contains(QStringLiteral("(picture:%1)").arg(picture)))
            << qPrintable(desk.help.Topics.first());
    };
};

/** Numbers of the parameters that a topic has rows for. */
QSet<int> RowsOf(const QString &topic)
{
    static const QRegularExpression form(QStringLiteral("^@(\\d+)(?:\\.\\.(\\d+))? "),
                                         QRegularExpression::MultilineOption);
    QSet<int> numbers;
    QRegularExpressionMatchIterator rows = form.globalMatch(TopicText(topic));
    while (rows.hasNext()) {
        const QRegularExpressionMatch row = rows.next();
        const int first = row.captured(1).toInt();
        for (int p = first; p <= std::max(first, row.captured(2).toInt()); ++p)
            numbers.insert(p);
    }
    return numbers;
}

TEST_F(WindowTopics, EveryBlockHasItsOwnThatExplainsEveryRow)
{
    VisitBlocks(desk, [this](QWidget &shown, const QString &picture) {
        expectHelp(shown, picture);
        // The user's own choice of rows has no place in a topic.
        if (picture == QLatin1String("FormCustom"))
            return;
        const auto &form = static_cast<const BlockForm &>(shown);
        const QSet<int> explained = RowsOf(form.HelpTopic());
        const auto rowParam = [&form](int row) {
            return FindIn<QLabel>(&form, ControlName("Label1", row))->property("Tag").toInt();
        };
        const int linked = desk.table.Value(rowParam(0));
        for (int row = 0; row < form.RowCount(); ++row)
            EXPECT_TRUE(explained.contains(rowParam(row)) || (row > 0 && rowParam(row) == linked))
                << qPrintable(picture) << " row " << row << ", parameter " << rowParam(row);
    });
}

TEST_F(WindowTopics, EveryOtherWindowAndEveryPageOfTheMentorsHasItsOwn)
{
    VisitOtherWindows(desk, expectHelp);
    VisitMentors(desk, expectHelp);
}

TEST(StateTopics, EveryStateAndEveryFaultIsExplained)
{
    constexpr int states = 9;
    const QString topic = TopicText(QStringLiteral("Drive States.htm"));
    for (int state = 0; state < states; ++state) {
        const QString name = DriveStateText(state);
        EXPECT_TRUE(topic.contains(QStringLiteral("\n## %1\n").arg(name))) << qPrintable(name);
        EXPECT_TRUE(topic.contains(QStringLiteral("\n| %1 |").arg(name))) << qPrintable(name);
    }
    for (const Fault &fault : AllFaults()) {
        EXPECT_GE(fault.causes.size(), 3) << qPrintable(fault.name);
        EXPECT_FALSE(fault.topics.isEmpty()) << qPrintable(fault.name);
        EXPECT_FALSE(fault.causes.join(QString()).contains(QRegularExpression(QStringLiteral("%[0-9]"))))
            << qPrintable(fault.name);
    }
}

using MainWindowTopics = ShellTest;

TEST_F(MainWindowTopics, F1GoesToTheChildInFrontAndElseToTheContents)
{
    LoadQuietly();
    main->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(main.get()));
    QTest::keyClick(main.get(), Qt::Key_F1);
    EXPECT_EQ(help.Topics, QStringList{QStringLiteral("<contents>")});

    Trigger("mnuBlockVloop");
    auto *block = Find("FormVelocityLoop");
    ASSERT_NE(block, nullptr);
    auto *box = block->findChild<QWidget *>(QStringLiteral("Text1(0)"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_F1);
    EXPECT_EQ(help.Topics.mid(1), QStringList{QStringLiteral("Velocity Loop.htm")});
}

} // namespace

} // namespace quorvik::testing
