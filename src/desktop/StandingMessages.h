#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>

namespace quorvik
{

class HTMLHelp;

/** The main window while it is shown, or nothing. */
QWidget *MainWindowOnScreen();

/**
 * Messages that stand beside the work: no box of theirs blocks a window, takes the keyboard from another
 * window than the main one, or covers one that stands free. One box at most for each title and icon.
 */
class StandingMessages : public QObject
{
public:
    /** @param help what F1 in a box opens, or none. */
    explicit StandingMessages(HTMLHelp *help)
        : help_(help)
    {
    }
    ~StandingMessages() override;

    /** @param text plain text; added to the box that stands, unless it says so already. */
    void Show(const QString &text, QMessageBox::Icon icon, const QString &title);

private:
    struct Standing {
        QPointer<QMessageBox> box;
        QStringList paragraphs;
    };
    void Open(Standing &standing, QMessageBox::Icon icon, const QString &title);

    HTMLHelp *help_;
    QList<Standing> standing_;
};

} // namespace quorvik
