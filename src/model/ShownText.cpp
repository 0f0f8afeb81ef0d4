#include "model/ShownText.h"

#include "model/Conversions.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"

#include <QStringList>
#include <algorithm>

namespace quorvik
{

QString ShownText(std::int32_t rawValue, std::int32_t attributes)
{
    try {
        if (QString text = ValueText(rawValue, attributes); !text.isEmpty())
            return text;
    } catch (const RuntimeFailure &) {
        // A list or a model without such a value.
    }
    return QString::number(rawValue);
}

QString RangeText(std::int32_t rawMin, std::int32_t rawMax, std::int32_t attributes)
{
    const int typeCode = TypeCode(attributes);
    if (!IsEnumerated(typeCode))
        return QStringLiteral("%1 to %2").arg(ShownText(rawMin, attributes), ShownText(rawMax, attributes));
    QStringList options;
    for (int i = std::max(rawMin, 0); i < EnumCount(typeCode) && i <= rawMax; ++i)
        options.append(EnumText(i, typeCode));
    return options.join(QStringLiteral(", "));
}

} // namespace quorvik
