#include "blocks/BlockSheet.h"

#include <array>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {RampOutput, SetpointSumInvertA, SetpointB,     SetpointSumInvertB,
                             SetpointC,  SetpointSumInvertC, VelocityDemand};

enum SignContact { AsIs, Inverted };
enum EnableContact { Enabled, Disabled };

class SetpointSumSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double trimY = (BranchY(1) + BranchY(2)) / 2;
        const Shape trims = d.Sum({76, trimY}, QStringLiteral(" + +"));
        const Shape sum = d.Sum({107, BranchY(0)}, QStringLiteral("+  +"));
        d.Wire(DrawBranch(d, 0, RampOutput, SetpointSumInvertA).Pivot(), sum.Left());
        d.Wire(DrawBranch(d, 1, SetpointB, SetpointSumInvertB).Pivot(), trims.Top());
        d.Wire(DrawBranch(d, 2, SetpointC, SetpointSumInvertC).Pivot(), trims.Bottom());

        // A ramp stop leads the ramp's output to zero; what is added to it is left out at once.
        enableSwitch_ =
            d.Switch(QStringLiteral("LineSwitch"), {99, trimY + 3}, {{90, trimY}, {90, trimY + 6}});
        d.Line(trims.Right(), enableSwitch_.Contact(Enabled));
        d.Constant(QStringLiteral("Label2"), QStringLiteral("0.00%"), enableSwitch_.Contact(Disabled));
        d.Label(QStringLiteral("LabelRefEnable"), QStringLiteral("Ref Enable"), {94.5, trimY - 3.5});
        d.Wire(enableSwitch_.Pivot(), sum.Bottom());
        const double y = BranchY(0);
        LastBox(d, sum.Right(), VelocityDemand, {113, y}, QStringLiteral("Velocity Loop"));
    }

    void Update() override
    {
        enableSwitch_.Set(IsReferenceEnabled() ? Enabled : Disabled);
        constexpr std::array<int, 3> selectors = {SetpointSumInvertA, SetpointSumInvertB, SetpointSumInvertC};
        for (std::size_t i = 0; i < selectors.size(); ++i)
            signSwitches_[i].Set(RowText(selectors[i]) == QStringLiteral("True") ? Inverted : AsIs);
    }

private:
    static double BranchY(int branch) { return 6 + branch * 20.0; }

    /** One setpoint with the switch that turns its sign. */
    const LivePart &DrawBranch(Drawing &d, int branch, int setpoint, int invert)
    {
        const double y = BranchY(branch);
        LivePart &sign = signSwitches_[std::size_t(branch)];
        const Shape box = Box(setpoint, {0, y});
        const Port split = d.Dot({20, y});
        const Shape inverter = d.Gain({24, y + 4}, QStringLiteral("-1"));
        sign = d.Switch(QStringLiteral("LineInvert%1").arg(QChar(u'A' + branch)), {41, y},
                        {{34, y - 4}, {34, y + 4}});
        d.Line(box.Right(), split);
        d.Path(split, {{20, y - 4}}, sign.Contact(AsIs), false);
        d.Path(split, {{20, y + 4}}, inverter.Left(), true);
        d.Line(inverter.Right(), sign.Contact(Inverted));
        d.Link(Box(invert, {45, y + 8}, CaptionAt::Right).Left(), sign);
        return sign;
    }

    std::array<LivePart, 3> signSwitches_;
    LivePart enableSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockSetpointSum = {.form = "FormSetpointSum",
                                              .window = "Setpoint Sum",
                                              .helpTopic = "Setpoint Sum.htm",
                                              .rows = Rows,
                                              .prefix = "Setpoint Sum ",
                                              .sheet = MakeSheet<SetpointSumSheet>};

} // namespace quorvik
