#pragma once

#include "tour/Program.h"

#include <QPixmap>

class QAction;
class QLineEdit;
class QPushButton;

namespace quorvik
{

/**
 * What a user does with eyes, mouse and keyboard. Nothing here calls into the program but to look at it; a
 * text that comes back is empty, or says what could not be done.
 */
class Hands
{
public:
    explicit Hands(Program &program)
        : program_(program)
    {
    }

    /** Clicks a control of the front window, found by its name. */
    QString Click(const QString &name);
    QString Click(QWidget *control);
    /** Leads the mouse through the menus down to an entry and clicks it. */
    QString ChooseMenu(const QString &entry);
    /** Opens a menu and leaves it open. */
    QString OpenMenu(const QString &menu);
    void CloseMenus();
    /** Types a file's name into the file dialog that is open. */
    QString TypeFileName(const QString &path);
    /** What accepts the name in the file dialog that is open, once it can be clicked. */
    static QPushButton *AcceptButton();
    /** Replaces the text of the entry that has the focus. */
    static QString TypeOver(const QString &text);
    /** Whether an entry has the focus: the display gives it to a window some time after showing it. */
    static bool CanType();

    /** The text of a value box or a panel, by its name. */
    QString TextOf(const QString &name) const;
    /** The front modal window of that name, or nothing. */
    QWidget *Modal(const QString &name) const;
    /** A visible window with that caption: a child of the frame, or one that stands free. */
    QWidget *WindowTitled(const QString &caption) const;

    /** How often the mouse was clicked. */
    int Clicks() const { return clicks_; }

    /** The main window with all that stands before it, as on the screen. */
    QPixmap Scene() const;

    /** Whether the mouse is on its way through the menus; no next step may begin before it is there. */
    bool IsBusy() const { return isBusy_; }

private:
    static QLineEdit *FileNameEntry();
    QString WalkTo(QAction *entry, bool clickIt);
    struct Spot {
        QWidget *widget = nullptr;
        QPoint place;
    };
    /** Opens the menus down to an entry. */
    QString LeadTo(QAction *entry, bool toTheEntry, Spot &spot);

    Program &program_;
    bool isBusy_ = false;
    int clicks_ = 0;
};

} // namespace quorvik
