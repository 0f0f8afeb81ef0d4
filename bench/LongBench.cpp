// Eight hours on line with ten windows open and an edit a minute, at intervals so many times shorter: what
// leaks or drifts shows.

#include "Memory.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "platform/Asker.h"
#include "platform/SettingsStore.h"
#include "platform/Waiting.h"
#include "shell/MDIFormMain.h"
#include "tour/DriveProcess.h"
#include "tour/NoHelp.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
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
constexpr int OpenWindows = 10;
constexpr int Edited = 226;

class FailingAsker : public Asker
{
public:
    MsgAnswer MsgBox(const QString &text, MsgButtons, MsgIcon, const QString &) override
    {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::exit(1);
    }
    std::optional<QString> ShowOpen(const FileDialogRequest &) override { return {}; }
    std::optional<QString> ShowSave(const FileDialogRequest &) override { return {}; }
};

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

bool Print(const char *name, double value, const char *unit, double limit)
{
    std::printf("%s: %.3g %s (limit %g)\n", name, value, unit, limit);
    return value <= limit;
}

void OpenTenWindows(MDIFormMain &main)
{
    int open = 0;
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.make || open == OpenWindows)
            continue;
        const QString control = QString::fromLatin1(entry.control);
        main.Menus()
            .Entry(entry.IsFamily() ? QStringLiteral("%1(%2)").arg(control).arg(entry.firstMember) : control)
            ->trigger();
        ++open;
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int minutes = argc > 1 ? std::atoi(argv[1]) : Hours * 60;

    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("drive"));
    QFile::copy(QStringLiteral(QUORVIK_PRESETS_FILE), folder.filePath(QStringLiteral("Presets.fil")));
    DriveProcess drive;
    if (!drive.Start(QStringLiteral(QUORVIK_DRIVE_PROGRAM), link, QStringLiteral(QUORVIK_PRESETS_FILE)))
        return 1;
    SettingsStore settings(folder.filePath(QStringLiteral("Quorvik.ini")));
    settings.SaveSetting(QStringLiteral("Options"), QStringLiteral("CommPort"), QStringLiteral("16"));
    settings.SaveSetting(QStringLiteral("Ports"), QStringLiteral("Com16"), link);
    settings.SaveSetting(QStringLiteral("Options"), QStringLiteral("Show Tips at Startup"),
                         QStringLiteral("False"));
    FailingAsker asker;
    NoHelp help;
    constexpr LinkTimings real;
    // The wait for a reply is not shortened: the line is paced as in the field.
    MDIFormMain main({asker, settings, help, folder.path(), folder.filePath(QStringLiteral("quorvik")),
                      folder.filePath(QStringLiteral("Quorvik.lock")),
                      folder.filePath(QStringLiteral("data")),
                      LinkTimings{real.scanPause / Haste, real.replyTimeout, real.sizeErrorPause / Haste,
                                  real.progressUpdate / Haste}});
    if (!main.Load(folder.filePath(QStringLiteral("Presets.fil"))))
        return 1;
    Engines &engines = main.AllEngines();
    engines.link.GoOnLine();
    if (!engines.link.PortOpen())
        return 1;
    OpenTenWindows(main);

    int scans = 0;
    QObject::connect(&engines.link.SerialCommTimer, &QTimer::timeout, &main, [&scans] { ++scans; });
    std::vector<int> scansByMinute;
    Gauge begin;
    const int warmUp = minutes / 8;
    for (int minute = 0; minute < minutes; ++minute) {
        if (minute == warmUp)
            begin = ReadGauge();
        engines.model.SetParamValue(Edited, 100 + minute % 50, true, false);
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
    engines.model.DriveModified = false;
    engines.link.GoOffLine(1);
    return kept ? 0 : 1;
}
