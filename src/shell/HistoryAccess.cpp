#include "shell/HistoryAccess.h"

#include "shell/MDIFormMain.h"
#include "shell/OpenWindows.h"

namespace quorvik
{

HistoryAccess::HistoryAccess(MDIFormMain &main)
    : main_(main)
    , engines_(main.AllEngines())
    , reader_(engines_.journal.Path())
    , pastStates_(reader_, engines_.backups, engines_.table)
{
}

const Journal &HistoryAccess::TheJournal()
{
    return engines_.journal;
}

void HistoryAccess::Refresh()
{
    engines_.recorder.HandOver();
}

std::optional<JournalSighting> HistoryAccess::ThisDrive()
{
    if (!engines_.table.PortOpen())
        return std::nullopt;
    bool isKnown = true;
    const auto told = [this, &isKnown](int p) {
        const std::optional<std::int32_t> rawValue = engines_.states.DriveValue(p);
        // A drive with fewer parameters has none of this.
        isKnown &= rawValue || p > engines_.table.LastParam;
        return rawValue.value_or(0);
    };
    const DriveIdentity identity = DriveIdentity::Of(told, engines_.table.LastParam);
    return isKnown ? std::optional(JournalSighting{identity, JournalTime::Now()}) : std::nullopt;
}

void HistoryAccess::TakeBack(const std::vector<ShownRow> &rows)
{
    ShowCompareWith(main_, pastStates_.Before(rows), true);
}

std::vector<JournalSighting> HistoryAccess::Drives()
{
    return pastStates_.Drives();
}

void HistoryAccess::StateAt(const JournalSighting &drive, qint64 utcMs)
{
    ShowCompareWith(main_, pastStates_.StateAt(drive, utcMs), false);
}

} // namespace quorvik
