#include "map/MapView.h"

#include "desktop/PlainText.h"
#include "desktop/Pulse.h"
#include "map/MapMetrics.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr double LeastZoom = 0.3;
constexpr double GreatestZoom = 3;
constexpr double KeyZoom = 1.25;
constexpr double WheelZoom = 1.15; ///< for one notch
constexpr double WheelStep = 120;  ///< what Qt tells of one notch
constexpr double WirePixels = 4;
constexpr double SightMargin = 24;

} // namespace

MapView::MapView(MapModel &model, std::function<Circuit &()> circuit, QWidget *parent)
    : QWidget(parent)
    , model_(model)
    , circuit_(std::move(circuit))
    , painter_(model_, layout_)
{
    setObjectName(QStringLiteral("MapView"));
    setAccessibleName(QStringLiteral("Map of the Drive"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    // Each frame covers all; nothing of the window behind has to be painted.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void MapView::Follow()
{
    std::vector<std::vector<MapRow>> before;
    before.reserve(std::size_t(MapModel::CardCount()));
    for (int card = 0; card < MapModel::CardCount(); ++card)
        before.push_back(model_.Rows(card));
    const std::vector<MapMark> marks = model_.Marks();
    const bool isRewired = model_.Follow(circuit_());
    if (isRewired || !isRouted_) {
        layout_.Route(model_.Wires());
        isRouted_ = true;
    }
    const std::optional<MapPath> litBefore = path_;
    LightUp();
    if (isRewired || litBefore != path_) {
        update();
        return;
    }
    for (int card = 0; card < MapModel::CardCount(); ++card) {
        const bool marked =
            model_.MarkWords(card).isEmpty() !=
            std::ranges::none_of(marks, [card](const MapMark &mark) { return mark.card == card; });
        if (marked || before[std::size_t(card)] != model_.Rows(card))
            update(CardOnScreen(card).toAlignedRect().adjusted(-2, -2, 2, 2));
    }
}

QRectF MapView::CardOnScreen(int card) const
{
    const QRectF place = layout_.Card(card);
    return {place.topLeft() * zoom_ - origin_, place.size() * zoom_};
}

MapLight MapView::Light() const
{
    return {.card = hoverCard_ < 0 && hasFocus() ? focusCard_ : hoverCard_,
            .row = hoverRow_,
            .path = path_,
            .pulsing = pulsing_,
            .pulsingRow = pulsingRow_,
            .pulse = pulse_};
}

void MapView::LightUp()
{
    path_.reset();
    if (const int card = LitCard(); card >= 0 && isRouted_)
        path_ = model_.PathOf(circuit_(), card, hoverRow_);
    Q_EMIT LitChanged(LitCard());
}

void MapView::SetHover(int card, int row)
{
    if (card == hoverCard_ && row == hoverRow_)
        return;
    hoverCard_ = card;
    hoverRow_ = row;
    setCursor(card >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    LightUp();
    update();
}

void MapView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), MapPainter::Paper(palette()));
    painter.translate(-origin_);
    painter.scale(zoom_, zoom_);
    const QRectF visible(ToMap(event->rect().topLeft()), QSizeF(event->rect().size()) / zoom_);
    if (isRouted_)
        painter_.Paint(painter, palette(), Light(), visible);
}

void MapView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (isFitted_)
        Fit();
    else
        HoldInSight();
}

void MapView::Fit()
{
    const QSizeF map = layout_.Size();
    zoom_ = std::clamp(std::min(width() / map.width(), height() / map.height()), LeastZoom, GreatestZoom);
    origin_ = {};
    HoldInSight();
    isFitted_ = true;
    update();
}

void MapView::SetZoom(double zoom, const QPointF &about)
{
    const QPointF place = ToMap(about);
    zoom_ = std::clamp(zoom, LeastZoom, GreatestZoom);
    origin_ = place * zoom_ - about;
    isFitted_ = false;
    HoldInSight();
    update();
}

void MapView::ZoomBy(double factor)
{
    const QPointF about = hasFocus() ? CardOnScreen(focusCard_).center() : QRectF(rect()).center();
    SetZoom(zoom_ * factor, about);
}

void MapView::PanBy(const QPointF &pixels)
{
    origin_ -= pixels;
    isFitted_ = false;
    HoldInSight();
    update();
}

/** A map smaller than the widget stands in its middle, a larger one fills it. */
void MapView::HoldInSight()
{
    const QSizeF map = layout_.Size() * zoom_;
    const auto hold = [](double origin, double room, double size) {
        return size <= room ? (size - room) / 2 : std::clamp(origin, 0.0, size - room);
    };
    origin_ = {hold(origin_.x(), width(), map.width()), hold(origin_.y(), height(), map.height())};
}

void MapView::BringIntoSight(int card)
{
    const QRectF place = CardOnScreen(card).adjusted(-SightMargin, -SightMargin, SightMargin, SightMargin);
    const auto shift = [](double low, double high, double room) {
        return low < 0 ? -low : high > room ? room - high : 0;
    };
    const QPointF by(shift(place.left(), place.right(), width()),
                     shift(place.top(), place.bottom(), height()));
    if (!by.isNull() && !isFitted_)
        PanBy(by);
}

void MapView::SetFocusCard(int card)
{
    focusCard_ = card;
    isKeyed_ = true;
    hoverCard_ = hoverRow_ = -1;
    BringIntoSight(card);
    LightUp();
    update();
}

