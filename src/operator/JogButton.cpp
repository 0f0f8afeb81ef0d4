#include "operator/JogButton.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace quorvik
{

JogButton::JogButton(QWidget *parent)
    : OperatorButton(OperatorSymbol::Jog, parent)
{
}

void JogButton::Hold()
{
    if (isHeld_ || !isEnabled())
        return;
    isHeld_ = true;
    setDown(true);
    Q_EMIT MouseDown();
}

void JogButton::Release()
{
    if (!isHeld_)
        return;
    isHeld_ = false;
    setDown(false);
    Q_EMIT MouseUp();
}

bool JogButton::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::UngrabMouse:
    case QEvent::EnabledChange:
        Release();
        break;
    default:
        break;
    }
    return OperatorButton::event(event);
}

void JogButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Hold();
    else
        event->ignore();
}

void JogButton::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint inWindow = mapTo(window(), event->position().toPoint());
    if (!window()->rect().contains(inWindow))
        Release();
}

void JogButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Release();
    else
        event->ignore();
}

void JogButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space)
        OperatorButton::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        Hold();
}

void JogButton::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space)
        OperatorButton::keyReleaseEvent(event);
    else if (!event->isAutoRepeat())
        Release();
}

} // namespace quorvik
