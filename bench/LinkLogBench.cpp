// What it costs to look at the line: the program's share of a core while it polls a drive for ten windows,
// with the window of the link's details open and closed by turns; and with the figures kept twice, once more
// than the program always keeps them.

#include "AttachedProgram.h"
#include "Figures.h"
#include "TenWindows.h"

#include "platform/Waiting.h"
#include "shell/OpenWindows.h"

#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <ctime>
#include <vector>

namespace
{

using namespace quorvik;

constexpr int Rounds = 7;
constexpr int PollingMs = 3000;
constexpr double NsPerSecond = 1e9;

double ProcessNs()
{
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) * NsPerSecond + double(used.tv_nsec);
}

void Poll(int ms)
{
    PumpWhile([] { return true; }, QDeadlineTimer(ms));
}

/** The share of a core, in per cent, that the program takes while it polls. */
double Share()
{
    Poll(500);
    QElapsedTimer clock;
    clock.start();
    const double before = ProcessNs();
    Poll(PollingMs);
    return (ProcessNs() - before) * 100 / double(clock.nsecsElapsed());
}

double Median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    AttachedProgram program;
    if (!program.GoOnLine({}))
        return 1;
    Engines &engines = program.Main().AllEngines();
    OpenTenWindows(program.Main());
    Poll(PollingMs);

    std::vector<double> counting;
    std::vector<double> recording;
    double usual = Share();
    for (int round = 0; round < Rounds; ++round) {
        // Each stands between two of the usual, since the machine is not the same all the time.
        double before = usual;
        {
            const LinkStatistics second(engines.link);
            counting.push_back(Share());
        }
        usual = Share();
        counting.back() -= (before + usual) / 2;
        before = usual;
        ShowLinkDetails(program.Main());
        recording.push_back(Share());
        auto *window = program.Main().findChild<QWidget *>(QStringLiteral("FormLinkDetails"));
        if (!window || engines.packets.End() == 0)
            return 1;
        window->close();
        usual = Share();
        recording.back() -= (before + usual) / 2;
    }
    bool kept = Print("link-figures", Median(counting), "% of a core", 0.5);
    kept &= Print("link-details", Median(recording), "% of a core", 2);
    engines.document.DriveModified = false;
    engines.drive.GoOffLine(OffLineReason::CommandEnded);
    return kept ? 0 : 1;
}