void MapView::Reveal(int card, int row)
{
    setFocus(Qt::OtherFocusReason);
    SetFocusCard(card);
    if (!isFitted_)
        PanBy(QRectF(rect()).center() - CardOnScreen(card).center());
    pulsing_ = card;
    pulsingRow_ = row;
    Pulse(this, [this](double strength) {
        pulse_ = strength;
        update(CardOnScreen(pulsing_).toAlignedRect().adjusted(-12, -12, 12, 12));
    });
}

void MapView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    isPressed_ = true;
    isPanning_ = false;
    pressedAt_ = lastAt_ = event->position();
}

void MapView::mouseMoveEvent(QMouseEvent *event)
{
    if (!isPressed_) {
        const QPointF place = ToMap(event->position());
        const int card = layout_.CardAt(place);
        SetHover(card, card < 0 ? -1 : layout_.RowAt(card, place));
        return;
    }
    if (!isPanning_ && (event->position() - pressedAt_).manhattanLength() < QApplication::startDragDistance())
        return;
    isPanning_ = true;
    setCursor(Qt::ClosedHandCursor);
    PanBy(event->position() - lastAt_);
    lastAt_ = event->position();
}

void MapView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isPressed_)
        return;
    isPressed_ = false;
    const QPointF place = ToMap(event->position());
    const int card = layout_.CardAt(place);
    setCursor(card >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (isPanning_ || card < 0)
        return;
    focusCard_ = card;
    Q_EMIT Activated(card, layout_.RowAt(card, place));
}

void MapView::leaveEvent(QEvent *event)
{
    QWidget::leaveEvent(event);
    SetHover(-1, -1);
}

void MapView::wheelEvent(QWheelEvent *event)
{
    if (event->modifiers() & Qt::ControlModifier)
        SetZoom(zoom_ * std::pow(WheelZoom, event->angleDelta().y() / WheelStep), event->position());
    else
        PanBy(event->pixelDelta().isNull() ? QPointF(event->angleDelta()) / 2 : QPointF(event->pixelDelta()));
    event->accept();
}

void MapView::contextMenuEvent(QContextMenuEvent *event)
{
    const QPointF place = ToMap(event->pos());
    if (event->reason() == QContextMenuEvent::Keyboard)
        AskMenuOfFocus();
    else if (const int card = layout_.CardAt(place); card >= 0)
        Q_EMIT MenuAsked(card, layout_.RowAt(card, place), event->globalPos());
}

void MapView::AskMenuOfFocus()
{
    const QPointF below = CardOnScreen(focusCard_).bottomLeft();
    Q_EMIT MenuAsked(focusCard_, -1, mapToGlobal(below.toPoint()));
}

bool MapView::MoveFocus(int key)
{
    const int dx = key == Qt::Key_Right ? 1 : key == Qt::Key_Left ? -1 : 0;
    const int dy = key == Qt::Key_Down ? 1 : key == Qt::Key_Up ? -1 : 0;
    if (dx == 0 && dy == 0)
        return false;
    SetFocusCard(layout_.Neighbour(focusCard_, dx, dy));
    return true;
}

bool MapView::ZoomByKey(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        ZoomBy(KeyZoom);
        return true;
    case Qt::Key_Minus:
        ZoomBy(1 / KeyZoom);
        return true;
    case Qt::Key_0:
        SetZoom(1, CardOnScreen(focusCard_).center());
        BringIntoSight(focusCard_);
        return true;
    case Qt::Key_F:
        // Ctrl+F is the program's.
        if (event->modifiers() & ~Qt::ShiftModifier)
            return false;
        Fit();
        return true;
    default:
        return false;
    }
}

void MapView::keyPressEvent(QKeyEvent *event)
{
    const bool isForOthers = event->modifiers() & (Qt::AltModifier | Qt::MetaModifier);
    if (!isForOthers && HandleKey(event))
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

bool MapView::HandleKey(QKeyEvent *event)
{
    if (MoveFocus(event->key()) || ZoomByKey(event))
        return true;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Q_EMIT Activated(focusCard_, -1);
        return true;
    case Qt::Key_F10:
        if (event->modifiers() != Qt::ShiftModifier)
            return false;
        AskMenuOfFocus();
        return true;
    case Qt::Key_Escape:
        if (!isKeyed_)
            return false;
        isKeyed_ = false;
        LightUp();
        update();
        return true;
    default:
        return false;
    }
}

void MapView::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    isKeyed_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    LightUp();
    update();
}

void MapView::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    LightUp();
    update();
}

QString MapView::ToolTipAt(const QPointF &place) const
{
    const int card = layout_.CardAt(place);
    if (card >= 0) {
        QStringList lines = model_.MarkWords(card);
        const int row = layout_.RowAt(card, place);
        lines.append(row >= 0 ? model_.Words(card, row)
                              : QStringLiteral("Click to open %1")
                                    .arg(QString::fromLatin1(MapCards()[std::size_t(card)].title)));
        return lines.join(u'\n');
    }
    const int wire = layout_.WireAt(place, WirePixels / zoom_);
    if (wire < 0)
        return {};
    const MapWire &shown = model_.Wires()[std::size_t(wire)];
    return QStringLiteral("%1 to %2:\n%3")
        .arg(QString::fromLatin1(MapCards()[std::size_t(shown.from)].title),
             QString::fromLatin1(MapCards()[std::size_t(shown.to)].title), shown.words.join(u'\n'));
}

bool MapView::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const QString text = ToolTipAt(ToMap(help->pos()));
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), PlainToolTip(text), this);
    return true;
}

} // namespace quorvik
