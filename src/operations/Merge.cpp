#include "operations/Merge.h"

#include "model/Conversions.h"
#include "model/Document.h"
#include "model/ParameterTable.h"
#include "operations/SaveCommands.h"
#include "platform/Arithmetic.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>

namespace quorvik
{

namespace
{

/**
 * All that the limits of p hang on as the table stands, the remotest first: p may take them over from a
 * parameter whose own limits hang on another one.
 */
void CollectLeads(const ParameterTable &table, int p, std::vector<int> &leads, std::set<int> &seen)
{
    for (const int lead : ParameterTable::LeadsOf(p)) {
        if (!seen.insert(lead).second)
            continue;
        CollectLeads(table, table.Value(lead), leads, seen);
        leads.push_back(lead);
    }
}

std::vector<int> LeadsBehind(const ParameterTable &table, int p)
{
    std::vector<int> leads;
    std::set<int> seen;
    CollectLeads(table, p, leads, seen);
    return leads;
}

/** Brings the limits of p in line with what they hang on. */
void RefreshLimits(ParameterTable &table, int p)
{
    for (const int lead : LeadsBehind(table, p))
        table.RefreshDependentParams(lead);
}

/** One try to take all values into a copy of the table, which shows what can be taken, and in which order. */
class Attempt
{
public:
    Attempt(const ParameterTable &table, const std::vector<ParamValue> &values, const ParameterSet &from)
        : scratch_(table)
        , from_(from)
        , pending_(values)
    {
        while (!pending_.empty())
            if (!TakeWhatCanBe() && !BreakCircle())
                RefuseTheRest();
    }

    const std::vector<ParamValue> &Steps() const { return steps_; }
    const std::map<int, QString> &Refused() const { return refused_; }
    /** An input that was taken off its destination to make room, and then was refused its new one. */
    std::optional<int> EmptiedInVain() const
    {
        const auto found = std::ranges::find_if(emptied_, [this](int p) { return refused_.contains(p); });
        return found == emptied_.end() ? std::nullopt : std::optional(*found);
    }

private:
    enum class Answer { Takes, Waits, Refuses };

    bool IsPending(int p) const
    {
        return std::ranges::find(pending_, p, &ParamValue::param) != pending_.end();
    }

    /** @return whether a row was taken or refused. */
    bool TakeWhatCanBe()
    {
        std::vector<ParamValue> waiting;
        const std::size_t before = pending_.size();
        for (std::size_t i = 0; i < pending_.size();) {
            const ParamValue value = pending_[i];
            QString reason;
            const Answer answer = Ask(value, reason);
            if (answer == Answer::Waits) {
                ++i;
                continue;
            }
            pending_.erase(pending_.begin() + std::ptrdiff_t(i));
            if (answer == Answer::Refuses || !Enter(value, reason))
                refused_[value.param] = reason;
        }
        return pending_.size() < before;
    }

    Answer Ask(const ParamValue &value, QString &reason)
    {
        const int p = value.param;
        if (p < 0 || p > scratch_.LastParam) {
            reason = QStringLiteral("is not in this set.");
            return Answer::Refuses;
        }
        if (IsRefusedCommand(p)) {
            reason = QStringLiteral("is a command, which copying does not give.");
            return Answer::Refuses;
        }
        if (std::ranges::any_of(LeadsBehind(scratch_, p), [this](int lead) { return IsPending(lead); }))
            return Answer::Waits;
        for (const auto &rule : {&Attempt::AskAccess, &Attempt::AskLimits, &Attempt::AskTarget})
            if (const Answer answer = (this->*rule)(value, reason); answer != Answer::Takes)
                return answer;
        return Answer::Takes;
    }

    bool IsRefusedCommand(int p) const
    {
        // A set holds what was commanded when it was read, which is no wish of now.
        constexpr int commands[] = {Param::Run, Param::Stop, Param::Jog, Param::FaultReset,
                                    Param::ClearFault};
        return Param::IsCommand(p) ||
               (scratch_.PortOpen() && std::ranges::find(commands, p) != std::end(commands));
    }

