#include "PresetsSource.h"

#include "model/Conversions.h"
#include "model/TextTables.h"
#include "platform/Numbers.h"
#include "settings/SettingsTables.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <array>
#include <cmath>
#include <optional>

namespace quorvik
{

namespace
{

constexpr qsizetype NameSize = 40;

enum Column {
    Number,
    Name,
    Kind,
    Decimals,
    Access,
    StopOnly,
    Selector,
    Width,
    Lowest,
    Highest,
    Factory,
    Count
};

struct WordRow {
    Column column;
    const char *word;
    std::int32_t bits;
};

// A destination always leads: what hangs on the input follows it.
constexpr WordRow Words[] = {
    {Access, "write", 0},
    {Access, "read", Attr::ReadOnly},
    {StopOnly, "", 0},
    {StopOnly, "stop", Attr::Icr},
    {Selector, "", 0},
    {Selector, "leads", Attr::Refresh},
    {Selector, "source", 0},
    {Selector, "source leads", Attr::Refresh},
    {Selector, "destination", Attr::Destination | Attr::Refresh},
    {Width, "signed", 0},
    {Width, "unsigned", Attr::Long},
};

using Form = ValueType::Form;

std::optional<int> FindKind(const QString &word)
{
    const std::span<const ValueType> types = ValueTypes();
    for (std::size_t typeCode = 0; typeCode < types.size(); ++typeCode)
        if (*types[typeCode].kind && word == QLatin1String(types[typeCode].kind))
            return int(typeCode);
    return std::nullopt;
}

std::optional<std::int32_t> BitsOf(Column column, const QString &word)
{
    for (const WordRow &row : Words)
        if (row.column == column && word == QLatin1String(row.word))
            return row.bits;
    return std::nullopt;
}

/** A value in words or shown units as raw value, or nothing where it cannot be expressed. */
std::optional<std::int32_t> RawValue(const QString &text, std::int32_t attributes)
{
    const int typeCode = TypeCode(attributes);
    if (IsEnumerated(typeCode)) {
        const auto value = TextsOf(typeCode).indexOf(text);
        return value < 0 ? std::nullopt : std::optional(std::int32_t(value));
    }
    if (TypeOf(typeCode).form == Form::Hexadecimal) {
        bool ok = false;
        const std::uint32_t value = text.startsWith(QStringLiteral("0x")) ? text.mid(2).toUInt(&ok, 16) : 0;
        return ok && value <= 0xFFFF ? std::optional(std::int32_t(value)) : std::nullopt;
    }
    const std::optional<double> value = ParseNumber(text);
    if (!value || std::abs(*value) > 65535.0 || CDbl(FormatEntry(text, attributes)) != *value)
        return std::nullopt;
    return EntryToRaw(text, attributes);
}

QString ReadValues(const QStringList &fields, ParamRecord &record)
{
    struct Target {
        Column column;
        std::int32_t *value;
    };
    const std::array<Target, 3> targets = {
        {{Lowest, &record.Min}, {Highest, &record.Max}, {Factory, &record.Value}}};
    const bool isLong = (record.Attributes & Attr::Long) != 0;
    for (const Target &target : targets) {
        const std::optional<std::int32_t> raw = RawValue(fields[target.column], record.Attributes);
        if (!raw)
            return QStringLiteral("\"%1\" is no value of its kind").arg(fields[target.column]);
        if (*raw < (isLong ? 0 : -32768) || *raw > (isLong ? 65535 : 32767))
            return QStringLiteral("\"%1\" does not fit its width").arg(fields[target.column]);
        *target.value = *raw;
    }
    record.Preset = record.Value;
    if (record.Min > record.Max || record.Value < record.Min || record.Value > record.Max)
        return QStringLiteral("the factory value lies outside the limits");
    return {};
}

/** Whether the attributes show the kind asked for, in the parameter itself and in what takes it over from it.
 */
bool ShowsKind(std::int32_t attributes, int typeCode)
{
    return TypeCode(attributes) == typeCode && TypeCode(attributes & ~Attr::NotInherited) == typeCode;
}

QString ReadLine(const QStringList &fields, int number, ParamRecord &record)
{
    if (fields.size() != Count)
        return QStringLiteral("it has %1 fields instead of %2").arg(fields.size()).arg(int(Count));
    if (fields[Number] != QString::number(number))
        return QStringLiteral("parameter %1 was expected").arg(number);
    record.Name = fields[Name];
    if (record.Name.isEmpty() || record.Name.size() > NameSize ||
        record.Name != ShowableText(record.Name, false).trimmed())
        return QStringLiteral("the name is empty, longer than %1 characters or cannot be shown")
            .arg(NameSize);
    const std::optional<int> typeCode = FindKind(fields[Kind]);
    if (!typeCode)
        return QStringLiteral("there is no kind \"%1\"").arg(fields[Kind]);
    bool isNumber = false;
    const int decimals = fields[Decimals].toInt(&isNumber);
    const Form form = TypeOf(*typeCode).form;
    const bool hasDecimals = form == Form::Number || form == Form::Unit;
    if (!isNumber || decimals < 0 || decimals > (hasDecimals ? 3 : 0))
        return QStringLiteral("the kind cannot have %1 decimals").arg(fields[Decimals]);
    record.Attributes = *typeCode * 32 + decimals;
    for (const Column column : {Access, StopOnly, Selector, Width}) {
        const std::optional<std::int32_t> bits = BitsOf(column, fields[column]);
        if (!bits)
            return QStringLiteral("\"%1\" is no word for its column").arg(fields[column]);
        record.Attributes |= *bits;
    }
    const bool isReadOnly = (record.Attributes & Attr::ReadOnly) != 0;
    if (isReadOnly && (record.Attributes & (Attr::Icr | Attr::Destination)) != 0)
        return QStringLiteral("a read-only parameter can be neither stop-only nor a destination");
    const QString &selector = fields[Selector];
    const bool isSelector =
        selector.startsWith(QStringLiteral("source")) || selector == QStringLiteral("destination");
    if (isSelector != (form == Form::Parameter))
        return QStringLiteral("a selector holds a parameter, and only a selector does");
    if (!ShowsKind(record.Attributes, *typeCode))
        return QStringLiteral("its attributes would show another kind than \"%1\"").arg(fields[Kind]);
    return ReadValues(fields, record);
}

QString LineFailure(int number, const QString &reason)
{
    return QStringLiteral("The line of parameter %1 cannot be expressed: %2.").arg(number).arg(reason);
}

/** What can only be seen with the whole table at hand. */
QString CheckTogether(const RecordArray &records)
{
    QSet<QString> names;
    QHash<std::int32_t, int> drivers;
    for (int i = 0; i <= records.UpperBound(); ++i) {
        const ParamRecord &record = records[i];
        if (names.contains(record.Name))
            return LineFailure(i, QStringLiteral("its name stands twice"));
        names.insert(record.Name);
        if (TypeOf(TypeCode(record.Attributes)).form != Form::Parameter)
            continue;
        if (record.Min != 0 || record.Max != records.UpperBound())
            return LineFailure(i, QStringLiteral("a selector reaches from 0 to the last parameter"));
        if ((record.Attributes & Attr::Destination) == 0 || record.Value == 0)
            continue;
        if ((records[record.Value].Attributes & Attr::ReadOnly) != 0)
            return LineFailure(i, QStringLiteral("its factory destination is read-only"));
        if (drivers.contains(record.Value))
            return LineFailure(i, QStringLiteral("its factory destination belongs to parameter %1")
                                      .arg(drivers.value(record.Value)));
        drivers.insert(record.Value, i);
    }
    return {};
}

} // namespace

QString ParsePresets(const QString &csv, RecordArray &records)
{
    QStringList lines = csv.split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    if (lines.size() < 2)
        return QStringLiteral("The source holds no parameter.");
    if (lines.size() - 1 > Database::MaxRecords)
        return QStringLiteral("The source holds more than %1 parameters.").arg(Database::MaxRecords);
    records.Resize(int(lines.size()) - 2);
    for (int i = 0; i <= records.UpperBound(); ++i) {
        records[i] = ParamRecord();
        const QString failure = ReadLine(lines[i + 1].split(u','), i, records[i]);
        if (!failure.isEmpty())
            return LineFailure(i, failure);
    }
    return CheckTogether(records);
}

QString WritePresets(const RecordArray &records, const QString &path)
{
    return WriteSettingsDatabase(path, records, records.UpperBound(), QString());
}

} // namespace quorvik
