#include "find/forms/FormFind.h"
#include "shell/ShellFixture.h"

#include <QTreeView>

namespace quorvik::testing
{

class FindTest : public ShellTest
{
protected:
    /** Ctrl+F in the main window. @return the window of the search. */
    FormFind *Open() const
    {
        main->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(main.get()));
        QTest::keyClick(main.get(), Qt::Key_F, Qt::ControlModifier);
        const FormsCollection &forms = main->TheDesk().forms;
        return qobject_cast<FormFind *>(forms.At(forms.Count() - 1));
    }
    /** Of the row that is found first. */
    static std::string Cell(const FormFind *found, int column)
    {
        return FindIn<QTreeView>(found, "ListFound")
            ->model()
            ->index(0, column)
            .data()
            .toString()
            .toStdString();
    }
    /** Types and presses Enter. */
    static void Choose(FormFind *found, const char *query)
    {
        ASSERT_TRUE(QTest::qWaitForWindowActive(found));
        auto *field = FindIn<QLineEdit>(found, "TextFind");
        field->clear();
        QTest::keyClicks(field, Name(query));
        QTest::keyClick(field, Qt::Key_Return);
    }
};

TEST_F(FindTest, LeadsToWindowsCommandsAndParameters)
{
    LoadQuietly();
    main->TheDesk().ShowParameter = [](int) { return false; };
    Choose(Open(), "loop velocity");
    EXPECT_NE(Find("FormVelocityLoop"), nullptr);
    Choose(Open(), "analog input 3");
    EXPECT_EQ(main->TheDesk().forms.At(main->TheDesk().forms.Count() - 1)->windowTitle(),
              Name("Analog Input 3"));
    Choose(Open(), "close all");
    EXPECT_EQ(main->TheDesk().forms.Count(), 1);
    Choose(Open(), "(131)");
    const auto *list = Find<QTreeView>("ListView");
    EXPECT_EQ(list->currentIndex().siblingAtColumn(1).data(), Name("IR Comp"));

    FormFind *again = Open();
    EXPECT_EQ(Cell(again, 1), "(131) IR Comp") << "found recently";
    Choose(again, "reset drive");
    EXPECT_EQ(Controls(again).Text("LabelFound"), "\"Reset Drive\" can be chosen on line only.");
    EXPECT_EQ(Open(), again) << "there is one";
    EXPECT_EQ(FindIn<QLineEdit>(again, "TextFind")->selectedText(), Name("reset drive"));
    Choose(again, "reconnect itself");
    EXPECT_TRUE(Entry("mnuOptionsReconnect")->isChecked());
    FormFind *last = Open();
    EXPECT_EQ(Cell(last, 2), "On");
    // A menu that is hidden has no commands.
    FindIn<QLineEdit>(last, "TextFind")->setText(Name("checkout"));
    EXPECT_EQ(Cell(last, 1), "");
}

} // namespace quorvik::testing
