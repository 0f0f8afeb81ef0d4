#pragma once

#include "history/JournalReader.h"

#include <QString>
#include <vector>

namespace quorvik::HistoryTexts
{

/** "2026-11-22 09:12:33", by the clock on the wall at that time and place; with " UTC+2" where the zone was
 * another one than now. @param minutesNow what the computer's zone adds to UTC now. */
QString Time(const JournalTime &time, int minutesNow);
/** "2026-11-22 09:12:33 +01:00", which says the moment without knowing where it is read. */
QString WholeTime(const JournalTime &time);
/** "Run of 2026-11-22 09:12, anna, Quorvik 1.0". */
QString Run(const JournalRun &run, int minutesNow);

/** "(226) Fwd Accel A", as the parameter was called. */
QString Parameter(const JournalRow &row);
/** The value before; "not known" where nobody knew what the drive held. */
QString Before(const JournalRow &row);
/** "verified"; "differs, the drive has 7.4 Sec"; empty for what followed another value. */
QString Result(const ShownRow &row);
/** What became of several: "verified" where it is the same for all, else "12 verified, 1 refused". */
QString Results(const std::vector<ShownRow> &rows);

/** The set's file without its folder. */
QString Set(const JournalAction &action);
/** The drive in words; "off line", or "not known" where it never told what it is. */
QString Drive(const ShownAction &action);
/** The same with all that tells drives apart. */
QString WholeDrive(const ShownAction &action);
/** The title; of an action without one how much it changed: "3 values". */
QString Title(const ShownAction &action);
/** What a line of its own says of the only row that is shown of an action: "(226) Fwd Accel A", and behind it
 * the title, where there is one. */
QString OnlyRow(const ShownAction &action, const JournalRow &row);
/** Whether it is one line: one value changed, or only one is shown. */
bool IsOneLine(const ShownAction &action);

} // namespace quorvik::HistoryTexts
