#include "link/PacketLog.h"

#include "link/DriveLink.h"
#include "link/LinkStatistics.h"

#include <utility>

namespace quorvik
{

PacketLog::PacketLog(DriveLink &link, const LinkStatistics &statistics)
    : link_(link)
    , statistics_(statistics)
{
}

void PacketLog::SetRecording(bool isOn)
{
    if (std::exchange(isRecording_, isOn) == isOn)
        return;
    disconnect(&link_, nullptr, this, nullptr);
    if (!isOn)
        return;
    using enum Packet::Source;
    connect(&link_, &DriveLink::Sent, this, [this](const QByteArray &bytes) { Add(Program, bytes); });
    connect(&link_, &DriveLink::Received, this,
            [this](const QByteArray &bytes, bool isAwaited) { Add(isAwaited ? Drive : Unawaited, bytes); });
    connect(&link_, &DriveLink::Failed, this, [this](LinkFault fault) {
        if (fault == LinkFault::NoReply)
            Add(Silence, {});
    });
}

void PacketLog::Add(Packet::Source source, const QByteArray &bytes)
{
    const bool isAnswer = source == Packet::Source::Drive;
    if (packets_.size() == Capacity)
        packets_.pop_front();
    packets_.push_back({source, statistics_.WallMs(), isAnswer ? statistics_.MicrosecondsSinceRequest() : -1,
                        bytes, statistics_.Request()});
    ++end_;
}

} // namespace quorvik
