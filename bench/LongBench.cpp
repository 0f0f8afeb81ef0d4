// Eight hours on line with ten windows open and an edit a minute, at intervals so many times shorter: what
// leaks or drifts shows.

#include "AttachedProgram.h"
#include "Figures.h"
#include "TenWindows.h"

#include "platform/Waiting.h"

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

using namespace quorvik;

constexpr int Haste = 100;
constexpr int Hours = 8;
constexpr int MinuteMs = 60'000 / Haste;
constexpr int Edited = 226;

/** What must stay flat. */
struct Gauge {
    double memoryMiB = 0;
    int handles = 0;
    int timers = 0;
};

Gauge ReadGauge()
{
    Gauge gauge{ResidentMiB(),
                int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size()), 0};
    for (const QWidget *widget : QApplication::topLevelWidgets())
        gauge.timers += int(widget->findChildren<QTimer *>().size());
    return gauge;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int minutes = argc > 1 ? std::atoi(argv[1]) : Hours * 60;

    AttachedProgram program;
    constexpr LinkTimings real;
    // The wait for a reply is not shortened: the line is paced as in the field.
    if (!program.GoOnLine({real.scanPause / Haste, real.replyTimeout, real.sizeErrorPause / Haste}))
        return 1;
    MDIFormMain &main = program.Main();
    Engines &engines = main.AllEngines();
    OpenTenWindows(main);

    int scans = 0;
    QObject::connect(&engines.link.SerialCommTimer, &QTimer::timeout, &main, [&scans] { ++scans; });
    std::vector<int> scansByMinute;
    Gauge begin;
    const int warmUp = minutes / 8;
    for (int minute = 0; minute < minutes; ++minute) {
        if (minute == warmUp)
            begin = ReadGauge();
        engines.table.SetParamValue(Edited, 100 + minute % 50, true, false);
        scans = 0;
        PumpWhile([] { return true; }, QDeadlineTimer(MinuteMs, Qt::PreciseTimer));
        scansByMinute.push_back(scans);
        if (!engines.link.PortOpen())
            return 1;
    }
    const Gauge end = ReadGauge();

    // The first quarter after warming up against the last.
    const int quarter = (minutes - warmUp) / 4;
    double early = 0;
    double late = 0;
    for (int i = 0; i < quarter; ++i) {
        early += scansByMinute[std::size_t(warmUp + i)];
        late += scansByMinute[std::size_t(minutes - 1 - i)];
    }
    std::printf("# %d simulated minutes, %d windows, %.1f scans a minute\n", minutes, OpenWindows,
                late / quarter);
    bool kept = Print("long-memory-growth", end.memoryMiB - begin.memoryMiB, "MiB", 1);
    kept &= Print("long-handles-growth", end.handles - begin.handles, "handles", 0);
    kept &= Print("long-timers-growth", end.timers - begin.timers, "timers", 0);
    kept &= Print("long-scan-rate-drift", std::abs(late - early) / early * 100, "%", 5);
    engines.document.DriveModified = false;
    engines.drive.GoOffLine(OffLineReason::CommandEnded);
    return kept ? 0 : 1;
}
