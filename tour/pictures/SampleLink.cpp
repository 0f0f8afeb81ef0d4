#include "SampleLink.h"

#include "link/PacketLayer.h"
#include "model/ParameterTable.h"
#include "platform/Arithmetic.h"

namespace quorvik
{

namespace
{

constexpr qint64 PauseUs = 300'000;
constexpr int Scans = 600;
constexpr int SilentScan = 120;
constexpr int NoisyScan = 598;

/** Has the same form as a request to read. */
QByteArray Reply(std::int32_t rawValue)
{
    return BuildPacket(Wire::Command::Read, ToInt16(rawValue), 0, false);
}

} // namespace

SampleLink::SampleLink(ParameterTable &table)
    : table_(table)
{
    statistics.Begin();
}

qint64 SampleLink::WallMs() const
{
    return QDateTime({2026, 11, 22}, {14, 3, 12}).toMSecsSinceEpoch() + now_ / 1000;
}

void SampleLink::Ask(int p, bool isNext, const QByteArray &reply)
{
    const QByteArray request = BuildPacket(Wire::Command::Read, ToInt16(p), 0, false);
    Q_EMIT link_.Sent(isNext ? QByteArray(1, Wire::Ack) : request);
    Answer(reply);
}

void SampleLink::Answer(const QByteArray &reply)
{
    now_ += 2'900 + now_ % 7 * 100;
    if (!reply.isEmpty())
        Q_EMIT link_.Received(reply, true);
}

void SampleLink::Talk()
{
    for (int scan = 0; scan < Scans; ++scan) {
        if (scan == SilentScan) {
            Ask(Param::FwdAccelA, false, {});
            Q_EMIT link_.Failed(LinkFault::NoReply);
        }
        for (int p = Param::FwdAccelA; p <= Param::RevDecelA; ++p) {
            QByteArray reply = Reply(table_.Value(p));
            const bool isNoisy = scan == NoisyScan && p == Param::RevDecelA;
            if (isNoisy)
                reply[3] = char(reply[3] ^ 16);
            Ask(p, p != Param::FwdAccelA, reply);
            if (isNoisy)
                Q_EMIT link_.Failed(LinkFault::DamagedReply);
        }
        Q_EMIT link_.Sent(QByteArray(1, Wire::Eot));
        now_ += PauseUs;
    }
    Q_EMIT link_.Sent(BuildPacket(Wire::Command::Write, Param::FwdAccelA, 75, false));
    Answer(QByteArray(1, Wire::Ack));
}

} // namespace quorvik
