#include "shell/WindowCommands.h"

#include "blocks/diagram/DiagramFrame.h"
#include "desktop/Form.h"
#include "desktop/FormsCollection.h"
#include "platform/Guard.h"
#include "shell/Tiling.h"

#include <QAction>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStyle>
#include <QWindow>
#include <algorithm>

namespace quorvik
{

namespace
{

/** What carries a window's frame: its sub-window in the frame, or the window itself where it stands free. */
QWidget *FrameOf(QWidget *form)
{
    auto *child = qobject_cast<QMdiSubWindow *>(form->parentWidget());
    return child ? child : form;
}

QList<QMdiSubWindow *> Children(QMdiArea *area, bool minimized)
{
    QList<QMdiSubWindow *> children;
    for (QMdiSubWindow *child : area->subWindowList(QMdiArea::CreationOrder))
        if (!child->isHidden() && child->isMinimized() == minimized)
            children.append(child);
    return children;
}

/** A drawing follows its window from when that is given all the room that there is. */
void FitIn(const QWidget *window)
{
    if (auto *drawing = window->findChild<DiagramFrame *>())
        drawing->Fit();
}

/** The same keys on every desktop, some of which have none or others of their own; a shortcut beside the
 * child's own would clash with it. */
void SetCloseKeys(const QMdiSubWindow *child)
{
    for (QAction *action : child->systemMenu()->actions())
        action->setShortcuts({});
    child->systemMenu()->actions().constLast()->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::Key_F4), QKeySequence(Qt::CTRL | Qt::Key_W)});
}

const char *const listEntry = "mnuWindowList";

} // namespace

WindowCommands::WindowCommands(QMdiArea *area, FormsCollection &forms, QObject *parent)
    : QObject(parent)
    , area_(area)
    , forms_(forms)
{
    On(area_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow *) { Q_EMIT FrontChanged(); });
    On(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](QWindow *) { Q_EMIT FrontChanged(); });
}

QMdiSubWindow *WindowCommands::AddChild(QWidget *form)
{
    QMdiSubWindow *child = area_->addSubWindow(form);
    child->setWindowIcon(area_->windowIcon());
    SetCloseKeys(child);
    QMenu *menu = child->systemMenu();
    auto *takeOut = new QAction(QStringLiteral("Take &Out of the Frame"), menu);
    // Before Close and the line above it.
    menu->insertAction(menu->actions().at(menu->actions().size() - 2), takeOut);
    On(takeOut, &QAction::triggered, this, [this, form] { TakeOut(form); });
    On(child, &QMdiSubWindow::windowStateChanged, this,
       [child](Qt::WindowStates before, Qt::WindowStates now) {
           if (!before.testFlag(Qt::WindowMaximized) && now.testFlag(Qt::WindowMaximized))
               FitIn(child);
       });
    child->installEventFilter(this);
    connect(form, &QObject::destroyed, child, &QObject::deleteLater);
    return child;
}

void WindowCommands::ShowChild(QWidget *form, bool activate)
{
    if (IsOutside(form)) {
        if (form->isMinimized())
            form->showNormal();
        form->show();
        form->raise();
        if (activate)
            form->activateWindow();
        return;
    }
    auto *child = qobject_cast<QMdiSubWindow *>(form->parentWidget());
    if (!child)
        child = AddChild(form);
    const bool isNew = !child->isVisible();
    QMdiSubWindow *active = area_->activeSubWindow();
    if (child->isMinimized())
        child->showNormal();
    form->show();
    child->show();
    if (isNew && !child->isMaximized()) {
        const QRect area = area_->viewport()->rect();
        const auto fitInto = [child](const QRect &room) {
            child->resize(child->size().boundedTo(room.size()).expandedTo(child->minimumSizeHint()));
        };
        fitInto(area);
        child->move(PlaceForNew(child, active));
        fitInto({child->pos(), area.bottomRight()});
        // One that cannot be so narrow shows its left part.
        child->move(std::max(area.left(), std::min(child->x(), area.right() + 1 - child->width())),
                    child->y());
    }
    if (activate)
        area_->setActiveSubWindow(child);
    else if (active && active != child) {
        area_->setActiveSubWindow(active);
        // In sight, though the focus stays where it was.
        child->raise();
    }
}

