#include "blocks/BlockSheet.h"

#include "platform/Arithmetic.h"

#include <algorithm>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    DriveModeMSB,      DriveModeLSB,         TorqueReference, PositiveILimit,
    CurrentDemand,     AuxIDemand,           NegativeILimit,  CurrentFeedbackFiltered,
    CurrentFeedback,   FinalIDemandFiltered, FinalIDemand,    IProportionalGain,
    IIntegralTime,     CurrentError,         RegenMode,       OpenLoopArmSetpoint,
    OpenLoopArmSelect, ArmatureAmps,         ConductionAngle, LoopEnable,
};

constexpr int ActiveWidth = 5;
constexpr int IdleWidth = 1;

enum ModeContact { Velocity, Torque };
enum EnableContact { Open, Closed };
enum LoopContact { ClosedLoop, OpenLoop };

/** The demand within its limits; while the foldback acts, within the motor's nameplate as well. */
std::optional<double> LimitedCurrent(const NetInputs &inputs)
{
    const std::optional<double> asked = inputs.On(Side::Left);
    const std::optional<double> high = inputs.On(Side::Top);
    const std::optional<double> low = inputs.On(Side::Bottom);
    const std::optional<double> isFoldedBack = inputs.Parameter(ArmIFoldbackStatus);
    if (!asked || !high || !low || !isFoldedBack)
        return std::nullopt;
    constexpr double nameplate = 100;
    const double highest = *isFoldedBack != 0 ? std::min(*high, nameplate) : *high;
    const double lowest = *isFoldedBack != 0 ? std::max(*low, -nameplate) : *low;
    return *asked > 0 ? std::min(*asked, highest) : std::max(*asked, lowest);
}

class CurrentLoopSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawDemand(d);
        DrawLimits(d);
        DrawLoop(d);
        DrawFeedback(d);
        AddExtraInterest(ArmIFoldbackStatus);
    }

    void Update() override
    {
        loopSwitch_.Set(RowText(OpenLoopArmSelect) == QStringLiteral("False") ? ClosedLoop : OpenLoop);
        enableSwitch_.Set(IsReferenceEnabled() ? Closed : Open);
        firing_.Set(RowText(LoopEnable) == QStringLiteral("True") ? Closed : Open);
        ShowDriveMode();
        positiveFoldback_.Set(values().Value(ArmIFoldbackStatus) != 0 ? ActiveWidth : IdleWidth);
        ShowActiveLimit();
    }

