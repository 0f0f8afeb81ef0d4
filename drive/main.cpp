// The simulated drive: builds its parts from the command line and runs the loop.

#include "drive/Console.h"
#include "drive/DemoScript.h"
#include "drive/DriveCommands.h"
#include "drive/DriveServer.h"
#include "drive/MotorModel.h"
#include "model/TextTables.h"
#include "platform/Guard.h"
#include "platform/Ports.h"
#include "settings/SettingsFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace quorvik;
using namespace quorvik::drive;

namespace
{

struct Options {
    QString link;
    QString presets;
    int baud = 38400;
    std::optional<int> lastParam;
    std::optional<int> model;
    QStringList faults;
    int seed = 1;
    CommandTimings timings;
    bool demo = false;
    bool frozen = false;
    bool endsWithInput = false;
};

int Complain(const QString &sentence)
{
    std::fprintf(stderr, "sarvex-drive: %s\n", qPrintable(sentence));
    return 1;
}

/** @return the number of an option, nothing where it is not given. A wrong one is told in problem. */
std::optional<int> NumberOf(const QCommandLineParser &parser, const QString &name, int low, int high,
                            QString &problem)
{
    if (!parser.isSet(name))
        return std::nullopt;
    bool isNumber = false;
    const int number = parser.value(name).toInt(&isNumber);
    if (!isNumber || number < low || number > high)
        problem = QStringLiteral("--%1 takes a number from %2 to %3.").arg(name).arg(low).arg(high);
    return number;
}

QString ReadOptions(const QCoreApplication &application, Options &options)
{
    const auto name = [](const char *text) { return QString::fromLatin1(text); };
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A simulated Sarvex drive on a pseudo-terminal."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {name("link"), name("Puts a link to the serial device at <path>."), name("path"),
         Ports::SimulatedDriveLink()},
        {name("presets"), name("The factory table; beside the program by default."), name("file"),
         QDir(QCoreApplication::applicationDirPath()).filePath(name("Presets.fil"))},
        {name("baud"), name("Paces both directions; 0 does not (default 38400)."), name("rate")},
        {name("last-param"), name("The highest parameter that the drive claims."), name("number")},
        {name("model"), name("The drive model code, 0 to 26."), name("code")},
        {name("fault"), name("KIND[:PARAM][,count=N][,rate=R][,seed=S][,ms=T]; repeatable."), name("fault")},
        {name("seed"), name("The seed of the measured values' noise."), name("number")},
        {name("memory-ms"), name("How long saving and loading parameters take."), name("ms")},
        {name("restart-ms"), name("How long a restart is silent."), name("ms")},
        {name("demo"), name("The machine runs by itself.")},
        {name("frozen"), name("The machine stands still until \"thaw\".")},
        {name("end-with-input"), name("Ends when the standard input is closed.")},
    });
    parser.process(application);
    QString problem;
    constexpr int longestMs = 600'000;
    options.link = parser.value(name("link"));
    options.presets = parser.value(name("presets"));
    options.baud = NumberOf(parser, name("baud"), 0, 4'000'000, problem).value_or(options.baud);
    options.lastParam = NumberOf(parser, name("last-param"), 0, 32767, problem);
    options.model = NumberOf(parser, name("model"), 0, 26, problem);
    options.faults = parser.values(name("fault"));
    options.seed = NumberOf(parser, name("seed"), 0, 1'000'000'000, problem).value_or(options.seed);
    options.timings.memory =
        NumberOf(parser, name("memory-ms"), 0, longestMs, problem).value_or(options.timings.memory);
    options.timings.restart =
        NumberOf(parser, name("restart-ms"), 0, longestMs, problem).value_or(options.timings.restart);
    options.demo = parser.isSet(name("demo"));
    options.frozen = parser.isSet(name("frozen"));
    options.endsWithInput = parser.isSet(name("end-with-input"));
    if (problem.isEmpty() && options.model && (*options.model & 15) > 10)
        problem = QStringLiteral("There is no drive model %1.").arg(*options.model);
    return problem;
}

/** Ends the loop on an interrupt or a termination, so that the link path goes with the program. */
void QuitOnSignals(QCoreApplication &application)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    const int descriptor = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    auto *notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
}

} // namespace

int main(int argc, char **argv)
{
    // The plain poll loop wakes faster than the one that serves a desktop.
    qputenv("QT_NO_GLIB", "1");
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("sarvex-drive"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    SetFailureReporter([](const RuntimeFailure &failure) { Complain(QString::fromUtf8(failure.what())); });

    Options options;
    if (const QString problem = ReadOptions(application, options); !problem.isEmpty())
        return Complain(problem);
    ParameterTable parameters;
    if (const QString problem = LoadFactoryTable(options.presets, parameters); !problem.isEmpty())
        return Complain(options.presets + QStringLiteral(": ") + problem);
    DriveTable table(parameters);
    if (options.model)
        table.SetDriveModel(*options.model);

    MotorModel machine(table, std::uint64_t(options.seed));
    DriveCommands commands(table, options.timings);
    FaultInjector faults;
    for (const QString &fault : options.faults)
        if (const QString problem = faults.Add(fault, SteadyNow()); !problem.isEmpty())
            return Complain(problem);
    PseudoTerminal terminal;
    if (const QString problem = terminal.Open(); !problem.isEmpty())
        return Complain(problem);
    QDir().mkpath(QFileInfo(options.link).path());
    if (const QString problem = terminal.PublishAt(options.link); !problem.isEmpty())
        return Complain(problem);
    DriveServer server(table, commands, faults, terminal, options.baud);
    if (options.lastParam)
        server.SetClaimedLastParam(*options.lastParam);
    On(&commands, &DriveCommands::FaultCleared, &commands, [&] { machine.ClearFault(); });
    On(&commands, &DriveCommands::Restarted, &commands, [&] { machine.PowerOn(); });

    Console console({table, commands, faults, server, machine});
    console.SetFrozen(options.frozen);
    console.SetDemo(options.demo);
    On(&console, &Console::QuitAsked, &application, &QCoreApplication::quit);
    if (options.endsWithInput)
        On(&console, &Console::InputEnded, &application, &QCoreApplication::quit);
    console.Follow(STDIN_FILENO);

    DemoScript demo(table, machine.Inputs());
    TickGuard tickGuard;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    On(&ticker, &QTimer::timeout, &ticker, [&] {
        tickGuard.Run([&] {
            if (console.IsFrozen() || commands.IsSilent())
                return;
            if (console.IsDemo())
                demo.Tick(MotorModel::TickSeconds);
            machine.Tick(MotorModel::TickSeconds);
        });
    });
    ticker.start(int(MotorModel::TickSeconds * 1000));

    QuitOnSignals(application);
    std::printf("ready %s\n", qPrintable(options.link));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
