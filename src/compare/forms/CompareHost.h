#pragma once

#include "compare/ParameterSet.h"
#include "compare/WriteReport.h"
#include "operations/Outcome.h"

#include <QList>
#include <optional>

namespace quorvik
{

class SaveCommands;

/** What the window of the comparison needs beside the desk. The shell answers with the program's operations,
 * a picture of the window with nothing. */
class CompareHost
{
public:
    virtual ~CompareHost() = default;

    /** Reads the drive beside the table; goes on line for it where the program is off line, and stays there.
     */
    virtual OperationResult ReadDrive(ParameterSet &set) = 0;
    /**
     * Writes values to the drive and reads them back; on line only. The user is told what it came to.
     * @return what became of each value, until the next write; null where nothing was begun.
     */
    virtual const WriteReport *WriteDrive(const std::vector<ParamValue> &values,
                                          const ParameterSet &from) = 0;

    /** A drive's set that was kept before something was written to it. */
    struct KeptSet {
        QString path;
        QString name;
    };
    /** The newest first. */
    virtual QList<KeptSet> KeptSets() const = 0;
    /** The entries that had not reached the drive when a link was lost, and nothing else; null for none. */
    virtual std::optional<ParameterSet> UnwrittenEntries() const = 0;
    /** Who knows the one file that is never saved over. */
    virtual const SaveCommands &Saving() const = 0;
    /** By number, the caption of the first block that shows a parameter; empty where none does. */
    virtual QStringList BlockNames() const = 0;
};

} // namespace quorvik
