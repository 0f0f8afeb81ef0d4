#include "drive/FaultInjector.h"

#include "drive/SteadyClock.h"
#include "drive/WholeNumber.h"
#include "platform/Numbers.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvik::drive
{

namespace
{

constexpr const char *KindNames[FaultKindCount] = {"bad-bcc", "short",  "long", "late",
                                                   "silent",  "refuse", "drop"};
constexpr int DefaultLateMs = 300; // past the tool's 220 ms
constexpr int DefaultSeed = 1;
constexpr int HighestNumber = 32767;
constexpr int LongestMs = 600'000;
constexpr std::int64_t Forever = std::numeric_limits<std::int64_t>::max();
constexpr char ExtraByte = 0x55;

QString NoFault(const QString &word)
{
    return QStringLiteral("A fault cannot be \"%1\".").arg(word);
}

} // namespace

QString FaultKindName(FaultKind kind)
{
    return QString::fromLatin1(KindNames[std::size_t(kind)]);
}

QString FaultInjector::Add(const QString &words, std::int64_t now)
{
    const QStringList parts = words.split(u',');
    const QString name = parts[0].section(u':', 0, 0).trimmed();
    const auto found = std::find_if(std::begin(KindNames), std::end(KindNames),
                                    [&](const char *known) { return name == QLatin1String(known); });
    if (found == std::end(KindNames))
        return NoFault(words);
    Order order;
    order.kind = FaultKind(found - std::begin(KindNames));
    if (parts[0].contains(u':')) {
        const auto param = WholeNumber(parts[0].section(u':', 1), 0, HighestNumber);
        if (!param)
            return NoFault(parts[0]);
        order.param = *param;
    }
    std::uint64_t seed = DefaultSeed;
    bool waitsForRequest = order.param >= 0;
    for (const QString &part : parts.mid(1)) {
        const QString key = part.section(u'=', 0, 0).trimmed();
        const QString text = part.section(u'=', 1).trimmed();
        const auto number = WholeNumber(text, std::int64_t(1), std::numeric_limits<std::int64_t>::max());
        const auto rate = ParseNumber(text);
        if (key == QStringLiteral("count") && number) {
            order.left = *number;
            waitsForRequest = true;
        } else if (key == QStringLiteral("rate") && rate && *rate >= 0 && *rate <= 1) {
            order.rate = *rate;
            waitsForRequest = true;
        } else if (key == QStringLiteral("seed") && number) {
            seed = std::uint64_t(*number);
        } else if (key == QStringLiteral("ms") && number && *number <= LongestMs) {
            order.ms = int(*number);
        } else {
            return NoFault(part);
        }
    }
    if (order.kind == FaultKind::Late && order.ms == 0)
        order.ms = DefaultLateMs;
    order.dice.seed(seed);
    if (order.kind == FaultKind::Drop && !waitsForRequest) {
        offBusUntil_ = order.ms > 0 ? now + order.ms * NsPerMs : Forever;
        ++injected_[std::size_t(FaultKind::Drop)];
        return {};
    }
    orders_.push_back(order);
    return {};
}

void FaultInjector::Clear()
{
    orders_.clear();
    offBusUntil_.reset();
}

bool FaultInjector::Roll(Order &order)
{
    // The dice are thrown by hand, so that a seed gives the same faults with every standard library.
    if (order.rate < 1 && double(order.dice() >> 11) * 0x1p-53 >= order.rate)
        return false;
    if (order.left)
        --*order.left;
    return true;
}

bool FaultInjector::Fires(FaultKind kind, int p, int *ms)
{
    bool fired = false;
    for (Order &order : orders_) {
        if (order.kind != kind || (order.param >= 0 && order.param != p) || fired || !Roll(order))
            continue;
        fired = true;
        if (ms)
            *ms = order.ms;
    }
    if (!fired)
        return false;
    ++injected_[std::size_t(kind)];
    orders_.erase(std::remove_if(orders_.begin(), orders_.end(),
                                 [](const Order &order) { return order.left && *order.left == 0; }),
                  orders_.end());
    return true;
}

bool FaultInjector::DropsRequest(int p, std::int64_t now)
{
    if (offBusUntil_ && now >= *offBusUntil_)
        offBusUntil_.reset();
    if (offBusUntil_)
        return true;
    int ms = 0;
    if (orders_.empty() || !Fires(FaultKind::Drop, p, &ms))
        return false;
    offBusUntil_ = ms > 0 ? now + ms * NsPerMs : Forever;
    return true;
}

bool FaultInjector::Refuses(int p)
{
    return !orders_.empty() && Fires(FaultKind::Refuse, p);
}

std::optional<int> FaultInjector::Spoil(QByteArray &reply, int p)
{
    int ms = 0;
    if (orders_.empty())
        return ms;
    if (Fires(FaultKind::Silent, p))
        return std::nullopt;
    // An answer of one byte has no check character, and cut short it would be silence.
    if (reply.size() > 1) {
        if (Fires(FaultKind::BadBcc, p))
            reply.back() = char(reply.back() ^ 0x5a);
        if (Fires(FaultKind::Short, p))
            reply.chop(1);
    }
    if (Fires(FaultKind::Long, p))
        reply.append(ExtraByte);
    Fires(FaultKind::Late, p, &ms);
    return ms;
}

} // namespace quorvik::drive
