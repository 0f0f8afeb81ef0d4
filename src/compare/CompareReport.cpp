#include "compare/CompareReport.h"

#include "settings/Report.h"

#include <QLocale>

namespace quorvik
{

QList<QStringList> ReportHeading(const CompareReport &report)
{
    QStringList names{QStringLiteral("Compared")};
    QStringList models{QStringLiteral("Model")};
    for (const CompareReport::Side &side : report.sides) {
        names += side.name;
        models += side.modelText;
    }
    QList<QStringList> lines{
        names, models, {QStringLiteral("Date"), QLocale().toString(report.made, QLocale::ShortFormat)}};
    for (const QString &sentence : report.mismatches)
        lines += QStringList{QStringLiteral("Note"), sentence};
    return lines;
}

QStringList ReportHeads(const CompareReport &report)
{
    QStringList heads{QStringLiteral("Number"), QStringLiteral("Name"), QStringLiteral("Block")};
    for (const CompareReport::Side &side : report.sides)
        heads += side.name;
    for (std::size_t side = 1; side < report.sides.size(); ++side)
        heads += report.sides.size() == 2 ? QStringLiteral("Difference")
                                          : QStringLiteral("Difference of ") + report.sides[side].name;
    return heads << QStringLiteral("Kind");
}

QStringList ReportFields(const DifferenceRow &row)
{
    QStringList fields{QString::number(row.param), row.name, row.block};
    for (int side = 0; side < row.sideCount; ++side)
        fields += row.sides[std::size_t(side)].text;
    for (int side = 1; side < row.sideCount; ++side)
        fields += row.differences[std::size_t(side)];
    return fields << KindText(row.kind);
}

QByteArray ReportAsCsv(const CompareReport &report)
{
    QByteArray csv;
    for (const QStringList &line : ReportHeading(report))
        csv += CsvLine(line);
    csv += CsvLine(ReportHeads(report));
    for (const DifferenceRow &row : report.rows)
        csv += CsvLine(ReportFields(row));
    return csv;
}

} // namespace quorvik
