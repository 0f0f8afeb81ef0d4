#include "platform/Asker.h"
#include "tour/DriveProcess.h"
#include "tour/Journey.h"
#include "tour/Program.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QPalette>
#include <functional>

namespace
{

QPalette DarkPalette()
{
    QPalette dark(QColor(0x35, 0x37, 0x3b), QColor(0x2b, 0x2d, 0x30));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
    dark.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    dark.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(0x7a, 0xa8, 0xff));
    return dark;
}

void AddJourney(quorvik::Tour &tour)
{
    using namespace quorvik;
    QFile::remove(SavedFile(tour));
    AddGoingOnline(tour);
    AddMainJob(tour);
    AddSafeJob(tour);
    AddWhyNotJob(tour);
    AddHistoryJob(tour);
    AddLostLinkJob(tour);
    AddFollowJob(tour);
    AddMapJob(tour);
    AddLiveShapesJob(tour);
    AddBlockRound(tour);
    AddFindJob(tour);
    AddUndoJob(tour);
    AddTrendJob(tour);
    AddReportJob(tour);
    AddOnlineRound(tour);
    AddProceduresOne(tour);
    AddProceduresTwo(tour);
    AddProceduresThree(tour);
    AddWindowsJob(tour);
    AddRestart(tour);
    AddKeptWindows(tour);
    AddRecentFilesJob(tour);
    AddOfflineRound(tour);
    AddLeaving(tour);
}

/** The procedures of the help alone. */
void AddProcedures(quorvik::Tour &tour)
{
    using namespace quorvik;
    AddGoingOnline(tour);
    AddProceduresOne(tour);
    AddProceduresTwo(tour);
    AddProceduresThree(tour);
}

/** Runs a program with a profile of its own beside a new drive. @return whether all went well. */
bool Take(const QCommandLineParser &parser, const std::function<void(quorvik::Tour &)> &addJobs)
{
    using namespace quorvik;
    Program program;
    DriveProcess drive;
    if (!drive.Start(parser.value(QStringLiteral("drive")), program.DriveLinkPath(),
                     program.ProgramFolder() + QStringLiteral("/Presets.fil")))
        return qCritical("The simulated drive did not start."), false;

    Tour tour(program, drive, parser.value(QStringLiteral("pictures")));
    addJobs(tour);
    QObject::connect(&tour, &Tour::Finished, &tour, [] { QApplication::exit(); });
    tour.Start();
    QApplication::exec();
    return !tour.HasFailed();
}

} // namespace

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
    parser.addOption({QStringLiteral("dark"), QStringLiteral("Shows everything in dark colours.")});
    parser.addOption({QStringLiteral("procedures"),
                      QStringLiteral("Tries the procedures of the help alone, and ends on line.")});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);
    if (parser.isSet(QStringLiteral("dark")))
        QApplication::setPalette(DarkPalette());

    QDir().mkpath(parser.value(QStringLiteral("pictures")));
    if (parser.isSet(QStringLiteral("procedures")))
        return Take(parser, AddProcedures) ? 0 : 1;
    // The first minute has a program and a drive of its own: what it keeps is not in the way of the others.
    return Take(parser, AddFirstMinute) && Take(parser, AddJourney) ? 0 : 1;
}
