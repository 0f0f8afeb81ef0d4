#pragma once

#include "drive/DriveTable.h"
#include "drive/FaultInjector.h"
#include "drive/Pacer.h"
#include "drive/PseudoTerminal.h"
#include "drive/RequestParser.h"
#include "drive/SteadyClock.h"

#include <QObject>
#include <QSocketNotifier>
#include <QStringList>
#include <deque>
#include <memory>

namespace quorvik::drive
{

class DriveCommands;

/** What was served so far. */
struct ServiceCounts {
    std::int64_t reads = 0;
    std::int64_t runReads = 0; ///< values sent on an ACK
    std::int64_t runEnds = 0;
    std::int64_t writes = 0; ///< accepted ones
    std::int64_t refusals = 0;
    std::int64_t properties = 0;
    std::int64_t badRequests = 0;
    std::int64_t unanswered = 0; ///< off the bus, restarting, or no such parameter
    std::int64_t bytesIn = 0;
    std::int64_t bytesOut = 0;
};

/** The drive's side of the serial protocol over a pseudo-terminal. */
class DriveServer : public QObject
{
    Q_OBJECT

public:
    /** @param terminal open. @param baud 0 for a line that takes no time. */
    DriveServer(DriveTable &table, DriveCommands &commands, FaultInjector &faults, PseudoTerminal &terminal,
                int baud, QObject *parent = nullptr);
    ~DriveServer() override;

    /** The highest parameter that the drive claims and serves, 0 to 32767; the table's own by default. */
    void SetClaimedLastParam(int last) { claimedLast_ = last; }

    const ServiceCounts &Counts() const { return counts_; }
    /** The counters, one "name number" each. */
    QStringList StatLines() const;

Q_SIGNALS:
    /** A whole answer that tells or takes the value of a parameter leaves for the tool. */
    void Answered(int p, std::int32_t rawValue);

private:
    struct Outgoing {
        std::int64_t due;
        QByteArray bytes;
        int param; ///< whose value it tells or takes, -1 for none
        std::int32_t rawValue;
    };

    void Receive();
    void Serve(const Request &request, std::int64_t arrived);
    void ServeRead(int p, std::int64_t arrived);
    void ServeProperties(int p, std::int64_t arrived);
    void ServeWrite(const Request &request, std::int64_t arrived);
    bool Knows(int p) const { return p <= claimedLast_ && table_.Has(p); }
    void Reply(QByteArray bytes, int p, std::int64_t arrived, bool isOfValue = false);
    void TimerDue();
    void SendDue();
    void Send(const Outgoing &outgoing, std::int64_t now);
    void ArmTimer();

    DriveTable &table_;
    DriveCommands &commands_;
    FaultInjector &faults_;
    PseudoTerminal &terminal_;
    Pacer pacer_;
    RequestParser parser_;
    ServiceCounts counts_;
    int claimedLast_;
    int runNext_ = -1; ///< the parameter that an ACK asks for, -1 outside a run
    std::deque<Outgoing> outgoing_;
    int timer_ = -1;
    std::unique_ptr<QSocketNotifier> received_;
    std::unique_ptr<QSocketNotifier> due_;
};

} // namespace quorvik::drive
