#include "batch/BatchRun.h"
#include "batch/DriveReading.h"
#include "batch/EntryText.h"
#include "batch/ParameterNames.h"
#include "batch/Verbs.h"
#include "batch/WriteRows.h"
#include "compare/DriveSet.h"
#include "model/ShownText.h"
#include "operations/Merge.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** "226=5.0" taken apart. */
struct Assignment {
    int param = 0;
    QString valueText;
};

/** @return why a word is none; empty where all are. */
QString TakeApart(const QStringList &words, const ParameterTable &table, std::vector<Assignment> &wanted)
{
    if (words.isEmpty())
        return QStringLiteral("What is to be written is missing: PARAMETER=VALUE.");
    for (const QString &word : words) {
        const qsizetype sign = word.indexOf(u'=');
        if (sign < 1)
            return QStringLiteral("\"%1\" is not of the form PARAMETER=VALUE.").arg(word);
        const NamedParams named = FindOneParam(word.left(sign), table);
        if (!named.failure.isEmpty())
            return named.failure;
        const int p = named.params.front();
        if (std::ranges::find(wanted, p, &Assignment::param) != wanted.end())
            return QStringLiteral("Parameter %1 is written twice.").arg(p);
        wanted.push_back({p, word.mid(sign + 1)});
    }
    return {};
}

Question AskForDestination(const ParameterTable &table, int other, int target)
{
    return {.text = QStringLiteral("%1 is already set to %2. Take it off there?")
                        .arg(table.FullName(other), table.FullName(target)),
            .title = QStringLiteral("Write Parameters"),
            .choices = {{MsgAnswer::Yes, QStringLiteral("Take it off")}, {MsgAnswer::Cancel}},
            .safe = MsgAnswer::Cancel,
            .word = QStringLiteral("destination")};
}

/** What the words come to on a copy of the drive's table. */
class Entries
{
public:
    Entries(BatchRun &run, const ParameterSet &drive)
        : run_(run)
        , drive_(drive)
        , copy_(TableOf(drive, run.Eng().table))
        , rules_(copy_, run.TheAsker())
    {
    }

    /** @return Done where all may be written; Differs or Guard, and why was told. */
    ExitCode Take(const std::vector<Assignment> &wanted)
    {
        // Texts and limits of one may follow another one.
        std::vector<Assignment> pending = wanted;
        std::ranges::stable_sort(
            pending, {}, [&](const Assignment &one) { return ParameterTable::LeadsOf(one.param).size(); });
        bool isRefused = false;
        for (const Assignment &one : pending)
            if (const ExitCode code = TakeOne(one, wanted); code == ExitCode::Guard)
                return code;
            else if (code != ExitCode::Done)
                isRefused = true;
        return isRefused ? ExitCode::Differs : ExitCode::Done;
    }

    const std::vector<ParamValue> &Values() const { return values_; }
    /** As it will be shown. */
    QString TextOf(const ParamValue &value) const
    {
        return ShownText(value.rawValue, copy_[value.param].Attributes);
    }

private:
    ExitCode Refuse(int p, const QString &reason)
    {
        const QString name = p <= copy_.LastParam ? copy_.FullName(p) : QStringLiteral("(%1)").arg(p);
        run_.Output().Complain(QStringLiteral("%1: %2").arg(name, reason));
        return ExitCode::Differs;
    }

    ExitCode TakeOne(const Assignment &one, const std::vector<Assignment> &all)
    {
        const int p = one.param;
        if (p > copy_.LastParam || !drive_.Knows(p))
            return Refuse(p, QStringLiteral("The drive has no such parameter."));
        const TypedEntry entry = EntryOfText(copy_, rules_, p, one.valueText);
        if (!entry.refusal.isEmpty())
            return Refuse(p, entry.refusal);
        const ParamValue value{p, entry.rawValue};
        if (copy_.AttrBit(Attr::Destination, p))
            if (const ExitCode code = FreeDestination(value, all); code != ExitCode::Done)
                return code;
        return Merge(value);
    }

