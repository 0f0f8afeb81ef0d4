#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    Increase,
    Decrease,
    IncreaseTime,
    DecreaseTime,
    MaxValue,
    MinValue,
    Reset,
    ResetValue,
    Output,
};

constexpr BlockRow Rows[] = {
    {"Increase", 0},  {"Decrease", 1}, {"Increase Time", 2}, {"Decrease Time", 3}, {"Max Value", 4},
    {"Min Value", 5}, {"Reset", 6},    {"Reset Value", 7},   {"Output", 8},
};

class FormMOP final : public BlockForm
{
public:
    explicit FormMOP(Desk &desk)
        : BlockForm(desk, {.name = "FormMOP",
                           .caption = QStringLiteral("MOP (Motor Operated Pot)"),
                           .helpTopic = "mop.htm",
                           .rows = Rows,
                           .base = 316})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 18;
        const Shape increase = Box(Increase, {0, y - 4});
        const Shape decrease = Box(Decrease, {0, y + 4}, CaptionAt::Below);
        const Shape ramp = d.Ramp({40, y}, {14, 14});
        const Shape increaseTime = Box(IncreaseTime, {26, y - 15});
        const Shape decreaseTime = Box(DecreaseTime, {26, y + 15}, CaptionAt::Below);
        const Shape maxValue = Box(MaxValue, {50, y - 15});
        const Shape minValue = Box(MinValue, {50, y + 15}, CaptionAt::Below);
        const Shape resetValue = Box(ResetValue, {74, y + 15}, CaptionAt::Below);
        const Shape reset = Box(Reset, {74, y - 15});
        d.Label(QStringLiteral("Label2"), QStringLiteral("Ramp"), {55.5, y - 1.8}, Qt::AlignLeft, true);
        d.Wire(increase.Right(), ramp.LeftAt(y - 4));
        d.Wire(decrease.Right(), ramp.LeftAt(y + 4));
        d.Wire(increaseTime.Bottom(), ramp.TopAt(43.5), y - 10);
        d.Wire(decreaseTime.Top(), ramp.BottomAt(43.5), y + 10);
        d.Wire(maxValue.Bottom(), ramp.TopAt(50.5), y - 10);
        d.Wire(minValue.Top(), ramp.BottomAt(50.5), y + 10);

        reset_ = d.Switch(QStringLiteral("LineReset"), {80, y + 3}, {{71, y}, {71, y + 6}});
        d.Line(ramp.Right(), reset_.Contact(FromRamp));
        d.Line(resetValue.Left(), reset_.Contact(FromResetValue), 67);
        d.Link(reset.Bottom(), reset_);
        const Shape output = Box(Output, {88, y + 3});
        d.Wire(reset_.Pivot(), output.Left());
        d.Wire(output.Right(), {{106, y + 3}, Side::Left});
    }

    void Tick() override { reset_.Set(RowText(Reset) == QStringLiteral("True") ? FromResetValue : FromRamp); }

private:
    enum ResetContact { FromRamp, FromResetValue };

    LivePart reset_;
};

} // namespace

BlockForm *MakeFormMOP(Desk &desk, int);

BlockForm *MakeFormMOP(Desk &desk, int)
{
    return Loaded(new FormMOP(desk));
}

} // namespace quorvik
