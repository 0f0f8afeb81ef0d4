#pragma once

#include "settings/Report.h"

#include <functional>

namespace quorvik
{

class Document;

/** What the report says, in texts. */
struct ReportContent {
    QString versionText;
    QString dateText;
    QString timeText;
    QString notes;
    QList<ReportRow> rows;
};

/** The version of this program, the table's notes, and the present date and time in the user's format. */
ReportContent DescribeReport(const Document &document, const QList<ReportRow> &rows);

enum class ReportFont { Body, Underlined, Title };

/** What the layout must know of the paper and the fonts. All lengths are in inches. */
struct ReportMetrics {
    double scaleWidth = 0; ///< width of the printable area
    double scaleHeight = 0;
    double bodyLine = 0; ///< height of a line
    double titleLine = 0;
    std::function<double(const QString &)> BodyWidth; ///< width of a text in the body font
};

/** A text by its upper left corner, in inches from that of the printable area. */
struct PlacedText {
    double x = 0;
    double y = 0;
    ReportFont font = ReportFont::Body;
    QString text;
};

/** A horizontal line, in inches as PlacedText. */
struct PlacedRule {
    double left = 0;
    double right = 0;
    double y = 0;
};

struct ReportPage {
    QList<PlacedText> texts; ///< in the order in which they are read
    QList<PlacedRule> rules;
};

/**
 * The pages of one copy, at least one. The places are those of an 8.5 by 11 inch page; on other paper they
 * move so far that nothing leaves the printable area of a page at least 7.5 inches wide.
 */
QList<ReportPage> LayOutReport(const ReportContent &content, const ReportMetrics &metrics);

} // namespace quorvik
