#include "trend/forms/TitleDialog.h"

#include "platform/Guard.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace quorvik
{

namespace
{

constexpr int MostCharacters = 120;
constexpr int WidthCharacters = 56;
constexpr int NotesLines = 6;

} // namespace

TitleDialog::TitleDialog(Desk &desk, QWidget *owner, const QString &caption, const QString &title,
                         const QString *notes)
    : DialogForm(desk, owner, QStringLiteral("FormTrendTitle"), caption, QStringLiteral("Trend.htm"))
    , textTitle_(new QLineEdit(title, this))
{
    const auto label = [this](const char *name, const QString &text, QWidget *field) {
        auto *made = new QLabel(text, this);
        made->setObjectName(QString::fromLatin1(name));
        made->setBuddy(field);
        return made;
    };
    auto *layout = new QVBoxLayout(this);
    textTitle_->setObjectName(QStringLiteral("TextTitle"));
    textTitle_->setAccessibleName(QStringLiteral("Title"));
    textTitle_->setMaxLength(MostCharacters);
    textTitle_->setMinimumWidth(WidthCharacters * fontMetrics().averageCharWidth());
    layout->addWidget(label("LabelTitle", QStringLiteral("Tit&le:"), textTitle_));
    layout->addWidget(textTitle_);
    if (notes != nullptr) {
        textNotes_ = new QPlainTextEdit(*notes, this);
        textNotes_->setObjectName(QStringLiteral("TextNotes"));
        textNotes_->setAccessibleName(QStringLiteral("Notes"));
        textNotes_->setTabChangesFocus(true);
        textNotes_->setMinimumHeight(NotesLines * fontMetrics().lineSpacing());
        layout->addWidget(label("LabelNotes", QStringLiteral("&Notes:"), textNotes_));
        layout->addWidget(textNotes_, 1);
    }
    auto *ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("CommandOK"));
    ok->setDefault(true);
    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("CommandCancel"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    buttons->addWidget(MakeCommandHelp());
    layout->addLayout(buttons);
    On(ok, &QPushButton::clicked, this, [this] { accept(); });
    On(cancel, &QPushButton::clicked, this, [this] { reject(); });
    const auto follow = [this, ok] { ok->setEnabled(!Title().isEmpty()); };
    On(textTitle_, &QLineEdit::textChanged, this, follow);
    follow();
}

QString TitleDialog::Title() const
{
    return textTitle_->text().simplified();
}

QString TitleDialog::Notes() const
{
    return textNotes_ == nullptr ? QString() : textNotes_->toPlainText();
}

} // namespace quorvik
