#pragma once

#include "desktop/Desk.h"

#include <QDialog>
#include <QWidget>

class QPushButton;

namespace quorvik
{

/**
 * A modeless window of the program. It enters the forms collection, shows its help topic on F1, and is
 * destroyed when it closes; the collection it leaves at once. `Unload()` runs once, however the window goes:
 * by its Close button, its frame, close-all or the end.
 */
class Form : public QWidget
{
    Q_OBJECT

public:
    /** @param name the window's stated name, which becomes its objectName. */
    Form(Desk &desk, const QString &name, const QString &caption, const QString &helpTopic);
    ~Form() override;

    const QString &HelpTopic() const { return helpTopic_; }
    void ShowHelp(); ///< CommandHelp and F1; does nothing where the window has no topic

    /** Ends it as a window of the desktop; before it becomes a child of another. */
    void LeaveDesktop();

protected:
    Desk &desk() const { return desk_; }

    /** Releases what the window holds in the table. Called once, while the window is still whole. */
    virtual void Unload() {}

    /** What the button "Close" does and no other way of closing; it unloads the window. */
    virtual void CommandClose_Click() { close(); }

    /** A button "Close" named CommandClose. */
    QPushButton *MakeCommandClose();
    /** A button "Help" named CommandHelp. */
    QPushButton *MakeCommandHelp();

    void closeEvent(QCloseEvent *event) override;

private:
    Desk &desk_;
    QString helpTopic_;
    bool isUnloaded_ = false;
};

/** A modal window of the program: the same for a dialog. Escape is its Cancel. */
class DialogForm : public QDialog
{
    Q_OBJECT

public:
    DialogForm(Desk &desk, QWidget *owner, const QString &name, const QString &caption,
               const QString &helpTopic);

    const QString &HelpTopic() const { return helpTopic_; }
    void ShowHelp(); ///< CommandHelp and F1; does nothing where the dialog has no topic

protected:
    Desk &desk() const { return desk_; }
    /** A dialog of pages has a topic for each. */
    void SetHelpTopic(const QString &topic) { helpTopic_ = topic; }
    QPushButton *MakeCommandHelp();

private:
    Desk &desk_;
    QString helpTopic_;
};

/** "Name(index)", the object name of a control of a control array; the bare name where index is -1. */
QString ControlName(const char *name, int index);

} // namespace quorvik
