#pragma once

#include "compare/forms/CompareHost.h"
#include "operations/SaveCommands.h"
#include "settings/SettingsFile.h"
#include "support/TestDesk.h"

namespace quorvik::testing
{

/** A comparison's surroundings in a test: the drive is what the test says, and what is written is recorded.
 */
class ScriptedHost : public CompareHost
{
public:
    explicit ScriptedHost(TestDesk &given)
        : file(given.table, given.document)
        , saving(given.document, given.asker, file, given.folder.path())
    {
    }

    OperationResult ReadDrive(ParameterSet &set) override
    {
        ++Readings;
        set = Drive;
        return ReadingResult;
    }
    const WriteReport *WriteDrive(const std::vector<ParamValue> &values, const ParameterSet &from) override
    {
        Written = values;
        WrittenFrom = from.name;
        return &Report;
    }
    QList<KeptSet> KeptSets() const override { return Kept; }
    std::optional<ParameterSet> UnwrittenEntries() const override { return {}; }
    const SaveCommands &Saving() const override { return saving; }
    QStringList BlockNames() const override { return Blocks; }

    ParameterSet Drive;
    OperationResult ReadingResult;
    int Readings = 0;
    std::vector<ParamValue> Written;
    QString WrittenFrom;
    WriteReport Report;
    QList<KeptSet> Kept;
    QStringList Blocks;

private:
    SettingsFile file;
    SaveCommands saving;
};

} // namespace quorvik::testing
