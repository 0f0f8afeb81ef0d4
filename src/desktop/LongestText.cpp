#include "desktop/LongestText.h"

#include "model/Conversions.h"
#include "model/Model.h"
#include "model/TextTables.h"

#include <QFontMetrics>
#include <algorithm>

namespace quorvik
{

namespace
{

/** Model codes run 0 to 32. */
constexpr std::int32_t LastModelCode = 32;
constexpr int ModelTypeCode = 20;

void KeepLonger(QString &longest, const QString &text)
{
    if (text.size() > longest.size())
        longest = text;
}

void ConsiderRecord(QString &longest, const ParamRecord &record)
{
    const int typeCode = TypeCode(record.Attributes);
    if (IsEnumerated(typeCode)) {
        for (int value = 0; value < EnumCount(typeCode); ++value)
            KeepLonger(longest, EnumText(value, typeCode));
    } else if (typeCode == ModelTypeCode) {
        for (std::int32_t code = 0; code <= LastModelCode; ++code)
            KeepLonger(longest, ModelText(code));
    } else {
        KeepLonger(longest, ValueText(record.Min, record.Attributes));
        KeepLonger(longest, ValueText(record.Max, record.Attributes));
    }
}

} // namespace

QString LongestValueText(const Model &model, int p)
{
    QString longest;
    ConsiderRecord(longest, model.ParamTable[p]);
    if (p <= model.PresetTable.UpperBound())
        ConsiderRecord(longest, model.PresetTable[p]);
    return longest;
}

QString LongestValueTextOfAll(const Model &model, const QFontMetrics &metrics)
{
    QString widest;
    int width = 0;
    for (int p = 0; p <= model.LastParam; ++p) {
        const QString text = LongestValueText(model, p);
        // Measuring is what costs; a text two characters shorter is never wider.
        if (text.size() + 2 < widest.size())
            continue;
        const int textWidth = metrics.horizontalAdvance(text);
        if (textWidth > width) {
            width = textWidth;
            widest = text;
        }
    }
    return widest;
}

} // namespace quorvik
