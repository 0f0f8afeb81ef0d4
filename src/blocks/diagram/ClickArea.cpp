#include "blocks/diagram/ClickArea.h"

#include "desktop/PlainText.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace quorvik
{

ClickArea::ClickArea(const QString &name, Gesture gesture, const QString &toolTip, QWidget *parent)
    : QWidget(parent)
    , gesture_(gesture)
{
    setObjectName(name);
    setAccessibleName(toolTip);
    SetPlainToolTip(this, toolTip);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

void ClickArea::SetRefused(bool refused)
{
    if (refused == refused_)
        return;
    refused_ = refused;
    setCursor(refused ? Qt::ForbiddenCursor : Qt::PointingHandCursor);
    update();
}

void ClickArea::mouseReleaseEvent(QMouseEvent *event)
{
    if (gesture_ == Gesture::Click && event->button() == Qt::LeftButton && rect().contains(event->pos()))
        Q_EMIT Activated();
}

void ClickArea::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (gesture_ == Gesture::DoubleClick && event->button() == Qt::LeftButton)
        Q_EMIT Activated();
}

void ClickArea::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (!event->isAutoRepeat())
            Q_EMIT Activated();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void ClickArea::paintEvent(QPaintEvent *)
{
    if (!underMouse() && !hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = palette().color(refused_ ? QPalette::Mid : QPalette::Highlight);
    painter.setPen(QPen(color, hasFocus() ? 2 : 1, refused_ ? Qt::DotLine : Qt::SolidLine));
    QColor wash = color;
    wash.setAlpha(24);
    painter.setBrush(wash);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
}

} // namespace quorvik
