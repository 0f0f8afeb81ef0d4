#pragma once

#include <QWidget>

class QLabel;

namespace quorvik
{

/** A sentence below the field that it is about, in place of a box that would have to be closed. */
class InlineMessage : public QWidget
{
public:
    /** @param labelName the objectName of the sentence. */
    InlineMessage(const QString &labelName, QWidget *parent);

    /** Shows the sentence, as plain text, and has it read out. */
    void Tell(const QString &sentence);

private:
    QLabel *label_;
};

} // namespace quorvik
