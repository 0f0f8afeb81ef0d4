#pragma once

#include "compare/ParameterSet.h"
#include "operations/Outcome.h"

#include <map>
#include <set>

namespace quorvik
{

class Asker;
class DriveLink;
class ParameterTable;

/** Reads the drive beside the table: what it says goes to the caller, and nothing is written. */
class Snapshots
{
public:
    Snapshots(ParameterTable &table, DriveLink &link, Asker &asker);

    /**
     * Reads the whole drive, shown as progress that can be cancelled. The link must be up. Rows that could
     * not be read are not known in the set, and missing in the result.
     */
    OperationResult ReadDrive(ParameterSet &set);

    /**
     * Reads some parameters at once, without a window. What could not be read is not in the map, which is
     * empty where the link is down or breaks.
     */
    std::map<int, std::int32_t> ReadFresh(const std::set<int> &params);

private:
    ParameterTable &table_;
    DriveLink &link_;
    Asker &asker_;
};

} // namespace quorvik
