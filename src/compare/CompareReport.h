#pragma once

#include "compare/Differences.h"

#include <QDateTime>

namespace quorvik
{

/** A comparison as it is exported: what was compared, when, and the rows that were shown. */
struct CompareReport {
    struct Side {
        QString name;
        QString modelText;
    };

    std::vector<Side> sides;
    QDateTime made;
    QStringList mismatches; ///< what makes the sets hard to compare, a sentence each
    std::vector<DifferenceRow> rows;
};

/** What stands above the rows: "Compared", "open set"; "Model", "SVN100-000 (174 Amps)"; and so on. */
QList<QStringList> ReportHeading(const CompareReport &report);
/** The heads of the columns. */
QStringList ReportHeads(const CompareReport &report);
/** The fields of a row, as many as there are heads. */
QStringList ReportFields(const DifferenceRow &row);

/** Heading, heads and rows as comma-separated values in UTF-8, one CR LF terminated line each; no text can
 * become a formula. */
QByteArray ReportAsCsv(const CompareReport &report);

} // namespace quorvik
