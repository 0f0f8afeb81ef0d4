#include "batch/BatchRun.h"
#include "platform/SettingsStore.h"
#include "platform/Terminal.h"

#include <QCoreApplication>
#include <QStandardPaths>

int main(int argc, char **argv)
{
    using namespace quorvik;

    // The settings and folders are those of the window program.
    QCoreApplication::setApplicationName(AppTitle());
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    const QCoreApplication application(argc, argv);
    IgnoreClosedPipes();
    SettingsStore settings;
    return RunBatch(QCoreApplication::arguments(),
                    {.settings = settings,
                     .programFolder = QCoreApplication::applicationDirPath(),
                     .dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                   QStringLiteral("/quorvik")});
}
