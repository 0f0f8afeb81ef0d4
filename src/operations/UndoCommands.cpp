#include "operations/UndoCommands.h"

#include "compare/DriveSet.h"
#include "link/DriveLink.h"
#include "model/FullNames.h"
#include "model/ShownText.h"
#include "operations/Guards.h"
#include "operations/Merge.h"
#include "operations/SafeWrites.h"
#include "operations/SaveCommands.h"
#include "operations/Snapshots.h"
#include "platform/Asker.h"
#include "platform/Waiting.h"

#include <QScopedValueRollback>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostNamed = 8;

QString VerbOf(Way way)
{
    return way == Way::Undo ? QStringLiteral("Undo") : QStringLiteral("Redo");
}

/** The wire carries 16 bits of a value. */
bool IsSameOnTheWire(std::int32_t left, std::int32_t right)
{
    return std::uint16_t(left) == std::uint16_t(right);
}

const ParamRecord &Target(const UndoRow &row, Way way)
{
    return way == Way::Undo ? row.before : row.after;
}

const ParamRecord &Left(const UndoRow &row, Way way)
{
    return way == Way::Undo ? row.after : row.before;
}

/** "(226) Fwd Accel A: left at 7.5 Sec, the drive holds 9.0 Sec, undo writes 5.0 Sec". */
QString ChangedText(int p, const UndoRow &row, std::int32_t rawFound, Way way)
{
    const ParamRecord &left = Left(row, way);
    const ParamRecord &target = Target(row, way);
    return QStringLiteral("(%1) %2: left at %3, the drive holds %4, %5 writes %6")
        .arg(p)
        .arg(left.Name, ShownText(left.Value, left.Attributes), ShownText(rawFound, left.Attributes),
             VerbOf(way).toLower(), ShownText(target.Value, target.Attributes));
}

} // namespace

UndoCommands::UndoCommands(ParameterTable &table, Document &document, DriveLink &link, UndoStack &stack,
                           Snapshots &snapshots, SafeWrites &writes, SaveCommands &saving,
                           const Guards &guards, Asker &asker)
    : table_(table)
    , document_(document)
    , link_(link)
    , stack_(stack)
    , snapshots_(snapshots)
    , writes_(writes)
    , saving_(saving)
    , guards_(guards)
    , asker_(asker)
{
}

QString UndoCommands::Caption(Way way) const
{
    const UndoStep *step = stack_.Next(way);
    return step ? VerbOf(way) + u' ' + step->Text() : VerbOf(way);
}

QString UndoCommands::Explanation(Way way) const
{
    if (IsPossible(way))
        return Caption(way);
    if (way == Way::Redo)
        return QStringLiteral("Nothing was taken back.");
    return stack_.WhyEmpty().isEmpty() ? QStringLiteral("Nothing was done yet.") : stack_.WhyEmpty();
}

OperationResult UndoCommands::Go(Way way)
{
    // Nor in the middle of something else that waits.
    if (isUnderWay_ || table_.CurrentIntent() != nullptr || !IsPossible(way))
        return {Outcome::Refused};
    const QScopedValueRollback underWay(isUnderWay_, true);
    return table_.PortOpen() ? GoOnLine(way) : GoOffLine(way);
}

OperationResult UndoCommands::GoOffLine(Way way)
{
    const bool isOtherSet = stack_.Next(way)->IsOtherSet();
    // Another set comes in the place of this one.
    if (isOtherSet && !saving_.PromptSaveChanges())
        return {Outcome::Cancelled};
    if (table_.PortOpen() || !IsPossible(way))
        return {Outcome::Refused};
    const Intent intent(table_, {Origin::Undo, Caption(way), false});
    stack_.Restore(way);
    if (isOtherSet)
        saving_.SaveTo(document_.FileName == Document::Unnamed() ? QString() : document_.FileName);
    return {};
}

OperationResult UndoCommands::GoOnLine(Way way)
{
    const int state = stack_.Next(way)->stateAfter;
    // The line may break and a write be refused whenever events run.
    const auto isThere = [&] { return stack_.Next(way) != nullptr && stack_.Next(way)->stateAfter == state; };
    const auto gone = [this] {
        return OperationResult{table_.PortOpen() ? Outcome::Refused : Outcome::LinkLost};
    };
    Settled(stack_.Next(way)->Settings());
    if (!isThere())
        return gone();
    const UndoStep step = *stack_.Next(way);
    std::set<int> params{Param::DriveState};
    std::vector<int> unknown;
    for (const int p : step.Settings()) {
        params.insert(p);
        if (!step.rows.at(p).isBeforeKnown)
            unknown.push_back(p);
    }
    if (way == Way::Undo && !unknown.empty())
        return Refuse(way, QStringLiteral("Nobody has read what the drive held before: %1.")
                               .arg(FullNames(table_, unknown, MostNamed, QStringLiteral(", "))));
    const std::map<int, std::int32_t> fresh = snapshots_.ReadFresh(params);
    if (!isThere())
        return gone();
    std::vector<int> missing;
    std::ranges::copy_if(params, std::back_inserter(missing), [&](int p) { return !fresh.contains(p); });
    if (!missing.empty())
        return Refuse(way, QStringLiteral("It could not be read from the drive what it holds now: %1.")
                               .arg(FullNames(table_, missing, MostNamed, QStringLiteral(", "))));

    const ParameterSet from = SetOf(step, way);
    const Plan plan = PlanOf(step, way, from, fresh);
    // All or nothing.
    ParameterTable scratch(table_);
    const std::vector<RefusedRow> refused = MergeIntoSet(scratch, plan.values, from);
    if (!refused.empty()) {
        QStringList reasons;
        for (const RefusedRow &row : refused)
            if (reasons.size() < MostNamed)
                reasons += table_.FullName(row.value.param) + u' ' + row.reason;
        return Refuse(way, reasons.join(QStringLiteral("\r\n")));
    }
    if (!plan.changed.isEmpty() && !MayOverwrite(way, plan.changed))
        return {Outcome::Cancelled};
    if (!MayStart(way, plan.values))
        return {Outcome::Cancelled};
    if (!isThere())
        return gone();
    OperationResult result = Enter(way, plan, from, fresh);
    if (!result.IsDone() || !isThere())
        return result.IsDone() ? gone() : result;
    if (step.ChangesDocument()) {
        stack_.RestoreDocument(way);
        saving_.SaveTo(document_.FileName == Document::Unnamed() ? QString() : document_.FileName);
        document_.MarkFile(true);
    }
    stack_.Move(way);
    return result;
}

