#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    GainSelect,
    OvershootGainA,
    PropGainA,
    IntegralTimeA,
    ForwardMaxSpeed,
    VelocityDemand,
    ReverseMaxSpeed,
    FullRPMLevel,
    MotorRPM,
    OvershootGainB,
    PropGainB,
    IntegralTimeB,
    FinalVelDemand,
    IntegralClamp,
    VelError,
    VelFeedback,
    VelFeedbackFiltered,
    VFBOffset,
    ArmatureVolts,
    IRComp,
    VelLoopOutput,
    AFB,
    TFB,
    EFB,
    FeedbackSelect,
    LoopEnable,
};

/** Contacts of the gain switch: ShapeSpotTop and ShapeSpotBottom. */
enum GainContact { SpotTop, SpotBottom };

class VelocityLoopSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawDemand(d);
        DrawGains(d);
        DrawLoop(d);
        DrawFeedback(d);
    }

    void Update() override
    {
        gainSwitch_.Set(RowNumber(GainSelect) == 0 ? SpotBottom : SpotTop);
        const std::int32_t rawFeedback = RowValue(FeedbackSelect);
        feedbackSwitch_.Set(rawFeedback == 0 || rawFeedback == 1 ? rawFeedback : 2);
    }

private:
    static constexpr double DemandY = 31;
    static constexpr double FeedbackY = 57;

    void DrawDemand(Drawing &d)
    {
        const Shape demand = Box(VelocityDemand, {0, DemandY});
        const Shape forward = Box(ForwardMaxSpeed, {18, DemandY - 8});
        const Shape reverse = Box(ReverseMaxSpeed, {18, DemandY + 8}, CaptionAt::Below);
        const Shape limiter = d.Limiter({21, DemandY});
        const Shape final = Box(FinalVelDemand, {33, DemandY});
        sum_ = d.Sum({69, DemandY}, QStringLiteral("+  -"));
        d.Wire(demand.Right(), limiter.Left());
        d.Wire(forward.Bottom(), limiter.Top());
        d.Wire(reverse.Top(), limiter.Bottom());
        d.Chain({limiter, final, sum_});
    }

    void DrawGains(Drawing &d)
    {
        const double yB = 4;
        const double yA = 12;
        const QRectF frameB(17, yB - 4.2, 63, 6.7);
        const QRectF frameA(17, yA - 4.2, 63, 6.7);
        d.Frame(frameB);
        d.Frame(frameA);
        const Shape setB =
            d.Group(frameB, QStringLiteral("Set B"),
                    {Box(OvershootGainB, {19, yB}), Box(PropGainB, {41, yB}), Box(IntegralTimeB, {61, yB})});
        const Shape setA =
            d.Group(frameA, QStringLiteral("Set A"),
                    {Box(OvershootGainA, {19, yA}), Box(PropGainA, {41, yA}), Box(IntegralTimeA, {61, yA})});
        gainSwitch_ = d.Switch(QStringLiteral("LineSwitch"), {90, 8}, {{84, yB}, {84, yA}});
        d.Line(setB.RightAt(yB), gainSwitch_.Contact(SpotTop));
        d.Line(setA.RightAt(yA), gainSwitch_.Contact(SpotBottom));
        Click(QStringLiteral("Image1"), ClickArea::Gesture::DoubleClick, gainSwitch_.Area(),
              QStringLiteral("Double-click to change over between gain sets A and B"), {GainSelect},
              [this] { Write(GainSelect, RowNumber(GainSelect) != 1 ? 1 : 0); });
        d.Link(Box(GainSelect, {98, 3}).Left(), gainSwitch_);
    }

    void DrawLoop(Drawing &d)
    {
        const Shape error = Box(VelError, {76, DemandY});
        const Shape pi = d.Pi({98, DemandY}, {14, 9});
        const Shape clamp = Box(IntegralClamp, {89, DemandY + 9}, CaptionAt::Below);
        const Shape enable = Box(LoopEnable, {89, DemandY + 16}, CaptionAt::Below);
        const Shape output = Box(VelLoopOutput, {119, DemandY});
        d.Chain({sum_, error, pi});
        d.Wire(gainSwitch_.Pivot(), pi.Top());
        d.Wire(clamp.Right(), pi.BottomAt(104));
        d.Wire(enable.Right(), pi.BottomAt(108));
        d.Wire(pi.Right(), output.Left());
        d.ShowsLevel(pi, output, clamp);
        d.To(output.Right(), {141, DemandY}, QStringLiteral("(101) Final I Demand"), FinalIDemand,
             QStringLiteral("LabelFinalIDemand"));
    }

    void DrawFeedback(Drawing &d)
    {
        const double pitch = 6.5;
        const Shape afb = DrawArmatureFeedback(d, FeedbackY - pitch);
        const Shape tfb = Box(TFB, {41, FeedbackY});
        const Shape efb = Box(EFB, {41, FeedbackY + pitch});
        feedbackSwitch_ = d.Switch(QStringLiteral("ShapeTriSwitch"), {65, FeedbackY},
                                   {{57, FeedbackY - pitch}, {57, FeedbackY}, {57, FeedbackY + pitch}});
        d.Line(afb.Right(), feedbackSwitch_.Contact(0));
        d.Line(tfb.Right(), feedbackSwitch_.Contact(1));
        d.Line(efb.Right(), feedbackSwitch_.Contact(2));
        Click(QStringLiteral("Image2"), ClickArea::Gesture::DoubleClick, feedbackSwitch_.Area(),
              QStringLiteral("Double-click to step the feedback: AFB, TFB, EFB"), {FeedbackSelect}, [this] {
                  const std::int32_t rawNext = RowValue(FeedbackSelect) + 1;
                  Write(FeedbackSelect, rawNext > 2 ? 0 : rawNext);
              });
        d.Link(Box(FeedbackSelect, {55, FeedbackY + 13.5}, CaptionAt::Below).Top(), feedbackSwitch_);

        const Shape offsetSum = d.Sum({74, FeedbackY}, QStringLiteral("+  -"));
        const Shape offset = Box(VFBOffset, {68, FeedbackY + 10.5}, CaptionAt::Right);
        const Shape feedback = Box(VelFeedback, {80, FeedbackY});
        d.Wire(feedbackSwitch_.Pivot(), offsetSum.Left());
        d.Wire(offset.Top(), offsetSum.Bottom());
        d.Wire(offsetSum.Right(), feedback.Left());

        const Port branch = d.Dot({98, FeedbackY});
        const Shape filter = d.Filter({102, FeedbackY});
        const Shape filtered = Box(VelFeedbackFiltered, {115, FeedbackY});
        const Shape scale = d.Multiplier({140, FeedbackY});
        const Shape level = Box(FullRPMLevel, {134, FeedbackY + 9}, CaptionAt::Below);
        const Shape rpm = Box(MotorRPM, {145, FeedbackY});
        d.Line(feedback.Right(), branch);
        d.Wire(branch, filter.Left());
        d.Wire(branch.To(Side::Top), sum_.Bottom(), FeedbackY - 5);
        d.Chain({filter, filtered, scale});
        d.Wire(level.Top(), scale.Bottom());
        d.Wire(scale.Right(), rpm.Left());
    }

    /** The armature's voltage as a share of the nameplate's, less what the current drops in it. */
    Shape DrawArmatureFeedback(Drawing &d, double y)
    {
        const Shape volts = Box(ArmatureVolts, {0, y});
        const Shape share = d.ByParameter({19, y}, NameplateMotorVoltage);
        const Shape irComp = Box(IRComp, {0, y + 8}, CaptionAt::Below);
        const Shape drop = d.Multiplier({26, y + 8});
        const Port current = d.From({21, y + 15}, QStringLiteral("(102) Current Feedback"), CurrentFeedback);
        const Shape sum = d.Sum({34, y}, QStringLiteral("+  -"));
        const Shape afb = Box(AFB, {41, y});
        d.Chain({volts, share, sum});
        d.Wire(irComp.Right(), drop.Left());
        d.Wire(current, drop.Bottom());
        d.Wire(drop.Right(), sum.Bottom());
        d.Wire(sum.Right(), afb.Left());
        return afb;
    }

    Shape sum_;
    LivePart gainSwitch_;
    LivePart feedbackSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockVelocityLoop = {.form = "FormVelocityLoop",
                                               .window = "Velocity Loop",
                                               .helpTopic = "Velocity Loop.htm",
                                               .rows = Rows,
                                               .sheet = MakeSheet<VelocityLoopSheet>};

} // namespace quorvik
