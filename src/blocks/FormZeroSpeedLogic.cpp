#include "blocks/BlockSheet.h"

#include "platform/Arithmetic.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {FinalVelDemand, FinalIDemand, VelFeedback,  ZeroSpeedSet, StandstillLogic,
                             AtZeroSet,      AtZeroSpeed,  AtStandstill, LoopEnable};

/** States of the drive; from Run to Jog Stop the ramp is enabled. */
enum DriveStateValue { RunState = 1, JogStopState = 4, QuickStopState = 6 };

NetFormula IsInState(DriveStateValue first, DriveStateValue last)
{
    return [first, last](const NetInputs &inputs) -> std::optional<double> {
        const std::optional<double> state = inputs.Parameter(DriveState);
        return state ? std::optional<double>(*state >= int(first) && *state <= int(last)) : std::nullopt;
    };
}

class ZeroSpeedLogicSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawComparators(d);
        DrawLogic(d);
        AddExtraInterest(DriveModeMSB);
        AddExtraInterest(DriveModeLSB);
    }

    void Update() override
    {
        const ParameterTable &table = values();
        const std::int32_t mode =
            CheckedAdd(CheckedMultiply(2, table.Value(DriveModeMSB)), table.Value(DriveModeLSB));
        modeSwitch_.Set(mode == 0 ? Velocity : Current);
    }

private:
    enum ModeContact { Velocity, Current };

    static constexpr double DemandY = 10;
    static constexpr double FeedbackY = 34;

    void DrawComparators(Drawing &d)
    {
        const double level = (DemandY + FeedbackY) / 2;
        const Shape velocity = Box(FinalVelDemand, {0, DemandY - 4});
        const Shape current = Box(FinalIDemand, {0, DemandY + 4}, CaptionAt::Below);
        modeSwitch_ =
            d.Switch(QStringLiteral("LineSwitch"), {30, DemandY}, {{21, DemandY - 4}, {21, DemandY + 4}});
        d.Line(velocity.Right(), modeSwitch_.Contact(Velocity));
        d.Line(current.Right(), modeSwitch_.Contact(Current));
        d.Label(QStringLiteral("LabelDriveMode"), QStringLiteral("Drive Mode"), {27.5, DemandY - 8.2});
        const Shape demandSize = d.Absolute({34, DemandY}, QStringLiteral("LabelAbs"));
        const Shape feedback = Box(VelFeedback, {0, FeedbackY});
        const Shape feedbackSize = d.Absolute({34, FeedbackY}, QStringLiteral("Label2"));
        const QString relation = QStringLiteral("\u2264");
        demandAtZero_ = d.Comparator({48, DemandY}, relation);
        feedbackAtZero_ = d.Comparator({48, FeedbackY}, relation);
        const Shape zero = Box(ZeroSpeedSet, {22, level});
        const Port split = d.Dot({52, level});
        d.Line(modeSwitch_.Pivot(), demandSize.Left());
        d.Wire(demandSize.Right(), demandAtZero_.Left());
        d.Chain({feedback, feedbackSize, feedbackAtZero_});
        d.Line(zero.Right(), split);
        d.Wire(split.To(Side::Top), demandAtZero_.Bottom());
        d.Wire(split.To(Side::Bottom), feedbackAtZero_.Top());
    }

    void DrawLogic(Drawing &d)
    {
        const double middle = (DemandY + FeedbackY) / 2;
        const Shape atZeroSet = Box(AtZeroSet, {62, DemandY});
        const Shape atZeroSpeed = Box(AtZeroSpeed, {62, FeedbackY}, CaptionAt::Below);
        d.Wire(demandAtZero_.Right(), atZeroSet.Left());
        d.Wire(feedbackAtZero_.Right(), atZeroSpeed.Left());
        const Shape both = d.And({80, middle}, QStringLiteral("Label3"));
        d.Wire(atZeroSet.Right(), both.LeftAt(middle - 2.5), 77);
        d.Wire(atZeroSpeed.Right(), both.LeftAt(middle + 2.5), 77);
        const Shape standstill = Box(AtStandstill, {92, middle});
        d.Wire(both.Right(), standstill.Left());

        const Shape logic = Box(StandstillLogic, {92, middle + 11}, CaptionAt::Below);
        const Shape blocked = d.Nand({112, middle + 2.5}, QStringLiteral("Label4"));
        d.Wire(standstill.Right(), blocked.LeftAt(middle));
        d.Wire(logic.Right(), blocked.LeftAt(middle + 5), 109);
        const Shape enabled = d.And({126, middle - 2}, QStringLiteral("Label5"));
        d.Wire(blocked.Right(), enabled.LeftAt(middle), 123.5);
        // A quick stop brakes with the ramp at zero.
        const Shape fed = d.Or({114, middle - 10});
        const Port rampEnable =
            d.FromState({108, middle - 12.5}, QStringLiteral("Ramp Enable"),
                        IsInState(RunState, JogStopState), QStringLiteral("LabelRampEnable"));
        d.Wire(rampEnable, fed.LeftAt(middle - 12.5));
        d.Wire(d.FromState({108, middle - 7.5}, QStringLiteral("Quick Stop"),
                           IsInState(QuickStopState, QuickStopState)),
               fed.LeftAt(middle - 7.5));
        d.Wire(fed.Right(), enabled.LeftAt(middle - 4), 123.5);
        const Shape enable = Box(LoopEnable, {137, middle - 2});
        d.Wire(enabled.Right(), enable.Left());
    }

    LivePart modeSwitch_;
    Shape demandAtZero_;
    Shape feedbackAtZero_;
};

} // namespace

constexpr BlockDescriptor BlockZeroSpeedLogic = {.form = "FormZeroSpeedLogic",
                                                 .window = "Zero Speed Logic",
                                                 .helpTopic = "Zero Speed.htm",
                                                 .rows = Rows,
                                                 .sheet = MakeSheet<ZeroSpeedLogicSheet>};

} // namespace quorvik
