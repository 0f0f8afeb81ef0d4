#pragma once

#include <QStringList>
#include <cstdint>
#include <vector>

namespace quorvik
{

/** A fault that the drive can tell: one bit of the words (255), (304) and of a record of its log. */
struct Fault {
    std::int32_t mask = 0;
    QString logText; ///< as a line of the log has it: "PhaseLoss, "
    QString name;    ///< "Phase Loss"
    QString meaning; ///< sentences for whoever stands at the drive
    QString check;
    QStringList causes; ///< each a sentence, the likeliest first
    QStringList topics; ///< of the help: the windows to look into, the first one first
};

/** Every fault that the program knows, from the lowest bit. */
const std::vector<Fault> &AllFaults();

/** The faults of a word in the order of bits; a bit that no known fault has stands as one with a name of its
 * own, "bit 10". */
std::vector<Fault> FaultsOf(std::int32_t rawFaults);

/** Their names; empty for none. */
QStringList FaultNames(std::int32_t rawFaults);

/** The same in a few words: "Phase Loss", "Phase Loss, OverTemp", "Field Loss and 3 more"; empty for none. */
QString FaultsInShort(std::int32_t rawFaults);

} // namespace quorvik
