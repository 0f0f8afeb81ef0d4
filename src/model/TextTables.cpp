#include "model/TextTables.h"

#include "platform/RuntimeFailure.h"

#include <array>
#include <vector>

namespace quorvik
{

namespace
{

using Texts = std::vector<QString>;

template<typename Table> const auto &At(const Table &table, std::int32_t index, const char *what)
{
    if (index < 0 || std::size_t(index) >= table.size())
        throw RuntimeFailure(QStringLiteral("There is no %1 %2; the last one is %3.")
                                 .arg(QLatin1String(what))
                                 .arg(index)
                                 .arg(table.size() - 1));
    return table[std::size_t(index)];
}

Texts MakeTexts(std::initializer_list<const char *> texts)
{
    Texts result;
    for (const char *text : texts)
        result.push_back(QString::fromLatin1(text));
    return result;
}

struct EnumColumn {
    int typeCode;
    std::array<const char *, 4> texts;
};

constexpr EnumColumn EnumColumns[] = {
    {1, {"%"}},
    {2, {"Unipolar", "Bipolar"}},
    {3, {"Current", "Voltage"}},
    {4, {"False", "True"}},
    {5, {"Freq", "Digital"}},
    {6, {"AFB", "TFB", "EFB"}},
    {7, {"Open", "Closed"}},
    {8, {"3 Wire", "2 Wire"}},
    {9, {"Positive", "Negative"}},
    {11, {"Hertz"}},
    {12, {"Seconds"}},
    {14, {"Amps"}},
    {15, {"RPM"}},
    {16, {"Volts"}},
    {18, {"C"}},
    {19, {"Auto", "On"}},
    {21, {"Ramp", "Quick", "Coast"}},
    {22, {"DC", "AC"}},
    {24, {"256", "512", "1024", "2048"}},
};

constexpr int EnumTypes = 25;
constexpr int EnumValues = 4;

std::array<Texts, EnumTypes> BuildEnumTable()
{
    std::array<Texts, EnumTypes> table;
    for (Texts &column : table)
        column.resize(EnumValues);
    for (const EnumColumn &column : EnumColumns)
        for (std::size_t value = 0; value < column.texts.size(); ++value)
            table[std::size_t(column.typeCode)][value] = QString::fromLatin1(column.texts[value]);
    return table;
}

} // namespace

const QString &ModelText(std::int32_t code)
{
    // Code 27 repeats the number of code 23: the drives answer with either.
    static const Texts texts = MakeTexts(
        {"Undefined",  "SVR020-000", "SVR040-000", "SVR060-000", "SVR075-000", "SVR100-000", "SVR125-000",
         "SVR150-000", "SVR200-000", "SVR250-000", "SVR300-000", "Undefined",  "Undefined",  "Undefined",
         "Undefined",  "Undefined",  "Undefined",  "SVN020-000", "SVN040-000", "SVN060-000", "SVN075-000",
         "SVN100-000", "SVN125-000", "SVN150-000", "SVN200-000", "SVN250-000", "SVN300-000", "SVN150-000",
         "Undefined",  "Undefined",  "Undefined",  "Undefined",  "Undefined"});
    return At(texts, code, "drive model");
}

const QString &DriveStateText(std::int32_t state)
{
    static const Texts texts = MakeTexts(
        {"Stop", "Run", "RampStop", "Jog", "Jog Stop", "Jog Delay", "Quick Stop", "Coast Stop", "EStop"});
    return At(texts, state, "drive state");
}

const QString &FaultText(std::int32_t fault)
{
    static const Texts texts =
        MakeTexts({"Field Loss", "VFB Loss", "OverVoltage", "OverSpeed", "OverCurrent", "OverTemp",
                   "Phase Loss", "CTID Error", "Phase Lock", "Thermistor Open"});
    return At(texts, fault, "fault");
}

const QString &DayText(std::int32_t day)
{
    static const Texts texts =
        MakeTexts({"Null", "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"});
    return At(texts, day, "day of the week");
}

const QString &AccessText(std::int32_t access)
{
    static const Texts texts = MakeTexts(
        {"Read/Write", "ICR-Read/Write", "ICR-Read Only", "Read Only", "Destination-Read Only", "EMPTY"});
    return At(texts, access, "access class");
}

const QString &DriveTypeText(std::int32_t type)
{
    static const Texts texts = MakeTexts({"Regenerative", "Non-regenerative"});
    return At(texts, type, "drive type");
}

std::int16_t RatedAmps(std::int32_t ratingCode)
{
    static constexpr std::array<std::int16_t, 11> amps = {0, 36, 71, 107, 140, 174, 206, 256, 340, 425, 510};
    return At(amps, ratingCode, "rating code");
}

const QString &EnumText(std::int32_t value, std::int32_t typeCode)
{
    static const std::array<Texts, EnumTypes> table = BuildEnumTable();
    return At(At(table, typeCode, "kind of value"), value, "choice");
}

int EnumCount(std::int32_t typeCode)
{
    int count = 0;
    while (count < EnumValues && !EnumText(count, typeCode).isEmpty())
        ++count;
    return count;
}

} // namespace quorvik
