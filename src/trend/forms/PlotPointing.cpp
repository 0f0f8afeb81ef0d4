// Mouse and keys of the plots' canvas.

#include "platform/Guard.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotCanvas.h"
#include "trend/forms/PlotCursors.h"

#include <QApplication>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double CursorReach = 5;   // pixels
constexpr double WheelFactor = 0.8; // of a whole notch
constexpr double WheelNotch = 120;
constexpr double WheelScroll = 0.1; // of what is seen
constexpr double KeyFactor = 0.5;
constexpr double KeyScroll = 0.1;
constexpr double PageScroll = 0.9;
constexpr double ValueBoxFrom = 24; // pixels: a flatter box is meant to zoom the time alone
constexpr double LeastBoxWidth = 3;
constexpr int FarPixels = 10;

} // namespace

int PlotCanvas::CursorNear(const QPointF &position) const
{
    const QRect frames = board_.Frames();
    if (position.y() > frames.bottom())
        return -1;
    const int active = std::max(0, ActiveCursor());
    for (const int which : {active, 1 - active})
        if (const auto timeUs = view_.Cursor(which);
            timeUs && std::abs(board_.XOf(*timeUs) - position.x()) <= CursorReach)
            return which;
    return -1;
}

void PlotCanvas::FollowPointer(const QPointF &position)
{
    if (drag_ == Drag::Pan || isSpaceDown_)
        setCursor(drag_ == Drag::Pan ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    else if (drag_ == Drag::Cursor || CursorNear(position) >= 0)
        setCursor(Qt::SplitHCursor);
    else if (board_.ScaleAt(position.toPoint()) != nullptr)
        setCursor(Qt::SizeVerCursor);
    else
        setCursor(board_.Frames().contains(position.toPoint()) ? Qt::CrossCursor : Qt::ArrowCursor);
}

void PlotCanvas::mousePressEvent(QMouseEvent *event)
{
    pressedAt_ = pointer_ = event->position();
    pressedWindow_ = {view_.FromUs(), view_.ToUs(), false};
    cursorsBefore_ = {view_.Cursor(0), view_.Cursor(1)};
    const bool isLeft = event->button() == Qt::LeftButton;
    const bool isInside = board_.Frames().contains(pressedAt_.toPoint());
    if (event->button() == Qt::MiddleButton || (isLeft && isSpaceDown_)) {
        drag_ = Drag::Pan;
    } else if (const int which = isLeft ? CursorNear(pressedAt_) : -1; which >= 0) {
        active_ = which;
        drag_ = Drag::Cursor;
    } else {
        drag_ = isLeft && isInside ? Drag::Click : Drag::None;
    }
    FollowPointer(pressedAt_);
    update();
}

void PlotCanvas::mouseMoveEvent(QMouseEvent *event)
{
    Guarded([&] {
        pointer_ = event->position();
        const double perPixel =
            double(pressedWindow_.toUs - pressedWindow_.fromUs) / std::max(1, board_.Frames().width());
        switch (drag_) {
        case Drag::Click:
            if ((pointer_ - pressedAt_).manhattanLength() >= QApplication::startDragDistance())
                drag_ = Drag::Box;
            break;
        case Drag::Box:
            update();
            break;
        case Drag::Pan: {
            const auto shift = qint64((pressedAt_.x() - pointer_.x()) * perPixel);
            view_.SetWindow(pressedWindow_.fromUs + shift, pressedWindow_.toUs + shift);
            break;
        }
        case Drag::Cursor:
            SetCursorAt(active_, board_.TimeAt(pointer_.x()));
            break;
        case Drag::None:
            break;
        }
        FollowPointer(pointer_);
    });
}

void PlotCanvas::mouseReleaseEvent(QMouseEvent *event)
{
    Guarded([&] {
        pointer_ = event->position();
        const Drag drag = std::exchange(drag_, Drag::None);
        if (drag == Drag::Click) {
            active_ = event->modifiers().testFlag(Qt::ShiftModifier) ? 1 : 0;
            SetCursorAt(active_, board_.TimeAt(pointer_.x()));
        } else if (drag == Drag::Box) {
            TakeBox();
        }
        FollowPointer(pointer_);
        update();
    });
}

void PlotCanvas::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    Guarded([&] {
        const QPoint position = event->position().toPoint();
        if (const PlotScale *const scale = board_.ScaleAt(position)) {
            board_.FreeScale(*scale);
            Refresh();
            return;
        }
        if (!board_.Frames().contains(position))
            return;
        // The first of the two clicks was no cursor.
        for (const int which : {0, 1})
            if (view_.Cursor(which) != cursorsBefore_[std::size_t(which)])
                view_.SetCursor(which, cursorsBefore_[std::size_t(which)]);
        ShowAll();
    });
}

