#include "shell/StartArea.h"

#include "platform/Guard.h"

#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <algorithm>

namespace quorvik
{

StartArea::StartArea(QMdiArea *area, QWidget *page, QObject *parent)
    : QObject(parent)
    , area_(area)
    , page_(page)
{
    area_->viewport()->installEventFilter(this);
    Follow();
}

void StartArea::Follow()
{
    const QList<QMdiSubWindow *> windows = area_->subWindowList();
    const bool isEmpty = std::none_of(windows.begin(), windows.end(),
                                      [](const QMdiSubWindow *window) { return !window->isHidden(); });
    // What is covered must not be reached by the keys.
    area_->setFocusPolicy(isEmpty ? Qt::NoFocus : Qt::StrongFocus);
    page_->setVisible(isEmpty);
    if (isEmpty)
        page_->raise();
}

bool StartArea::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ChildAdded:
        static_cast<QChildEvent *>(event)->child()->installEventFilter(this);
        break;
    case QEvent::Show:
        Guarded([this] { Follow(); });
        break;
    case QEvent::Hide:
    case QEvent::ChildRemoved:
        // Where the next window follows the one that went, the page does not flash up between them.
        QTimer::singleShot(0, this, [this] { Guarded([this] { Follow(); }); });
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quorvik
