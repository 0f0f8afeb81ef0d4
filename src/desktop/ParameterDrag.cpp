#include "desktop/ParameterDrag.h"

#include "desktop/ParameterMime.h"
#include "platform/Guard.h"

#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QWidget>

namespace quorvik
{

ParameterDrag::ParameterDrag(QWidget *box, std::function<int()> param, std::function<QString(int p)> nameOf)
    : QObject(box)
    , box_(box)
    , param_(std::move(param))
    , nameOf_(std::move(nameOf))
{
    box->installEventFilter(this);
}

bool ParameterDrag::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        const auto *press = static_cast<QMouseEvent *>(event);
        pressedAt_.reset();
        if (press->button() == Qt::LeftButton)
            pressedAt_ = press->position().toPoint();
    } else if (event->type() == QEvent::MouseButtonRelease) {
        pressedAt_.reset();
    } else if (event->type() == QEvent::MouseMove && pressedAt_) {
        const QPoint place = static_cast<QMouseEvent *>(event)->position().toPoint();
        // Within the box it may still become a click.
        const bool isDrag = !box_->rect().contains(place) &&
                            (place - *pressedAt_).manhattanLength() >= QApplication::startDragDistance();
        if (!isDrag)
            return false;
        pressedAt_.reset();
        Guarded([this] { Drag(); });
        return true;
    }
    return false;
}

void ParameterDrag::Drag()
{
    const int p = param_();
    if (p < 0)
        return;
    auto *drag = new QDrag(box_);
    drag->setMimeData(MakeParameterMime(p, nameOf_(p)));
    drag->setPixmap(box_->grab());
    drag->exec(Qt::CopyAction);
}

} // namespace quorvik