QRectF PlotCanvas::Box() const
{
    const QRectF frames = board_.Frames();
    QRectF box = QRectF(pressedAt_, pointer_).normalized();
    if (box.height() < ValueBoxFrom) {
        box.setTop(frames.top());
        box.setBottom(frames.bottom());
    }
    return box & frames;
}

void PlotCanvas::TakeBox()
{
    const QRectF box = Box();
    if (box.width() < LeastBoxWidth)
        return;
    const qint64 fromUs = board_.TimeAt(box.left());
    const qint64 toUs = board_.TimeAt(box.right());
    const int plot = board_.PlotAt(int(pressedAt_.y()));
    const bool isTimeOnly = std::abs(pointer_.y() - pressedAt_.y()) < ValueBoxFrom;
    if (!isTimeOnly && std::size_t(plot) < board_.Areas().size()) {
        const PlotArea &area = board_.Areas()[std::size_t(plot)];
        for (const PlotScale &scale : area.scales) {
            const double top = std::max(box.top(), double(area.frame->top()));
            const double bottom = std::min(box.bottom(), double(area.frame->bottom()));
            if (bottom - top >= ValueBoxFrom)
                board_.HoldScale(scale, {scale.axis->pixelToCoord(bottom), scale.axis->pixelToCoord(top)});
        }
    }
    view_.SetWindow(fromUs, toUs);
    Refresh();
}

void PlotCanvas::wheelEvent(QWheelEvent *event)
{
    const QPoint delta = event->angleDelta();
    const double notches = (delta.y() != 0 ? delta.y() : delta.x()) / WheelNotch;
    event->accept();
    if (notches == 0)
        return;
    Guarded([&] {
        const double factor = std::pow(WheelFactor, notches);
        if (const PlotScale *const scale = board_.ScaleAt(event->position().toPoint())) {
            const QCPRange range = scale->axis->range();
            const double around = scale->axis->pixelToCoord(event->position().y());
            board_.HoldScale(
                *scale, {around + (range.lower - around) * factor, around + (range.upper - around) * factor});
            Refresh();
        } else if (event->modifiers().testFlag(Qt::ShiftModifier) || delta.y() == 0) {
            view_.Scroll(-notches * WheelScroll);
        } else {
            view_.Zoom(factor, board_.TimeAt(event->position().x()));
        }
    });
}

void PlotCanvas::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        isSpaceDown_ = true;
        FollowPointer(pointer_);
        return;
    }
    bool isTaken = false;
    Guarded([&] { isTaken = TakeKey(event->key(), event->modifiers()); });
    if (isTaken)
        event->accept();
    else
        QCustomPlot::keyPressEvent(event);
}

void PlotCanvas::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        isSpaceDown_ = false;
        FollowPointer(pointer_);
        return;
    }
    QCustomPlot::keyReleaseEvent(event);
}

