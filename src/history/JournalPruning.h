#pragma once

#include <QSqlError>

namespace quorvik
{

class JournalFile;
struct JournalTimings;

/** Lets go of whole actions: those that began too long ago, and the oldest where there are too many rows.
 * Does it in steps, between which others may write. @param run that must stay, whether or not it did
 * anything. */
QSqlError Prune(JournalFile &file, const JournalTimings &timings, qint64 run);

} // namespace quorvik
