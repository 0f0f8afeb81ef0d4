#pragma once

#include "link/DriveLink.h"
#include "link/LinkStatistics.h"
#include "link/PacketLog.h"

namespace quorvik
{

/** A line that works but for a few faults, for the picture of the link's details. */
class SampleLink
{
public:
    explicit SampleLink(ParameterTable &table);

    /** Some scans pass. */
    void Talk();

private:
    void Ask(int p, bool isNext, const QByteArray &reply);
    qint64 WallMs() const;
    void Answer(const QByteArray &reply);

    ParameterTable &table_;
    DriveLink link_{table_};
    qint64 now_ = 0;

public:
    LinkStatistics statistics{link_, [this] { return now_; }, [this] { return WallMs(); }};
    PacketLog packets{link_, statistics};
};

} // namespace quorvik
