#pragma once

#include "wizards/frame/WizardPicture.h"

#include <QWidget>

class QBoxLayout;
class QGroupBox;
class QLabel;
class QVBoxLayout;

namespace quorvik
{

class OptionGroup;

/** One page: its picture on the left, heading, text and controls on the right. */
class WizardPage : public QWidget
{
    Q_OBJECT

public:
    WizardPage(QWidget *parent, WizardPicture *picture);

    WizardPicture *Picture() const { return picture_; }

protected:
    QVBoxLayout *Content() const { return content_; }

    /** A heading in larger type. */
    QLabel *AddHeading(const QString &text, const QString &name = {});
    /** A paragraph that wraps; shown as plain text. */
    QLabel *AddText(const QString &text, const QString &name = {});
    QGroupBox *AddFrame(const QString &title, const QString &name = {});
    /** Option buttons below each other, in a frame of their own in that place of the page. */
    OptionGroup *AddOptions(QBoxLayout *place, const QString &title, const char *name,
                            const QStringList &captions);
    /** A row that shares the width between frames. */
    QBoxLayout *AddColumns();
    /** Pushes what was added to the top. */
    void CloseContent();

private:
    WizardPicture *picture_;
    QVBoxLayout *content_;
};

/** Enables a frame and each control in it. */
void EnableFrame(QWidget *frame, bool enable);

/** A label of plain text with an object name, which may be empty. */
QLabel *MakeLabel(QWidget *parent, const QString &text, const QString &name = {});

} // namespace quorvik
