#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/Verbs.h"

namespace quorvik
{

ExitCode RunInfo(BatchRun &run)
{
    if (!run.Arguments().isEmpty())
        return run.UsageFailure(QStringLiteral("info takes no argument."));
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    const std::span<const int> params = DriveIdentity::Params();
    std::set<int> wanted{params.begin(), params.end()};
    wanted.insert(Param::DriveState);
    ParameterSet set;
    const ExitCode code = ReadParams(run, wanted, set);
    if (code == ExitCode::NoLink || code == ExitCode::Interrupted)
        return code;
    run.Output().Begin(QStringLiteral("drive"),
                       {{QStringLiteral("model"), QStringLiteral("Model"), 12},
                        {QStringLiteral("rated_amps"), QStringLiteral("Rated Amps"), 10, true},
                        {QStringLiteral("firmware"), QStringLiteral("Firmware"), 9},
                        {QStringLiteral("trigger_firmware"), QStringLiteral("Trigger"), 9},
                        {QStringLiteral("operating_hours"), QStringLiteral("Hours"), 10, true},
                        {QStringLiteral("last_parameter"), QStringLiteral("Last parameter"), 14, true},
                        {QStringLiteral("state"), QStringLiteral("State")}});
    run.Output().Row({ShownValue(set, Param::DriveModel), PlainValue(set, Param::DriveCurrent),
                      ShownValue(set, Param::ControlFirmwareVersion),
                      ShownValue(set, Param::TriggerFirmwareVersion), PlainValue(set, Param::OperatingHours),
                      int(run.Eng().table.LastParam), ShownValue(set, Param::DriveState)});
    return code;
}

} // namespace quorvik
