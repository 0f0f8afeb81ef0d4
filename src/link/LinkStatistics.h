#pragma once

#include "link/PacketMeaning.h"
#include "platform/Clock.h"

#include <QDateTime>
#include <QObject>
#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace quorvik
{

class DriveLink;
enum class LinkFault;

/** Tells the computer's clock, in milliseconds since 1970. */
using WallClock = std::function<qint64()>;

/** What the link has done since it came up. Always counts: a few additions for each exchange. */
class LinkStatistics : public QObject
{
    Q_OBJECT

public:
    enum class State : std::uint8_t { Never, OnLine, Ended, Lost };

    struct Counts {
        qint64 requests = 0;
        qint64 writes = 0;   ///< of the requests
        qint64 answers = 0;  ///< whole ones with the right check character
        qint64 refusals = 0; ///< of the answers
        qint64 repeats = 0;  ///< of the requests: the last one like it failed or was refused
        qint64 wrongChecks = 0;
        qint64 wrongLengths = 0;
        qint64 silences = 0;
        qint64 unawaited = 0; ///< packets that nobody waited for
    };
    /** A request that nothing came back for. */
    struct Silence {
        QDateTime at; ///< when it was given up
        WireRequest request;
    };
    static constexpr std::size_t MostSilences = 100;
    static constexpr int RecentSeconds = 5;

    explicit LinkStatistics(DriveLink &link, FineClock clock = MicrosecondsUp,
                            WallClock wallClock = QDateTime::currentMSecsSinceEpoch);

    State StateOf() const { return state_; }
    /** When the link came up, and when it went down; of the connection that the figures are of. */
    const QDateTime &Since() const { return since_; }
    const QDateTime &Until() const { return until_; }
    const Counts &Totals() const { return counts_; }
    /** Of a connection over a network; nothing for a wire. */
    struct Network {
        QString address;
        double replyMs = 0; ///< how long question and answer take, smoothed
        int timeoutMs = 0;  ///< how long a reply is waited for
    };
    std::optional<Network> OverNetwork() const;
    /** The last of them, the newest last. */
    const std::deque<Silence> &Silences() const { return silences_; }
    /** The answer time that this percentage of the answers kept to, in milliseconds, to a tenth; nothing
     * without answers. */
    std::optional<double> AnswerTime(double percentage) const;
    /** Answers a second on the whole connection, and over its last seconds; nothing in its first moment. */
    std::optional<double> AnswerRate() const;
    std::optional<double> RecentAnswerRate() const;

    /** What was sent last. */
    const WireRequest &Request() const { return request_; }
    qint64 MicrosecondsSinceRequest() const { return clock_() - sentAt_; }
    qint64 WallMs() const { return wallClock_(); }

    /** A connection begins: everything counts from here. */
    void Begin();

private:
    struct Slot {
        qint64 number = -1; ///< of the slot since the connection began
        int answers = 0;
    };
    static constexpr qint64 SlotUs = 500'000;
    static constexpr int RecentSlots = int(RecentSeconds * 1'000'000 / SlotUs);
    static constexpr qint64 BucketUs = 100;
    /** Beyond any time-out; the last bucket takes what is longer. */
    static constexpr std::size_t Buckets = 21'000;

    void FollowLink();
    void OnSent(const QByteArray &bytes);
    void OnReceived(const QByteArray &bytes, bool isAwaited);
    void OnFailed(LinkFault fault);
    void CountAnswer(const QByteArray &bytes);
    /** What a request and its repeat have in common. */
    int Key() const;
    qint64 Microseconds() const; ///< from the beginning to now, or to the end
    QDateTime Now() const { return QDateTime::fromMSecsSinceEpoch(wallClock_()); }

    DriveLink &link_;
    FineClock clock_;
    WallClock wallClock_;
    State state_ = State::Never;
    QString device_; ///< of the connection
    QDateTime since_;
    QDateTime until_;
    qint64 beganAt_ = 0;
    qint64 endedAt_ = 0;
    qint64 sentAt_ = 0;
    bool isBroken_ = false;
    WireRequest request_;
    Counts counts_;
    std::vector<int> answerTimes_; ///< answers by their time, in tenths of a millisecond
    std::array<Slot, RecentSlots + 1> slots_{};
    std::set<int> failed_; ///< keys of the requests that are to be repeated
    std::deque<Silence> silences_;
};

} // namespace quorvik
