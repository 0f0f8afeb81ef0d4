#include "compare/DriveIdentity.h"

#include "model/Conversions.h"
#include "model/ParamTable.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

namespace
{

constexpr std::int32_t TwoDecimals = 2;

} // namespace

std::span<const int> DriveIdentity::Params()
{
    static constexpr int params[] = {Param::DriveModel, Param::DriveCurrent, Param::ControlFirmwareVersion,
                                     Param::TriggerFirmwareVersion, Param::OperatingHours};
    return params;
}

DriveIdentity DriveIdentity::Of(const std::function<std::int32_t(int)> &value, int lastParam)
{
    return {.model = value(Param::DriveModel),
            .driveAmps = value(Param::DriveCurrent),
            .firmware = value(Param::ControlFirmwareVersion),
            .triggerFirmware = value(Param::TriggerFirmwareVersion),
            .operatingHours = value(Param::OperatingHours),
            .lastParam = lastParam};
}

bool DriveIdentity::IsSameAs(const DriveIdentity &other, double hoursSince) const
{
    const bool isSameMake = model == other.model && driveAmps == other.driveAmps &&
                            firmware == other.firmware && triggerFirmware == other.triggerFirmware &&
                            lastParam == other.lastParam;
    const std::int32_t hours = operatingHours - other.operatingHours;
    return isSameMake && hours >= 0 && hours <= hoursSince + 1;
}

QString DriveIdentity::ModelName() const
{
    try {
        return ModelText(model);
    } catch (const RuntimeFailure &) {
        return QStringLiteral("model code %1").arg(model);
    }
}

QString DriveIdentity::Text() const
{
    return QStringLiteral("%1 (%2 Amps), firmware %3 and %4, %5 operating hours")
        .arg(ModelName())
        .arg(driveAmps)
        .arg(NumberText(firmware, TwoDecimals), NumberText(triggerFirmware, TwoDecimals))
        .arg(operatingHours);
}

} // namespace quorvik
