#include "model/Conversions.h"

#include "model/ParamTable.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"

#include <array>
#include <cmath>
#include <limits>

namespace quorvik
{

namespace
{

/** What one stands for in a raw value. */
double CountsOfOne(std::int32_t attributes)
{
    static constexpr std::array<double, 4> counts = {1.0, 10.0, 100.0, 1000.0};
    return counts[std::size_t(DecimalsOf(attributes))];
}

} // namespace

int TypeCode(std::int32_t attributes)
{
    return int(CLng(attributes / 32.0) & 31);
}

bool IsEnumerated(int typeCode)
{
    return TypeOf(typeCode).form == ValueType::Form::List;
}

int DecimalsOf(std::int32_t attributes)
{
    return int(attributes & Attr::Decimals);
}

QString NumberText(std::int32_t rawValue, std::int32_t attributes)
{
    return FormatFixed(rawValue / CountsOfOne(attributes), DecimalsOf(attributes));
}

double ShownNumber(std::int32_t rawValue, std::int32_t attributes)
{
    return IsEnumerated(TypeCode(attributes)) ? rawValue : rawValue / CountsOfOne(attributes);
}

std::optional<std::int32_t> RawOfShown(double number, std::int32_t attributes)
{
    const double raw =
        std::round(IsEnumerated(TypeCode(attributes)) ? number : number * CountsOfOne(attributes));
    using Limits = std::numeric_limits<std::int32_t>;
    return raw >= Limits::min() && raw <= Limits::max() ? std::optional(std::int32_t(raw)) : std::nullopt;
}

QString UnitText(std::int32_t attributes)
{
    return QString::fromLatin1(TypeOf(TypeCode(attributes)).unit);
}

QString ValueText(std::int32_t rawValue, std::int32_t attributes)
{
    const int typeCode = TypeCode(attributes);
    switch (TypeOf(typeCode).form) {
    case ValueType::Form::List:
        return rawValue > 3 ? QString() : EnumText(rawValue, typeCode);
    case ValueType::Form::Model:
        return ModelText(rawValue);
    case ValueType::Form::Hexadecimal:
        return QStringLiteral("0x%1").arg(QString::number(std::uint32_t(rawValue), 16).toUpper(), 4, u'0');
    case ValueType::Form::Unit:
        return NumberText(rawValue, attributes) + u' ' + UnitText(attributes);
    case ValueType::Form::Parameter:
    case ValueType::Form::Number:
        break;
    }
    return NumberText(rawValue, attributes);
}

QString LimitsText(const ParamRecord &record)
{
    const QStringList texts = TextsOf(TypeCode(record.Attributes));
    if (IsEnumerated(TypeCode(record.Attributes)))
        return texts.mid(record.Min, record.Max - record.Min + 1).join(QStringLiteral(", "));
    return ValueText(record.Min, record.Attributes) + QStringLiteral(" to ") +
           ValueText(record.Max, record.Attributes);
}

QString FormatEntry(const QString &text, std::int32_t attributes)
{
    return FormatFixed(CDbl(text), DecimalsOf(attributes));
}

std::int32_t StripPoint(const QString &text)
{
    QString digits = text;
    digits.remove(u'.');
    return CLng(digits);
}

std::int32_t EntryToRaw(const QString &text, std::int32_t attributes)
{
    return StripPoint(FormatEntry(text, attributes));
}

} // namespace quorvik
