#include "drive/DriveServer.h"

#include "drive/DriveCommands.h"
#include "platform/Guard.h"

#include <algorithm>
#include <sys/timerfd.h>
#include <unistd.h>

namespace quorvik::drive
{

namespace
{

constexpr char Stx = 2;
constexpr char Ack = 6;
constexpr char Nak = 0x15;
constexpr char PropertiesCommand = 4;

void AppendWord(QByteArray &bytes, std::int32_t value)
{
    bytes.append(char((value >> 8) & 0xff));
    bytes.append(char(value & 0xff));
}

void AppendCheck(QByteArray &bytes)
{
    char check = 0;
    for (qsizetype i = 1; i < bytes.size(); ++i)
        check = char(check ^ bytes[i]);
    bytes.append(check);
}

} // namespace

DriveServer::DriveServer(DriveTable &table, DriveCommands &commands, FaultInjector &faults,
                         PseudoTerminal &terminal, int baud, QObject *parent)
    : QObject(parent)
    , table_(table)
    , commands_(commands)
    , faults_(faults)
    , terminal_(terminal)
    , pacer_(baud)
    , claimedLast_(table.LastParam())
    ,
    // A millisecond timer would be as coarse as a whole reply is long.
    timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))
    , received_(std::make_unique<QSocketNotifier>(terminal.Descriptor(), QSocketNotifier::Read))
    , due_(std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read))
{
    connect(received_.get(), &QSocketNotifier::activated, this, [this] { Guarded([this] { Receive(); }); });
    connect(due_.get(), &QSocketNotifier::activated, this, [this] { Guarded([this] { TimerDue(); }); });
}

DriveServer::~DriveServer()
{
    due_.reset();
    ::close(timer_);
}

void DriveServer::Receive()
{
    const QByteArray bytes = terminal_.Read();
    if (bytes.isEmpty())
        return;
    const std::int64_t now = SteadyNow();
    counts_.bytesIn += bytes.size();
    parser_.Add(bytes, now);
    while (const std::optional<Request> request = parser_.Take())
        Serve(*request, pacer_.Arrived(now, request->size));
}

void DriveServer::Serve(const Request &request, std::int64_t arrived)
{
    int p = request.param;
    if (request.kind == RequestKind::Next)
        p = runNext_;
    else
        runNext_ = -1;
    if (request.kind == RequestKind::Bad) {
        ++counts_.badRequests;
        return;
    }
    if (request.kind == RequestKind::End) {
        ++counts_.runEnds;
        return;
    }
    if (commands_.IsSilent() || faults_.DropsRequest(p, SteadyNow())) {
        ++counts_.unanswered;
        runNext_ = -1;
        return;
    }
    // Its properties tell how many parameters there are, also where hardly any are claimed.
    const bool isSizeQuestion = request.kind == RequestKind::Properties && p == Param::FirstSelector;
    if (p < 0 || (!Knows(p) && !(isSizeQuestion && table_.Has(p)))) {
        ++counts_.unanswered;
        runNext_ = -1;
        return;
    }
    switch (request.kind) {
    case RequestKind::Read:
        ++counts_.reads;
        ServeRead(p, arrived);
        break;
    case RequestKind::Next:
        ++counts_.runReads;
        ServeRead(p, arrived);
        break;
    case RequestKind::Properties:
        ++counts_.properties;
        ServeProperties(p, arrived);
        break;
    case RequestKind::Write:
        ServeWrite(request, arrived);
        break;
    case RequestKind::End:
    case RequestKind::Bad:
        break;
    }
}

void DriveServer::ServeRead(int p, std::int64_t arrived)
{
    QByteArray reply;
    reply.reserve(8);
    reply.append(Stx);
    reply.append('\0');
    AppendWord(reply, table_.Get(p));
    AppendCheck(reply);
    runNext_ = p + 1;
    Reply(std::move(reply), p, arrived, true);
}

void DriveServer::ServeProperties(int p, std::int64_t arrived)
{
    const ParamRecord &record = table_.Record(p);
    QByteArray reply;
    reply.append(Stx);
    reply.append(PropertiesCommand);
    AppendWord(reply, record.Min);
    AppendWord(reply, p == Param::FirstSelector ? claimedLast_ : record.Max);
    AppendWord(reply, record.Attributes);
    AppendWord(reply, record.Preset);
    AppendWord(reply, record.Value);
    AppendCheck(reply);
    Reply(std::move(reply), p, arrived);
}

void DriveServer::ServeWrite(const Request &request, std::int64_t arrived)
{
    const int p = request.param;
    if (faults_.Refuses(p) || !table_.Write(p, request.bits)) {
        ++counts_.refusals;
        Reply(QByteArray(1, Nak), p, arrived);
        return;
    }
    ++counts_.writes;
    if (commands_.Obey(p))
        Reply(QByteArray(1, Ack), p, arrived, true);
}

void DriveServer::Reply(QByteArray bytes, int p, std::int64_t arrived, bool isOfValue)
{
    const QByteArray good = bytes;
    const std::optional<int> delayMs = faults_.Spoil(bytes, p);
    if (!delayMs)
        return;
    const int param = isOfValue && bytes == good ? p : -1;
    const std::int64_t due = pacer_.DueTime(arrived + *delayMs * NsPerMs, int(bytes.size()));
    outgoing_.push_back({due, std::move(bytes), param, param < 0 ? 0 : table_.Get(param)});
    if (outgoing_.size() == 1)
        SendDue();
}

void DriveServer::TimerDue()
{
    std::uint64_t expirations = 0;
    [[maybe_unused]] const ssize_t size = ::read(timer_, &expirations, sizeof expirations);
    SendDue();
}

void DriveServer::SendDue()
{
    const std::int64_t now = SteadyNow();
    while (!outgoing_.empty() && outgoing_.front().due <= now) {
        Send(outgoing_.front(), now);
        outgoing_.pop_front();
    }
    if (!outgoing_.empty())
        ArmTimer();
}

void DriveServer::Send(const Outgoing &outgoing, std::int64_t now)
{
    terminal_.Write(outgoing.bytes);
    counts_.bytesOut += outgoing.bytes.size();
    if (outgoing.param >= 0)
        Q_EMIT Answered(outgoing.param, outgoing.rawValue);
    pacer_.Sent(now, outgoing.due);
}

void DriveServer::ArmTimer()
{
    const std::int64_t due = outgoing_.front().due;
    itimerspec at{};
    at.it_value.tv_sec = due / NsPerSecond;
    at.it_value.tv_nsec = due % NsPerSecond;
    ::timerfd_settime(timer_, TFD_TIMER_ABSTIME, &at, nullptr);
}

QStringList DriveServer::StatLines() const
{
    const std::pair<const char *, std::int64_t> rows[] = {{"reads", counts_.reads},
                                                          {"run-reads", counts_.runReads},
                                                          {"run-ends", counts_.runEnds},
                                                          {"writes", counts_.writes},
                                                          {"refusals", counts_.refusals},
                                                          {"properties", counts_.properties},
                                                          {"bad-requests", counts_.badRequests},
                                                          {"unanswered", counts_.unanswered},
                                                          {"bytes-in", counts_.bytesIn},
                                                          {"bytes-out", counts_.bytesOut}};
    QStringList lines;
    for (const auto &[name, count] : rows)
        lines << QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(count);
    for (int i = 0; i < FaultKindCount; ++i)
        lines << QStringLiteral("fault-%1 %2")
                     .arg(FaultKindName(FaultKind(i)))
                     .arg(faults_.Injected(FaultKind(i)));
    return lines;
}

} // namespace quorvik::drive
