#pragma once

#include "compare/forms/CompareHost.h"

namespace quorvik
{

struct Engines;

/** Lets the window of the comparison reach the engines of this run. */
class CompareAccess : public CompareHost
{
public:
    explicit CompareAccess(Engines &engines)
        : engines_(engines)
    {
    }

    OperationResult ReadDrive(ParameterSet &set) override;
    const WriteReport *WriteDrive(const std::vector<ParamValue> &values, const ParameterSet &from) override;
    QList<KeptSet> KeptSets() const override;
    std::optional<ParameterSet> UnwrittenEntries() const override;
    const SaveCommands &Saving() const override;
    QStringList BlockNames() const override;

private:
    Engines &engines_;
};

} // namespace quorvik
