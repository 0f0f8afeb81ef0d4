#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {MOPIncrease, MOPDecrease, MOPIncreaseTime, MOPDecreaseTime, MOPMaxValue,
                             MOPMinValue, MOPReset,    MOPResetValue,   MOPOutput};

class MOPSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 18;
        const Shape increase = Box(MOPIncrease, {0, y - 4});
        const Shape decrease = Box(MOPDecrease, {0, y + 4}, CaptionAt::Below);
        const Shape ramp = d.Ramp({40, y}, {14, 14});
        const Shape increaseTime = Box(MOPIncreaseTime, {26, y - 15});
        const Shape decreaseTime = Box(MOPDecreaseTime, {26, y + 15}, CaptionAt::Below);
        const Shape maxValue = Box(MOPMaxValue, {50, y - 15});
        const Shape minValue = Box(MOPMinValue, {50, y + 15}, CaptionAt::Below);
        const Shape resetValue = Box(MOPResetValue, {74, y + 15}, CaptionAt::Below);
        const Shape reset = Box(MOPReset, {74, y - 15});
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
        const Shape output = Box(MOPOutput, {88, y + 3});
        d.Wire(reset_.Pivot(), output.Left());
        d.Wire(output.Right(), {{106, y + 3}, Side::Left});
    }

    void Update() override
    {
        reset_.Set(RowText(MOPReset) == QStringLiteral("True") ? FromResetValue : FromRamp);
    }

private:
    enum ResetContact { FromRamp, FromResetValue };

    LivePart reset_;
};

} // namespace

constexpr BlockDescriptor BlockMOP = {.form = "FormMOP",
                                      .window = "MOP (Motor Operated Pot)",
                                      .helpTopic = "mop.htm",
                                      .rows = Rows,
                                      .prefix = "MOP ",
                                      .sheet = MakeSheet<MOPSheet>};

} // namespace quorvik
