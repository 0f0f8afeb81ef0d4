#include "blocks/diagram/WireProbe.h"

#include "desktop/PlainText.h"
#include "platform/Guard.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

namespace quorvik
{

namespace
{

int Overlap(const QRect &one, const QRect &other)
{
    const QRect both = one & other;
    return both.isEmpty() ? 0 : both.width() * both.height();
}

bool IsEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}

} // namespace

int WireAt(const Drawing &drawing, const QPointF &cell, double reach)
{
    int nearest = -1;
    double least = reach;
    for (int i = 0; i < drawing.Elements().size(); ++i) {
        const Element &element = drawing.At(i);
        if (element.edge < 0 || !element.visible)
            continue;
        const QPolygonF line = element.symbol == Symbol::Link ? drawing.LinkLine(element) : element.points;
        if (const double off = DistanceFrom(line, cell); off < least) {
            least = off;
            nearest = i;
        }
    }
    return nearest;
}

WireTag::WireTag(QWidget *sheet)
    : QLabel(sheet)
{
    setObjectName(QStringLiteral("WireTag"));
    setTextFormat(Qt::PlainText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setMargin(fontMetrics().height() / 4);
    hide();
}

void WireTag::ShowAt(const QString &text, const QPoint &place, const QList<QRect> &clear,
                     const QList<QRect> &spared)
{
    setFont(parentWidget()->font());
    const QRect sight = parentWidget()->visibleRegion().boundingRect().adjusted(1, 1, -1, -1);
    setWordWrap(false);
    setText(text);
    adjustSize();
    if (width() > sight.width()) {
        setWordWrap(true);
        setFixedWidth(std::max(sight.width(), 1));
        adjustSize();
        setMaximumWidth(QWIDGETSIZE_MAX);
        setMinimumWidth(0);
    }
    QList<QRect> taken;
    for (const QWidget *control :
         parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        if (control != this && !control->isHidden())
            taken.append(control->geometry());
    const int gap = fontMetrics().height();
    QPoint best;
    qint64 least = -1;
    for (const int distance : {gap, 3 * gap, 5 * gap, 8 * gap})
        for (const auto &[across, down] :
             {std::pair(1, 1), std::pair(1, -1), std::pair(-1, 1), std::pair(-1, -1)}) {
            const QPoint corner(place.x() + (across > 0 ? gap : -gap - width()),
                                place.y() + (down > 0 ? distance : -distance - height()));
            const QPoint inSight(
                std::clamp(corner.x(), sight.left(), std::max(sight.left(), sight.right() - width() + 1)),
                std::clamp(corner.y(), sight.top(), std::max(sight.top(), sight.bottom() - height() + 1)));
            const QRect here(inSight, size());
            // The ends and the place itself come first, then whatever else stands on the sheet, then
            // nearness.
            constexpr qint64 mustStayClear = 1000;
            constexpr qint64 textCost = 5;
            qint64 cost = mustStayClear * Overlap(here, QRect(place, QSize(1, 1)).adjusted(-3, -3, 3, 3));
            for (const QRect &rect : clear)
                cost += mustStayClear * Overlap(here, rect);
            for (const QRect &rect : taken)
                cost += textCost * Overlap(here, rect);
            for (const QRect &rect : spared)
                cost += Overlap(here, rect);
            cost = cost * gap + distance;
            if (least < 0 || cost < least) {
                least = cost;
                best = inSight;
            }
        }
    move(best);
    raise();
    show();
}

WireProbe::WireProbe(DiagramView &view, QObject *parent)
    : QObject(parent)
    , view_(view)
{
    view_.setMouseTracking(true);
    view_.installEventFilter(this);
    for (QWidget *control : view_.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        control->installEventFilter(this);
}

void WireProbe::MakeLink(int text)
{
    QLabel *label = view_.LabelOf(text);
    SetSpokenText(label, QStringLiteral("Signal of another window; Enter opens it"));
    label->setFocusPolicy(Qt::StrongFocus);
    label->setCursor(Qt::PointingHandCursor);
    links_.push_back(text);
}

int WireProbe::WireOfText(int text) const
{
    const Drawing &drawing = view_.Shown();
    const int node = drawing.Texts().at(text).node;
    for (int i = 0; i < drawing.Elements().size(); ++i)
        if (const int edge = drawing.At(i).edge; edge >= 0) {
            const Edge &found = drawing.TheNet().edges[std::size_t(edge)];
            if (found.from.node == node || found.to.node == node)
                return i;
        }
    return -1;
}

bool WireProbe::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &view_) {
        Guarded([&] { HandleSheet(event); });
        return false;
    }
    for (const int text : links_)
        if (watched == view_.LabelOf(text)) {
            bool isDone = false;
            Guarded([&] {
                if (event->type() == QEvent::KeyPress)
                    isDone = HandleKey(text, static_cast<QKeyEvent *>(event)->key());
                else
                    HandleLabel(text, event);
            });
            return isDone;
        }
    if (event->type() == QEvent::Enter)
        Guarded([this] { Leave(); });
    return false;
}

void WireProbe::HandleSheet(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto *move = static_cast<QMouseEvent *>(event);
        const int wire =
            move->buttons() == Qt::NoButton ? WireAt(view_.Shown(), view_.ToCells(move->position())) : -1;
        if (wire < 0) {
            Leave();
            break;
        }
        isOn_ = true;
        Q_EMIT Pointed(wire, move->position().toPoint());
        break;
    }
    case QEvent::ContextMenu: {
        const auto *menu = static_cast<QContextMenuEvent *>(event);
        if (const int wire = WireAt(view_.Shown(), view_.ToCells(menu->pos())); wire >= 0)
            Q_EMIT MenuAsked(wire, menu->globalPos());
        break;
    }
    case QEvent::Leave:
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::Wheel:
    case QEvent::Hide:
        Leave();
        break;
    default:
        break;
    }
}

