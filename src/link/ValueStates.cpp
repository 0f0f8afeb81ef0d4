#include "link/ValueStates.h"

#include "link/DriveLink.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

/** As many times a value may be asked for without an answer before it is old: the answer to the last one may
 * be on its way. */
constexpr int MostUnanswered = 1;

} // namespace

QString NameOf(ValueState state)
{
    static const QString names[] = {QStringLiteral("Live"),     QStringLiteral("Old"),
                                    QStringLiteral("Not read"), QStringLiteral("Queued"),
                                    QStringLiteral("Refused"),  QStringLiteral("Set"),
                                    QStringLiteral("Emulated"), QStringLiteral("Lost")};
    return names[std::size_t(state)];
}

QString AgeText(qint64 ms)
{
    if (ms < 10 * MsPerSecond)
        return QStringLiteral("%1 s").arg(QString::number(double(ms) / double(MsPerSecond), 'f', 1));
    if (ms < 2 * MsPerMinute)
        return QStringLiteral("%1 s").arg(ms / MsPerSecond);
    return ms < 2 * MsPerHour ? QStringLiteral("%1 min").arg(ms / MsPerMinute)
                              : QStringLiteral("%1 h").arg(ms / MsPerHour);
}

ValueStates::ValueStates(ParameterTable &table, DriveLink &link, MsClock clock)
    : table_(table)
    , link_(link)
    , clock_(std::move(clock))
{
    On(&link, &DriveLink::ComStatusChanged, this, [this] { FollowLink(); });
    On(&link, &DriveLink::Broken, this, [this] { isBroken_ = true; });
    // While the flags of what is to be written still stand.
    On(&link, &DriveLink::BreakingOff, this, [this] { Lose(); });
    On(&link, &DriveLink::PassBegins, this, [this] { passBeganAt_ = clock_(); });
    On(&link, &DriveLink::OutOfStep, this, [this] { ForgetPass(); });
    On(&link, &DriveLink::Asked, this, [this](int p) { ++At(p).unanswered; });
    On(&link, &DriveLink::Confirmed, this,
       [this](int p, std::int32_t rawValue) { Confirm(p, rawValue, false); });
    On(&link, &DriveLink::WriteTaken, this, [this](int p) {
        // A command is done, not kept.
        if (!Param::IsCommand(p))
            Confirm(p, OnTheWire(p), true);
    });
    On(&link, &DriveLink::WriteRefused, this,
       [this](int p, std::int32_t rawValue, const bool *) { Refuse(p, rawValue); });
    On(&link, &DriveLink::StopOnlyGivenUp, this, [this](const std::vector<int> &params) {
        for (const int p : params)
            Refuse(p, table_.Value(p));
    });
    On(&table.Signals(), &TableSignals::Computed, this, [this](int p) { At(p).computedAt = clock_(); });
    On(&table.Signals(), &TableSignals::Entered, this, [this](int p) {
        At(p).isEntered = true;
        At(p).refusedAt = -1;
    });
    On(&table.Signals(), &TableSignals::Changed, this, [this](const ParamChange &change) {
        if (change.cause == ChangeCause::File || change.cause == ChangeCause::Factory)
            EndLoss();
    });
    update_.setInterval(link.Timings().stateUpdate);
    On(&update_, &QTimer::timeout, this, [this] { Tell(); });
    update_.start();
}

ValueStates::Row &ValueStates::At(int p)
{
    static_cast<void>(table_[p]);
    if (rows_.size() <= std::size_t(p))
        rows_.resize(std::size_t(table_.UpperBound()) + 1);
    return rows_[std::size_t(p)];
}

const ValueStates::Row &ValueStates::At(int p) const
{
    static_cast<void>(table_[p]);
    static const Row nothingKnown;
    return rows_.size() > std::size_t(p) ? rows_[std::size_t(p)] : nothingKnown;
}

ValueState ValueStates::Of(int p) const
{
    const Row &row = At(p);
    return link_.PortOpen() ? OnLine(p, row) : OffLine(p, row);
}

ValueState ValueStates::OnLine(int p, const Row &row) const
{
    const ParamRecord &record = table_[p];
    if (record.WriteFlag == WriteState::Queued)
        return ValueState::Queued;
    const qint64 now = clock_();
    if (row.refusedAt >= 0 && now - row.refusedAt < link_.Timings().refusedMark)
        return ValueState::Refused;
    if (row.confirmedAt < 0 || row.rawConfirmed != record.Value)
        return ValueState::Never;
    // What is shown stands until the next update, which may be late.
    const int limit = link_.Timings().liveLimit - 2 * link_.Timings().stateUpdate;
    return row.unanswered <= MostUnanswered && now - row.confirmedAt <= limit ? ValueState::Live
                                                                              : ValueState::Old;
}

ValueState ValueStates::OffLine(int p, const Row &row) const
{
    if (isLost_ && !row.isEntered) {
        if (IsUnwritten(p))
            return ValueState::Queued;
        if (row.confirmedAt >= 0 && row.rawConfirmed == table_.Value(p))
            return ValueState::Lost;
    }
    const bool isComputed = row.computedAt >= 0 && clock_() - row.computedAt <= link_.Timings().liveLimit;
    return isComputed ? ValueState::Emulated : ValueState::Set;
}

bool ValueStates::IsUnwritten(int p) const
{
    return std::ranges::any_of(unwritten_, [&](const Unwritten &entry) {
        return entry.param == p && entry.rawEntered == table_.Value(p);
    });
}

std::optional<qint64> ValueStates::Age(int p) const
{
    const Row &row = At(p);
    return row.confirmedAt < 0 ? std::nullopt : std::optional(clock_() - row.confirmedAt);
}

