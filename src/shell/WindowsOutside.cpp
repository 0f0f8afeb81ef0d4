// Windows that the user has taken out of the frame, and the places of all of them.

#include "shell/WindowCommands.h"

#include "blocks/diagram/DiagramFrame.h"
#include "desktop/Form.h"
#include "desktop/FormsCollection.h"
#include "platform/Guard.h"
#include "shell/UserSettings.h"

#include <QApplication>
#include <QEvent>
#include <QLayout>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QScreen>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Of a child: its place when neither minimised nor maximised. */
const char *const usualPlace = "UsualPlace";

KeptWindow::State StateOf(const QWidget &frame)
{
    if (frame.isMinimized())
        return KeptWindow::State::Minimized;
    return frame.isMaximized() ? KeptWindow::State::Maximized : KeptWindow::State::Normal;
}

QRect PlaceOf(const QWidget &window)
{
    if (StateOf(window) == KeptWindow::State::Normal)
        return {window.pos(), window.size()};
    return window.isWindow() ? window.normalGeometry() : window.property(usualPlace).toRect();
}

/** A style may give a window of the desktop others than a child; its layout is not told of that. */
QMargins MarginsOf(const QWidget &form)
{
    return form.layout() ? form.layout()->contentsMargins() : QMargins();
}

/** The screen beside the one that the frame stands on; that one where there is no other. */
QRect OtherScreen(const QWidget &frame)
{
    for (const QScreen *screen : QGuiApplication::screens())
        if (screen != frame.screen())
            return screen->availableGeometry();
    return frame.screen()->availableGeometry();
}

/** A window's place, moved into an area and no larger than that, as far as the window can be so small. */
QRect Into(const QRect &area, QRect place, const QWidget &window)
{
    place.setSize(place.size().boundedTo(area.size()).expandedTo(window.minimumSizeHint()));
    place.moveLeft(std::max(area.left(), std::min(place.left(), area.right() + 1 - place.width())));
    place.moveTop(std::max(area.top(), std::min(place.top(), area.bottom() + 1 - place.height())));
    return place;
}

void SetState(QWidget &frame, KeptWindow::State state)
{
    if (state == KeptWindow::State::Minimized)
        frame.showMinimized();
    else if (state == KeptWindow::State::Maximized)
        frame.showMaximized();
}

} // namespace

bool WindowCommands::eventFilter(QObject *watched, QEvent *event)
{
    auto *window = static_cast<QWidget *>(watched);
    if (event->type() == QEvent::WindowStateChange && IsOutside(window) && window->isMaximized()) {
        if (auto *drawing = window->findChild<DiagramFrame *>())
            drawing->Fit();
    } else if ((event->type() == QEvent::Move || event->type() == QEvent::Resize) && !window->isWindow() &&
               StateOf(*window) == KeptWindow::State::Normal)
        window->setProperty(usualPlace, window->geometry());
    return QObject::eventFilter(watched, event);
}

void WindowCommands::TakeOut(QWidget *form)
{
    auto *child = qobject_cast<QMdiSubWindow *>(form->parentWidget());
    if (!child)
        return;
    if (child->isMaximized() || child->isMinimized())
        child->showNormal();
    form->setProperty(usualPlace, child->geometry());
    QRect place(child->mapToGlobal(QPoint()), form->size());
    const QPointer<QWidget> focused = form->focusWidget();
    const QMargins margins = MarginsOf(*form);
    area_->removeSubWindow(form);
    form->setParent(nullptr, Qt::Window);
    area_->removeSubWindow(child);
    child->deleteLater();

    outside_.append(form);
    form->installEventFilter(this);
    On(form, &QObject::destroyed, this, [this, form] {
        outside_.removeAll(form);
        Q_EMIT FrontChanged();
    });
    Q_EMIT TakenOut(form);
    if (const QWidget *bar = form->layout() ? form->layout()->menuBar() : nullptr)
        place.setHeight(place.height() + bar->sizeHint().height());
    place.setSize(place.size().shrunkBy(margins).grownBy(MarginsOf(*form)));
    const QRect screen = OtherScreen(*area_->window());
    const QRect there =
        OntoScreen(screen.contains(place.topLeft()) ? place : Into(screen, place, *form), *form);
    form->move(there.topLeft());
    form->resize(there.size());
    ShowChild(form, true);
    if (focused)
        focused->setFocus();
    Q_EMIT FrontChanged();
}

