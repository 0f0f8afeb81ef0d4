#include "tour/Journey.h"

#include <QAction>
#include <QMenu>

namespace quorvik
{

void AddRecentFilesJob(Tour &tour)
{
    tour.Do(QStringLiteral("File, Recent Files names the file of the main job"), [&tour] {
        QString failure = tour.User().OpenMenu(QStringLiteral("mnuFileRecent"));
        tour.TakePicture(QStringLiteral("58-recent-files"));
        tour.User().CloseMenus();
        const QAction *newest =
            tour.TheProgram().Main().Menus().Menu(QStringLiteral("mnuFileRecent"))->actions().constFirst();
        if (failure.isEmpty() && newest->toolTip() != SavedFile(tour))
            failure = QStringLiteral("the newest one is ") + newest->toolTip();
        return failure;
    });
}

} // namespace quorvik
