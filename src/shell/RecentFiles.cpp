#include "shell/RecentFiles.h"

#include "model/Document.h"
#include "model/PathFunctions.h"
#include "platform/Guard.h"
#include "platform/SettingsStore.h"
#include "platform/Strip.h"

#include <QAction>
#include <QFileInfo>
#include <QFontMetrics>
#include <QMenu>

namespace quorvik
{

namespace
{

QString KeyOf(int place)
{
    return QStringLiteral("File%1").arg(place + 1);
}

/** The name first, since folders of one plant look alike. */
QString CaptionOf(const QString &path, int place, const QFontMetrics &metrics)
{
    constexpr int widest = 420;
    const QString name = metrics.elidedText(FileTitle(path), Qt::ElideMiddle, widest);
    const QString folder = metrics.elidedText(QFileInfo(path).path(), Qt::ElideMiddle, widest);
    return QStringLiteral("&%1  ").arg(place + 1) +
           QStringLiteral("%1 - %2").arg(name, folder).replace(u'&', QStringLiteral("&&"));
}

} // namespace

RecentFiles::RecentFiles(const Document &document, SettingsStore &settings, Strip &strip, QMenu *menu,
                         std::function<void(const QString &path)> open, QObject *parent)
    : QObject(parent)
    , document_(document)
    , settings_(settings)
    , strip_(strip)
    , menu_(menu)
    , open_(std::move(open))
{
    for (int place = 0; place < Newest; ++place) {
        const QString path = settings_.GetSetting(QStringLiteral("Recent"), KeyOf(place));
        if (!path.isEmpty() && !paths_.contains(path))
            paths_.append(path);
    }
    menu_->setToolTipsVisible(true);
    List();
    On(&document_, &Document::TitleChanged, this, [this] { Follow(); });
}

void RecentFiles::Follow()
{
    const QString &path = document_.FileName;
    if (path == Document::Unnamed() || (!paths_.isEmpty() && path == paths_.first()))
        return;
    paths_.removeAll(path);
    paths_.prepend(path);
    paths_ = paths_.first(qMin(paths_.size(), qsizetype(Newest)));
    Store();
}

void RecentFiles::Store()
{
    for (int place = 0; place < Newest; ++place)
        settings_.SaveSetting(QStringLiteral("Recent"), KeyOf(place), paths_.value(place));
    List();
    Q_EMIT Changed();
}

void RecentFiles::List()
{
    // The entry that was chosen may still be at work.
    for (QAction *action : menu_->actions()) {
        menu_->removeAction(action);
        action->deleteLater();
    }
    const auto add = [this](const QString &caption, const QString &name, const auto &run) {
        QAction *action = menu_->addAction(caption);
        action->setObjectName(name);
        // After the menu has closed: a box stands before the window then, and the list may change.
        QObject::connect(
            action, &QAction::triggered, this, [run] { Guarded(run); }, Qt::QueuedConnection);
        return action;
    };
    for (int place = 0; place < paths_.size(); ++place) {
        const QString path = paths_.at(place);
        add(CaptionOf(path, place, menu_->fontMetrics()), QStringLiteral("mnuFileRecent(%1)").arg(place),
            [this, path] { Choose(path); })
            ->setToolTip(path);
    }
    menu_->addSeparator()->setObjectName(QStringLiteral("mnuFileRecentSeparator"));
    add(QStringLiteral("&Clear List"), QStringLiteral("mnuFileRecentClear"), [this] {
        paths_.clear();
        Store();
    });
    menu_->menuAction()->setEnabled(!paths_.isEmpty());
}

void RecentFiles::Choose(const QString &path)
{
    const QString key = QStringLiteral("recent");
    strip_.Withdraw(key);
    if (QFileInfo(path).isFile()) {
        open_(path);
        return;
    }
    paths_.removeAll(path);
    Store();
    strip_.Show(
        {key, Urgency::Warning,
         QStringLiteral("\"%1\" is no longer there; it was taken off the list of recent files.").arg(path)});
}

} // namespace quorvik