    ExitCode FreeDestination(const ParamValue &value, const std::vector<Assignment> &all)
    {
        const int other = rules_.FindDestinationConflict(value.param, value.rawValue);
        if (other == 0)
            return ExitCode::Done;
        // One that goes elsewhere in the same breath makes room by itself.
        if (std::ranges::find(all, other, &Assignment::param) == all.end() &&
            run_.TheAsker().Ask(AskForDestination(copy_, other, value.rawValue)) != MsgAnswer::Yes)
            return ExitCode::Guard;
        const ExitCode code = Merge({other, 0});
        // Its own value follows.
        if (std::ranges::find(all, other, &Assignment::param) != all.end())
            std::erase_if(values_, [other](const ParamValue &v) { return v.param == other; });
        return code;
    }

    ExitCode Merge(const ParamValue &value)
    {
        const std::vector<RefusedRow> refused = MergeIntoSet(copy_, {value}, drive_);
        if (!refused.empty())
            return Refuse(value.param, refused.front().reason);
        std::erase_if(values_, [&](const ParamValue &v) { return v.param == value.param; });
        values_.push_back(value);
        return ExitCode::Done;
    }

    BatchRun &run_;
    const ParameterSet &drive_;
    ParameterTable copy_;
    EntryRules rules_;
    std::vector<ParamValue> values_;
};

void PrintPlan(BatchRun &run, const Entries &entries, const ParameterSet &drive)
{
    run.Output().Begin(QStringLiteral("planned_write"),
                       {{QStringLiteral("number"), QStringLiteral("No."), 5, true},
                        {QStringLiteral("name"), QStringLiteral("Name"), 28},
                        {QStringLiteral("before"), QStringLiteral("Drive"), 14, true},
                        {QStringLiteral("text"), QStringLiteral("New"), 14, true},
                        {QStringLiteral("raw_before"), QStringLiteral("Raw drive"), 9, true},
                        {QStringLiteral("raw"), QStringLiteral("Raw new"), 9, true}});
    for (const ParamValue &value : entries.Values())
        run.Output().Row({value.param, NameIn(drive, value.param), ShownValue(drive, value.param),
                          entries.TextOf(value), RawValue(drive, value.param), value.rawValue});
    run.Output().Say(QStringLiteral("Nothing was written."));
}

} // namespace

void AddWriteOptions(QCommandLineParser &parser)
{
    AddSaveOption(parser);
    parser.addOption({QStringLiteral("dry-run"), QStringLiteral("Tells what would be written, and ends.")});
}

ExitCode RunWrite(BatchRun &run)
{
    std::vector<Assignment> wanted;
    if (const QString failure = TakeApart(run.Arguments(), run.Eng().table, wanted); !failure.isEmpty())
        return run.UsageFailure(failure);
    for (const Assignment &one : wanted)
        if (one.param == Param::SaveParameters || one.param == Param::LoadParameters ||
            one.param == Param::OneShotCommand)
            return run.UsageFailure(QStringLiteral("Parameter %1 is a command of the drive's memory; --save "
                                                   "has the drive save.")
                                        .arg(one.param));
    if (const ExitCode code = run.GoOnLine(); code != ExitCode::Done)
        return code;
    ParameterSet drive;
    if (const ExitCode code = ReadWholeDrive(run, drive); code != ExitCode::Done)
        return code;
    Entries entries(run, drive);
    if (const ExitCode code = entries.Take(wanted); code != ExitCode::Done) {
        run.Output().Complain(QStringLiteral("Nothing was written."));
        return code;
    }
    if (run.Options().isSet(QStringLiteral("dry-run"))) {
        PrintPlan(run, entries, drive);
        return ExitCode::Done;
    }
    const OperationResult result = run.Eng().safeWrites.Write(entries.Values(), drive);
    const ExitCode code = run.CodeOf(result);
    if (code == ExitCode::Guard) {
        run.Output().Complain(QStringLiteral("Nothing was written."));
        return code;
    }
    PrintReport(run);
    return SaveWhereWanted(run, code);
}

} // namespace quorvik
