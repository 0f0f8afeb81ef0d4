#include "blocks/InputOutputForm.h"

namespace quorvik
{

namespace
{

enum RowIndex { Source, Gain, Bias, AbsoluteValue, Status, Linked };

constexpr BlockRow Rows[] = {
    {"Source", 0}, {"Gain", 2}, {"Bias", 4}, {"Absolute Value", 6}, {"Status", 87}, {"Source", LinkedRow},
};

class FormAnalogOutputs final : public InputOutputForm
{
public:
    FormAnalogOutputs(Desk &desk, int member)
        : InputOutputForm(desk,
                          {.name = "FormAnalogOutputs",
                           .caption = QStringLiteral("Analog Output ") + QString::number(member),
                           .helpTopic = "Analog Outputs.htm",
                           .rows = Rows,
                           .base = member + 80},
                          {.outputs = 1, .kind = 0, .member = std::uint8_t(member - 1)}, member)
        , member_(member)
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape source = SourceEnd(d, Source, y);
        const double x = source.Rect().right();
        const Shape product = d.Multiplier({x + 9, y});
        const Shape sum = d.Sum({x + 24, y}, QStringLiteral("++"));
        const Shape gain = Box(Gain, {x + 3, y + RowAbove});
        const Shape bias = Box(Bias, {x + 18, y + RowAbove});
        d.Wire(source.Right(), product.Left());
        d.Wire(gain.Bottom(), product.Top());
        d.Wire(product.Right(), sum.Left());
        d.Wire(bias.Bottom(), sum.Top());

        absSwitch_ = OptionalStage(d, sum.Right(), {x + 30, y}, Stage::Absolute, AbsoluteValue,
                                   QStringLiteral("LineAbs"));
        const Shape counts = d.Scale({absSwitch_.Pivot().at.x() + 4, y}, QStringLiteral("x 4095"));
        const Shape range = d.Limiter({counts.Rect().right() + 4, y});
        const double right = range.Rect().right();
        const Shape status = Box(Status, {right + 5, y});
        const Shape converter = d.Function({right + 22, y}, {9, 10}, QStringLiteral("D/A"));
        d.Wire(absSwitch_.Pivot(), counts.Left());
        d.Wire(counts.Right(), range.Left());
        d.Wire(range.Right(), status.Left());
        d.Wire(status.Right(), converter.Left());

        const double terminalX = right + 37;
        const auto terminal = [&](int number, const QString &labelName, const QString &role, double at) {
            const Shape screw = d.Terminal({terminalX, at}, QString::number(number), labelName);
            d.Label({}, role, {terminalX + 5, at}, Qt::AlignLeft);
            d.Line(converter.RightAt(at), screw.Left());
        };
        terminal(member_ + 20, QStringLiteral("LabelOutput"), QStringLiteral("Output"), y - 3);
        terminal(member_ + 22, QStringLiteral("LabelCom"), QStringLiteral("Com"), y + 3);
    }

    void Tick() override { absSwitch_.Set(RowValue(AbsoluteValue) != 0 ? SwitchedIn : PassedBy); }

private:
    int member_;
    LivePart absSwitch_;
};

} // namespace

BlockForm *MakeFormAnalogOutputs(Desk &desk, int member);

BlockForm *MakeFormAnalogOutputs(Desk &desk, int member)
{
    return Loaded(new FormAnalogOutputs(desk, member));
}

} // namespace quorvik
