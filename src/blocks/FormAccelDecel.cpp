#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {RampBypass, RampSelect,    FwdAccelA,  FwdDecelA,    RevAccelA,
                             RevDecelA,  FwdAccelB,     FwdDecelB,  RevAccelB,    RevDecelB,
                             RampInput,  RampThreshold, RampOutput, RampingStatus};

enum SetContact { SetA, SetB };
enum BypassContact { ThroughRamp, Bypassed };
enum EnableContact { Enabled, Disabled };

class AccelDecelSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawSets(d);
        DrawPath(d);
    }

    void Update() override
    {
        bypass_.Set(RowText(RampBypass) == QStringLiteral("False") ? ThroughRamp : Bypassed);
        set_.Set(RowText(RampSelect) == QStringLiteral("False") ? SetA : SetB);
        const std::int32_t rawState = values().Value(Param::DriveState);
        enable_.Set(rawState >= 1 && rawState <= 4 ? Enabled : Disabled);
    }

private:
    static constexpr double PathY = 38;

    void DrawSets(Drawing &d)
    {
        const QRectF tableA =
            Table({0, 0}, QStringLiteral("Set A"), {FwdAccelA, FwdDecelA, RevAccelA, RevDecelA});
        const QRectF tableB = Table({tableA.right() + 2, 0}, QStringLiteral("Set B"),
                                    {FwdAccelB, FwdDecelB, RevAccelB, RevDecelB});
        const Shape setA =
            d.Group(tableA, QStringLiteral("Set A"),
                    {Placed(FwdAccelA), Placed(FwdDecelA), Placed(RevAccelA), Placed(RevDecelA)});
        const Shape setB =
            d.Group(tableB, QStringLiteral("Set B"),
                    {Placed(FwdAccelB), Placed(FwdDecelB), Placed(RevAccelB), Placed(RevDecelB)});
        const double x = tableB.right() + 5.5;
        const double yB = tableB.center().y();
        const double yA = tableA.bottom() + 3;
        const double middle = (yA + yB) / 2;
        set_ = d.Switch(QStringLiteral("LineRampSel"), {x + 8, middle}, {{x, yA}, {x, yB}});
        d.Line(setA.Bottom(), set_.Contact(SetA));
        d.Line(setB.Right(), set_.Contact(SetB));
        ClickToFlip(QStringLiteral("Image1(1)"), set_.Area(),
                    QStringLiteral("Double-click to change over between the sets A and B"), RampSelect);
        d.Link(Box(RampSelect, {x + 4 - BoxSize(RampSelect).width() / 2, 2.5}).Bottom(), set_);
        rampX_ = x + 13;
    }

    void DrawPath(Drawing &d)
    {
        const double y = PathY;
        const Shape input = Box(RampInput, {0, y});
        const Port split = d.Dot({18, y});
        const Port taken = d.Dot({15, y});
        const Shape ramp = d.Ramp({rampX_ - 4, y});
        d.Label(QStringLiteral("LabelRamp"), QStringLiteral("Ramp"), {rampX_ + 5, y - 5.5}, Qt::AlignLeft);
        const double switchX = rampX_ + 10;
        bypass_ = d.Switch(QStringLiteral("LineRampBypass"), {switchX + 8, y + 4},
                           {{switchX, y}, {switchX, y + 8}});
        d.Line(input.Right(), taken);
        d.Line(taken, split);
        d.Wire(split, ramp.Left());
        d.Wire(set_.Pivot(), ramp.Top());
        d.Line(ramp.Right(), bypass_.Contact(ThroughRamp));
        d.Path(split, {{18, y + 8}}, bypass_.Contact(Bypassed), false);
        ClickToFlip(QStringLiteral("Image1(0)"), bypass_.Area(),
                    QStringLiteral("Double-click to pass the ramp by, or to take it again"), RampBypass);
        d.Link(Box(RampBypass, {switchX - 2, y + 15}, CaptionAt::Below).Top(), bypass_);

        const double enableX = switchX + 19;
        enable_ = d.Switch(QStringLiteral("LineRampEnable"), {enableX + 9, y + 7},
                           {{enableX, y + 4}, {enableX, y + 10}});
        d.Line(bypass_.Pivot(), enable_.Contact(Enabled));
        d.Constant(QStringLiteral("Label0"), QStringLiteral("0.00%"), enable_.Contact(Disabled));
        d.Label(QStringLiteral("LabelRampEnable"), QStringLiteral("Ramp Enable"), {enableX + 4, y + 0.5});
        // This area is tied to row 2, not to the enable: it writes the forward acceleration.
        ClickToFlip(QStringLiteral("Image1(2)"), enable_.Area(),
                    QStringLiteral("Double-click to set Fwd Accel A to its smallest step, 0.1 seconds"),
                    FwdAccelA);

        const double pathY = y + 7;
        const Shape output = Box(RampOutput, {enableX + 11.5, pathY});
        const Port given = d.Dot({output.Rect().right() + 3, pathY});
        d.Wire(enable_.Pivot(), output.Left());
        d.Line(output.Right(), given);
        d.Wire(output.Right(), {given.at + QPointF(5, 0), Side::Left});
        DrawStatus(d, taken, given);
    }

    /** What the ramp's output still lacks, against the threshold. */
    void DrawStatus(Drawing &d, const Port &input, const Port &output)
    {
        const double y = PathY + 21;
        const double x = output.at.x();
        const Shape rest = d.Sum({x, y}, QStringLiteral("+-"));
        const Shape magnitude = d.Absolute({x + 4, y});
        const Shape comparator = d.Comparator({x + 14, y}, QStringLiteral(">"));
        const Shape threshold = Box(RampThreshold, {x + 2, y + 8}, CaptionAt::Below);
        const Shape status = Box(RampingStatus, {x + 25, y}, CaptionAt::Below);
        d.Wire(input.To(Side::Bottom), rest.Left());
        d.Wire(output.To(Side::Bottom), rest.Top());
        d.Chain({rest, magnitude, comparator});
        d.Wire(threshold.Right(), comparator.Bottom());
        d.Wire(comparator.Right(), status.Left());
    }

    double rampX_ = 0;
    LivePart set_;
    LivePart bypass_;
    LivePart enable_;
};

} // namespace

constexpr BlockDescriptor BlockAccelDecel = {.form = "FormAccelDecel",
                                             .window = "Accel/Decel",
                                             .helpTopic = "AccelDecel.htm",
                                             .rows = Rows,
                                             .sheet = MakeSheet<AccelDecelSheet>};

} // namespace quorvik