    Answer AskAccess(const ParamValue &value, QString &reason)
    {
        switch (scratch_.AccessClass(value.param)) {
        case Access::ReadWrite:
        case Access::IcrReadWrite:
            return Answer::Takes;
        case Access::IcrReadOnly:
            reason = QStringLiteral("can be changed only while the drive is stopped.");
            return Answer::Refuses;
        case Access::LinkedDestination: {
            const int driver = scratch_.FindLinkSource(value.param);
            reason = QStringLiteral("is set by %1.").arg(scratch_.FullName(driver));
            return IsPending(driver) ? Answer::Waits : Answer::Refuses;
        }
        default:
            reason = value.param == Param::DriveModel
                         ? QStringLiteral("is read only. Tools, Select Drive Model, changes it off line.")
                         : QStringLiteral("is read only.");
            return Answer::Refuses;
        }
    }

    Answer AskTarget(const ParamValue &value, QString &reason)
    {
        if (!scratch_.AttrBit(Attr::Destination, value.param) || value.rawValue == 0)
            return Answer::Takes;
        if (const int holder = HolderOf(value.param, value.rawValue); holder != 0) {
            reason = QStringLiteral("cannot be set to %1, which %2 is already set to.")
                         .arg(value.rawValue)
                         .arg(scratch_.FullName(holder));
            return IsPending(holder) ? Answer::Waits : Answer::Refuses;
        }
        // Once the input drives it, the target takes no value any more.
        const bool isFreeNow = value.rawValue > 0 && value.rawValue <= scratch_.LastParam &&
                               scratch_.FindLinkSource(value.rawValue) == 0;
        return isFreeNow && !hurried_.contains(value.param) && IsPending(value.rawValue) ? Answer::Waits
                                                                                         : Answer::Takes;
    }

    Answer AskLimits(const ParamValue &value, QString &reason)
    {
        const int p = value.param;
        if (!Tried([&] { RefreshLimits(scratch_, p); }, reason))
            return Answer::Refuses;
        const std::vector<int> leads = ParameterTable::LeadsOf(p);
        const ParamRecord &record = scratch_[p];
        const bool isLedOtherwise = std::ranges::any_of(leads, [this](int lead) {
            return from_.Knows(lead) && from_.Value(lead) != scratch_.Value(lead);
        });
        if (isLedOtherwise && from_.Knows(p) &&
            !HasSameUnit(from_.records[p].Attributes, record.Attributes)) {
            reason =
                QStringLiteral("has another unit here. Copy %1, too.").arg(scratch_.FullName(leads.front()));
            return Answer::Refuses;
        }
        if (value.rawValue >= record.Min && value.rawValue <= record.Max)
            return Answer::Takes;
        reason = QStringLiteral("lies outside its limits here, %1.").arg(LimitsText(record));
        return Answer::Refuses;
    }

    static bool HasSameUnit(std::int32_t left, std::int32_t right)
    {
        return TypeCode(left) == TypeCode(right) && DecimalsOf(left) == DecimalsOf(right);
    }

    /** Another input already at target, or 0. */
    int HolderOf(int p, std::int32_t target) const
    {
        for (int i = 1; i <= scratch_.LastParam; ++i)
            if (i != p && scratch_.AttrBit(Attr::Destination, i) && scratch_.Value(i) == target)
                return i;
        return 0;
    }

    /** @return whether the work was done; a reason where it could not be. */
    static bool Tried(const std::function<void()> &work, QString &reason)
    {
        try {
            work();
        } catch (const RuntimeFailure &failure) {
            reason = QStringLiteral("cannot be set: ") + failure.Sentence();
            return false;
        }
        return true;
    }

