#include "model/ShownText.h"

#include "model/Conversions.h"
#include "platform/RuntimeFailure.h"

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

} // namespace quorvik
