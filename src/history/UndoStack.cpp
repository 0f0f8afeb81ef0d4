#include "history/UndoStack.h"

#include "compare/VerifiedWrite.h"
#include "link/DriveLink.h"
#include "platform/Guard.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

bool IsSameButFlags(const ParamRecord &left, const ParamRecord &right)
{
    return left.Min == right.Min && left.Max == right.Max && left.Attributes == right.Attributes &&
           left.Preset == right.Preset && left.Value == right.Value && left.Name == right.Name;
}

bool IsSame(const ParamRecord &left, const ParamRecord &right)
{
    return IsSameButFlags(left, right) && left.WriteFlag == right.WriteFlag &&
           left.WriteFirst == right.WriteFirst;
}

ParamRecord RecordOf(const RecordArray &records, int p)
{
    return p <= records.UpperBound() ? records[p] : ParamRecord{};
}

} // namespace

UndoStack::UndoStack(ParameterTable &table, Document &document, DriveLink &link, VerifiedWrite &writing)
    : table_(table)
    , document_(document)
    , link_(link)
    , writing_(writing)
    , clean_(CleanNow())
{
    const TableSignals &signalsOf = table.Signals();
    On(&signalsOf, &TableSignals::IntentBegan, this, [this] { Begin(); });
    On(&signalsOf, &TableSignals::IntentEnded, this, [this] { End(); });
    On(&signalsOf, &TableSignals::Changed, this, [this](const ParamChange &change) { OnChanged(change); });
    On(&signalsOf, &TableSignals::Entered, this, [this](int, bool modified) { OnEntered(modified); });
    On(&document, &Document::Marked, this, [this] { OnMarked(); });
    On(&document, &Document::Saved, this, [this] { clean_ = CleanNow(); });
    On(&link, &DriveLink::ComStatusChanged, this, [this] { OnComStatusChanged(); });
    On(&link, &DriveLink::Confirmed, this, [this] { OnHeard(); });
    On(&link, &DriveLink::WriteTaken, this, [this](int p) {
        OnHeard();
        if (p == Param::LoadParameters)
            Clear(QStringLiteral("The drive has loaded its memory"));
    });
    On(&link, &DriveLink::ScanFinished, this, [this](const ScanResult &result) {
        if (result.kind == WholeScan::Reading && result.hasRead)
            Clear(QStringLiteral("The drive was read"));
    });
    On(&link, &DriveLink::WriteRefused, this,
       [this](int p, std::int32_t rawValue, const bool *) { OnUnsent(p, rawValue); });
    On(&link, &DriveLink::StopOnlyGivenUp, this, [this](const std::vector<int> &params) {
        for (const int p : params)
            OnUnsent(p, table_.Value(p));
    });
    On(&writing, &VerifiedWrite::Taken, this, [this](int p) {
        if (pending_)
            pending_->taken.insert(p);
    });
    On(&writing, &VerifiedWrite::Finished, this, [this] { OnWritingFinished(); });
}

const UndoStep *UndoStack::Next(Way way) const
{
    const std::deque<UndoStep> &steps = way == Way::Undo ? done_ : undone_;
    return steps.empty() || (table_.PortOpen() && !isHeard_) ? nullptr : &steps.back();
}

CleanState UndoStack::CleanNow() const
{
    const int state = document_.HasUnsavedEdits ? 0 : state_;
    return {state, state, document_.Notes, document_.VirtualSettings};
}

bool UndoStack::IsClean() const
{
    return clean_.state > 0 && state_ >= clean_.state && state_ <= clean_.upTo &&
           clean_.notes == document_.Notes && clean_.virtualSettings == document_.VirtualSettings;
}

void UndoStack::Begin()
{
    // A slider begins many intents in a second.
    if (!table_.CurrentIntent()->canBeTakenBack)
        return;
    pending_ = Pending{.records = table_.Records(),
                       .shape = TableShape::Of(table_),
                       .document = DocumentState::Of(document_),
                       .clean = clean_,
                       .isOnLine = table_.PortOpen()};
}

