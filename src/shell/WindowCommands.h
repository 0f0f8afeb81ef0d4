#pragma once

#include "shell/WindowLayout.h"

#include <QList>
#include <QObject>
#include <QPoint>
#include <QWidgetList>

class QMdiArea;
class QMdiSubWindow;
class QMenu;

namespace quorvik
{

class DiagramFrame;
class FormsCollection;

/**
 * The commands of the Window menu over the frame's children, the windows that were taken out of it, and the
 * forms collection, which holds both.
 */
class WindowCommands : public QObject
{
    Q_OBJECT

public:
    WindowCommands(QMdiArea *area, FormsCollection &forms, QObject *parent);

    /** Shows a window as child of the frame, or where it was taken to, with the focus where activate is set.
     */
    void ShowChild(QWidget *form, bool activate);

    /** Makes a child of the frame a window of the desktop, for another screen; does nothing else to it. */
    void TakeOut(QWidget *form);
    void PutBack(QWidget *form);
    bool IsOutside(QWidget *form) const { return outside_.contains(form); }
    /** The same for the window in front, either way. */
    void TakeOutOrPutBack();

    /** The window that the user works in: one outside the frame where it is active, or else the child in
     * front; null for none. */
    QWidget *InFront() const;
    /** The drawing of the window in front; null where it has none. */
    DiagramFrame *DrawingInFront() const;
    void ZoomIn() const;
    void ZoomOut() const;
    void FitDrawing() const;

    /** The next window in the order of opening, or the one before it. @param step 1 or -1 */
    void Activate(int step);

    /** What is open and where, from the back to the front. */
    QList<KeptWindow> Layout() const;
    /** Brings an open window to where it was kept; into the frame or onto a screen where that is no more. */
    void Place(QWidget *form, const KeptWindow &kept);

    void Cascade();
    void Tile(Qt::Orientation orientation);
    void ArrangeIcons();
    void MinimizeAll();
    void RestoreAll();
    void CloseAll();

    /** Lists the open child windows at the end of a menu, afresh. */
    void ListWindows(QMenu *menu);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void FrontChanged();
    /** Window and frame have parted, before it is shown; it has no menu any more. */
    void TakenOut(QWidget *form);
    void GoesBack(QWidget *form);

private:
    QMdiSubWindow *AddChild(QWidget *form);
    /** Where a window opens that is new: with room, or else in the cascade. */
    QPoint PlaceForNew(const QMdiSubWindow *child, const QMdiSubWindow *underWork) const;
    QPoint PlaceInCascade(const QMdiSubWindow *child, int position) const;
    /** Those outside the frame, in the order of opening. */
    QWidgetList Outside() const;
    /** Those in the frame, and behind them those outside. */
    QWidgetList InOrder() const;

    QMdiArea *area_;
    FormsCollection &forms_;
    QWidgetList outside_; ///< windows that were taken out of the frame
};

} // namespace quorvik
