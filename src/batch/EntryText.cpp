#include "batch/EntryText.h"

#include "batch/ParameterNames.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"

namespace quorvik
{

namespace
{

QString NoNumber(const QString &text)
{
    return QStringLiteral("\"%1\" is no number.").arg(text);
}

/** A raw value as it is, in base 10 or 16. */
TypedEntry RawEntry(const ParamRecord &record, const QString &text, int base)
{
    bool isNumber = false;
    const std::int32_t rawValue = text.toInt(&isNumber, base);
    if (!isNumber)
        return {.refusal = NoNumber(text)};
    if (rawValue < record.Min || rawValue > record.Max)
        return {.refusal = QStringLiteral("%1 lies outside the limits, %2.").arg(text, LimitsText(record))};
    return {.rawValue = rawValue};
}

TypedEntry ListEntry(const ParamRecord &record, const QString &text)
{
    const QStringList texts = TextsOf(TypeCode(record.Attributes));
    for (qsizetype i = 0; i < texts.size(); ++i)
        if (texts.at(i).compare(text, Qt::CaseInsensitive) == 0 && i >= record.Min && i <= record.Max)
            return {.rawValue = std::int32_t(i)};
    return {.refusal = QStringLiteral("\"%1\" is none of its values, %2.").arg(text, LimitsText(record))};
}

TypedEntry ParameterEntry(const ParameterTable &table, int p, const QString &text)
{
    const NamedParams named = FindOneParam(text, table);
    if (!named.failure.isEmpty())
        return {.refusal = named.failure};
    const int target = named.params.front();
    if (target > table.LastParam)
        return {.refusal = QStringLiteral("There is no parameter %1.").arg(target)};
    // A destination must be writable, a source need not be.
    if (target == p ||
        (target != 0 && table.AttrBit(Attr::Destination, p) && table.AttrBit(Attr::ReadOnly, target)))
        return {.refusal = QStringLiteral("It cannot be set to %1.").arg(table.FullName(target))};
    return {.rawValue = target};
}

} // namespace

TypedEntry EntryOfText(const ParameterTable &table, const EntryRules &rules, int p, const QString &text)
{
    const ParamRecord &record = table[p];
    const QString entry = text.trimmed();
    constexpr QLatin1String raw("raw:");
    if (entry.startsWith(raw, Qt::CaseInsensitive))
        return RawEntry(record, entry.mid(raw.size()).trimmed(), 10);
    using Form = ValueType::Form;
    switch (TypeOf(TypeCode(record.Attributes)).form) {
    case Form::List:
        return ListEntry(record, entry);
    case Form::Parameter:
        return ParameterEntry(table, p, entry);
    case Form::Hexadecimal:
        return RawEntry(record, entry, 16);
    case Form::Number:
    case Form::Unit:
    case Form::Model:
        break;
    }
    QString number = entry;
    const QString unit = UnitText(record.Attributes);
    if (!unit.isEmpty() && number.endsWith(unit, Qt::CaseInsensitive))
        number = number.chopped(unit.size()).trimmed();
    return rules.CheckEntry(p, number);
}

} // namespace quorvik
