#include "desktop/DesktopAsker.h"
#include "desktop/HelpViewer.h"
#include "desktop/MarkStyle.h"
#include "platform/CommandLine.h"
#include "platform/Guard.h"
#include "platform/SettingsStore.h"
#include "platform/Termination.h"
#include "shell/MDIFormMain.h"

#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <cstdio>

namespace
{

/** @return the exit code of a run that only prints. */
int Print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    return stream == stdout ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    using namespace quorvik;

    QCoreApplication::setApplicationName(AppTitle());
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    {
        // Answers need no display, and QApplication one to exist.
        const QCoreApplication bare(argc, argv);
        const QString answer = ReadCommandLine(QCoreApplication::arguments()).answer;
        if (!answer.isEmpty())
            return Print(stdout, answer);
    }
    QApplication application(argc, argv);
    QApplication::setStyle(new MarkStyle);
    const CommandLine commandLine = ReadCommandLine(QApplication::arguments());
    if (!commandLine.failure.isEmpty())
        return Print(stderr, commandLine.failure + u'\n');
    QGuiApplication::setDesktopFileName(QStringLiteral("quorvik"));
    // The run ends when the main window is unloaded, whatever other windows stand.
    QApplication::setQuitOnLastWindowClosed(false);

    SettingsStore settings;
    const QString programFolder = QApplication::applicationDirPath();
    HelpViewer help(programFolder + QStringLiteral("/quorvik.qch"),
                    QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                        QStringLiteral("/quorvik"),
                    settings);
    DesktopAsker asker(&help);
    SetFailureReporter([&asker](const RuntimeFailure &failure) {
        asker.Tell(failure.Sentence(), MsgIcon::Critical, AppTitle());
    });

    MDIFormMain window({asker, settings, help, programFolder, QApplication::applicationFilePath(),
                        QFileInfo(settings.FileName()).absolutePath() + QStringLiteral("/Quorvik.lock"),
                        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                        LinkTimings{}});
    QObject::connect(&window, &MDIFormMain::Unloaded, &application, [] { QApplication::exit(0); });

    Termination termination;
    On(&termination, &Termination::Requested, &window, [&window] { window.EndUnasked(); });

    QMetaObject::invokeMethod(
        &window,
        [&] {
            Guarded([&] { window.Load(commandLine.file); });
            if (!window.isVisible())
                QApplication::exit(1);
        },
        Qt::QueuedConnection);
    return QApplication::exec();
}
