// What the I/O Mentor writes, in order. Conversions see the table as the writes before them leave it.

#include "model/Conversions.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

namespace
{

constexpr int FreqDigModeParam = 90;
constexpr int DigitalAbsoluteValue = 91;
constexpr int RelayAbsoluteValue = 72;
constexpr int AnalogAbsoluteValue = 87;

} // namespace

WritePlan IOSetup::Plan() const
{
    WriteRehearsal rehearsal(table_);
    if (IsInputBranch())
        PlanInput(rehearsal);
    else
        PlanOutput(rehearsal);
    if (saveInDrive && table_.PortOpen())
        rehearsal.SaveInDrive();
    return rehearsal.Plan();
}

void IOSetup::PlanInput(WriteRehearsal &rehearsal) const
{
    if (inputType == NoChoice)
        return;
    const int i = IOIndex();
    for (const int other : overwritten)
        if (other != DestinationParam() && table_.Value(other) == Destination)
            rehearsal.Write(other, 0, true);
    // On line the drive's acknowledgement refreshes what hangs on the link.
    rehearsal.Write(DestinationParam(), Destination, !table_.PortOpen());
    if (IsAnalogInput()) {
        rehearsal.Write(28 + i, polarity == Bipolar ? 1 : 0);
        if (!IsVoltageOnly())
            rehearsal.Write(33 + i, analogType == VoltageSignal ? 1 : 0);
        PlanCalibration(rehearsal, 38 + i, 43 + i);
    } else if (IsFrequencyInput()) {
        PlanCalibration(rehearsal, 64, 65);
    }
    PlanValues(rehearsal, InputValuesView(), inputValues, Destination);
    if (InvertParam() != 0)
        rehearsal.Write(InvertParam(), 0);
}

void IOSetup::PlanOutput(WriteRehearsal &rehearsal) const
{
    const int i = IOIndex();
    const bool refresh = !table_.PortOpen();
    switch (outputType) {
    case RelayOutput:
        rehearsal.Write(SourceParam(), Source, refresh);
        PlanValues(rehearsal, OutputValuesView(), outputValues, Source);
        rehearsal.Write(RelayAbsoluteValue + i, 1);
        break;
    case FreqDigOutput:
        if (IsDigitalMode()) {
            rehearsal.Write(FreqDigModeParam, 1);
            rehearsal.Write(SourceParam(), Source, refresh);
            PlanValues(rehearsal, OutputValuesView(), outputValues, Source);
            rehearsal.Write(DigitalAbsoluteValue, 1);
        } else {
            rehearsal.Write(SourceParam(), Source, refresh);
            rehearsal.Write(FreqDigModeParam, 0);
            PlanScaledOutput(rehearsal, 2000.0, 5.0, QStringLiteral("Hertz"));
        }
        break;
    case AnalogOutput:
        rehearsal.Write(SourceParam(), Source, refresh);
        PlanScaledOutput(rehearsal, 10.0, 1000.0, QStringLiteral("Volts"));
        rehearsal.Write(AnalogAbsoluteValue + i, 1);
        break;
    default:
        break;
    }
}

void IOSetup::PlanValues(WriteRehearsal &rehearsal, const ValuesView &view, const ValuePair &values,
                         int scaleParam) const
{
    const std::int32_t attributes = rehearsal.Table()[scaleParam].Attributes;
    const int params[] = {BiasParam(), GainParam()};
    for (std::size_t i = view.hasFirst ? 0 : 1; i < 2; ++i) {
        const QString text = view.IsListed() ? QString::number(values.picks[i]) : values.texts[i];
        const std::int32_t raw = ConvertEntry(view.captions[i], [&] { return EntryToRaw(text, attributes); });
        rehearsal.WriteScaled(params[i], raw, attributes);
    }
}

// The gain is such that 100% of a source with a range of at least 10000 reaches the level typed; a source of
// a smaller range is scaled up to its own maximum.
void IOSetup::PlanScaledOutput(WriteRehearsal &rehearsal, double fullScale, double gainFactor,
                               const QString &unitName) const
{
    constexpr std::int32_t fullRange = 10000;
    constexpr std::int32_t clippedGain = 20000;
    const ParameterTable &table = rehearsal.Table();
    const int biasParam = BiasParam();
    const int gainParam = GainParam();

    rehearsal.Write(biasParam, ConvertEntry(QStringLiteral("Bias"), [&] {
                        const double percent = CDbl(outputValues.texts[0]) / fullScale * 100.0;
                        return EntryToRaw(DoubleText(percent), table[biasParam].Attributes);
                    }));
    std::int32_t gain = ConvertEntry(QStringLiteral("Gain"), [&] {
        const std::int32_t sourceMax = table[Source].Max;
        const double span = CDbl(outputValues.texts[1]) * gainFactor - table.Value(biasParam);
        return sourceMax >= fullRange ? CLng(span) : CLng(CheckedDivide(span, sourceMax) * fullRange);
    });
    if (gain > table[gainParam].Max) {
        gain = clippedGain;
        rehearsal.Notice(QStringLiteral("Due to the limited range of (%1) ").arg(Source) +
                         table_[Source].Name +
                         QStringLiteral(",\r\nthe output cannot achieve the desired level of ") +
                         outputValues.texts[1] + u' ' + unitName + u'.');
    }
    rehearsal.Write(gainParam, gain);
}

} // namespace quorvik
