#include "link/DriveLink.h"
#include "model/Model.h"

namespace quorvik
{

namespace
{

constexpr int FailuresInARow = 3;

} // namespace

// The titles differ in one letter between the first handler and the other two.

void DriveLink::HandleBCCErrors()
{
    CountFailure(BCCErrorCount, QStringLiteral("Communication Error"),
                 QStringLiteral("Invalid BCC. Check connections and power. Switching OffLine."));
}

void DriveLink::HandlePacketSizeErrors()
{
    CountFailure(PacketSizeErrorCount, QStringLiteral("Communications Error"),
                 QStringLiteral("Incorrect Packet Size! Check connections and power. Switching OffLine."));
}

void DriveLink::HandleNoResponses()
{
    CountFailure(NoResponseCount, QStringLiteral("Communications Error"),
                 QStringLiteral("Drive not Responding! Check connections and power. Switching OffLine."));
}

void DriveLink::CountFailure(std::uint8_t &count, const QString &title, const QString &sentence)
{
    // What is still to come of the scan adds nothing to what has been said.
    if (OffLineRequested || ++count < FailuresInARow)
        return;
    count = 0;
    OffLineRequested = true;
    QString text = sentence;
    if (MayBeMoving())
        text +=
            QStringLiteral("\r\n\r\nThe motor may still be turning: the drive was told to run or to jog, and "
                           "nothing reaches it any more. Stop it at the machine.");
    Announce(text, MsgIcon::Exclamation, title);
}

bool DriveLink::MayBeMoving() const
{
    if (waitingForDrive_)
        return false;
    const auto isInForce = [this](int p) {
        return p <= model_.LastParam && p != Param::Stop && model_.Value(p) != 0;
    };
    const auto isUnsent = [this](int p) {
        return p <= model_.LastParam && model_.ParamTable[p].WriteFlag != WriteState::None;
    };
    for (const int p : {Param::Run, Param::Stop, Param::Jog})
        if (isInForce(p) || isUnsent(p))
            return true;
    return !model_.DriveStateUnread && !model_.DriveIsStopped();
}

} // namespace quorvik
