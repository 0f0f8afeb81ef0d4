#include "desktop/DesktopAsker.h"
#include "desktop/HelpViewer.h"
#include "desktop/MarkStyle.h"
#include "platform/Guard.h"
#include "platform/SettingsStore.h"
#include "shell/MDIFormMain.h"

#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>

int main(int argc, char **argv)
{
    using namespace quorvik;

    QApplication application(argc, argv);
    QApplication::setStyle(new MarkStyle);
    QApplication::setApplicationName(AppTitle());
    QApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quorvik"));
    // The run ends when the main window is unloaded, whatever other windows stand.
    QApplication::setQuitOnLastWindowClosed(false);

    SettingsStore settings;
    DesktopAsker asker;
    const QString programFolder = QApplication::applicationDirPath();
    HelpViewer help(programFolder + QStringLiteral("/quorvik.qch"),
                    QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                        QStringLiteral("/quorvik"),
                    settings);
    SetFailureReporter([&asker](const RuntimeFailure &failure) {
        asker.MsgBox(failure.Sentence(), MsgButtons::Ok, MsgIcon::Critical, AppTitle());
    });

    MDIFormMain window({asker, settings, help, programFolder, QApplication::applicationFilePath(),
                        QFileInfo(settings.FileName()).absolutePath() + QStringLiteral("/Quorvik.lock"),
                        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                        LinkTimings{}});
    QObject::connect(&window, &MDIFormMain::Unloaded, &application, [] { QApplication::exit(0); });

    const QString commandLine = QApplication::arguments().mid(1).join(u' ');
    QMetaObject::invokeMethod(
        &window,
        [&] {
            Guarded([&] { window.Load(commandLine); });
            if (!window.isVisible())
                QApplication::exit(1);
        },
        Qt::QueuedConnection);
    return QApplication::exec();
}
