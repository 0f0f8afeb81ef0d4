#include "batch/BatchRun.h"
#include "batch/Verbs.h"
#include "model/ShownText.h"

namespace quorvik
{

ExitCode RunInfo(BatchRun &run)
{
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    Engines &engines = run.Eng();
    const std::span<const int> params = DriveIdentity::Params();
    std::set<int> wanted{params.begin(), params.end()};
    wanted.insert(Param::DriveState);
    const std::map<int, std::int32_t> values = engines.snapshots.ReadFresh(wanted);
    if (values.empty())
        return ExitCode::NoLink;
    const auto value = [&values](int p) {
        const auto found = values.find(p);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    };
    const auto shown = [&](int p) {
        const std::optional<std::int32_t> raw = value(p);
        return raw ? QVariant(ShownText(*raw, engines.table[p].Attributes)) : QVariant();
    };
    run.Output().Begin(QStringLiteral("drive"),
                       {{QStringLiteral("model"), QStringLiteral("Model"), 12},
                        {QStringLiteral("rated_current"), QStringLiteral("Rated current"), 14},
                        {QStringLiteral("firmware"), QStringLiteral("Firmware"), 9},
                        {QStringLiteral("trigger_firmware"), QStringLiteral("Trigger"), 9},
                        {QStringLiteral("operating_hours"), QStringLiteral("Hours"), 10},
                        {QStringLiteral("last_parameter"), QStringLiteral("Last parameter"), 15, true},
                        {QStringLiteral("state"), QStringLiteral("State")}});
    run.Output().Row({shown(Param::DriveModel), shown(Param::DriveCurrent),
                      shown(Param::ControlFirmwareVersion), shown(Param::TriggerFirmwareVersion),
                      shown(Param::OperatingHours), engines.table.LastParam, shown(Param::DriveState)});
    return values.size() == wanted.size() ? ExitCode::Done : ExitCode::Differs;
}

} // namespace quorvik