void UndoStack::End()
{
    if (!pending_) {
        takesRules_ = takesRules_ && !table_.PortOpen();
        return;
    }
    const Pending pending = *std::exchange(pending_, std::nullopt);
    if (pending.isOnLine != table_.PortOpen())
        return;
    UndoStep step = StepOf(pending);
    // A value that was entered again waits to be sent, and is the same.
    const bool isStep =
        pending.isOnLine ? step.HasEntries() : std::ranges::any_of(step.rows, [](const auto &row) {
            return !IsSameButFlags(row.second.before, row.second.after);
        });
    if (!isStep && step.documentBefore == step.documentAfter) {
        if (!pending.isOnLine && !done_.empty())
            for (auto &[p, row] : step.rows) {
                row.isEntered = false;
                const auto [found, isNew] = done_.back().rows.try_emplace(p, row);
                if (!isNew)
                    found->second.after = row.after;
            }
        if (pending.isMarked)
            clean_.state = 0;
        return;
    }
    Push(std::move(step));
}

UndoStep UndoStack::StepOf(const Pending &pending) const
{
    const IntentInfo &intent = *table_.CurrentIntent();
    UndoStep step{.origin = intent.origin,
                  .title = intent.title,
                  .leading = pending.leading,
                  .shapeBefore = pending.shape,
                  .shapeAfter = TableShape::Of(table_),
                  .documentBefore = pending.document,
                  .documentAfter = DocumentState::Of(document_),
                  .cleanBefore = pending.clean};
    // The factory table only grows.
    if (step.shapeBefore.presetsUpperBound < step.shapeAfter.presetsUpperBound)
        step.shapeAfter.presets = std::make_shared<const RecordArray>(table_.PresetTable);
    for (int p = 0; p <= std::max(pending.records.UpperBound(), table_.UpperBound()); ++p)
        AddRow(step, pending, p);
    return step;
}

void UndoStack::AddRow(UndoStep &step, const Pending &pending, int p) const
{
    UndoRow row{.before = RecordOf(pending.records, p),
                .after = RecordOf(table_.Records(), p),
                .isEntered = pending.entered.contains(p)};
    const auto noted = pending.before.find(p);
    const auto written = pending.written.find(p);
    const bool isWritten = written != pending.written.end();
    if (pending.isOnLine) {
        // Between two pollings the table follows the drive.
        if (noted == pending.before.end() && !isWritten)
            return;
        row.isBeforeKnown = isWritten || row.before.WriteFlag != WriteState::Held;
        row.before.Value = isWritten ? written->second : noted->second;
        row.after.Value = isWritten ? row.after.Value : pending.after.at(p);
        row.isEntered = row.isEntered || isWritten;
        if (row.before.Value != row.after.Value)
            step.rows[p] = row;
        return;
    }
    // What the emulator has computed meanwhile is no part of it.
    row.before.Value = noted != pending.before.end() ? noted->second : row.after.Value;
    if (!IsSame(row.before, row.after))
        step.rows[p] = row;
}

void UndoStack::OnChanged(const ParamChange &change)
{
    if (isRestoring_)
        return;
    switch (change.cause) {
    case ChangeCause::Entered:
    case ChangeCause::File:
    case ChangeCause::Factory:
        if (pending_)
            Note(change, true);
        else if (change.cause != ChangeCause::Entered)
            Clear(QStringLiteral("Another set was begun"));
        break;
    case ChangeCause::Rule:
        if (pending_) {
            Note(change, false);
        } else if (takesRules_ && !done_.empty() && table_.CurrentIntent() == nullptr) {
            // The drive has taken what was entered, and this follows.
            AddToNewest(change);
        }
        break;
    case ChangeCause::Emulated:
        if (const IntentInfo *intent = table_.CurrentIntent();
            intent == nullptr || intent->origin != Origin::IOSimulator)
            Overwritten(change);
        break;
    case ChangeCause::TakenBack:
        OnUnsent(change.param, change.before);
        break;
    case ChangeCause::Drive:
    case ChangeCause::Transfer:
    case ChangeCause::Command:
    case ChangeCause::Undone:
        break;
    }
}

