#include "model/ModelList.h"

#include "model/TextTables.h"

namespace quorvik
{

namespace
{

constexpr int FirstNonRegenerative = 17;
constexpr int FirstRegenerative = 1;
constexpr int ModelsOfAKind = 10;
constexpr int RatingMask = 15;
constexpr int ModelTextLength = 10;

bool IsItemOf(const QString &item, std::int32_t modelCode)
{
    return item.left(ModelTextLength).contains(ModelText(modelCode));
}

} // namespace

QStringList ModelListItems()
{
    QStringList items;
    for (const int first : {FirstNonRegenerative, FirstRegenerative})
        for (int code = first; code < first + ModelsOfAKind; ++code)
            items.append(
                QStringLiteral("%1 (%2 Amps)").arg(ModelText(code)).arg(RatedAmps(code & RatingMask)));
    return items;
}

int ModelListIndex(std::int32_t modelCode)
{
    const QStringList items = ModelListItems();
    for (int index = 0; index < items.size(); ++index)
        if (IsItemOf(items.at(index), modelCode))
            return index;
    return 0;
}

std::int32_t ModelOfListItem(const QString &item)
{
    // The texts of two codes may be equal; the lower code wins. The table's end ends a search without a
    // match.
    std::int32_t code = 0;
    while (!IsItemOf(item, code))
        ++code;
    return code;
}

} // namespace quorvik
