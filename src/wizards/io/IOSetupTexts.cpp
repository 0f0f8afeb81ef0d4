// What the pages of the I/O Mentor say, as it follows from the answers so far.

#include "model/Conversions.h"
#include "model/TextTables.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

namespace
{

struct ValuesText {
    const char *intro;
    const char *instructions[2]; ///< of the parameter %1
    const char *captions[2];
};

constexpr ValuesText DigitalInputText = {"Set Open and Closed Values.",
                                         {"What value do you wish %1 to have when the input is open?",
                                          "What value do you wish %1 to have when the input is closed?"},
                                         {"Open Value", "Closed Value"}};
constexpr ValuesText ScaledInputText = {"Set Bias and Gain.",
                                        {"What value do you wish %1 to have when the input is at 0%?",
                                         "What value do you wish %1 to have when the input is at 100%?"},
                                        {"Bias", "Gain"}};
constexpr ValuesText AnalogOutputText = {
    "Set Bias and Gain.",
    {"Enter the desired output voltage level when the %1 parameter is at zero.",
     "Enter the desired output voltage level when the %1 parameter is at 100%."},
    {"Bias", "Gain"}};
constexpr ValuesText FrequencyOutputText = {
    "Set Bias and Gain.",
    {"Enter the desired output frequency level when the %1 parameter is at zero.",
     "Enter the desired output frequency level when the %1 parameter is at 100%."},
    {"Bias", "Gain"}};
constexpr ValuesText DigitalOutputText = {
    "Set On and Off Values.",
    {"Enter the value that the %1 parameter must reach to turn on the digital output.",
     "Enter the value that the %1 parameter must reach to turn off the digital output."},
    {"On Value", "Off Value"}};
constexpr ValuesText RelayText = {
    "Set On and Off Values.",
    {"Enter the value that the %1 parameter must reach to turn on the relay output.",
     "Enter the value that the %1 parameter must reach to turn off the relay output."},
    {"On Value", "Off Value"}};

ValuesView ViewOf(const ValuesText &texts, const QString &name)
{
    ValuesView view;
    view.intro = QString::fromLatin1(texts.intro);
    for (std::size_t i = 0; i < 2; ++i) {
        view.instructions[i] = QString::fromLatin1(texts.instructions[i]).arg(name);
        view.captions[i] = QString::fromLatin1(texts.captions[i]);
    }
    return view;
}

QString RangeText(const ParamRecord &record)
{
    return QStringLiteral("Valid Range: ") + ValueText(record.Min, record.Attributes) +
           QStringLiteral(" to ") + ValueText(record.Max, record.Attributes);
}

QStringList ListItems(std::int32_t attributes)
{
    QStringList items;
    const int typeCode = TypeCode(attributes);
    if (IsEnumerated(typeCode))
        for (int value = 0; value < EnumCount(typeCode); ++value)
            items.append(EnumText(value, typeCode));
    return items;
}

// Range, unit and kind of value are those of the parameter at the other end of the link.
void TakeScale(ValuesView &view, const ParamRecord &record)
{
    view.unit = UnitText(record.Attributes);
    view.range = RangeText(record);
    view.items = ListItems(record.Attributes);
}

} // namespace

ValuesView IOSetup::InputValuesView() const
{
    const ParamRecord &record = table_[Destination];
    ValuesView view = ViewOf(IsDigitalInput() ? DigitalInputText : ScaledInputText, record.Name);
    TakeScale(view, record);
    if (IsBipolarAnalog()) {
        view.intro = QStringLiteral("Set Gain.");
        view.hasFirst = false;
    }
    return view;
}

ValuesView IOSetup::OutputValuesView() const
{
    const ParamRecord &record = table_[Source];
    if (outputType == RelayOutput || IsDigitalMode()) {
        ValuesView view = ViewOf(outputType == RelayOutput ? RelayText : DigitalOutputText, record.Name);
        TakeScale(view, record);
        return view;
    }
    if (outputType == FreqDigOutput) {
        ValuesView view = ViewOf(FrequencyOutputText, record.Name);
        view.unit = QStringLiteral("Hz");
        view.range = QStringLiteral("Valid Range: 0 to 2000 Hz");
        return view;
    }
    ValuesView view = ViewOf(AnalogOutputText, record.Name);
    view.unit = QStringLiteral("Volts");
    view.range = QStringLiteral("Valid Range: -10 Volts to +10 Volts");
    return view;
}

QString IOSetup::AnalogRangeText() const
{
    if (analogType == VoltageSignal)
        return polarity == Bipolar ? QStringLiteral("Maximum Range: -10V to +10V")
                                   : QStringLiteral("Maximum Range: 0V to +10V");
    return polarity == Bipolar ? QStringLiteral("Maximum Range: -20mA to +20mA")
                               : QStringLiteral("Maximum Range: 0mA to +20mA");
}

QString IOSetup::CalibrateText() const
{
    const bool online = table_.PortOpen();
    if (!IsAnalogInput())
        return online
                   ? QStringLiteral("Adjust external frequency signal to 0 Hz (or minimum level) and click "
                                    "0% Auto. Then, adjust frequency signal to maximum and click 100% Auto.")
                   : QStringLiteral("Enter the minimum and maximum frequency levels.");
    const bool voltage = analogType == VoltageSignal;
    const QString signal = voltage ? QStringLiteral("voltage") : QStringLiteral("current");
    if (!online)
        return (polarity == Bipolar
                    ? QStringLiteral("Enter the 0% (zero %1) level and 100% (maximum) %1 levels.")
                    : QStringLiteral("Enter the 0% (minimum) and 100% (maximum) %1 levels."))
            .replace(QStringLiteral("%1"), signal);
    const QString zero = voltage ? QStringLiteral("0.0 V") : QStringLiteral("0.0 mA");
    const QString orMinimum = polarity == Bipolar
                                  ? QString()
                                  : QStringLiteral(" (or minimum ") + signal + QStringLiteral(" level)");
    return QStringLiteral("Adjust external ") + signal + QStringLiteral(" signal to ") + zero + orMinimum +
           QStringLiteral(" and click 0% Auto. Then, adjust ") + signal +
           QStringLiteral(" signal to maximum and click 100% Auto.");
}

QString IOSetup::ActualUnit() const
{
    if (!IsAnalogInput())
        return {};
    return analogType == VoltageSignal ? QStringLiteral("Volts") : QStringLiteral("mAmps");
}

} // namespace quorvik
