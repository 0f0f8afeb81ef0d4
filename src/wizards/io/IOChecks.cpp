#include "wizards/io/IOChecks.h"

#include "desktop/Form.h"
#include "operations/EntryRules.h"
#include "platform/Asker.h"
#include "platform/Numbers.h"
#include "wizards/frame/MentorTitle.h"

namespace quorvik
{

IOChecks::IOChecks(IOSetup &setup, EntryRules &rules, Asker &asker)
    : setup_(setup)
    , rules_(rules)
    , asker_(asker)
{
}

PageCheck IOChecks::ValidateStep(int step) const
{
    switch (step) {
    case 3:
        return {ValidateDestination(), {}};
    case 5:
        return ValidateCalibrations();
    case 6:
        return ValidateInputValues();
    case 9:
        return ValidateOutputValues();
    default:
        return {};
    }
}

bool IOChecks::ValidateDestination() const
{
    const int other = rules_.FindDestinationConflict(setup_.DestinationParam(), setup_.Destination);
    if (other == 0 || setup_.overwritten.contains(other))
        return true;
    if (!rules_.ConfirmOverwrite(other, setup_.Destination))
        return false;
    setup_.overwritten.append(other);
    return true;
}

PageCheck IOChecks::ValidateCalibrations() const
{
    if (!CheckCalibrations(setup_.calTexts[0], QStringLiteral("0% Calibration")))
        return {false, ControlName("TextCal", 0)};
    if (!CheckCalibrations(setup_.calTexts[1], QStringLiteral("100% Calibration")))
        return {false, ControlName("TextCal", 1)};
    if (CLng(setup_.calTexts[1]) > CLng(setup_.calTexts[0]))
        return {};
    asker_.MsgBox(QStringLiteral("The 100% ADC value must be greater than the 0% ADC value."), MsgButtons::Ok,
                  MsgIcon::Exclamation, MentorTitle());
    return {false, ControlName("TextCal", 1)};
}

bool IOChecks::CheckCalibrations(const QString &text, const QString &name) const
{
    if (!IsNumeric(text)) {
        rules_.ShowNumberMessage(name);
        return false;
    }
    const double count = CDbl(text);
    if (count >= setup_.CalMin() && count <= setup_.CalMax())
        return true;
    rules_.ShowRangeMessage(name, setup_.CalMin(), setup_.CalMax(), 0, true);
    return false;
}

PageCheck IOChecks::ValidateInputValues() const
{
    const ValuesView view = setup_.InputValuesView();
    return view.IsListed() ? ValidatePicks(view, setup_.inputValues, QStringLiteral("Open and Closed"))
                           : ValidateTexts(view, setup_.inputValues, setup_.Destination);
}

PageCheck IOChecks::ValidateOutputValues() const
{
    const ValuesView view = setup_.OutputValuesView();
    if (view.IsListed())
        return ValidatePicks(view, setup_.outputValues, QStringLiteral("On and Off"));
    switch (setup_.outputType) {
    case AnalogOutput:
        return CheckAnalogOutputValues();
    case FreqDigOutput:
        // In digital mode as well, whatever the source's own range says.
        return CheckFreqOutputValues();
    default:
        return ValidateTexts(view, setup_.outputValues, setup_.Source);
    }
}

PageCheck IOChecks::RefusedValue(const char *kind, std::size_t index) const
{
    const QByteArray name = QByteArray(kind) + (setup_.IsInputBranch() ? "BiasGain" : "OutputBiasGain");
    return {false, ControlName(name, int(index))};
}

PageCheck IOChecks::ValidateTexts(const ValuesView &view, const ValuePair &values, int p) const
{
    for (std::size_t i = view.hasFirst ? 0 : 1; i < 2; ++i)
        if (!rules_.ValidateEntry(values.texts[i], view.captions[i], p))
            return RefusedValue("Text", i);
    return {};
}

PageCheck IOChecks::ValidatePicks(const ValuesView &view, const ValuePair &values,
                                  const QString &pairName) const
{
    for (std::size_t i = view.hasFirst ? 0 : 1; i < 2; ++i) {
        if (values.picks[i] != NoChoice)
            continue;
        asker_.MsgBox(QStringLiteral("Please select a valid item from the ") + view.captions[i] +
                          QStringLiteral(" list."),
                      MsgButtons::Ok, MsgIcon::Exclamation, MentorTitle());
        return RefusedValue("Combo", i);
    }
    if (!view.hasFirst || values.picks[0] != values.picks[1])
        return {};
    const MsgAnswer answer = asker_.MsgBox(
        QStringLiteral("Typically the ") + pairName +
            QStringLiteral(" Values\r\nshould not have identical values.\r\n\r\nDo you want to proceed?"),
        MsgButtons::YesNo, MsgIcon::Question, MentorTitle());
    return {answer == MsgAnswer::Yes, {}};
}

PageCheck IOChecks::CheckOutputRange(double low, double high, std::int32_t rawLow, std::int32_t rawHigh,
                                     std::int32_t attributes) const
{
    const QString names[] = {QStringLiteral("Bias"), QStringLiteral("Gain")};
    for (std::size_t i = 0; i < 2; ++i) {
        const QString &text = setup_.outputValues.texts[i];
        if (!IsNumeric(text)) {
            rules_.ShowNumberMessage(names[i]);
            return RefusedValue("Text", i);
        }
        const double value = CDbl(text);
        if (value < low || value > high) {
            rules_.ShowRangeMessage(names[i], rawLow, rawHigh, attributes, true);
            return RefusedValue("Text", i);
        }
    }
    return {};
}

PageCheck IOChecks::CheckAnalogOutputValues() const
{
    constexpr std::int32_t voltsWithTwoDecimals = 514;
    return CheckOutputRange(-10.0, 10.0, -1000, 1000, voltsWithTwoDecimals);
}

PageCheck IOChecks::CheckFreqOutputValues() const
{
    constexpr std::int32_t wholeHertz = 352;
    return CheckOutputRange(0.0, 2000.0, 0, 2000, wholeHertz);
}

} // namespace quorvik
