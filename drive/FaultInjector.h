#pragma once

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace quorvik::drive
{

enum class FaultKind { BadBcc, Short, Long, Late, Silent, Refuse, Drop };
inline constexpr int FaultKindCount = 7;

QString FaultKindName(FaultKind kind);

/**
 * The faults of the line and of the drive's answers that were asked for, each by count, by rate, or until
 * further notice. Times are nanoseconds of one steady clock.
 */
class FaultInjector
{
public:
    /**
     * Adds a fault: KIND[:PARAM][,count=N][,rate=R][,seed=S][,ms=T]; rate 0 to 1, ms 1 to 600000.
     * @return what is wrong with the words, empty when taken.
     */
    QString Add(const QString &words, std::int64_t now);
    void Clear();

    /** Whether the drive is off the bus for a request that asks for p, -1 for none, at now. */
    bool DropsRequest(int p, std::int64_t now);
    bool Refuses(int p);
    /** Spoils the reply about p. @return how long it is held back, in milliseconds; nothing when it is lost.
     */
    std::optional<int> Spoil(QByteArray &reply, int p);

    std::int64_t Injected(FaultKind kind) const { return injected_[std::size_t(kind)]; }

private:
    struct Order {
        FaultKind kind = FaultKind::BadBcc;
        int param = -1; ///< -1 for any
        std::optional<std::int64_t> left;
        double rate = 1;
        int ms = 0;
        std::mt19937_64 dice;
    };

    bool Fires(FaultKind kind, int p, int *ms = nullptr);
    bool Roll(Order &order);

    std::vector<Order> orders_;
    std::optional<std::int64_t> offBusUntil_;
    std::array<std::int64_t, FaultKindCount> injected_{};
};

} // namespace quorvik::drive
