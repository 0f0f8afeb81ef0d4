#include "link/DriveLink.h"
#include "platform/Asker.h"

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
    if (++count < FailuresInARow)
        return;
    count = 0;
    asker_.MsgBox(sentence, MsgButtons::Ok, MsgIcon::Exclamation, title);
    OffLineRequested = true;
}

} // namespace quorvik