void UndoStack::Note(const ParamChange &change, bool isEntered)
{
    pending_->before.try_emplace(change.param, change.before);
    pending_->after[change.param] = change.after;
    if (!isEntered)
        return;
    pending_->entered.insert(change.param);
    pending_->leading = change.param;
}

void UndoStack::Overwritten(const ParamChange &change)
{
    // An input that drives a setting puts its own value over the user's, whom that step is to give it back.
    const ParamRecord &record = table_[change.param];
    if ((record.Attributes & Attr::ReadOnly) != 0)
        return;
    if (pending_ && !pending_->before.empty()) {
        pending_->before.try_emplace(change.param, change.before);
        return;
    }
    if (!done_.empty())
        AddToNewest(change);
}

void UndoStack::AddToNewest(const ParamChange &change)
{
    const ParamRecord &record = table_[change.param];
    const auto [found, isNew] = done_.back().rows.try_emplace(change.param, UndoRow{record, record});
    if (isNew)
        found->second.before.Value = change.before;
    found->second.after.Value = change.after;
}

void UndoStack::OnEntered(bool modified)
{
    if (isRestoring_ || !modified)
        return;
    if (pending_)
        pending_->isMarked = true;
    else
        clean_.state = 0;
}

void UndoStack::OnMarked()
{
    const bool rises = !std::exchange(wasUnsaved_, document_.HasUnsavedEdits) && wasUnsaved_;
    if (rises && !pending_ && !isRestoring_)
        clean_.state = 0;
}

void UndoStack::OnUnsent(int p, std::int32_t rawValue)
{
    if (pending_) {
        pending_->before.erase(p);
        return;
    }
    for (std::size_t i = done_.size(); i-- > 0;) {
        const auto row = done_[i].rows.find(p);
        if (row == done_[i].rows.end())
            continue;
        if (row->second.after.Value != rawValue)
            return;
        done_[i].rows.erase(row);
        if (!done_[i].HasEntries() && !done_[i].ChangesDocument())
            Drop(i);
        return;
    }
}

void UndoStack::OnWritingFinished()
{
    if (!pending_)
        return;
    for (const WrittenRow &row : writing_.Report().rows)
        if (row.rawBefore && pending_->taken.contains(row.value.param))
            pending_->written[row.value.param] = *row.rawBefore;
    for (const auto &[p, rawBefore] : pending_->written)
        if (rawBefore != table_.Value(p))
            pending_->leading = p;
}

void UndoStack::OnComStatusChanged()
{
    if (std::exchange(isOpen_, link_.PortOpen()) == isOpen_)
        return;
    // A port at which nobody answers changes nothing.
    const bool isEmpty = done_.empty() && undone_.empty();
    if (!isOpen_ && std::exchange(isHeard_, false) && !isEmpty)
        Clear(QStringLiteral("The link to the drive was closed"));
    Q_EMIT Changed();
}

void UndoStack::OnHeard()
{
    if (isOpen_ && !std::exchange(isHeard_, true))
        Clear(QStringLiteral("The link to the drive was opened"));
}

void UndoStack::Push(UndoStep step)
{
    const bool wasClean = IsClean();
    step.stateBefore = state_;
    step.stateAfter = state_ = ++lastState_;
    if (step.ChangesDocument())
        clean_ = CleanNow();
    else if (wasClean && !document_.HasUnsavedEdits)
        clean_.upTo = state_;
    step.cleanAfter = clean_;
    takesRules_ = table_.PortOpen();
    done_.push_back(std::move(step));
    undone_.clear();
    if (done_.size() > MostSteps)
        done_.pop_front();
    Q_EMIT Changed();
}

void UndoStack::Drop(std::size_t index)
{
    done_.erase(done_.begin() + std::ptrdiff_t(index));
    Q_EMIT Changed();
}

void UndoStack::Clear(const QString &why)
{
    if (!done_.empty() || !undone_.empty() || !whyEmpty_.isEmpty())
        whyEmpty_ = why + QStringLiteral(": what was done before cannot be taken back.");
    done_.clear();
    undone_.clear();
    takesRules_ = false;
    state_ = ++lastState_;
    clean_ = CleanNow();
    Q_EMIT Changed();
}

} // namespace quorvik
