#include "settings/forms/FormNotes.h"

#include "support/WindowTest.h"

#include <QPlainTextEdit>

namespace quorvik::testing
{

class Notes : public WindowTest
{
protected:
    void Open(const Name &notes)
    {
        desk.document.Notes = notes;
        Show<FormNotes>(&desk.mainWindow);
        text = Find<QPlainTextEdit>("Text1");
    }

    QPlainTextEdit *text = nullptr;
};

TEST_F(Notes, FillingIsNoEditAndTypingIsOne)
{
    Open(QStringLiteral("line <b>one</b>\nno\u00a0break"));
    EXPECT_EQ(Text("Text1"), "line <b>one</b>\nno break");
    EXPECT_FALSE(desk.document.FileModified);
    QTest::keyClicks(text, QStringLiteral("!"));
    EXPECT_TRUE(desk.document.FileModified);
    EXPECT_EQ(desk.document.Notes, QStringLiteral("line <b>one</b>\nno\u00a0break"))
        << "taken over on closing";
    EXPECT_EQ(desk.document.TypedNotes, QStringLiteral("line <b>one</b>\nno\u00a0break!"));
    Press(Qt::Key_Escape);
    EXPECT_EQ(desk.document.Notes, QStringLiteral("line <b>one</b>\nno\u00a0break!"));
    EXPECT_EQ(desk.document.TypedNotes, std::nullopt);
}

TEST_F(Notes, TakesNoMoreThan255CharactersAndLosesNoneThatStoodThere)
{
    Open(QString(250, u'a') + QStringLiteral("END"));
    EXPECT_EQ(Text("LabelLeft"), "2 characters left");
    QTextCursor cursor = text->textCursor();
    cursor.setPosition(10);
    text->setTextCursor(cursor);
    text->insertPlainText(QStringLiteral("12345"));
    EXPECT_EQ(Text("Text1"), std::string(10, 'a') + "12" + std::string(240, 'a') + "END");
    EXPECT_EQ(Text("LabelLeft"), "0 characters left");
    QTest::keyClicks(text, QStringLiteral("x"));
    EXPECT_EQ(text->toPlainText().size(), 255);
    EXPECT_FALSE(text->toPlainText().contains(u'x'));
    QTest::keyClick(text, Qt::Key_Backspace);
    EXPECT_EQ(Text("LabelLeft"), "1 character left");
    text->insertPlainText(QStringLiteral("\U0001F600"));
    EXPECT_EQ(Text("LabelLeft"), "1 character left") << "no half of a character";

    text->selectAll();
    text->insertPlainText(QString(300, u'\n'));
    Click("CommandClose");
    EXPECT_EQ(desk.document.Notes, QString(255, u'\n'));
}

} // namespace quorvik::testing