void WireProbe::HandleLabel(int text, QEvent *event)
{
    QLabel *label = view_.LabelOf(text);
    switch (event->type()) {
    case QEvent::Enter:
        Underline(label, true);
        if (const int wire = WireOfText(text); wire >= 0) {
            isOn_ = true;
            Q_EMIT Pointed(wire, label->geometry().center());
        }
        break;
    case QEvent::Leave:
        Underline(label, false);
        Leave();
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut: {
        const bool isFocused = event->type() == QEvent::FocusIn;
        label->setAutoFillBackground(isFocused);
        label->setBackgroundRole(isFocused ? QPalette::Highlight : QPalette::NoRole);
        label->setForegroundRole(isFocused ? QPalette::HighlightedText : QPalette::NoRole);
        Leave();
        break;
    }
    case QEvent::ContextMenu:
        if (const int wire = WireOfText(text); wire >= 0)
            Q_EMIT MenuAsked(wire, static_cast<QContextMenuEvent *>(event)->globalPos());
        break;
    case QEvent::MouseButtonRelease: {
        const auto *release = static_cast<QMouseEvent *>(event);
        if (release->button() == Qt::LeftButton && label->rect().contains(release->position().toPoint()))
            Q_EMIT Activated(text);
        break;
    }
    default:
        break;
    }
}

bool WireProbe::HandleKey(int text, int key)
{
    if (IsEnter(key)) {
        Q_EMIT Activated(text);
        return true;
    }
    const int wire = WireOfText(text);
    if (key != Qt::Key_W || wire < 0)
        return false;
    isOn_ = true;
    Q_EMIT PathAsked(wire, view_.LabelOf(text)->geometry());
    return true;
}

void WireProbe::Underline(QLabel *label, bool isHovered) const
{
    // Of its own it has these two only; the size is the sheet's.
    QFont font;
    font.setBold(label->font().bold());
    font.setUnderline(isHovered);
    label->setFont(font);
}

void WireProbe::Leave()
{
    if (std::exchange(isOn_, false))
        Q_EMIT Left();
}

} // namespace quorvik
