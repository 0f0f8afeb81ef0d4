#include "settings/forms/FormNotes.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "settings/SettingsTables.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTextCursor>
#include <algorithm>
#include <utility>

namespace quorvik
{

FormNotes::FormNotes(Desk &desk, QWidget *owner)
    : DialogForm(desk, owner, QStringLiteral("FormNotes"), QStringLiteral("Notes"),
                 QStringLiteral("Notes.htm"))
    , text1_(new QPlainTextEdit(this))
    , labelLeft_(new QLabel(this))
{
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setAccessibleName(QStringLiteral("Notes"));
    text1_->setTabChangesFocus(true);
    text1_->setPlainText(desk.document.Notes);
    text1_->moveCursor(QTextCursor::End);
    text1_->setMinimumSize(fontMetrics().averageCharWidth() * 64, fontMetrics().lineSpacing() * 9);
    labelLeft_->setObjectName(QStringLiteral("LabelLeft"));
    labelLeft_->setTextFormat(Qt::PlainText);

    auto *commandClose = new QPushButton(QStringLiteral("Close"), this);
    commandClose->setObjectName(QStringLiteral("CommandClose"));
    commandClose->setAutoDefault(false);
    auto *commandHelp = MakeCommandHelp();
    commandHelp->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(labelLeft_);
    buttons->addStretch();
    buttons->addWidget(commandClose);
    buttons->addWidget(commandHelp);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(text1_, 1);
    layout->addLayout(buttons);
    ShowCharactersLeft();

    // Connected behind the fill, which is no edit.
    On(text1_->document(), &QTextDocument::contentsChange, this,
       [this](int position, int, int added) { insertionEnd_ = position + added; });
    On(text1_, &QPlainTextEdit::textChanged, this, [this] { Text1_Change(); });
    On(commandClose, &QPushButton::clicked, this, [this] { accept(); });
    On(this, &QDialog::finished, this, [this] {
        Document &document = this->desk().document;
        document.Notes = std::exchange(document.TypedNotes, std::nullopt).value_or(document.Notes);
    });
}

void FormNotes::Text1_Change()
{
    TakeBackExcess();
    ShowCharactersLeft();
    desk().document.TypedNotes = Text();
    desk().document.MarkFile(true);
}

QString FormNotes::Text() const
{
    // Plain text would have ordinary blanks in place of those that do not break.
    QString text = text1_->document()->toRawText();
    return text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
}

void FormNotes::TakeBackExcess()
{
    const int length = int(Text().size());
    const int excess = length - LongestNotes;
    if (excess <= 0)
        return;
    // What was typed or pasted too much goes, not the end of what stood there before.
    const QSignalBlocker blocked(text1_);
    const int end = std::clamp(insertionEnd_, excess, length);
    QTextCursor cursor(text1_->document());
    cursor.joinPreviousEditBlock();
    // A character of two halves goes as a whole.
    const bool isTorn = text1_->document()->characterAt(end - excess).isLowSurrogate();
    cursor.setPosition(end - excess - (isTorn ? 1 : 0));
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.endEditBlock();
}

void FormNotes::ShowCharactersLeft()
{
    const int left = std::max(LongestNotes - int(Text().size()), 0);
    labelLeft_->setText(left == 1 ? QStringLiteral("1 character left")
                                  : QStringLiteral("%1 characters left").arg(left));
}

} // namespace quorvik
