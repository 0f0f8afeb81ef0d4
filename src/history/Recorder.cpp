#include "history/Recorder.h"

#include "compare/VerifiedWrite.h"
#include "history/Journal.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "model/ShownText.h"
#include "platform/Guard.h"

#include <QDir>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

/** Whether the drive can be asked for what it was given. */
bool CanBeReadBack(int p)
{
    return !Param::ClearsItself(p);
}

/** A text with paths: the user's own folder says who that is, which is not the journal's business. */
QString WithoutHome(QString text)
{
    return text.replace(QDir::homePath() + u'/', QStringLiteral("~/"));
}

/** The wire carries 16 bits of a value. */
bool IsSameOnTheWire(std::int32_t left, std::int32_t right)
{
    return std::uint16_t(left) == std::uint16_t(right);
}

} // namespace

Recorder::Recorder(ParameterTable &table, Document &document, DriveLink &link, VerifiedWrite &writing,
                   Journal &journal)
    : table_(table)
    , document_(document)
    , link_(link)
    , writing_(writing)
    , journal_(journal)
{
    const TableSignals &signalsOf = table.Signals();
    On(&signalsOf, &TableSignals::IntentBegan, this, [this] { intentAction_ = 0; });
    On(&signalsOf, &TableSignals::IntentEnded, this, [this] { intentAction_ = 0; });
    On(&signalsOf, &TableSignals::IntentNoted, this, [this](const QString &what) {
        if (table_.CurrentIntent() == nullptr)
            return;
        batch_.notes.push_back({ActionNumber(), WithoutHome(what)});
        Gather();
    });
    On(&signalsOf, &TableSignals::Changed, this, [this](const ParamChange &change) { OnChanged(change); });
    On(&document, &Document::Saved, this, [this] {
        const int action = BeginAction(Origin::File, {});
        batch_.notes.push_back({action, WithoutHome(QStringLiteral("Saved %1").arg(document_.FileName))});
    });
    On(&link, &DriveLink::WriteTaken, this, [this](int p) { OnWriteTaken(p); });
    On(&link, &DriveLink::WriteRefused, this,
       [this](int p, std::int32_t, const bool *) { OnUnsent(p, EntryResult::Refused); });
    On(&link, &DriveLink::StopOnlyGivenUp, this, [this](const std::vector<int> &params) {
        for (const int p : params)
            OnUnsent(p, EntryResult::GivenUp);
    });
    On(&link, &DriveLink::Confirmed, this,
       [this](int p, std::int32_t rawValue) { OnConfirmed(p, rawValue); });
    On(&link, &DriveLink::Broken, this, [this] { isBroken_ = true; });
    On(&link, &DriveLink::ComStatusChanged, this, [this] { OnComStatusChanged(); });
    On(&writing, &VerifiedWrite::WritingBegins, this, [this] { OnWritingBegins(); });
    On(&writing, &VerifiedWrite::Taken, this, [this](int p) {
        if (const auto row = written_.find(p); row != written_.end())
            AddResult(row->second, EntryResult::Acknowledged);
    });
    On(&writing, &VerifiedWrite::Finished, this, [this] { OnWritingFinished(); });
    gather_.setSingleShot(true);
    gather_.setInterval(journal.Timings().gatherMs);
    On(&gather_, &QTimer::timeout, this, [this] { HandOver(); });
}

Recorder::~Recorder()
{
    HandOver();
}

void Recorder::HandOver()
{
    SettleLeftOver();
    gather_.stop();
    if (!batch_.IsEmpty())
        journal_.Add(std::exchange(batch_, {}));
}

void Recorder::Gather()
{
    if (!gather_.isActive())
        gather_.start();
}

int Recorder::BeginAction(Origin origin, const QString &title)
{
    batch_.actions.push_back({.number = ++lastAction_,
                              .time = JournalTime::Now(),
                              .origin = origin,
                              .title = WithoutHome(title),
                              .setName = WithoutHome(document_.FileName),
                              .link = connection_});
    // A drive that is only looked at is not asked for more than the windows want.
    AskForIdentity(connection_ != 0 && !isDriveKnown_);
    Gather();
    return lastAction_;
}

int Recorder::ActionNumber()
{
    const IntentInfo *intent = table_.CurrentIntent();
    if (intent == nullptr)
        return BeginAction(Origin::Program, {});
    if (intentAction_ == 0)
        intentAction_ = BeginAction(intent->origin, intent->title);
    return intentAction_;
}