private:
    static constexpr double PathY = 28;
    static constexpr double FeedbackY = 62;

    void ShowDriveMode()
    {
        const std::int32_t mode =
            CheckedAdd(CheckedMultiply(2, RowValue(DriveModeMSB)), RowValue(DriveModeLSB));
        modeSwitch_.Set(mode == 0 ? Velocity : mode == 1 ? Torque : -1);
        driveMode_.Set(mode == 0   ? QStringLiteral("Velocity")
                       : mode == 1 ? QStringLiteral("Torque")
                                   : QStringLiteral("Undefined"));
    }

    void ShowActiveLimit()
    {
        const std::int32_t rawSum = ToInt16(CheckedAdd(RowValue(AuxIDemand), RowValue(CurrentDemand)));
        if (rawSum < 0) {
            negativeLimit_.Set(rawSum > RowValue(NegativeILimit) ? IdleWidth : ActiveWidth);
            positiveLimit_.Set(IdleWidth);
        } else {
            positiveLimit_.Set(rawSum < RowValue(PositiveILimit) ? IdleWidth : ActiveWidth);
            negativeLimit_.Set(IdleWidth);
        }
    }

    void DrawDemand(Drawing &d)
    {
        const double y = PathY;
        const Shape high = Box(DriveModeMSB, {8, y - 22});
        const Shape low = Box(DriveModeLSB, {31, y - 22});
        const Shape torque = Box(TorqueReference, {0, y + 4}, CaptionAt::Below);
        const Port velocity = d.From({20, y - 4}, QStringLiteral("(205) Vel Loop Output"), VelLoopOutput);
        // A stop takes the torque reference away; the velocity loop brings the motor to rest.
        enableSwitch_ = d.Contact(QStringLiteral("ShapeSwitch"), {21.5, y + 4}, {15, y + 4});
        d.Label(QStringLiteral("LabelRefEnable"), QStringLiteral("Ref Enable"), {18.2, y - 0.4});
        modeSwitch_ = d.Switch(QStringLiteral("LineDriveMode"), {33, y}, {{26.5, y - 4}, {26.5, y + 4}});
        d.Line(torque.Right(), enableSwitch_.Contact(0));
        d.Line(enableSwitch_.Pivot(), modeSwitch_.Contact(Torque));
        d.Line(velocity, modeSwitch_.Contact(Velocity));
        d.Link(high.Bottom(), modeSwitch_);
        d.Link(low.Bottom(), modeSwitch_);
        const QString undefined = QStringLiteral("Undefined");
        driveMode_ = d.LiveLabel(QStringLiteral("LabelDriveMode"), undefined, undefined, {30.5, y - 6},
                                 Qt::AlignLeft, true);

        const Shape demand = Box(CurrentDemand, {37.5, y}, CaptionAt::Below);
        const Shape sum = d.Sum({54, y}, QStringLiteral("++"));
        const Shape aux = Box(AuxIDemand, {38, y - 11});
        d.Wire(modeSwitch_.Pivot(), demand.Left());
        d.Wire(demand.Right(), sum.Left());
        d.Wire(aux.Right(), sum.Top());
        sum_ = sum;
    }

    void DrawLimits(Drawing &d)
    {
        const double y = PathY;
        const Shape limiter = d.Function({57.5, y}, {20, 16}, QString());
        const double left = limiter.Rect().left();
        const double right = limiter.Rect().right();
        const double middle = limiter.Rect().center().x();
        positiveLimit_ =
            d.Limit(QStringLiteral("LinePosILimit"), {QPointF(middle + 3, y - 6), QPointF(right - 1, y - 6)});
        positiveFoldback_ = d.Limit(QStringLiteral("LinePosFoldback"),
                                    {QPointF(middle + 2, y - 3.5), QPointF(right - 1, y - 3.5)});
        negativeFoldback_ = d.Limit(QStringLiteral("LineNegFoldback"),
                                    {QPointF(left + 1, y + 3.5), QPointF(middle - 2, y + 3.5)});
        negativeLimit_ =
            d.Limit(QStringLiteral("LineNegILimit"), {QPointF(left + 1, y + 6), QPointF(middle - 3, y + 6)});
        d.Limit({}, {QPointF(middle - 3, y + 6), QPointF(middle + 3, y - 6)});
        d.Label(QStringLiteral("LabelFoldback"), QStringLiteral("Foldback"), {middle + 4.8, y - 0.8});
        const Shape positive = Box(PositiveILimit, {61.5, y - 14});
        const Shape negative = Box(NegativeILimit, {61.5, y + 16}, CaptionAt::Below);
        d.Wire(sum_.Right(), limiter.Left());
        d.Wire(positive.Bottom(), limiter.Top());
        d.Wire(negative.Top(), limiter.Bottom());
        d.Gives(limiter, LimitedCurrent);

        const Shape final = Box(FinalIDemand, {81.5, y}, CaptionAt::Below);
        const Port branch = d.Dot({96.5, y});
        const Shape filter = d.Filter({100.5, y - 24});
        const Shape filtered = Box(FinalIDemandFiltered, {114.5, y - 24});
        error_ = d.Sum({100.5, y}, QStringLiteral("+  -"));
        d.Wire(limiter.Right(), final.Left());
        d.Line(final.Right(), branch);
        d.Wire(branch, error_.Left());
        d.Wire(branch.To(Side::Top), filter.Left());
        d.Wire(filter.Right(), filtered.Left());
    }

    void DrawLoop(Drawing &d)
    {
        const double y = PathY;
        const Shape error = Box(CurrentError, {104.5, y}, CaptionAt::Below);
        const Shape pi = d.Pi({123.5, y}, {11, 10});
        const Shape gain = Box(IProportionalGain, {101.5, y - 16});
        const Shape time = Box(IIntegralTime, {101.5, y - 9});
        const Shape regen = Box(RegenMode, {104.5, y + 10}, CaptionAt::Below);
        d.Chain({error_, error, pi});
        d.Wire(gain.Right(), pi.TopAt(131.5));
        d.Wire(time.Right(), pi.TopAt(126.5));
        d.Wire(regen.Right(), pi.BottomAt(129));

        loopSwitch_ = d.Switch(QStringLiteral("ShapeSwitch2"), {146.5, y + 3}, {{138.5, y}, {138.5, y + 6}});
        d.Line(pi.Right(), loopSwitch_.Contact(ClosedLoop));
        const Shape setpoint = Box(OpenLoopArmSetpoint, {117.5, y + 17}, CaptionAt::Below);
        d.Line(setpoint.Right(), loopSwitch_.Contact(OpenLoop), 134);
        ClickToFlip(QStringLiteral("Image1"), loopSwitch_.Area(),
                    QStringLiteral("Double-click to change over between closed and open loop"),
                    OpenLoopArmSelect);
        d.Link(Box(OpenLoopArmSelect, {136.5, y - 9}).Bottom(), loopSwitch_);
        // Nothing fires the bridges while the loops are blocked, in open loop neither.
        firing_ = d.Contact(QStringLiteral("LineLoopEnable"), {157.5, y + 3}, {150.5, y + 3});
        d.Line(loopSwitch_.Pivot(), firing_.Contact(0));
        d.Link(Box(LoopEnable, {148, y + 12}, CaptionAt::Below).Top(), firing_);
        LastBox(d, firing_.Pivot(), ConductionAngle, {161.5, y + 3});
    }

    void DrawFeedback(Drawing &d)
    {
        const double y = FeedbackY;
        const Shape feedback = Box(CurrentFeedback, {76.5, y});
        const Port branch = d.Dot({100.5, y});
        const Shape filter = d.Filter({108.5, y});
        const Shape filtered = Box(CurrentFeedbackFiltered, {122.5, y});
        const Shape scale = d.TimesParameter({108.5, y + 9}, NameplateMotorI);
        const Shape amps = Box(ArmatureAmps, {122.5, y + 9}, CaptionAt::Below);
        d.Line(feedback.Right(), branch);
        d.Wire(branch.To(Side::Top), error_.Bottom());
        d.Wire(branch, filter.Left());
        d.Wire(filter.Right(), filtered.Left());
        d.Path(branch, {{100.5, y + 9}}, scale.Left(), true);
        d.Wire(scale.Right(), amps.Left());
    }

    Shape sum_;
    Shape error_;
    LiveText driveMode_;
    LivePart modeSwitch_;
    LivePart enableSwitch_;
    LivePart loopSwitch_;
    LivePart firing_;
    LivePart positiveLimit_;
    LivePart negativeLimit_;
    LivePart positiveFoldback_;
    LivePart negativeFoldback_;
};

} // namespace

constexpr BlockDescriptor BlockCurrentLoop = {.form = "FormCurrentLoop",
                                              .window = "Current Loop",
                                              .helpTopic = "Current Loop.htm",
                                              .rows = Rows,
                                              .sheet = MakeSheet<CurrentLoopSheet>};

} // namespace quorvik
