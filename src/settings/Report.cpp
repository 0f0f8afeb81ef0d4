#include "settings/Report.h"

#include "model/Conversions.h"
#include "model/ParameterTable.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>

namespace quorvik
{

QByteArray CsvField(const QString &text)
{
    // A spreadsheet would compute what begins so, unless it is a number, with or without its unit.
    static const QRegularExpression formula(QStringLiteral("^[=+@-]"));
    static const QRegularExpression number(QStringLiteral("^[+-]?[0-9]+(\\.[0-9]+)?( [A-Za-z%]+)?$"));
    const bool isText = formula.match(text).hasMatch() && !number.match(text).hasMatch();
    QString quoted = isText ? u'\'' + text : text;
    quoted.replace(u'"', QStringLiteral("\"\""));
    return '"' + quoted.toUtf8() + '"';
}

const QString &ReportField(const ReportRow &row, int column)
{
    static constexpr std::array<QString ReportRow::*, ReportColumns> fields = {
        &ReportRow::numberText, &ReportRow::name, &ReportRow::presetText, &ReportRow::valueText};
    return row.*fields.at(std::size_t(column));
}

QList<ReportRow> CollectRows(const ParameterTable &table, ReportFilter filter)
{
    QList<ReportRow> rows;
    rows.reserve(table.LastParam + 1);
    for (int i = 0; i <= table.LastParam; ++i) {
        const ParamRecord &record = table[i];
        const bool isChanged = !table.AttrBit(Attr::ReadOnly, i) && record.Value != record.Preset;
        if (filter == ReportFilter::ChangedFromDefault && !isChanged)
            continue;
        rows.append({QString::number(i).rightJustified(3), record.Name,
                     ValueText(record.Preset, record.Attributes), ValueText(record.Value, record.Attributes),
                     i});
    }
    return rows;
}

void SortRows(QList<ReportRow> &rows, int column, bool descending)
{
    std::stable_sort(
        rows.begin(), rows.end(), [column, descending](const ReportRow &left, const ReportRow &right) {
            const int order =
                QString::compare(ReportField(left, column), ReportField(right, column), Qt::CaseInsensitive);
            return descending ? order > 0 : order < 0;
        });
}

QByteArray CsvLine(const QStringList &fields)
{
    QByteArrayList quoted;
    for (const QString &field : fields)
        quoted += CsvField(field);
    return quoted.join(',') + "\r\n";
}

QByteArray RowsAsCsv(const QList<ReportRow> &rows)
{
    QByteArray csv = "Tag,Name,Preset,Value\r\n";
    for (const ReportRow &row : rows)
        csv += row.numberText.trimmed().toUtf8() + ',' + CsvField(row.name) + ',' + CsvField(row.presetText) +
               ',' + CsvField(row.valueText) + "\r\n";
    return csv;
}

} // namespace quorvik
