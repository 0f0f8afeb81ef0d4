#pragma once

#include "compare/forms/CompareHost.h"
#include "desktop/Desk.h"
#include "operations/SaveCommands.h"
#include "settings/SettingsFile.h"

namespace quorvik
{

/** A drive that differs from the open set in a few values of each kind, for the picture of the comparison. */
class SampleComparison : public CompareHost
{
public:
    explicit SampleComparison(Desk &desk);

    OperationResult ReadDrive(ParameterSet &set) override;
    const WriteReport *WriteDrive(const std::vector<ParamValue> &, const ParameterSet &) override
    {
        return nullptr;
    }
    QList<KeptSet> KeptSets() const override { return {}; }
    std::optional<ParameterSet> UnwrittenEntries() const override { return {}; }
    const SaveCommands &Saving() const override { return saving_; }
    QStringList BlockNames() const override;

private:
    Desk &desk_;
    SettingsFile file_;
    SaveCommands saving_;
};

} // namespace quorvik
