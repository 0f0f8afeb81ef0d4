#include "desktop/LongestText.h"

#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"

namespace quorvik
{

namespace
{

void ConsiderRecord(QString &longest, const ParamRecord &record)
{
    QStringList texts = TextsOf(TypeCode(record.Attributes));
    if (texts.isEmpty())
        texts = {ValueText(record.Min, record.Attributes), ValueText(record.Max, record.Attributes)};
    for (const QString &text : texts)
        if (text.size() > longest.size())
            longest = text;
}

} // namespace

QString LongestValueText(const ParameterTable &table, int p)
{
    QString longest;
    ConsiderRecord(longest, table[p]);
    if (p <= table.PresetTable.UpperBound())
        ConsiderRecord(longest, table.PresetTable[p]);
    return longest;
}

QString LongestValueTextOfAll(const ParameterTable &table,
                              const std::function<double(const QString &)> &widthOf)
{
    QString widest;
    double width = 0;
    for (int p = 0; p <= table.LastParam; ++p) {
        const QString text = LongestValueText(table, p);
        // Measuring is what costs; a text two characters shorter is never wider.
        if (text.size() + 2 < widest.size())
            continue;
        const double textWidth = widthOf(text);
        if (textWidth > width) {
            width = textWidth;
            widest = text;
        }
    }
    return widest;
}

} // namespace quorvik
