#include "blocks/diagram/DiagramFrame.h"

#include "blocks/diagram/DiagramView.h"

#include <QApplication>
#include <QScrollBar>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int ZoomStep = 25;

} // namespace

DiagramFrame::DiagramFrame(DiagramView *view, QWidget *parent)
    : QScrollArea(parent)
    , view_(view)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setAlignment(Qt::AlignCenter);
    setWidget(view);
}

void DiagramFrame::SetZoom(int percent)
{
    ZoomTo(percent, viewport()->rect().center());
}

void DiagramFrame::ZoomIn()
{
    Step(1, Anchor());
}

void DiagramFrame::ZoomOut()
{
    Step(-1, Anchor());
}

void DiagramFrame::Step(int steps, const QPointF &anchor)
{
    // A drawing that follows the window stands between two steps as a rule.
    const double shown = zoom_ > 0 ? zoom_ : view_->Scale() * 100;
    const double nextStep =
        steps > 0 ? std::floor(shown / ZoomStep + 0.01) : std::ceil(shown / ZoomStep - 0.01);
    ZoomTo(std::max((int(nextStep) + steps) * ZoomStep, SmallestZoom), anchor);
}

void DiagramFrame::ZoomTo(int percent, const QPointF &anchor)
{
    if (percent <= 0) {
        zoom_ = 0;
        view_->Fit(maximumViewportSize());
        return;
    }
    const int readable = int(std::ceil(view_->SmallestScale() * 100));
    zoom_ = std::clamp(percent, std::max(SmallestZoom, readable), LargestZoom);
    const QPointF cells = view_->ToCells(anchor - view_->pos());
    view_->ScaleTo(zoom_ / 100.0);
    const QPoint corner = (view_->ToPixels(QRectF(cells, QSizeF())).topLeft() - anchor).toPoint();
    horizontalScrollBar()->setValue(corner.x());
    verticalScrollBar()->setValue(corner.y());
}

QPointF DiagramFrame::Anchor() const
{
    const QWidget *focused = QApplication::focusWidget();
    if (focused && view_->isAncestorOf(focused)) {
        const QPoint place = focused->mapTo(viewport(), focused->rect().center());
        if (viewport()->rect().contains(place))
            return place;
    }
    return viewport()->rect().center();
}

void DiagramFrame::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    // It is shown anew in each window that it comes into.
    if (const QWindow *holder = window()->windowHandle())
        connect(holder, &QWindow::screenChanged, this, &DiagramFrame::FollowScreen, Qt::UniqueConnection);
}

void DiagramFrame::resizeEvent(QResizeEvent *event)
{
    if (zoom_ == 0)
        view_->Fit(maximumViewportSize());
    QScrollArea::resizeEvent(event);
}

void DiagramFrame::wheelEvent(QWheelEvent *event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QScrollArea::wheelEvent(event);
        return;
    }
    // A touchpad turns it in small parts.
    turned_ += event->angleDelta().y();
    const int steps = std::exchange(turned_, turned_ % QWheelEvent::DefaultDeltasPerStep) /
                      QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0)
        Step(steps, viewport()->mapFromGlobal(event->globalPosition()));
    event->accept();
}

} // namespace quorvik