JournalRow &Recorder::AddRow(int action, int p, std::optional<std::int32_t> rawBefore, std::int32_t rawAfter,
                             EntryResult result)
{
    const ParamRecord &record = table_[p];
    batch_.rows.push_back({.action = action,
                           .sequence = ++lastSequence_,
                           .time = JournalTime::Now(),
                           .param = p,
                           .name = record.Name,
                           .rawBefore = rawBefore,
                           .rawAfter = rawAfter,
                           .textBefore = rawBefore ? ShownText(*rawBefore, record.Attributes) : QString(),
                           .textAfter = ShownText(rawAfter, record.Attributes),
                           .result = result});
    Gather();
    return batch_.rows.back();
}

void Recorder::AddResult(int sequence, EntryResult result, std::optional<int> p,
                         std::optional<std::int32_t> raw)
{
    // Of what follows in the same moment only the last one counts.
    const bool isMove = result == EntryResult::Moved;
    std::erase_if(batch_.results, [&](const JournalResult &earlier) {
        return earlier.sequence == sequence && (earlier.result == EntryResult::Moved) == isMove;
    });
    batch_.results.push_back({.sequence = sequence,
                              .time = JournalTime::Now(),
                              .result = result,
                              .raw = raw,
                              .text = p && raw ? ShownText(*raw, table_[*p].Attributes) : QString()});
    Gather();
}

void Recorder::OnChanged(const ParamChange &change)
{
    const IntentInfo *intent = table_.CurrentIntent();
    const bool isOnLine = table_.PortOpen();
    // What a program begins with is nobody's doing.
    if (change.cause == ChangeCause::Factory && intent == nullptr)
        return;
    switch (change.cause) {
    case ChangeCause::Entered:
    case ChangeCause::File:
    case ChangeCause::Factory:
    case ChangeCause::Undone:
        break;
    case ChangeCause::Rule:
        // What follows a value goes with it: at once, or on line when the drive has taken it.
        if (const int action = intent != nullptr ? intentAction_ : takenAction_; action != 0)
            AddRow(action, change.param, change.before, change.after,
                   isOnLine ? EntryResult::None : EntryResult::Kept);
        return;
    case ChangeCause::Emulated:
        if (intent != nullptr && intent->origin == Origin::IOSimulator)
            break;
        return;
    case ChangeCause::Drive:
    case ChangeCause::Transfer:
    case ChangeCause::Command:
    case ChangeCause::TakenBack:
        return;
    }
    if (intent != nullptr && intent->isMovement && JoinMovement(change))
        return;
    const int p = change.param;
    EndPending(p, EntryResult::GivenUp);
    // On line it is the drive's value that another one takes the place of, and not what waited to be sent.
    const JournalRow &row = AddRow(ActionNumber(), p, isOnLine ? Heard(p) : std::optional(change.before),
                                   change.after, isOnLine ? EntryResult::Queued : EntryResult::Kept);
    if (isOnLine) {
        pending_[p] = {row.sequence, row.action, change.after};
        unverified_.erase(p);
    }
    if (intent != nullptr && intent->isMovement) {
        Movement &movement = movements_[p];
        movement = {row.sequence, row.action};
        movement.rests.start();
    }
}

bool Recorder::JoinMovement(const ParamChange &change)
{
    const auto found = movements_.find(change.param);
    if (found == movements_.end() || found->second.rests.hasExpired(journal_.Timings().movementMs))
        return false;
    Movement &movement = found->second;
    movement.rests.restart();
    AddResult(movement.sequence, EntryResult::Moved, change.param, change.after);
    if (table_.PortOpen()) {
        pending_[change.param] = {movement.sequence, movement.action, change.after};
        unverified_.erase(change.param);
        AddResult(movement.sequence, EntryResult::Queued);
    }
    return true;
}

void Recorder::EndPending(int p, EntryResult result)
{
    if (const auto found = pending_.find(p); found != pending_.end()) {
        AddResult(found->second.sequence, result);
        pending_.erase(found);
    }
}

void Recorder::SettleLeftOver()
{
    for (auto next = pending_.begin(); next != pending_.end();) {
        const auto [p, write] = *next++;
        if (table_[p].WriteFlag == WriteState::None)
            EndPending(p, EntryResult::GivenUp);
    }
}

