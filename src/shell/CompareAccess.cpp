#include "shell/CompareAccess.h"

#include "blocks/BlockCatalogue.h"
#include "shell/Engines.h"

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

const SaveCommands &CompareAccess::Saving() const
{
    return engines_.saving;
}

QStringList CompareAccess::BlockNames() const
{
    return quorvik::BlockNames(engines_.table.UpperBound() + 1);
}

} // namespace quorvik
