#pragma once

#include <QObject>
#include <QPoint>

class QMdiArea;
class QMdiSubWindow;
class QMenu;

namespace quorvik
{

class FormsCollection;

/** The commands of the Window menu over the frame's children and the forms collection. */
class WindowCommands : public QObject
{
    Q_OBJECT

public:
    WindowCommands(QMdiArea *area, FormsCollection &forms, QObject *parent);

    /** Shows a window as child of the frame, with the focus where activate is set. */
    void ShowChild(QWidget *form, bool activate);

    void Cascade();
    void Tile(Qt::Orientation orientation);
    void ArrangeIcons();
    void MinimizeAll();
    void RestoreAll();
    void CloseAll();

    /** Lists the open child windows at the end of a menu, afresh. */
    void ListWindows(QMenu *menu);

private:
    QPoint PlaceInCascade(const QMdiSubWindow *child, int position) const;

    QMdiArea *area_;
    FormsCollection &forms_;
};

} // namespace quorvik
