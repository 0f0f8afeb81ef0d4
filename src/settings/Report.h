#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvik
{

class ParameterTable;

/** Which parameters the list shows; the values are the indices of its menu entries and option buttons. */
enum class ReportFilter { All = 0, ChangedFromDefault = 1 };

/** One parameter as the list shows and the report prints it. */
struct ReportRow {
    QString numberText; ///< padded on the left with blanks to three places
    QString name;
    QString presetText;
    QString valueText;
    int param = -1;
};

inline constexpr int ReportColumns = 4;

/** A field of a row by column, 0 to 3: number, name, preset, value. */
const QString &ReportField(const ReportRow &row, int column);

/**
 * The rows of the table from 0 to LastParam. The changed ones are those that can be written and whose Value
 * differs from Preset. Raises RuntimeFailure for a value that has no text.
 */
QList<ReportRow> CollectRows(const ParameterTable &table, ReportFilter filter);

/** Sorts as text by a column, 0 to 3; rows with equal texts keep their order. */
void SortRows(QList<ReportRow> &rows, int column, bool descending);

/** A text as one field of comma-separated values, in UTF-8 and quotes. One that a spreadsheet would take for
 * a formula has an apostrophe before it. */
QByteArray CsvField(const QString &text);
/** A whole line of them. */
QByteArray CsvLine(const QStringList &fields);

/** The rows under their heads as comma-separated values, one CR LF terminated line each. */
QByteArray RowsAsCsv(const QList<ReportRow> &rows);

} // namespace quorvik
