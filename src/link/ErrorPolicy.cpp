#include "link/DriveLink.h"
#include "model/ParameterTable.h"

namespace quorvik
{

namespace
{

constexpr int FailuresInARow = 3;

} // namespace

void DriveLink::HandleBCCErrors()
{
    CountFailure(BCCErrorCount, LinkFault::DamagedReply);
}

void DriveLink::HandlePacketSizeErrors()
{
    CountFailure(PacketSizeErrorCount, LinkFault::WrongLength);
}

void DriveLink::HandleNoResponses()
{
    CountFailure(NoResponseCount, LinkFault::NoReply);
}

void DriveLink::CountFailure(std::uint8_t &count, LinkFault fault)
{
    Q_EMIT Failed(fault);
    // What is still to come of the scan adds nothing to what has been said.
    if (OffLineRequested || ++count < FailuresInARow)
        return;
    count = 0;
    OffLineRequested = true;
    Q_EMIT Broken(fault, MayBeMoving());
}

bool DriveLink::MayBeMoving() const
{
    if (isSizeUnknown_)
        return false;
    const auto isInForce = [this](int p) {
        return p <= table_.LastParam && p != Param::Stop && table_.Value(p) != 0;
    };
    const auto isUnsent = [this](int p) {
        return p <= table_.LastParam && table_[p].WriteFlag != WriteState::None;
    };
    for (const int p : {Param::Run, Param::Stop, Param::Jog})
        if (isInForce(p) || isUnsent(p))
            return true;
    return !table_.DriveStateUnread && !table_.DriveIsStopped();
}

} // namespace quorvik
