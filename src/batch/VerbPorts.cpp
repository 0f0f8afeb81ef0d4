#include "batch/BatchRun.h"
#include "batch/Verbs.h"
#include "link/DriveFinder.h"
#include "platform/Guard.h"
#include "platform/Waiting.h"

#include <map>

namespace quorvik
{

namespace
{

QString UseWord(const PortStatus &port)
{
    using Use = PortStatus::Use;
    switch (port.use) {
    case Use::Free:
        return QStringLiteral("free");
    case Use::Network:
        return QStringLiteral("network");
    case Use::InUse:
        return QStringLiteral("in_use");
    case Use::NoPermission:
        return QStringLiteral("no_permission");
    case Use::NotPresent:
        break;
    }
    return QStringLiteral("not_present");
}

/** Asks the free ports; what they said by device. */
std::map<QString, DriveProbe::Answer> Asked(BatchRun &run, const QList<PortStatus> &ports)
{
    std::map<QString, DriveProbe::Answer> answers;
    DriveFinder finder(run.Eng().table, run.Places().timings);
    QObject follower;
    On(&finder, &DriveFinder::Asking, &follower, [&run](const PortStatus &port) {
        run.Output().ShowProgress(QStringLiteral("Asking at %1").arg(port.Name()));
    });
    On(&finder, &DriveFinder::Answered, &follower,
       [&answers](const PortStatus &port, const DriveProbe::Answer &answer) {
           answers[port.device] = answer;
       });
    finder.Start(ports);
    PumpWhile([&] { return finder.IsRunning() && !run.IsInterrupted(); });
    finder.Cancel();
    run.Output().EndProgress();
    return answers;
}

} // namespace

void AddPortsOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("no-ask"),
                      QStringLiteral("Opens no port: tells what is there, and not who answers.")});
}

ExitCode RunPorts(BatchRun &run)
{
    if (!run.Arguments().isEmpty())
        return run.UsageFailure(QStringLiteral("ports takes no argument."));
    const Ports ports(run.Places().settings, run.Places().devices);
    QList<PortStatus> all = ports.Survey();
    const bool isAsking = !run.Options().isSet(QStringLiteral("no-ask"));
    std::map<QString, DriveProbe::Answer> answers;
    if (isAsking)
        answers = Asked(run, all);
    if (run.IsInterrupted())
        return ExitCode::Interrupted;
    const bool isText = run.Output().CurrentFormat() == BatchOutput::Format::Text;
    QList<OutputColumn> columns{{QStringLiteral("port"), QStringLiteral("Port"), 8},
                                {QStringLiteral("device"), QStringLiteral("Device"), 24}};
    if (!isText)
        columns << OutputColumn{QStringLiteral("number"), QStringLiteral("Number")}
                << OutputColumn{QStringLiteral("serial_number"), QStringLiteral("Serial number")};
    columns << OutputColumn{QStringLiteral("adapter"), QStringLiteral("Adapter"), 32}
            << OutputColumn{QStringLiteral("use"), QStringLiteral("Use"), 14}
            << OutputColumn{QStringLiteral("drive"), QStringLiteral("Drive"), 5}
            << OutputColumn{QStringLiteral("answer"), QStringLiteral("Answer")};
    run.Output().Begin(QStringLiteral("port"), columns);
    for (const PortStatus &port : all) {
        // A number that nobody gave a device, and whose usual one is missing, is no port.
        if (port.use == PortStatus::Use::NotPresent && isText)
            continue;
        const auto found = answers.find(port.device);
        const bool isAsked = found != answers.end();
        QVariantList fields{port.Name(), port.device};
        if (!isText)
            fields << (port.number == 0 ? QVariant() : QVariant(port.number))
                   << (port.serialNumber.isEmpty() ? QVariant() : QVariant(port.serialNumber));
        fields << port.adapter << (isText ? port.Text() : UseWord(port))
               << (isAsked ? QVariant(found->second.kind == DriveProbe::Answer::Kind::Drive) : QVariant())
               << (isAsked ? QVariant(DriveFinder::TextOf(found->second)) : QVariant());
        run.Output().Row(fields);
    }
    return ExitCode::Done;
}

} // namespace quorvik