bool PlotCanvas::TakeKey(int key, Qt::KeyboardModifiers modifiers)
{
    const bool hasControl = modifiers.testFlag(Qt::ControlModifier);
    if (modifiers.testFlag(Qt::AltModifier))
        return false;
    const bool isCursorThere = ActiveCursor() >= 0;
    switch (key) {
    case Qt::Key_A:
    case Qt::Key_B:
        if (hasControl)
            return false;
        ChooseCursor(key == Qt::Key_A ? 0 : 1);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        isCursorThere ? MoveCursor(key, modifiers) : MoveWindow(key);
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        isCursorThere && !hasControl ? MoveCursor(key, modifiers) : MoveWindow(key);
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        view_.Scroll(key == Qt::Key_PageUp ? -PageScroll : PageScroll);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus: {
        const double factor = key == Qt::Key_Minus ? 1 / KeyFactor : KeyFactor;
        const qint64 middleUs = view_.FromUs() + (view_.ToUs() - view_.FromUs()) / 2;
        if (hasControl)
            ZoomValues(factor);
        else
            view_.Zoom(factor, isCursorThere ? *view_.Cursor(ActiveCursor()) : middleUs);
        return true;
    }
    case Qt::Key_0:
        ShowAll();
        return true;
    case Qt::Key_Delete:
    case Qt::Key_Escape:
        // An Escape without a cursor belongs to the window.
        if (drag_ == Drag::None && !isCursorThere)
            return false;
        RemoveCursors();
        return true;
    default:
        return false;
    }
}

void PlotCanvas::ChooseCursor(int which)
{
    active_ = which;
    const qint64 fromUs = view_.FromUs();
    const qint64 toUs = view_.ToUs();
    const std::optional<qint64> timeUs = view_.Cursor(which);
    if (!timeUs || *timeUs < fromUs || *timeUs > toUs)
        view_.SetCursor(which, fromUs + (toUs - fromUs) * (which + 1) / 3);
    update();
}

void PlotCanvas::SetCursorAt(int which, qint64 timeUs)
{
    view_.SetCursor(which, std::clamp(timeUs, view_.FromUs(), view_.ToUs()));
}

void PlotCanvas::MoveCursor(int key, Qt::KeyboardModifiers modifiers)
{
    const int which = ActiveCursor();
    const qint64 timeUs = *view_.Cursor(which);
    const bool isForward = key == Qt::Key_Right;
    if (key == Qt::Key_Home || key == Qt::Key_End) {
        SetCursorAt(which, key == Qt::Key_Home ? view_.FromUs() : view_.ToUs());
    } else if (modifiers.testFlag(Qt::ControlModifier)) {
        if (const std::optional<qint64> next = NextSampleUs(view_, timeUs, isForward))
            SetCursorAt(which, *next);
    } else {
        const qint64 pixelUs =
            std::max<qint64>(1, (view_.ToUs() - view_.FromUs()) / std::max(1, board_.Frames().width()));
        const qint64 step = pixelUs * (modifiers.testFlag(Qt::ShiftModifier) ? FarPixels : 1);
        SetCursorAt(which, isForward ? timeUs + step : timeUs - step);
    }
}

void PlotCanvas::MoveWindow(int key)
{
    const qint64 span = view_.ToUs() - view_.FromUs();
    const TrendData &shown = view_.Shown();
    switch (key) {
    case Qt::Key_Home:
        view_.SetWindow(shown.FirstUs(), shown.FirstUs() + span);
        break;
    case Qt::Key_End:
        if (view_.IsLive())
            view_.SetFollow(true);
        else
            view_.SetWindow(shown.LastUs() - span, shown.LastUs());
        break;
    default:
        view_.Scroll(key == Qt::Key_Left ? -KeyScroll : KeyScroll);
        break;
    }
}

void PlotCanvas::RemoveCursors()
{
    if (std::exchange(drag_, Drag::None) == Drag::None)
        for (const int which : {0, 1})
            view_.SetCursor(which, std::nullopt);
    update();
}

void PlotCanvas::ZoomValues(double factor)
{
    for (const PlotArea &area : board_.Areas())
        for (const PlotScale &scale : area.scales) {
            const QCPRange range = scale.axis->range();
            const double half = range.size() * factor / 2;
            board_.HoldScale(scale, {range.center() - half, range.center() + half});
        }
    Refresh();
}

void PlotCanvas::ShowAll()
{
    board_.FreeScales();
    view_.ShowAll();
    Refresh();
}

} // namespace quorvik