void Recorder::OnWriteTaken(int p)
{
    const std::int32_t rawValue = Param::IsCommand(p) ? 1 : table_.Value(p);
    const auto found = pending_.find(p);
    const Pending write = found != pending_.end() ? found->second : [&] {
        // One of the whole set, which the table held already.
        const JournalRow &row = AddRow(ActionNumber(), p, Heard(p), rawValue, EntryResult::Queued);
        return Pending{row.sequence, row.action, rawValue};
    }();
    pending_.erase(p);
    if (CanBeReadBack(p))
        heard_[p] = rawValue;
    AddResult(write.sequence, EntryResult::Acknowledged);
    takenAction_ = write.action;
    if (CanBeReadBack(p))
        unverified_[p] = write;
}

void Recorder::OnUnsent(int p, EntryResult result)
{
    if (!pending_.contains(p))
        AddRow(ActionNumber(), p, Heard(p), table_.Value(p), result);
    EndPending(p, result);
}

std::optional<std::int32_t> Recorder::Heard(int p) const
{
    const auto found = heard_.find(p);
    return found == heard_.end() ? std::nullopt : std::optional(found->second);
}

void Recorder::OnConfirmed(int p, std::int32_t rawValue)
{
    heard_[p] = rawValue;
    LearnDrive(p);
    const auto found = unverified_.find(p);
    if (found == unverified_.end())
        return;
    const Pending &write = found->second;
    if (IsSameOnTheWire(write.rawValue, rawValue))
        AddResult(write.sequence, EntryResult::Verified);
    else
        AddResult(write.sequence, EntryResult::Differs, p, rawValue);
    unverified_.erase(found);
}

void Recorder::OnComStatusChanged()
{
    if ((connection_ != 0) == link_.PortOpen())
        return;
    if (link_.PortOpen()) {
        connection_ = ++lastLink_;
        isBroken_ = false;
        heard_.clear();
        isDriveKnown_ = false;
        return;
    }
    while (!pending_.empty())
        EndPending(pending_.begin()->first, isBroken_ ? EntryResult::Lost : EntryResult::GivenUp);
    unverified_.clear();
    takenAction_ = 0;
    connection_ = 0;
    AskForIdentity(false);
}

void Recorder::AskForIdentity(bool wanted)
{
    if (std::exchange(asksForIdentity_, wanted) == wanted)
        return;
    for (const int p : DriveIdentity::Params()) {
        if (wanted)
            table_.AddReadInterest(p);
        else
            table_.RemoveReadInterest(p);
    }
}

void Recorder::LearnDrive(int p)
{
    if (isDriveKnown_ || std::ranges::find(DriveIdentity::Params(), p) == DriveIdentity::Params().end())
        return;
    const auto isKnown = [this](int param) { return param > table_.LastParam || heard_.contains(param); };
    if (!std::ranges::all_of(DriveIdentity::Params(), isKnown))
        return;
    batch_.drives.push_back({.link = connection_,
                             .time = JournalTime::Now(),
                             .identity = DriveIdentity::Of(
                                 [this](int param) { return Heard(param).value_or(0); }, table_.LastParam)});
    isDriveKnown_ = true;
    AskForIdentity(false);
    Gather();
}

void Recorder::OnWritingBegins()
{
    written_.clear();
    for (const WrittenRow &row : writing_.Report().rows) {
        const int p = row.value.param;
        // What the drive holds already is no change.
        if (row.arrival == Arrival::NotSent && row.rawBefore != row.value.rawValue)
            written_[p] =
                AddRow(ActionNumber(), p, row.rawBefore, row.value.rawValue, EntryResult::Queued).sequence;
    }
}

void Recorder::OnWritingFinished()
{
    for (const WrittenRow &row : writing_.Report().rows) {
        const auto found = written_.find(row.value.param);
        if (found == written_.end())
            continue;
        switch (row.arrival) {
        case Arrival::Verified:
            AddResult(found->second, EntryResult::Verified);
            break;
        case Arrival::Differs:
            AddResult(found->second, EntryResult::Differs, row.value.param, row.rawFound);
            break;
        case Arrival::Refused:
            AddResult(found->second, EntryResult::Refused);
            break;
        case Arrival::NotSent:
            AddResult(found->second, EntryResult::GivenUp);
            break;
        case Arrival::Sent:
            // Taken or not, nobody has read it since.
            if (writing_.Report().end == WriteReport::End::LinkLost)
                AddResult(found->second, EntryResult::Lost);
            break;
        case Arrival::Given:
            break;
        }
    }
    written_.clear();
}

} // namespace quorvik
