#pragma once

#include "link/PacketMeaning.h"

#include <QObject>
#include <deque>

namespace quorvik
{

class DriveLink;
class LinkStatistics;

/** The last packets on the line, while it is switched on; it listens to nothing while it is off. */
class PacketLog : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t Capacity = 2000;

    /** @param statistics of the same link, made before it; they know what is being answered. */
    PacketLog(DriveLink &link, const LinkStatistics &statistics);

    void SetRecording(bool isOn);
    bool IsRecording() const { return isRecording_; }
    void Clear() { packets_.clear(); }

    /** Packets are counted through; there are those from First() to before End(). */
    qint64 First() const { return end_ - qint64(packets_.size()); }
    qint64 End() const { return end_; }
    /** @param number from First() to before End(). */
    const Packet &At(qint64 number) const { return packets_[std::size_t(number - First())]; }

private:
    void Add(Packet::Source source, const QByteArray &bytes);

    DriveLink &link_;
    const LinkStatistics &statistics_;
    std::deque<Packet> packets_;
    qint64 end_ = 0;
    bool isRecording_ = false;
};

} // namespace quorvik
