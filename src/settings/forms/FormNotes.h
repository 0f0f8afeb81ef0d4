#pragma once

#include "desktop/Form.h"

class QLabel;
class QPlainTextEdit;

namespace quorvik
{

/** "Notes": the text that goes with a parameter set, at most 255 characters. */
class FormNotes : public DialogForm
{
    Q_OBJECT

public:
    FormNotes(Desk &desk, QWidget *owner);

private:
    void Text1_Change();
    QString Text() const;
    void TakeBackExcess();
    void ShowCharactersLeft();

    QPlainTextEdit *text1_;
    QLabel *labelLeft_;
    int insertionEnd_ = 0; ///< where the latest edit of the text ends
};

} // namespace quorvik