void WindowCommands::Cascade()
{
    // In the order of opening, with the last one in front; each keeps its own size.
    int position = 0;
    for (QMdiSubWindow *child : Children(area_, false)) {
        if (child->isMaximized())
            child->showNormal();
        child->move(PlaceInCascade(child, position++));
        child->raise();
    }
    if (const QList<QMdiSubWindow *> children = Children(area_, false); !children.isEmpty())
        area_->setActiveSubWindow(children.last());
}

QPoint WindowCommands::PlaceForNew(const QMdiSubWindow *child, const QMdiSubWindow *underWork) const
{
    // What lies under so many others is hidden anyway.
    constexpr qsizetype mostInSight = 16;
    WindowsInSight open;
    for (const QMdiSubWindow *other : area_->subWindowList(QMdiArea::StackingOrder))
        if (other != child && other != underWork && other->isVisible() && !other->isMinimized())
            open.windows.append(other->geometry());
    open.windows = open.windows.last(std::min(open.windows.size(), mostInSight));
    if (underWork && underWork != child && !underWork->isMinimized()) {
        open.windows.append(underWork->geometry());
        if (const QWidget *focus = underWork->widget() ? underWork->widget()->focusWidget() : nullptr)
            open.focus = {focus->mapTo(area_->viewport(), QPoint()), focus->size()};
    }
    const int title = area_->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, child);
    const auto place = PlaceWithRoom(area_->viewport()->rect(), child->size(), open, title);
    return place ? *place : PlaceInCascade(child, int(Children(area_, false).size()) - 1);
}

QPoint WindowCommands::PlaceInCascade(const QMdiSubWindow *child, int position) const
{
    const int step = area_->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, child);
    return CascadePlace(area_->viewport()->rect(), position, child->size(), step);
}

void WindowCommands::Tile(Qt::Orientation orientation)
{
    const QList<QMdiSubWindow *> children = Children(area_, false);
    const QList<QRect> rects = TileRects(area_->viewport()->rect(), int(children.size()), orientation);
    for (qsizetype i = 0; i < children.size(); ++i) {
        if (children[i]->isMaximized())
            children[i]->showNormal();
        children[i]->setGeometry(rects[i]);
        FitIn(children[i]);
    }
}

void WindowCommands::ArrangeIcons()
{
    const QList<QMdiSubWindow *> children = Children(area_, true);
    if (children.isEmpty())
        return;
    const QList<QRect> rects =
        IconRects(area_->viewport()->rect(), int(children.size()), children.first()->size());
    for (qsizetype i = 0; i < children.size(); ++i)
        children[i]->move(rects[i].topLeft());
}

void WindowCommands::MinimizeAll()
{
    for (int position = forms_.Count() - 1; position >= 1; --position)
        FrameOf(forms_.At(position))->showMinimized();
}

void WindowCommands::RestoreAll()
{
    for (int position = forms_.Count() - 1; position >= 1; --position)
        FrameOf(forms_.At(position))->showNormal();
}

void WindowCommands::CloseAll()
{
    // A window leaves the collection as it closes, and may take another with it.
    for (int position = forms_.Count() - 1; position >= 1; position = qMin(position, forms_.Count()) - 1)
        FrameOf(forms_.At(position))->close();
}

void WindowCommands::ListWindows(QMenu *menu)
{
    for (QAction *action : menu->actions())
        if (action->objectName().startsWith(QLatin1String(listEntry)))
            delete action;
    const QWidgetList windows = InOrder();
    if (windows.isEmpty())
        return;
    menu->addSeparator()->setObjectName(ControlName(listEntry, 0));
    int number = 0;
    for (QWidget *form : windows) {
        ++number;
        const QString title = form->windowTitle().replace(u'&', QStringLiteral("&&"));
        QAction *action = menu->addAction(number < 10 ? QStringLiteral("&%1 %2").arg(number).arg(title)
                                                      : QStringLiteral("%1 %2").arg(number).arg(title));
        action->setObjectName(ControlName(listEntry, number));
        action->setCheckable(true);
        action->setChecked(form == InFront());
        On(action, &QAction::triggered, form, [this, form] { ShowChild(form, true); });
    }
}

} // namespace quorvik
