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

struct KindRow {
    const char *word;
    int typeCode;
    bool hasDecimals;
};

constexpr KindRow Kinds[] = {
    {"parameter", 0, false},   {"percent", 1, true},         {"polarity", 2, false},
    {"analog type", 3, false}, {"boolean", 4, false},        {"output mode", 5, false},
    {"feedback", 6, false},    {"contact", 7, false},        {"wiring", 8, false},
    {"sign", 9, false},        {"number", 10, true},         {"frequency", 11, true},
    {"seconds", 12, true},     {"amperes", 14, true},        {"rpm", 15, true},
    {"volts", 16, true},       {"hexadecimal", 17, false},   {"temperature", 18, true},
    {"fan mode", 19, false},   {"drive model", 20, false},   {"stop mode", 21, false},
    {"tachometer", 22, false}, {"encoder lines", 24, false},
};

constexpr int ParameterType = 0;
constexpr int HexadecimalType = 17;

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

const KindRow *FindKind(const QString &word)
{
    for (const KindRow &kind : Kinds)
        if (word == QLatin1String(kind.word))
            return &kind;
    return nullptr;
}

std::optional<std::int32_t> BitsOf(Column column, const QString &word)
{
    for (const WordRow &row : Words)
        if (row.column == column && word == QLatin1String(row.word))
            return row.bits;
    return std::nullopt;
}

/** A value in words or shown units as raw value, or nothing where it cannot be expressed. */
std::optional<std::int32_t> RawValue(const QString &text, const KindRow &kind, std::int32_t attributes)
{
    if (IsEnumerated(kind.typeCode)) {
        for (int value = 0; value < EnumCount(kind.typeCode); ++value)
            if (text == EnumText(value, kind.typeCode))
                return value;
        return std::nullopt;
    }
    if (kind.typeCode == HexadecimalType) {
        bool ok = false;
        const std::uint32_t value = text.startsWith(QStringLiteral("0x")) ? text.mid(2).toUInt(&ok, 16) : 0;
        return ok && value <= 0xFFFF ? std::optional(std::int32_t(value)) : std::nullopt;
    }
    const std::optional<double> value = ParseNumber(text);
    if (!value || std::abs(*value) > 65535.0 || CDbl(FormatEntry(text, attributes)) != *value)
        return std::nullopt;
    return EntryToRaw(text, attributes);
}

QString ReadValues(const QStringList &fields, const KindRow &kind, ParamRecord &record)
{
    struct Target {
        Column column;
        std::int32_t *value;
    };
    const std::array<Target, 3> targets = {
        {{Lowest, &record.Min}, {Highest, &record.Max}, {Factory, &record.Value}}};
    const bool isLong = (record.Attributes & Attr::Long) != 0;
    for (const Target &target : targets) {
        const std::optional<std::int32_t> raw = RawValue(fields[target.column], kind, record.Attributes);
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
bool ShowsKind(std::int32_t attributes, const KindRow &kind)
{
    return TypeCode(attributes) == kind.typeCode &&
           TypeCode(attributes & ~Attr::NotInherited) == kind.typeCode;
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
    const KindRow *kind = FindKind(fields[Kind]);
    if (kind == nullptr)
        return QStringLiteral("there is no kind \"%1\"").arg(fields[Kind]);
    bool isNumber = false;
    const int decimals = fields[Decimals].toInt(&isNumber);
    if (!isNumber || decimals < 0 || decimals > (kind->hasDecimals ? 3 : 0))
        return QStringLiteral("the kind cannot have %1 decimals").arg(fields[Decimals]);
    record.Attributes = kind->typeCode * 32 + decimals;
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
    if (isSelector != (kind->typeCode == ParameterType))
        return QStringLiteral("a selector holds a parameter, and only a selector does");
    if (!ShowsKind(record.Attributes, *kind))
        return QStringLiteral("its attributes would show another kind than \"%1\"").arg(fields[Kind]);
    return ReadValues(fields, *kind, record);
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
        if (TypeCode(record.Attributes) != ParameterType)
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
