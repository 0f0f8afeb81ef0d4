#include "shell/DroppedFiles.h"

#include "model/PathFunctions.h"
#include "platform/Guard.h"
#include "platform/Strip.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace quorvik
{

namespace
{

QStringList LocalFiles(const QMimeData &data)
{
    QStringList paths;
    for (const QUrl &url : data.urls())
        if (url.isLocalFile() && url.host().isEmpty())
            paths.append(url.toLocalFile());
    return paths;
}

bool IsTaken(const QDropEvent &drop)
{
    // A question that is open, or an operation under way, comes first.
    return (drop.possibleActions() & Qt::CopyAction) != 0 && !QApplication::activeModalWidget() &&
           !LocalFiles(*drop.mimeData()).isEmpty();
}

} // namespace

DroppedFiles::DroppedFiles(QWidget *window, Strip &strip, std::function<void(const QString &path)> open)
    : QObject(window)
    , strip_(strip)
    , open_(std::move(open))
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool DroppedFiles::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto *drop = static_cast<QDropEvent *>(event);
    if (!IsTaken(*drop)) {
        drop->ignore();
        return true;
    }
    // Never a move: a file manager deletes the file after one.
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop)
        Take(*drop->mimeData());
    return true;
}

void DroppedFiles::Take(const QMimeData &data)
{
    const QStringList paths = LocalFiles(data);
    // The program that the file comes from waits until the drop is over, and a question would hold it up.
    QMetaObject::invokeMethod(
        this,
        [this, paths] {
            Guarded([&] {
                const QString key = QStringLiteral("dropped");
                strip_.Withdraw(key);
                if (paths.size() > 1)
                    strip_.Show(
                        {key, Urgency::News,
                         QStringLiteral("%1 files were dropped. Only the first was taken, \"%2\": one "
                                        "set is open at a time.")
                             .arg(paths.size())
                             .arg(FileTitle(paths.first()))});
                if (auto *window = qobject_cast<QWidget *>(parent()))
                    window->activateWindow();
                open_(paths.first());
            });
        },
        Qt::QueuedConnection);
}

} // namespace quorvik
