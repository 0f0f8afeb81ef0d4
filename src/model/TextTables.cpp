#include "model/TextTables.h"

#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace quorvik
{

namespace
{

using Form = ValueType::Form;

constexpr std::array<ValueType, 25> Types = {{
    {"parameter", Form::Parameter, "", {}, "Select Parameter"},
    {"percent", Form::Unit, "%", {"%"}},
    {"polarity", Form::List, "", {"Unipolar", "Bipolar"}, "Select Polarity"},
    {"analog type", Form::List, "", {"Current", "Voltage"}, "Select Analog Type"},
    {"boolean", Form::List, "", {"False", "True"}, "Select Value"},
    {"output mode", Form::List, "", {"Freq", "Digital"}, "Select Mode"},
    {"feedback", Form::List, "", {"AFB", "TFB", "EFB"}, "Select Feedback"},
    {"contact", Form::List, "", {"Open", "Closed"}, "Select Value"},
    {"wiring", Form::List, "", {"3 Wire", "2 Wire"}, "Select Mode"},
    {"sign", Form::List, "", {"Positive", "Negative"}, "Select Sign"},
    {"number", Form::Number},
    {"frequency", Form::Unit, "Hz", {"Hertz"}},
    {"seconds", Form::Unit, "Sec", {"Seconds"}},
    {}, // 13
    {"amperes", Form::Unit, "Amps", {"Amps"}},
    {"rpm", Form::Unit, "RPM", {"RPM"}},
    {"volts", Form::Unit, "Volts", {"Volts"}},
    {"hexadecimal", Form::Hexadecimal},
    {"temperature", Form::Unit, "C", {"C"}},
    {"fan mode", Form::List, "", {"Auto", "On"}, "Select Mode"},
    {"drive model", Form::Model},
    {"stop mode", Form::List, "", {"Ramp", "Quick", "Coast"}, "Select Mode"},
    {"tachometer", Form::List, "", {"DC", "AC"}, "Select Type"},
    {}, // 23
    {"encoder lines", Form::List, "", {"256", "512", "1024", "2048"}, "Select Value"},
}};

constexpr const char *Models[] = {
    // Code 27 repeats the number of code 23: the drives answer with either.
    "Undefined",  "SVR020-000", "SVR040-000", "SVR060-000", "SVR075-000", "SVR100-000", "SVR125-000",
    "SVR150-000", "SVR200-000", "SVR250-000", "SVR300-000", "Undefined",  "Undefined",  "Undefined",
    "Undefined",  "Undefined",  "Undefined",  "SVN020-000", "SVN040-000", "SVN060-000", "SVN075-000",
    "SVN100-000", "SVN125-000", "SVN150-000", "SVN200-000", "SVN250-000", "SVN300-000", "SVN150-000",
    "Undefined",  "Undefined",  "Undefined",  "Undefined",  "Undefined"};
constexpr const char *DriveStates[] = {"Stop",      "Run",        "RampStop",   "Jog",  "Jog Stop",
                                       "Jog Delay", "Quick Stop", "Coast Stop", "EStop"};
constexpr const char *Faults[] = {"Field Loss", "VFB Loss",   "OverVoltage", "OverSpeed",  "OverCurrent",
                                  "OverTemp",   "Phase Loss", "CTID Error",  "Phase Lock", "Thermistor Open"};
constexpr const char *Days[] = {"Null",      "Sunday",   "Monday", "Tuesday",
                                "Wednesday", "Thursday", "Friday", "Saturday"};
constexpr const char *AccessClasses[] = {"Read/Write", "ICR-Read/Write",        "ICR-Read Only",
                                         "Read Only",  "Destination-Read Only", "EMPTY"};
constexpr const char *DriveTypes[] = {"Regenerative", "Non-regenerative"};
constexpr std::int16_t Amps[] = {0, 36, 71, 107, 140, 174, 206, 256, 340, 425, 510};

template<typename Table> const auto &At(const Table &table, std::int32_t index, const char *what)
{
    if (index < 0 || std::size_t(index) >= std::size(table))
        throw RuntimeFailure(QStringLiteral("There is no %1 %2; the last one is %3.")
                                 .arg(QLatin1String(what))
                                 .arg(index)
                                 .arg(std::size(table) - 1));
    return table[std::size_t(index)];
}

template<typename Table> QString TextAt(const Table &table, std::int32_t index, const char *what)
{
    return QString::fromLatin1(At(table, index, what));
}

} // namespace

QString ModelText(std::int32_t code)
{
    return TextAt(Models, code, "drive model");
}

QString DriveStateText(std::int32_t state)
{
    return TextAt(DriveStates, state, "drive state");
}

QString FaultText(std::int32_t fault)
{
    return TextAt(Faults, fault, "fault");
}

QString DayText(std::int32_t day)
{
    return TextAt(Days, day, "day of the week");
}

QString AccessText(std::int32_t access)
{
    return TextAt(AccessClasses, access, "access class");
}

QString DriveTypeText(std::int32_t type)
{
    return TextAt(DriveTypes, type, "drive type");
}

std::int16_t RatedAmps(std::int32_t ratingCode)
{
    return At(Amps, ratingCode, "rating code");
}

std::span<const ValueType> ValueTypes()
{
    return Types;
}

const ValueType &TypeOf(int typeCode)
{
    static constexpr ValueType Beyond;
    if (std::size_t(typeCode) >= Types.size())
        return Beyond;
    return Types[std::size_t(typeCode)];
}

QString EnumText(std::int32_t value, std::int32_t typeCode)
{
    return TextAt(At(Types, typeCode, "kind of value").texts, value, "choice");
}

int EnumCount(std::int32_t typeCode)
{
    const auto &texts = At(Types, typeCode, "kind of value").texts;
    return int(std::ranges::find(texts, nullptr) - texts.begin());
}

QStringList TextsOf(int typeCode)
{
    QStringList texts;
    const Form form = TypeOf(typeCode).form;
    if (form == Form::Model)
        for (const char *text : Models)
            texts.append(QString::fromLatin1(text));
    if (form == Form::List)
        for (int value = 0; value < EnumCount(typeCode); ++value)
            texts.append(EnumText(value, typeCode));
    return texts;
}

} // namespace quorvik
