#pragma once

#include "history/JournalReader.h"

#include <QByteArray>
#include <QStringList>
#include <functional>

namespace quorvik
{

/** A part of the journal as it is exported. */
struct HistoryReport {
    JournalFilter filter;
    QString filterText; ///< the filter in words; empty where it shows all
    JournalTime made;
};

/** What stands above the rows: "Shown", "text "accel""; "Written", "2026-11-22 09:12:33 +01:00". */
QList<QStringList> HistoryHeading(const HistoryReport &report);
/** The heads of the columns. */
QStringList HistoryHeads();
/** The fields of a row, as many as there are heads. @param row null for an action that changed no value. */
QStringList HistoryFields(const ShownAction &action, const ShownRow *row);

/** Takes the fields of one row; false ends the reading. */
using TakeHistoryRow = std::function<bool(const QStringList &fields)>;

/**
 * Reads all rows that the filter shows, the newest first, by pages, so that no journal is too long.
 * @return an empty text, also where take has ended it, or why the journal cannot be read.
 */
QString ReadHistory(JournalReader &reader, const JournalFilter &filter, const TakeHistoryRow &take);

/** Heading and heads of a file of comma-separated values in UTF-8, one CR LF terminated line each. The rows
 * follow as lines of CsvLine(), in which no text can become a formula. */
QByteArray HistoryCsvHead(const HistoryReport &report);

} // namespace quorvik
