#include "blocks/InputOutputSheet.h"

#include <algorithm>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {AnalogOut1Source,        AnalogOut1Gain,   AnalogOut1Bias,
                             AnalogOut1AbsoluteValue, AnalogOut1Status, LinkedRow};

/** Counts of the converter at 100 %. */
constexpr double ConverterFullScale = 4095;

class AnalogOutputsSheet final : public InputOutputSheet
{
public:
    using InputOutputSheet::InputOutputSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape source = SourceEnd(d, AnalogOut1Source, y);
        const double x = source.Rect().right();
        const Shape product = d.Multiplier({x + 9, y});
        const Shape sum = d.Sum({x + 24, y}, QStringLiteral("++"));
        const Shape gain = Box(AnalogOut1Gain, {x + 3, y + RowAbove});
        const Shape bias = Box(AnalogOut1Bias, {x + 18, y + RowAbove});
        d.Wire(source.Right(), product.Left());
        d.Wire(gain.Bottom(), product.Top());
        d.Wire(product.Right(), sum.Left());
        d.Wire(bias.Bottom(), sum.Top());

        absSwitch_ = OptionalStage(d, sum.Right(), {x + 30, y}, Stage::Absolute, AnalogOut1AbsoluteValue,
                                   QStringLiteral("LineAbs"));
        const Shape counts = d.TimesFactor({absSwitch_.Pivot().at.x() + 4, y}, ConverterFullScale);
        const Shape range = d.Limiter({counts.Rect().right() + 4, y});
        d.Holds(range, -ConverterFullScale, ConverterFullScale);
        const double right = range.Rect().right();
        const Shape status = Box(AnalogOut1Status, {right + 5, y});
        const Shape converter = d.Function({right + 22, y}, {9, 10}, QStringLiteral("D/A"));
        d.Wire(absSwitch_.Pivot(), counts.Left());
        d.Chain({counts, range, status, converter});

        const double terminalX = right + 37;
        const auto terminal = [&](int number, const QString &labelName, const QString &role, double at) {
            d.Line(converter.RightAt(at), d.Terminal({terminalX, at}, number, labelName, role).Left());
        };
        terminal(Member() + 20, QStringLiteral("LabelOutput"), QStringLiteral("Output"), y - 3);
        terminal(Member() + 22, QStringLiteral("LabelCom"), QStringLiteral("Com"), y + 3);
    }

    void Update() override { absSwitch_.Set(RowValue(AnalogOut1AbsoluteValue) != 0 ? SwitchedIn : PassedBy); }

private:
    LivePart absSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockAnalogOutputs = {.form = "FormAnalogOutputs",
                                                .window = "Analog Output ",
                                                .helpTopic = "Analog Outputs.htm",
                                                .rows = Rows,
                                                .prefix = "Analog Out 1 ",
                                                .sheet = MakeSheet<AnalogOutputsSheet>,
                                                .firstMember = 1,
                                                .lastMember = 2,
                                                .mentorStart = WizardIOStartRecord{.outputs = 1, .kind = 0}};

} // namespace quorvik