ParameterSet UndoCommands::SetOf(const UndoStep &step, Way way) const
{
    ParameterSet set = ParameterSet::Of(table_, QStringLiteral("open set"));
    for (const auto &[p, row] : step.rows)
        if (p <= set.LastParam())
            set.records[p] = Target(row, way);
    return set;
}

UndoCommands::Plan UndoCommands::PlanOf(const UndoStep &step, Way way, const ParameterSet &from,
                                        const std::map<int, std::int32_t> &fresh) const
{
    Plan plan;
    QStringList changed;
    for (const int p : step.Settings()) {
        // Its input sets it, whatever is written.
        if (DrivenBy(p, from) != 0)
            continue;
        const UndoRow &row = step.rows.at(p);
        const ParamValue value{p, Target(row, way).Value};
        const bool isWaiting = table_[p].WriteFlag == WriteState::Queued;
        if (IsSameOnTheWire(fresh.at(p), value.rawValue) && !isWaiting) {
            plan.held.push_back(value);
            continue;
        }
        plan.values.push_back(value);
        if (!isWaiting && !IsSameOnTheWire(fresh.at(p), Left(row, way).Value))
            changed += ChangedText(p, row, fresh.at(p), way);
    }
    plan.changed = changed.join(QStringLiteral("\r\n"));
    return plan;
}

bool UndoCommands::MayOverwrite(Way way, const QString &changed)
{
    const QString verb = VerbOf(way);
    return asker_.Ask(
               {.text = QStringLiteral("Overwrite what the drive holds? It was changed since, by another "
                                       "panel or by the drive itself."),
                .title = verb,
                .icon = MsgIcon::Exclamation,
                .explanation = changed,
                .choices = {{MsgAnswer::Yes, QStringLiteral("&Overwrite")}, {MsgAnswer::Cancel}},
                .safe = MsgAnswer::Cancel}) == MsgAnswer::Yes;
}

bool UndoCommands::MayStart(Way way, const std::vector<ParamValue> &values)
{
    QStringList inputs;
    for (const auto &[p, rawValue] : values)
        if (table_.AttrBit(Attr::Destination, p) && (rawValue == Param::Run || rawValue == Param::Jog))
            inputs += table_.FullName(p) + QStringLiteral(" = ") + table_.FullName(rawValue);
    if (inputs.isEmpty() || !guards_.Asking)
        return true;
    const QString verb = VerbOf(way);
    return asker_.Ask({.text = QStringLiteral("Put inputs back on Run or Jog? Where such an input is on, the "
                                              "drive starts at once."),
                       .title = verb,
                       .icon = MsgIcon::Exclamation,
                       .explanation = inputs.join(QStringLiteral("\r\n")),
                       .choices = {{MsgAnswer::Yes, u'&' + verb}, {MsgAnswer::Cancel}},
                       .safe = MsgAnswer::Cancel}) == MsgAnswer::Yes;
}

OperationResult UndoCommands::Enter(Way way, const Plan &plan, const ParameterSet &from,
                                    const std::map<int, std::int32_t> &fresh)
{
    const QString title = Caption(way);
    std::vector<int> params;
    std::vector<int> refused;
    QObject whileWaiting;
    const auto onRefused = [&refused](int p) { refused.push_back(p); };
    QObject::connect(&link_, &DriveLink::WriteRefused, &whileWaiting, onRefused);
    {
        const Intent intent(table_, {Origin::Undo, title, false});
        for (const ParamValue &value : plan.held)
            table_.SetValue(value.param, value.rawValue, ChangeCause::Drive);
        if (plan.values.empty())
            return {};
        if (stack_.Next(way)->IsLarge())
            return writes_.Write(plan.values, from);
        MergeIntoSet(table_, plan.values, from);
    }
    for (const ParamValue &value : plan.values)
        params.push_back(value.param);
    Settled(params);
    if (!table_.PortOpen())
        return {Outcome::LinkLost};
    // The user has been told; where nobody polls it, the entered value would stand for the drive's.
    for (const int p : refused)
        if (const auto held = fresh.find(p); held != fresh.end())
            table_.SetValue(p, held->second, ChangeCause::Drive);
    return refused.empty() ? OperationResult{} : OperationResult{Outcome::Refused, refused};
}

bool UndoCommands::Settled(const std::vector<int> &params)
{
    const auto isWaiting = [this](int p) { return table_[p].WriteFlag == WriteState::Queued; };
    return PumpWhile([&] { return table_.PortOpen() && std::ranges::any_of(params, isWaiting); },
                     QDeadlineTimer(WriteLimitMs));
}

OperationResult UndoCommands::Refuse(Way way, const QString &why)
{
    asker_.MsgBox(QStringLiteral("%1 is not possible now, and can be tried again later.\r\n\r\n%2")
                      .arg(Caption(way), why),
                  MsgButtons::Ok, MsgIcon::Exclamation, VerbOf(way));
    return {Outcome::Refused};
}

} // namespace quorvik
