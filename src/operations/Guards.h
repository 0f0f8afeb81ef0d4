#pragma once

#include "compare/ParameterSet.h"
#include "link/DriveLink.h"
#include "link/ParamValue.h"
#include "platform/Asker.h"

#include <map>
#include <optional>
#include <set>
#include <vector>

namespace quorvik
{

class Document;
class ParameterTable;

/**
 * The questions before a machine could start, restart or lose its set. Each stands before a command only
 * while its condition holds; the command itself is as it would be without.
 */
class Guards
{
public:
    Guards(ParameterTable &table, Document &document, Asker &asker);

    /** The entry of the Options menu; nothing is asked without it. */
    bool Asking = true;

    /** Re-Initialize, Reset. */
    bool MayRestart(Restart command);
    /** Load from EE. */
    bool MayLoadFromMemory();

    /** What BeforeWriting() has to know of the drive. */
    static const std::set<int> &KnownBeforeWriting();
    /**
     * Before many values go to the drive.
     * @param from the set that the values are of: its model, rated current and texts.
     * @param drive raw values read just now, by number; one that is missing could not be read.
     * @param isWhole whether a running drive forbids it.
     * @return what is to be left out, or nothing where nothing may be sent; the user has been asked or told.
     */
    std::optional<std::set<int>> BeforeWriting(const std::vector<ParamValue> &values,
                                               const ParameterSet &from,
                                               const std::map<int, std::int32_t> &drive, bool isWhole);

    /** Whether the drive runs, so that no whole set may be written to it. */
    static bool Forbids(const std::map<int, std::int32_t> &drive);

    /** The default button of a question that is asked in any case. */
    MsgAnswer DefaultOf(MsgAnswer told, MsgAnswer safe) const { return Asking ? safe : told; }

private:
    ParameterTable &table_;
    Document &document_;
    Asker &asker_;
};

} // namespace quorvik
