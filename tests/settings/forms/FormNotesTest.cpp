#include "settings/forms/FormNotes.h"

#include "model/Model.h"
#include "support/TestDesk.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

class Notes : public ::testing::Test
{
protected:
    void Open(const QString &notes)
    {
        desk.model.Notes = notes;
        form = std::make_unique<FormNotes>(desk.desk, &desk.mainWindow);
        form->show();
        text = form->findChild<QPlainTextEdit *>(QStringLiteral("Text1"));
    }

    QString Left() const { return form->findChild<QLabel *>(QStringLiteral("LabelLeft"))->text(); }

    TestDesk desk;
    std::unique_ptr<FormNotes> form;
    QPlainTextEdit *text = nullptr;
};

TEST_F(Notes, FillingIsNoEditAndTypingIsOne)
{
    Open(QStringLiteral("line <b>one</b>\nno\u00a0break"));
    EXPECT_EQ(text->toPlainText(), QStringLiteral("line <b>one</b>\nno break"));
    EXPECT_FALSE(desk.model.FileModified);
    QTest::keyClicks(text, QStringLiteral("!"));
    EXPECT_TRUE(desk.model.FileModified);
    EXPECT_EQ(desk.model.Notes, QStringLiteral("line <b>one</b>\nno\u00a0break")) << "taken over on closing";
    EXPECT_EQ(desk.model.TypedNotes, QStringLiteral("line <b>one</b>\nno\u00a0break!"));
    QTest::keyClick(form.get(), Qt::Key_Escape);
    EXPECT_EQ(desk.model.Notes, QStringLiteral("line <b>one</b>\nno\u00a0break!"));
    EXPECT_EQ(desk.model.TypedNotes, std::nullopt);
}

TEST_F(Notes, TakesNoMoreThan255CharactersAndLosesNoneThatStoodThere)
{
    Open(QString(250, u'a') + QStringLiteral("END"));
    EXPECT_EQ(Left(), QStringLiteral("2 characters left"));
    QTextCursor cursor = text->textCursor();
    cursor.setPosition(10);
    text->setTextCursor(cursor);
    text->insertPlainText(QStringLiteral("12345"));
    EXPECT_EQ(text->toPlainText(),
              QString(10, u'a') + QStringLiteral("12") + QString(240, u'a') + QStringLiteral("END"));
    EXPECT_EQ(Left(), QStringLiteral("0 characters left"));
    QTest::keyClicks(text, QStringLiteral("x"));
    EXPECT_EQ(text->toPlainText().size(), 255);
    EXPECT_FALSE(text->toPlainText().contains(u'x'));
    QTest::keyClick(text, Qt::Key_Backspace);
    EXPECT_EQ(Left(), QStringLiteral("1 character left"));
    text->insertPlainText(QStringLiteral("\U0001F600"));
    EXPECT_EQ(Left(), QStringLiteral("1 character left")) << "no half of a character";

    text->selectAll();
    text->insertPlainText(QString(300, u'\n'));
    QTest::mouseClick(form->findChild<QWidget *>(QStringLiteral("CommandClose")), Qt::LeftButton);
    EXPECT_EQ(desk.model.Notes, QString(255, u'\n'));
}

} // namespace

} // namespace quorvik::testing
