#include "operations/Reconnection.h"

#include "link/DriveLink.h"
#include "link/ValueStates.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "operations/DriveOperations.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <set>
#include <utility>

namespace quorvik
{

namespace
{

const std::set<int> &IdentityRows()
{
    static const std::set<int> rows{Param::DriveModel, Param::DriveCurrent, Param::ControlFirmwareVersion,
                                    Param::TriggerFirmwareVersion, Param::OperatingHours};
    return rows;
}

} // namespace

Reconnection::Reconnection(ParameterTable &table, Document &document, DriveLink &link, ValueStates &states,
                           DriveOperations &drive)
    : table_(table)
    , document_(document)
    , link_(link)
    , states_(states)
    , drive_(drive)
    , probe_(table, link.Timings())
{
    look_.setInterval(LookMs);
    On(&look_, &QTimer::timeout, this, [this] { Look(); });
    On(&probe_, &DriveProbe::Finished, this, [this](const DriveProbe::Answer &answer) { Take(answer); });
    On(&states, &ValueStates::LossChanged, this, [this] { FollowLoss(); });
    // While the size that the drive told still stands.
    On(&link, &DriveLink::BreakingOff, this, [this] { lastParam_ = table_.LastParam; });
}

void Reconnection::FollowLoss()
{
    if (!states_.IsLost()) {
        look_.stop();
        probe_.Cancel();
        Tell(Finding::Nothing);
        return;
    }
    lost_.reset();
    const auto isKnown = [this](int p) { return states_.DriveValue(p).has_value(); };
    if (std::ranges::all_of(IdentityRows(), isKnown))
        lost_ = DriveIdentity::Of([this](int p) { return *states_.DriveValue(p); }, lastParam_);
    sinceLoss_.start();
    look_.start();
}

void Reconnection::Look()
{
    if (link_.PortOpen() || probe_.IsRunning() || isReading_)
        return;
    probe_.Start(link_.MSComm1.DeviceOf(link_.MSComm1.CommPort()), IdentityRows());
}

void Reconnection::Take(const DriveProbe::Answer &answer)
{
    if (!states_.IsLost() || link_.PortOpen())
        return;
    using Kind = DriveProbe::Answer::Kind;
    switch (answer.kind) {
    case Kind::Drive:
        break;
    case Kind::NotPresent:
    case Kind::NotReached:
        Tell(Finding::NoAdapter);
        return;
    case Kind::Busy:
    case Kind::NoPermission:
        Tell(Finding::InUse);
        return;
    case Kind::Silent:
    case Kind::Failed:
        Tell(Finding::Silent);
        return;
    }
    const bool isAnother = IsAnother(answer);
    // An attempt that failed is not repeated each second.
    const bool isNew = found_ != Finding::Drive;
    Tell(isAnother ? Finding::AnotherDrive : Finding::Drive);
    const bool isUsersToDecide =
        isAnother || document_.HasUnsavedEdits || !states_.UnwrittenEntries().empty();
    if (BySelf && isNew && !isUsersToDecide)
        Read();
}

bool Reconnection::IsAnother(const DriveProbe::Answer &answer)
{
    const auto isRead = [&answer](int p) { return answer.rawValues.contains(p); };
    if (!lost_ || !std::ranges::all_of(IdentityRows(), isRead))
        return false;
    const int lastParam = std::min<int>(answer.lastParam, table_.FileLastParam);
    const DriveIdentity found = DriveIdentity::Of([&](int p) { return answer.rawValues.at(p); }, lastParam);
    const bool isAnother = !found.IsSameAs(*lost_, double(sinceLoss_.elapsed()) / MsPerHour);
    otherDrive_ = isAnother ? found.Text() : QString();
    return isAnother;
}

OperationResult Reconnection::Read()
{
    if (isReading_)
        return {Outcome::Refused};
    const QScopedValueRollback reading(isReading_, true);
    probe_.Cancel();
    return drive_.ReadOverOpenSet();
}

OperationResult Reconnection::Compare()
{
    if (isReading_)
        return {Outcome::Refused};
    const QScopedValueRollback reading(isReading_, true);
    probe_.Cancel();
    return drive_.GoOnLineToCompare();
}

void Reconnection::Tell(Finding found)
{
    if (std::exchange(found_, found) != found)
        Q_EMIT Changed();
}

} // namespace quorvik
