#include "shell/CompareAccess.h"

#include "blocks/BlockCatalogue.h"
#include "operations/Engines.h"

namespace quorvik
{

OperationResult CompareAccess::ReadDrive(ParameterSet &set)
{
    if (!engines_.table.PortOpen())
        if (OperationResult online = engines_.drive.GoOnLineAside(); !online.IsDone())
            return online;
    return engines_.snapshots.ReadDrive(set);
}

const WriteReport *CompareAccess::WriteDrive(const std::vector<ParamValue> &values, const ParameterSet &from)
{
    // The report of an earlier write says nothing of this one.
    bool isReported = false;
    QObject whileWriting;
    QObject::connect(&engines_.safeWrites, &SafeWrites::Reported, &whileWriting,
                     [&isReported] { isReported = true; });
    engines_.safeWrites.Write(values, from);
    return isReported ? &engines_.safeWrites.Report() : nullptr;
}

QList<CompareHost::KeptSet> CompareAccess::KeptSets() const
{
    QList<KeptSet> sets;
    for (const Backups::Entry &entry : engines_.backups.List())
        sets.append({entry.path, entry.name});
    return sets;
}

std::optional<ParameterSet> CompareAccess::UnwrittenEntries() const
{
    const std::vector<ValueStates::Unwritten> &entries = engines_.states.UnwrittenEntries();
    if (entries.empty())
        return std::nullopt;
    ParameterSet set = ParameterSet::Of(engines_.table, QString());
    set.known.assign(set.known.size(), false);
    for (const ValueStates::Unwritten &entry : entries) {
        set.records[entry.param].Value = entry.rawEntered;
        set.known.at(std::size_t(entry.param)) = true;
    }
    return set;
}

const SaveCommands &CompareAccess::Saving() const
{
    return engines_.saving;
}

QStringList CompareAccess::BlockNames() const
{
    return quorvik::BlockNames(engines_.table.UpperBound() + 1);
}

} // namespace quorvik