    bool Enter(const ParamValue &value, QString &reason)
    {
        if (!Tried([&] { scratch_.SetParamValue(value.param, value.rawValue, true, true); }, reason))
            return false;
        steps_.push_back(value);
        return true;
    }

    /** Rows wait for each other: makes room by taking an input off its destination, or lets one input go
     * before the value that it will drive. */
    bool BreakCircle()
    {
        for (const ParamValue &value : pending_) {
            const int holder =
                scratch_.AttrBit(Attr::Destination, value.param) ? HolderOf(value.param, value.rawValue) : 0;
            QString reason;
            if (value.rawValue == 0 || holder == 0 || !IsPending(holder) ||
                AskAccess({holder, 0}, reason) != Answer::Takes || !Enter({holder, 0}, reason))
                continue;
            emptied_.push_back(holder);
            return true;
        }
        const auto waiting = std::ranges::find_if(pending_, [this](const ParamValue &value) {
            return scratch_.AttrBit(Attr::Destination, value.param) && !hurried_.contains(value.param);
        });
        return waiting != pending_.end() && hurried_.insert(waiting->param).second;
    }

    void RefuseTheRest()
    {
        for (const ParamValue &value : pending_) {
            QString reason;
            AskAccess(value, reason);
            refused_[value.param] =
                reason.isEmpty() ? QStringLiteral("waits for a value that waits for it.") : reason;
        }
        pending_.clear();
    }

    ParameterTable scratch_;
    const ParameterSet &from_;
    std::vector<ParamValue> pending_;
    std::vector<ParamValue> steps_;
    std::vector<int> emptied_;
    std::map<int, QString> refused_;
    std::set<int> hurried_; ///< inputs that do not wait for the value that they will drive
};

} // namespace

std::vector<RefusedRow> MergeIntoSet(ParameterTable &table, const std::vector<ParamValue> &values,
                                     const ParameterSet &from)
{
    std::vector<ParamValue> wanted = values;
    std::map<int, QString> refused;
    for (;;) {
        const Attempt attempt(table, wanted, from);
        if (const std::optional<int> lost = attempt.EmptiedInVain()) {
            // Without it, its destination stays its own.
            refused[*lost] = attempt.Refused().at(*lost);
            std::erase_if(wanted, [&](const ParamValue &value) { return value.param == *lost; });
            continue;
        }
        for (const auto &[p, reason] : attempt.Refused())
            refused[p] = reason;
        for (const ParamValue &step : attempt.Steps()) {
            table.EditParamNumber = ToInt16(step.param);
            RefreshLimits(table, step.param);
            // Also on line: an acknowledgement refreshes what hangs on the one that was edited last, and
            // these are many.
            table.SetParamValue(step.param, step.rawValue, true, true);
        }
        break;
    }
    std::vector<RefusedRow> rows;
    for (const ParamValue &value : values)
        if (const auto found = refused.find(value.param); found != refused.end())
            rows.push_back({value, found->second});
    return rows;
}

FileMerge MergeIntoFile(const QString &path, const std::vector<ParamValue> &values, const ParameterSet &from,
                        const ParameterTable &like, const SaveCommands &saving)
{
    if (QString refusal = saving.RefusalOf(path); !refusal.isEmpty())
        return {refusal};
    ParameterTable table(like);
    table.SetPortOpen(false);
    table.ResetToDefaults();
    Document document(table);
    SettingsFile file(table, document);
    if (QString failure = file.LoadSettings(path); !failure.isEmpty())
        return {failure};
    // The state in which its drive was when the set was saved keeps no value out of a file.
    const std::int32_t state = table.Value(Param::DriveState);
    table.Row(Param::DriveState).Value = 0;
    FileMerge merge{{}, MergeIntoSet(table, values, from)};
    table.Row(Param::DriveState).Value = state;
    if (merge.refused.size() < values.size())
        merge.failure = file.Save(path);
    return merge;
}

} // namespace quorvik
