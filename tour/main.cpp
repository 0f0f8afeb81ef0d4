#include "desktop/DesktopAsker.h"
#include "desktop/HelpViewer.h"
#include "platform/SettingsStore.h"
#include "shell/MDIFormMain.h"
#include "tour/Tour.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTemporaryDir>

int main(int argc, char **argv)
{
    using namespace quorvik;

    const QApplication application(argc, argv);
    QApplication::setApplicationName(AppTitle());
    QApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    QApplication::setQuitOnLastWindowClosed(false);
    // The tour types into the file dialogs, which only our own can promise to understand.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);

    QCommandLineParser parser;
    parser.addOption({QStringLiteral("pictures"), QStringLiteral("Where the pictures go."),
                      QStringLiteral("folder"), QStringLiteral("build/tour")});
    parser.addOption({QStringLiteral("drive"), QStringLiteral("The simulated drive's program."),
                      QStringLiteral("program"),
                      QApplication::applicationDirPath() + QStringLiteral("/../drive/sarvex-drive")});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);

    const QString pictures = parser.value(QStringLiteral("pictures"));
    QDir().mkpath(pictures);
    const QTemporaryDir profile;
    const QString programFolder = QApplication::applicationDirPath();
    const QString link = profile.filePath(QStringLiteral("drive"));
    DriveProcess drive;
    if (!drive.Start(parser.value(QStringLiteral("drive")), link,
                     programFolder + QStringLiteral("/Presets.fil")))
        return qCritical("The simulated drive did not start."), 1;

    SettingsStore settings(profile.filePath(QStringLiteral("Quorvik.ini")));
    settings.SaveSetting(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("16"));
    settings.SaveSetting(QStringLiteral("Options"), QStringLiteral("Show Tips at Startup"),
                         QStringLiteral("False"));
    settings.SaveSetting(QStringLiteral("Ports"), QStringLiteral("Com16"), link);
    settings.SaveSetting(QStringLiteral("Startup"), QStringLiteral("WindowState"), QStringLiteral("2"));
    DesktopAsker asker;
    HelpViewer help(programFolder + QStringLiteral("/quorvik.qch"), profile.filePath(QStringLiteral("help")),
                    settings);
    MDIFormMain window({asker, settings, help, programFolder, QApplication::applicationFilePath(),
                        profile.filePath(QStringLiteral("Quorvik.lock")),
                        profile.filePath(QStringLiteral("data")), LinkTimings{}});
    Tour tour(window, drive, pictures);
    QObject::connect(&tour, &Tour::Finished, &application,
                     [&tour] { QApplication::exit(tour.HasFailed() ? 1 : 0); });
    QMetaObject::invokeMethod(
        &window,
        [&] {
            tour.Start();
            window.Load(QString());
        },
        Qt::QueuedConnection);
    return QApplication::exec();
}
