#include "history/PastStates.h"

#include "compare/Differences.h"
#include "compare/DriveSet.h"
#include "model/ParameterTable.h"
#include "platform/TimeUnits.h"

#include <QFileInfo>
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <set>

namespace quorvik
{

namespace
{

constexpr qint64 LastMsOfSecond = 999;
constexpr qint64 Always = std::numeric_limits<qint64>::max();

QString TimeText(qint64 utcMs, const char *form = "yyyy-MM-dd HH:mm")
{
    return QDateTime::fromMSecsSinceEpoch(utcMs).toString(QLatin1String(form));
}

QString CountOf(qsizetype count, const QString &what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(what, count == 1 ? QString() : QStringLiteral("s"));
}

/** How far the hour meters of two sightings are apart; nothing where they cannot be of one drive. */
std::optional<int> HoursBetween(const JournalSighting &left, const JournalSighting &right)
{
    const bool isInOrder = left.time.utcMs <= right.time.utcMs;
    const JournalSighting &earlier = isInOrder ? left : right;
    const JournalSighting &later = isInOrder ? right : left;
    const double hours = double(later.time.utcMs - earlier.time.utcMs) / MsPerHour;
    if (!later.identity.IsSameAs(earlier.identity, hours))
        return std::nullopt;
    return later.identity.operatingHours - earlier.identity.operatingHours;
}

/** How well a sighting fits between those before and after it: hours of the meter, fewer are better. */
std::optional<int> Fit(const std::vector<JournalSighting> &chain, const JournalSighting &sighting)
{
    const auto after = std::ranges::upper_bound(chain, sighting.time.utcMs, {},
                                                [](const JournalSighting &seen) { return seen.time.utcMs; });
    std::optional<int> nearest;
    const auto take = [&](const JournalSighting &neighbour) {
        const std::optional<int> hours = HoursBetween(neighbour, sighting);
        if (hours)
            nearest = std::min(nearest.value_or(*hours), *hours);
        return hours.has_value();
    };
    if ((after != chain.begin() && !take(*std::prev(after))) || (after != chain.end() && !take(*after)))
        return std::nullopt;
    return nearest;
}

bool IsTaken(EntryResult result)
{
    return result == EntryResult::Acknowledged || result == EntryResult::Verified ||
           result == EntryResult::Differs;
}

/** Nobody knows whether the drive has it. */
bool IsInDoubt(EntryResult result)
{
    return result == EntryResult::Queued || result == EntryResult::Lost;
}

/** An action across runs. */
std::pair<qint64, int> ActionOf(const ShownRow &change)
{
    return {change.run, change.row.action};
}

/** What changed the drive, or may have: what was not sent is left out, and what followed it. */
std::vector<ShownRow> Effective(const std::vector<ShownRow> &changes)
{
    std::set<std::pair<qint64, int>> taken;
    for (const ShownRow &change : changes)
        if (IsTaken(change.row.result))
            taken.insert(ActionOf(change));
    std::map<std::pair<qint64, int>, ShownRow> unsent; ///< the last one of a parameter
    std::vector<ShownRow> effective;
    for (ShownRow change : changes) {
        const auto key = std::pair(change.run, change.row.param);
        // A value that was entered over one that had not been sent began where that one began.
        if (const auto before = unsent.find(key);
            before != unsent.end() && before->second.row.rawAfter == change.row.rawBefore)
            change.row.rawBefore = before->second.row.rawBefore;
        const EntryResult result = change.row.result;
        if (result == EntryResult::Refused || result == EntryResult::GivenUp) {
            unsent[key] = change;
            continue;
        }
        unsent.erase(key);
        if (IsTaken(result) || IsInDoubt(result) ||
            (result == EntryResult::None && taken.contains(ActionOf(change))))
            effective.push_back(std::move(change));
    }
    return effective;
}

bool IsTakenCommand(const ShownRow &change, int p)
{
    return change.row.param == p && IsTaken(change.row.result);
}

/** What the drive holds after a change; nothing where that is not known. */
std::optional<std::int32_t> Outcome(const ShownRow &change)
{
    if (IsInDoubt(change.row.result))
        return std::nullopt;
    return change.row.result == EntryResult::Differs ? change.rawFound : change.row.rawAfter;
}

void Put(std::map<int, std::int32_t> &values, int p, std::optional<std::int32_t> raw)
{
    if (raw)
        values[p] = *raw;
    else
        values.erase(p);
}

} // namespace

PastStates::PastStates(JournalReader &journal, const Backups &backups, const ParameterTable &like)
    : journal_(journal)
    , backups_(backups)
    , like_(like)
{
}

std::vector<PastStates::Chain> PastStates::Chains()
{
    std::vector<Chain> chains;
    std::vector<JournalSighting> sightings = journal_.Sightings();
    // From the newest to the oldest: two drives of a type are the further apart the later it is.
    std::ranges::stable_sort(sightings, std::greater{},
                             [](const JournalSighting &seen) { return seen.time.utcMs; });
    for (const JournalSighting &sighting : sightings) {
        Chain *best = nullptr;
        int bestHours = 0;
        for (Chain &chain : chains) {
            const std::optional<int> hours = HoursBetween(sighting, chain.back());
            if (hours && (!best || *hours < bestHours)) {
                best = &chain;
                bestHours = *hours;
            }
        }
        if (best)
            best->push_back(sighting);
        else
            chains.push_back({sighting});
    }
    for (Chain &chain : chains)
        std::ranges::reverse(chain);
    return chains;
}

std::vector<JournalSighting> PastStates::Drives()
{
    std::vector<JournalSighting> drives;
    for (const Chain &chain : Chains())
        drives.push_back(chain.back());
    return drives;
}

const PastStates::Chain *PastStates::ChainOf(const std::vector<Chain> &chains, const JournalSighting &drive)
{
    const Chain *best = nullptr;
    std::optional<int> bestHours;
    for (const Chain &chain : chains) {
        const std::optional<int> hours = Fit(chain, drive);
        if (hours && (!bestHours || *hours < *bestHours)) {
            best = &chain;
            bestHours = hours;
        }
    }
    return best;
}

const PastStates::KeptSet &PastStates::Read(const Backups::Entry &entry)
{
    const auto key = std::pair(entry.path, QFileInfo(entry.path).lastModified().toMSecsSinceEpoch());
    if (const auto known = read_.find(key); known != read_.end())
        return known->second;
    KeptSet kept;
    QString failure;
    const ParameterSet set = ParameterSet::FromFile(entry.path, like_, failure);
    for (int p = 0; p <= set.LastParam(); ++p)
        kept.values[p] = set.Value(p);
    kept.identity = DriveIdentity::Of([&kept](int p) { return kept.values[p]; }, set.LastParam());
    return read_[key] = std::move(kept);
}

std::optional<PastStates::FoundBackup> PastStates::Nearest(const std::vector<Chain> &chains,
                                                           const Chain &chain, qint64 utcMs, bool isBefore)
{
    QList<Backups::Entry> entries = backups_.List();
    entries.removeIf(
        [&](const Backups::Entry &entry) { return (entry.time.toMSecsSinceEpoch() <= utcMs) != isBefore; });
    if (!isBefore)
        std::ranges::reverse(entries);
    const QString model = chain.back().identity.ModelName();
    for (const Backups::Entry &entry : entries) {
        // By its name first, for reading takes longer.
        if (!entry.name.startsWith(model + u' '))
            continue;
        const KeptSet &kept = Read(entry);
        const qint64 time = entry.time.toMSecsSinceEpoch();
        if (!kept.values.empty() && ChainOf(chains, {kept.identity, {time, 0}}) == &chain)
            return FoundBackup{entry.time, &kept};
    }
    return std::nullopt;
}

void PastStates::GoForward(Values &values, const std::vector<ShownRow> &changes, Findings &findings)
{
    std::optional<Values> inMemory; ///< of the drive; nothing before it was told to save
    std::set<int> unsaved;
    for (const ShownRow &change : changes) {
        const int p = change.row.param;
        if (IsTakenCommand(change, Param::SaveParameters)) {
            inMemory = values;
            unsaved.clear();
        } else if (IsTakenCommand(change, Param::LoadParameters)) {
            findings.isLoaded = !inMemory;
            if (inMemory)
                values = *inMemory;
            else
                for (const int changed : unsaved)
                    values.erase(changed);
            unsaved.clear();
        } else {
            Put(values, p, Outcome(change));
            unsaved.insert(p);
        }
    }
    findings.unsaved = int(std::ranges::count_if(unsaved, [&values](int p) { return values.contains(p); }));
}

void PastStates::GoBack(Values &values, std::vector<ShownRow> changes)
{
    std::ranges::reverse(changes);
    for (const ShownRow &change : changes)
        if (IsTakenCommand(change, Param::LoadParameters))
            values.clear();
        else
            Put(values, change.row.param, change.row.rawBefore);
}

PastStates::Values PastStates::ValuesAt(const std::vector<Chain> &chains, const Chain &chain, qint64 utcMs,
                                        Findings &findings)
{
    const std::optional<FoundBackup> older = Nearest(chains, chain, utcMs, true);
    const qint64 since = older ? older->time.toMSecsSinceEpoch() : 0;
    const qint64 complete = journal_.CompleteSince().value_or(utcMs);
    const std::vector<ShownRow> before = Effective(journal_.ChangesOn(chain, since, utcMs));
    Values values;
    if (older) {
        values = older->kept->values;
        GoForward(values, before, findings);
        findings.source =
            QStringLiteral("From the backup of %1 with %2 since.")
                .arg(TimeText(since), CountOf(qsizetype(before.size()), QStringLiteral("change")));
    } else if (utcMs >= chain.front().time.utcMs) {
        // The journal's rows alone tell some values from before the moment, and some from after it.
        GoForward(values, before, findings);
        const std::optional<FoundBackup> newer = Nearest(chains, chain, utcMs, false);
        // A backup's time is that of its whole second.
        const qint64 until = newer ? newer->time.toMSecsSinceEpoch() + LastMsOfSecond : Always;
        const std::vector<ShownRow> after = Effective(journal_.ChangesOn(chain, utcMs, until));
        Values back = newer ? newer->kept->values : Values{};
        GoBack(back, after);
        for (const auto &[p, rawValue] : back)
            if (const auto [known, isNew] = values.try_emplace(p, rawValue);
                !isNew && known->second != rawValue)
                // Something else has changed it at a time that nobody knows.
                values.erase(known);
        findings.source =
            newer ? QStringLiteral("From the backup of %1, which is later, with %2 taken back.")
                        .arg(TimeText(until), CountOf(qsizetype(after.size()), QStringLiteral("change")))
                  : QStringLiteral("There is no backup of this drive: what the journal does not tell is "
                                   "not known.");
    } else {
        findings.source = QStringLiteral("Nothing is known of this drive at that time: it was seen for "
                                         "the first time on %1.")
                              .arg(TimeText(chain.front().time.utcMs));
        return values;
    }
    if ((older ? since : utcMs) < complete)
        findings.source += QStringLiteral(" The journal goes back to %1 only: what was changed before is "
                                          "not in it.")
                               .arg(TimeText(complete));
    return values;
}

void PastStates::KeepSettings(Values &values) const
{
    std::erase_if(values, [this](const auto &item) {
        if (item.first < 0 || item.first > like_.UpperBound())
            return true;
        const RowKind kind = KindOf(item.first, like_[item.first].Attributes);
        return kind != RowKind::Setting && kind != RowKind::Model;
    });
}

ParameterSet PastStates::SetOf(const Values &values, int lastParam, const QString &name) const
{
    ParameterTable table(like_);
    table.SetPortOpen(false);
    table.LastParam = std::int16_t(std::min(lastParam, like_.UpperBound()));
    return SetOfDrive(values, table, name);
}

PastState PastStates::StateAt(const JournalSighting &drive, qint64 utcMs)
{
    const QString name = QStringLiteral("%1 at %2").arg(drive.identity.ModelName(), TimeText(utcMs));
    const std::vector<Chain> chains = Chains();
    const Chain *chain = ChainOf(chains, drive);
    Findings findings;
    Values values;
    if (chain)
        values = ValuesAt(chains, *chain, utcMs, findings);
    else
        findings.source = QStringLiteral("The journal does not know this drive.");
    if (!journal_.Failure().isEmpty())
        findings.source += QStringLiteral(" The journal could not be read: %1.").arg(journal_.Failure());
    KeepSettings(values);
    if (!values.empty()) {
        values[Param::DriveModel] = drive.identity.model;
        values[Param::DriveCurrent] = drive.identity.driveAmps;
        values[Param::ControlFirmwareVersion] = drive.identity.firmware;
        if (Param::TriggerFirmwareVersion <= drive.identity.lastParam)
            values[Param::TriggerFirmwareVersion] = drive.identity.triggerFirmware;
    }
    if (findings.isLoaded)
        findings.source +=
            QStringLiteral(" The drive has loaded its memory since: what had been changed before "
                           "without saving may have been otherwise.");
    if (findings.unsaved > 0)
        findings.source +=
            QStringLiteral(" %1 had not been saved in the drive's memory: if it was switched off "
                           "or restarted since, it had lost that.")
                .arg(CountOf(findings.unsaved, QStringLiteral("value")));
    return {SetOf(values, drive.identity.lastParam, name), findings.source};
}

PastState PastStates::Before(const std::vector<ShownRow> &rows)
{
    std::map<int, const ShownRow *> earliest;
    for (const ShownRow &row : rows) {
        const ShownRow *&known = earliest[row.row.param];
        if (!known || row.id < known->id)
            known = &row;
    }
    Values values;
    int unknown = 0;
    qint64 since = Always;
    for (const auto &[p, row] : earliest) {
        since = std::min(since, row->row.time.utcMs);
        Put(values, p, row->row.rawBefore);
        unknown += row->row.rawBefore ? 0 : 1;
    }
    const qsizetype told = qsizetype(values.size());
    KeepSettings(values);
    const QString name =
        rows.empty() ? QString() : QStringLiteral("before %1").arg(TimeText(since, "yyyy-MM-dd HH:mm:ss"));
    QString note = values.size() == 1
                       ? QStringLiteral("What a parameter held before it was changed.")
                       : QStringLiteral("What %1 held before the chosen changes.")
                             .arg(CountOf(qsizetype(values.size()), QStringLiteral("parameter")));
    if (unknown > 0)
        note += QStringLiteral(" Of %1 nobody knew it.").arg(CountOf(unknown, QStringLiteral("parameter")));
    if (told > qsizetype(values.size()))
        note += QStringLiteral(" Commands, the clock and what the drive measures are not taken back.");
    return {SetOf(values, like_.LastParam, name), note};
}

} // namespace quorvik