void WindowCommands::PutBack(QWidget *form)
{
    if (!IsOutside(form))
        return;
    Q_EMIT GoesBack(form);
    const QPointer<QWidget> focused = form->focusWidget();
    outside_.removeAll(form);
    disconnect(form, &QObject::destroyed, this, nullptr);
    form->removeEventFilter(this);
    if (auto *window = qobject_cast<Form *>(form))
        window->LeaveDesktop();
    form->setWindowState(Qt::WindowNoState);
    if (form->layout())
        form->layout()->invalidate();
    ShowChild(form, true);
    area_->window()->activateWindow();
    if (const QRect place = form->property(usualPlace).toRect(); !place.isEmpty())
        if (auto *child = qobject_cast<QMdiSubWindow *>(form->parentWidget()); !child->isMaximized())
            child->setGeometry(Into(area_->viewport()->rect(), place, *child));
    if (focused)
        focused->setFocus();
    Q_EMIT FrontChanged();
}

void WindowCommands::TakeOutOrPutBack()
{
    QWidget *form = InFront();
    if (form && IsOutside(form))
        PutBack(form);
    else if (form)
        TakeOut(form);
}

QWidget *WindowCommands::InFront() const
{
    QWidget *active = QApplication::activeWindow();
    if (active && IsOutside(active))
        return active;
    const QMdiSubWindow *child = area_->currentSubWindow();
    return child ? child->widget() : nullptr;
}

QWidgetList WindowCommands::Outside() const
{
    QWidgetList windows;
    for (int position = 1; position < forms_.Count(); ++position)
        if (IsOutside(forms_.At(position)))
            windows.append(forms_.At(position));
    return windows;
}

QWidgetList WindowCommands::InOrder() const
{
    QWidgetList windows;
    for (const QMdiSubWindow *child : area_->subWindowList(QMdiArea::CreationOrder))
        // One that is being closed is empty already.
        if (child->widget())
            windows.append(child->widget());
    return windows + Outside();
}

DiagramFrame *WindowCommands::DrawingInFront() const
{
    const QWidget *form = InFront();
    return form ? form->findChild<DiagramFrame *>() : nullptr;
}

void WindowCommands::ZoomIn() const
{
    if (DiagramFrame *drawing = DrawingInFront())
        drawing->ZoomIn();
}

void WindowCommands::ZoomOut() const
{
    if (DiagramFrame *drawing = DrawingInFront())
        drawing->ZoomOut();
}

void WindowCommands::FitDrawing() const
{
    if (DiagramFrame *drawing = DrawingInFront())
        drawing->Fit();
}

void WindowCommands::Activate(int step)
{
    const QWidgetList windows = InOrder();
    if (windows.isEmpty())
        return;
    QWidget *next = windows.at((windows.indexOf(InFront()) + step + windows.size()) % windows.size());
    if (IsOutside(next)) {
        next->activateWindow();
        return;
    }
    area_->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(next->parentWidget()));
    area_->window()->activateWindow();
}

QList<KeptWindow> WindowCommands::Layout() const
{
    QWidgetList windows;
    for (const QMdiSubWindow *child : area_->subWindowList(QMdiArea::StackingOrder))
        if (child->widget() && !child->isHidden())
            windows.append(child->widget());
    // Where a minimised one lies among the others means nothing.
    std::stable_partition(windows.begin(), windows.end(),
                          [](const QWidget *form) { return form->parentWidget()->isMinimized(); });
    QList<KeptWindow> layout;
    for (QWidget *form : windows + Outside()) {
        const bool isOutside = IsOutside(form);
        const QWidget &frame = isOutside ? *form : *form->parentWidget();
        const auto *drawing = form->findChild<DiagramFrame *>();
        layout.append({.form = form->objectName(),
                       .member = form->property("Tag").toInt(),
                       .place = PlaceOf(frame),
                       .state = StateOf(frame),
                       .zoom = drawing ? drawing->Zoom() : 0,
                       .isOutside = isOutside});
    }
    return layout;
}

void WindowCommands::Place(QWidget *form, const KeptWindow &kept)
{
    if (kept.isOutside && !IsOutside(form))
        TakeOut(form);
    if (IsOutside(form)) {
        const QRect place = OntoScreen(kept.place, *form);
        form->move(place.topLeft());
        form->resize(place.size());
        SetState(*form, kept.state);
    } else if (auto *child = qobject_cast<QMdiSubWindow *>(form->parentWidget())) {
        if (child->isMaximized())
            child->showNormal();
        child->setGeometry(Into(area_->viewport()->rect(), kept.place, *child));
        SetState(*child, kept.state);
    }
    // Last, for a window that is maximised has its drawing follow it.
    if (auto *drawing = form->findChild<DiagramFrame *>())
        drawing->SetZoom(kept.zoom);
}

} // namespace quorvik
