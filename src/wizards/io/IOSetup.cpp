#include "wizards/io/IOSetup.h"

#include "platform/Arithmetic.h"
#include "platform/Numbers.h"

#include <algorithm>

namespace quorvik
{

/** The parameters of the first member of a kind; those of the others follow one by one. 0 for none. */
struct IOSetup::Block {
    int link; ///< selector of the destination or source
    int bias;
    int gain;
    int invert;
    int status;
};

IOSetup::IOSetup(ParameterTable &table, Document &document)
    : table_(table)
    , document_(document)
{
}

const IOSetup::Block *IOSetup::InputBlock() const
{
    static constexpr Block inputs[] = {
        {23, 48, 53, 344, 139}, // analog
        {1, 8, 15, 0, 132},     // digital
        {63, 66, 67, 349, 164}, // frequency
    };
    return inputType == NoChoice ? nullptr : &inputs[inputType];
}

const IOSetup::Block *IOSetup::OutputBlock() const
{
    static constexpr Block outputs[] = {
        {81, 85, 83, 0, 0}, // analog
        {89, 96, 95, 0, 0}, // frequency mode
        {69, 75, 78, 0, 0}, // relay
    };
    static constexpr Block digitalMode = {89, 92, 93, 0, 0};
    if (outputType == NoChoice)
        return nullptr;
    return IsDigitalMode() ? &digitalMode : &outputs[outputType];
}

int IOSetup::IOIndex() const
{
    return std::max(IsInputBranch() ? input : output, 0);
}

int IOSetup::DestinationParam() const
{
    const Block *block = InputBlock();
    return block == nullptr ? 0 : block->link + std::max(input, 0);
}

int IOSetup::SourceParam() const
{
    const Block *block = OutputBlock();
    return block == nullptr ? 0 : block->link + std::max(output, 0);
}

int IOSetup::BiasParam() const
{
    const Block *block = ChosenBlock();
    return block == nullptr ? 0 : block->bias + IOIndex();
}

int IOSetup::GainParam() const
{
    const Block *block = ChosenBlock();
    return block == nullptr ? 0 : block->gain + IOIndex();
}

int IOSetup::InvertParam() const
{
    const Block *block = ChosenBlock();
    return block == nullptr || block->invert == 0 ? 0 : block->invert + IOIndex();
}

int IOSetup::StatusParam() const
{
    constexpr int frequencyStatus = 164;
    const Block *block = InputBlock();
    return block == nullptr ? frequencyStatus : block->status + std::max(input, 0);
}

std::int32_t IOSetup::CalMin() const
{
    constexpr std::int32_t bipolarMin = -2048;
    return IsBipolarAnalog() ? bipolarMin : 0;
}

std::int32_t IOSetup::CalMax() const
{
    constexpr std::int32_t frequencyMax = 60000;
    constexpr std::int32_t bipolarMax = 2047;
    constexpr std::int32_t unipolarMax = 4095;
    if (!IsAnalogInput())
        return frequencyMax;
    return polarity == Bipolar ? bipolarMax : unipolarMax;
}

std::int32_t IOSetup::FullScale() const
{
    return analogType == VoltageSignal ? 10 : 20;
}

QString IOSetup::ActualText(const QString &calText) const
{
    return FormatFixed(CDbl(calText) / CalMax() * FullScale(), 2);
}

QString IOSetup::CalText(const QString &actualText) const
{
    return FormatFixed(CDbl(actualText) / FullScale() * CalMax(), 0);
}

void IOSetup::PlanCalibration(WriteRehearsal &rehearsal, int lowParam, int highParam) const
{
    rehearsal.Write(lowParam,
                    ConvertEntry(QStringLiteral("0% Calibration"), [this] { return CLng(calTexts[0]); }));
    rehearsal.Write(highParam,
                    ConvertEntry(QStringLiteral("100% Calibration"), [this] { return CLng(calTexts[1]); }));
}

WritePlan IOSetup::WriteIOSetup()
{
    WritePlan plan = Plan();
    plan.Commit(table_, document_);
    return plan;
}

} // namespace quorvik