std::optional<std::int32_t> ValueStates::DriveValue(int p) const
{
    const Row &row = At(p);
    return row.confirmedAt < 0 ? std::nullopt : std::optional(row.rawConfirmed);
}

std::int32_t ValueStates::OnTheWire(int p) const
{
    return table_.AttrBit(Attr::Long, p) ? std::uint16_t(table_.Value(p)) : table_.Value(p);
}

QString ValueStates::Shown(int p, std::int32_t rawValue) const
{
    return ShownText(rawValue, table_[p].Attributes);
}

QString ValueStates::Describe(int p) const
{
    const Row &row = At(p);
    const QString value = Shown(p, table_.Value(p));
    const bool isKnown = row.confirmedAt >= 0;
    const QString known = isKnown ? Shown(p, row.rawConfirmed) : QString();
    switch (Of(p)) {
    case ValueState::Live:
    case ValueState::Old: {
        const QString age = AgeText(*Age(p)) + QStringLiteral(" ago");
        if (row.isWritten)
            return QStringLiteral("written %1, not read since").arg(age);
        if (Of(p) == ValueState::Old)
            return QStringLiteral("read %1, not %2 since")
                .arg(age, row.unanswered > MostUnanswered ? QStringLiteral("answered")
                                                          : QStringLiteral("asked for"));
        return QStringLiteral("read %1").arg(age);
    }
    case ValueState::Never:
        if (p > table_.LastParam)
            return QStringLiteral("this drive does not have it");
        if (isKnown)
            return QStringLiteral("not read since it changed; the drive had %1").arg(known);
        return table_[p].WriteFlag == WriteState::Held
                   ? QStringLiteral("the open set's value; not read from the drive")
                   : QStringLiteral("not read from this drive yet");
    case ValueState::Queued:
        return link_.PortOpen()
                   ? QStringLiteral("waits to be written: %1").arg(value)
                   : QStringLiteral("%1 did not reach the drive before the link was lost").arg(value);
    case ValueState::Refused: {
        const QString refused = QStringLiteral("the drive refused %1").arg(Shown(p, row.rawRefused));
        return isKnown ? refused + QStringLiteral(", it keeps %1").arg(known) : refused;
    }
    case ValueState::Set:
        break;
    case ValueState::Emulated:
        return QStringLiteral("computed by the emulator");
    case ValueState::Lost:
        return QStringLiteral("last seen %1, the drive does not answer")
            .arg(QDateTime::currentDateTime().addMSecs(-*Age(p)).toString(QStringLiteral("HH:mm:ss")));
    }
    return {};
}

void ValueStates::Touch(int p)
{
    At(p).refusedAt = -1;
}

void ValueStates::Confirm(int p, std::int32_t rawValue, bool isWritten)
{
    Row &row = At(p);
    heardAt_ = row.confirmedAt = clock_();
    row.rawConfirmed = rawValue;
    row.unanswered = 0;
    row.isWritten = isWritten;
    if (isWritten) {
        row.refusedAt = -1;
        DropUnwritten(p);
    }
    EndLoss();
}

void ValueStates::Refuse(int p, std::int32_t rawValue)
{
    Row &row = At(p);
    row.refusedAt = clock_();
    row.rawRefused = rawValue;
}

void ValueStates::ForgetPass()
{
    // An answer does not say whose it is: one too many means that those before it may stand a row too far.
    for (Row &row : rows_)
        if (row.confirmedAt >= passBeganAt_ && !row.isWritten) {
            row.confirmedAt = -1;
            // A box may have been painted in between.
            row.told = ValueState::Live;
        }
}

void ValueStates::Lose()
{
    if (!isBroken_ || heardAt_ < 0)
        return;
    isLost_ = true;
    table_.OutputsHeld = true;
    lostSince_ = QDateTime::currentDateTime().addMSecs(heardAt_ - clock_());
    for (int p = 0; p <= table_.LastParam; ++p)
        if (table_[p].WriteFlag == WriteState::Queued && !Param::IsCommand(p) && !Param::IsClock(p)) {
            DropUnwritten(p);
            unwritten_.push_back({p, table_.Value(p)});
        }
    std::ranges::sort(unwritten_, {}, &Unwritten::param);
}

void ValueStates::DropUnwritten(int p)
{
    std::erase_if(unwritten_, [p](const Unwritten &entry) { return entry.param == p; });
}

void ValueStates::FollowLink()
{
    const bool isOpen = link_.PortOpen();
    if (isOpen == std::exchange(wasOpen_, isOpen))
        return;
    if (isOpen) {
        // What is known of a drive that was lost stands until one has told something.
        lostRows_.swap(rows_);
        rows_.clear();
        heardAt_ = -1;
        isBroken_ = false;
    } else if (!isLost_) {
        rows_.clear();
    } else if (heardAt_ < 0) {
        rows_.swap(lostRows_);
    } else {
        for (Row &row : rows_)
            row.isEntered = false;
        Q_EMIT LossChanged();
    }
    Tell();
}

void ValueStates::EndLoss()
{
    if (!std::exchange(isLost_, false))
        return;
    lostRows_.clear();
    table_.OutputsHeld = false;
    Q_EMIT LossChanged();
}

void ValueStates::Tell()
{
    for (int p = 0; p <= table_.UpperBound(); ++p) {
        const ValueState state = Of(p);
        const std::int32_t rawValue = table_.Value(p);
        Row &row = At(p);
        const bool isSame = row.told == state && row.rawTold == rawValue;
        row.told = state;
        row.rawTold = rawValue;
        if (!isSame)
            Q_EMIT StateChanged(p);
    }
}

} // namespace quorvik
