#include "model/Conversions.h"

#include "model/ParamTable.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"

#include <array>

namespace quorvik
{

namespace
{

enum class Kind : std::uint8_t { Plain, Unit, List, Hexadecimal, Model };

struct TypeRow {
    Kind kind = Kind::Plain;
    const char *unit = "";
};

constexpr std::array<TypeRow, 32> Types = {{
    {},                    // 0 number of a parameter
    {Kind::Unit, "%"},     // 1
    {Kind::List},          // 2 polarity
    {Kind::List},          // 3 analog type
    {Kind::List},          // 4 boolean
    {Kind::List},          // 5 frequency or digital
    {Kind::List},          // 6 feedback
    {Kind::List},          // 7 contact
    {Kind::List},          // 8 start/stop wiring
    {Kind::List},          // 9 sign
    {},                    // 10
    {Kind::Unit, "Hz"},    // 11
    {Kind::Unit, "Sec"},   // 12
    {},                    // 13
    {Kind::Unit, "Amps"},  // 14
    {Kind::Unit, "RPM"},   // 15
    {Kind::Unit, "Volts"}, // 16
    {Kind::Hexadecimal},   // 17
    {Kind::Unit, "C"},     // 18
    {Kind::List},          // 19 fan mode
    {Kind::Model},         // 20
    {Kind::List},          // 21 stop mode
    {Kind::List},          // 22 tachometer
    {},                    // 23
    {Kind::List},          // 24 encoder lines
    // 25 to 31 are plain numbers
}};

const TypeRow &TypeOf(std::int32_t attributes)
{
    return Types[std::size_t(TypeCode(attributes))];
}

} // namespace

int TypeCode(std::int32_t attributes)
{
    return int(CLng(attributes / 32.0) & 31);
}

bool IsEnumerated(int typeCode)
{
    return (typeCode >= 2 && typeCode <= 9) || typeCode == 19 || typeCode == 21 || typeCode == 22 ||
           typeCode == 24;
}

int DecimalsOf(std::int32_t attributes)
{
    return int(attributes & Attr::Decimals);
}

QString NumberText(std::int32_t rawValue, std::int32_t attributes)
{
    static constexpr std::array<double, 4> divisors = {1.0, 10.0, 100.0, 1000.0};
    const int decimals = DecimalsOf(attributes);
    return FormatFixed(rawValue / divisors[std::size_t(decimals)], decimals);
}

QString UnitText(std::int32_t attributes)
{
    return QString::fromLatin1(TypeOf(attributes).unit);
}

QString ValueText(std::int32_t rawValue, std::int32_t attributes)
{
    const TypeRow &type = TypeOf(attributes);
    switch (type.kind) {
    case Kind::List:
        return rawValue > 3 ? QString() : EnumText(rawValue, TypeCode(attributes));
    case Kind::Model:
        return ModelText(rawValue);
    case Kind::Hexadecimal:
        return QStringLiteral("0x%1").arg(QString::number(std::uint32_t(rawValue), 16).toUpper(), 4, u'0');
    case Kind::Unit:
        return NumberText(rawValue, attributes) + u' ' + QString::fromLatin1(type.unit);
    case Kind::Plain:
        break;
    }
    return NumberText(rawValue, attributes);
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
