#pragma once

#include "compare/Backups.h"
#include "compare/ParameterSet.h"
#include "history/JournalReader.h"

#include <map>
#include <optional>
#include <vector>

namespace quorvik
{

/** A set as it was. */
struct PastState {
    ParameterSet set;
    QString note; ///< for the user: how it was found, and what is not known
};

/** Works out from the journal and the backups what sets were before. What cannot be known is not known in the
 * sets either: what the drive measures, its clock, and what gives it a command. */
class PastStates
{
public:
    /** @param like gives names and factory limits; its values do not matter. */
    PastStates(JournalReader &journal, const Backups &backups, const ParameterTable &like);

    /** The drives that the journal knows, each once, as it was seen last, the newest first. Drives of one
     * type are told apart by their hour meters. */
    std::vector<JournalSighting> Drives();
    /** What a drive held at a moment, as far as that is known. */
    PastState StateAt(const JournalSighting &drive, qint64 utcMs);
    /** What the parameters of these rows, and no others, were before the earliest row of each. */
    PastState Before(const std::vector<ShownRow> &rows);

private:
    using Values = std::map<int, std::int32_t>;
    /** The sightings of one drive, the oldest first. */
    using Chain = std::vector<JournalSighting>;

    struct KeptSet {
        Values values;
        DriveIdentity identity;
    };
    struct FoundBackup {
        QDateTime time;
        const KeptSet *kept = nullptr;
    };
    /** What was found out on the way. */
    struct Findings {
        QString source; ///< sentence
        int unsaved = 0;
        bool isLoaded = false; ///< the drive took all from its memory, of which little is known
    };

    std::vector<Chain> Chains();
    /** The chain that a drive belongs to. Null where there is none. */
    static const Chain *ChainOf(const std::vector<Chain> &chains, const JournalSighting &drive);
    /** The backup of the chain's drive that is nearest to the moment, before or after it. */
    std::optional<FoundBackup> Nearest(const std::vector<Chain> &chains, const Chain &chain, qint64 utcMs,
                                       bool isBefore);
    const KeptSet &Read(const Backups::Entry &entry);
    Values ValuesAt(const std::vector<Chain> &chains, const Chain &chain, qint64 utcMs, Findings &findings);
    static void GoForward(Values &values, const std::vector<ShownRow> &changes, Findings &findings);
    static void GoBack(Values &values, std::vector<ShownRow> changes);
    void KeepSettings(Values &values) const;
    ParameterSet SetOf(const Values &values, int lastParam, const QString &name) const;

    JournalReader &journal_;
    const Backups &backups_;
    const ParameterTable &like_;
    std::map<std::pair<QString, qint64>, KeptSet> read_; ///< by path and time of the file
};

} // namespace quorvik
