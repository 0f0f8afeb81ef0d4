#pragma once

#include "compare/DriveIdentity.h"
#include "report/CommissioningReport.h"

#include <QDate>
#include <optional>

namespace quorvik
{

class JournalReader;

/** Whose changes of which day are wanted. */
struct JournalWish {
    QDate day;                          ///< by the computer's clock
    std::optional<DriveIdentity> drive; ///< changes on line with this drive count
    QString setPath;                    ///< and those of the set of this file; "unnamed" for none
    int mostRows = 500;
};

/** The changes of a day in their order; where there are too many the last ones, and how many came before. */
CommissioningTable JournalOfDay(JournalReader &reader, const JournalWish &wish);

} // namespace quorvik
