#pragma once

#include "desktop/Form.h"

class QLineEdit;
class QPlainTextEdit;

namespace quorvik
{

/** Asks for a title, and for notes where they are wanted. */
class TitleDialog : public DialogForm
{
    Q_OBJECT

public:
    /** @param notes null where only a title is wanted; else what stands in them at first. */
    TitleDialog(Desk &desk, QWidget *owner, const QString &caption, const QString &title,
                const QString *notes);

    QString Title() const;
    QString Notes() const;

private:
    QLineEdit *textTitle_;
    QPlainTextEdit *textNotes_ = nullptr;
};

} // namespace quorvik
