#include "trend/forms/PlotCanvas.h"

#include "desktop/PlainText.h"
#include "platform/Guard.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotCursors.h"

#include <QPainter>
#include <QTimer>
#include <QToolTip>
#include <utility>

namespace quorvik
{

namespace
{

constexpr int FocusWidth = 2;
constexpr int BoxAlpha = 40;

} // namespace

PlotCanvas::PlotCanvas(TrendView &view, QWidget *parent)
    : QCustomPlot(parent)
    , view_(view)
    , board_(*this, view)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    // Nothing of ours is on it, and a buffer of its own would be painted with each picture.
    layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmLogical);
}

PlotCanvas::~PlotCanvas() = default;

void PlotCanvas::Refresh()
{
    if (std::exchange(isDue_, true))
        return;
    QTimer::singleShot(0, this, [this] {
        if (isDue_)
            Guarded([this] { Redraw(); });
    });
}

void PlotCanvas::Redraw()
{
    isDue_ = false;
    // The window may have come to another screen.
    if (bufferDevicePixelRatio() != devicePixelRatioF())
        setBufferDevicePixelRatio(devicePixelRatioF());
    const bool isMoving = view_.IsLive() && view_.Follows();
    const QRect frames = board_.Frames();
    board_.Update(isMoving);
    replot(QCustomPlot::rpQueuedRefresh);
    if (frames == board_.Frames())
        return;
    // Other numbers on an axis need another margin, and so the curves have another width.
    board_.Update(isMoving);
    replot(QCustomPlot::rpQueuedRefresh);
}

void PlotCanvas::ShowDrop(std::optional<int> plot)
{
    drop_ = plot;
    update();
}

int PlotCanvas::ActiveCursor() const
{
    if (view_.Cursor(active_))
        return active_;
    return view_.Cursor(1 - active_) ? 1 - active_ : -1;
}

bool PlotCanvas::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *const help = static_cast<QHelpEvent *>(event);
        const QString text = board_.TextAt(help->pos());
        if (text.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), PlainToolTip(text), this);
        return true;
    }
    return QCustomPlot::event(event);
}

void PlotCanvas::resizeEvent(QResizeEvent *event)
{
    QCustomPlot::resizeEvent(event);
    Refresh();
}

void PlotCanvas::focusInEvent(QFocusEvent *event)
{
    QCustomPlot::focusInEvent(event);
    update();
}

void PlotCanvas::focusOutEvent(QFocusEvent *event)
{
    isSpaceDown_ = false;
    QCustomPlot::focusOutEvent(event);
    update();
}

void PlotCanvas::paintEvent(QPaintEvent *event)
{
    QCustomPlot::paintEvent(event);
    QPainter painter(this);
    const PlotLook &look = board_.Look();
    PaintCursors(painter, board_, view_, hasFocus() ? ActiveCursor() : -1);
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (drag_ == Drag::Box) {
        QColor fill = look.chosen;
        fill.setAlpha(BoxAlpha);
        const QRectF box = Box();
        painter.fillRect(box, fill);
        painter.setPen(look.chosen);
        painter.drawRect(box);
    }
    if (drop_) {
        const QRect target = board_.RectOf(*drop_);
        const QRect last = board_.Frames();
        painter.setPen(QPen(look.chosen, FocusWidth));
        // Below the last plot a new one would begin.
        painter.drawRect(target.isNull() ? QRect(last.left(), last.bottom() + FocusWidth, last.width(),
                                                 height() - last.bottom() - 2 * FocusWidth)
                                         : target);
    }
    if (hasFocus()) {
        painter.setPen(QPen(look.chosen, FocusWidth));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

} // namespace quorvik
