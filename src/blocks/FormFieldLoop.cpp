#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    FieldEnable,           FieldPropGain,          FieldIntegralTime, FieldIDemand,
    FieldIFeedback,        FieldIFeedbackFiltered, FieldIFBOffset,    FieldVFBOffset,
    FieldVoltageFeedback,  FieldVFBFiltered,       FieldCondAngle,    OpenLoopFieldSelect,
    OpenLoopFieldSetpoint, FieldEconomyEnable,     FieldAmps,         FieldVolts,
    FinalFieldIDemand,
};

enum LoopContact { ClosedLoop, OpenLoop };
enum FieldContact { On, Off };

class FieldLoopSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawDemand(d);
        DrawLoop(d);
        DrawCurrent(d, PathY + 31);
        DrawVoltage(d, PathY + 51);
    }

    void Update() override
    {
        fieldSwitch_.Set(RowText(FieldEnable) == QStringLiteral("False") ? Off : On);
        loopSwitch_.Set(RowText(OpenLoopFieldSelect) == QStringLiteral("False") ? ClosedLoop : OpenLoop);
    }

private:
    static constexpr double PathY = 22;
    static constexpr double ErrorX = 86;

    void DrawDemand(Drawing &d)
    {
        const double y = PathY;
        const Shape demand = Box(FieldIDemand, {0, y});
        const Shape sum = d.Sum({25, y}, QStringLiteral("+  -"));
        const Port crossover = d.From({22.4, y + 9}, QStringLiteral("Field Crossover Output"),
                                      FieldCrossoverOutput, QStringLiteral("LabelFieldCrossoverOutput"));
        d.Wire(crossover, sum.Bottom());
        const Shape economy = d.Function({31, y}, {12, 5}, QStringLiteral("Economy"));
        const Shape enable = Box(FieldEconomyEnable, {31, y + 12}, CaptionAt::Below);
        const Shape final = Box(FinalFieldIDemand, {49, y});
        error_ = d.Sum({ErrorX, y}, QStringLiteral("+  +"));
        d.Chain({demand, sum, economy});
        d.Wire(enable.Top(), economy.Bottom());
        // How long the motor has stood still is not known; a drive that runs saves nothing.
        d.Gives(economy, [](const NetInputs &inputs) {
            const std::optional<double> isEnabled = inputs.On(Side::Bottom);
            const std::optional<double> state = inputs.Parameter(Param::DriveState);
            const bool isStopped = !state || *state == 0 || *state == 8;
            return isEnabled && (*isEnabled == 0 || !isStopped) ? inputs.On(Side::Left) : std::nullopt;
        });
        d.Chain({economy, final, error_});
    }

    void DrawLoop(Drawing &d)
    {
        const double y = PathY;
        const Shape pi = d.Pi({92, y}, {12, 9});
        const Shape gain = Box(FieldPropGain, {80, y - 16});
        const Shape time = Box(FieldIntegralTime, {104, y - 16});
        d.Wire(error_.Right(), pi.Left());
        d.Wire(gain.Right(), pi.TopAt(95));
        d.Wire(time.Left(), pi.TopAt(101));

        loopSwitch_ = d.Switch(QStringLiteral("ShapeSwitchOpenLoop"), {120, y + 3}, {{111, y}, {111, y + 6}});
        d.Line(pi.Right(), loopSwitch_.Contact(ClosedLoop));
        const Shape setpoint = Box(OpenLoopFieldSetpoint, {92, y + 15}, CaptionAt::Below);
        d.Line(setpoint.Right(), loopSwitch_.Contact(OpenLoop), 108);
        ClickToFlip(QStringLiteral("Image2"), loopSwitch_.Area(),
                    QStringLiteral("Double-click to change over between closed and open loop"),
                    OpenLoopFieldSelect);
        d.Link(Box(OpenLoopFieldSelect, {109.5, y - 8}).Bottom(), loopSwitch_);

        fieldSwitch_ =
            d.Switch(QStringLiteral("ShapeSwitchField"), {137, y + 6}, {{128, y + 3}, {128, y + 9}});
        d.Line(loopSwitch_.Pivot(), fieldSwitch_.Contact(On));
        d.Constant({}, QStringLiteral("0.0"), fieldSwitch_.Contact(Off));
        ClickToFlip(QStringLiteral("Image1"), fieldSwitch_.Area(),
                    QStringLiteral("Double-click to turn the field on or off"), FieldEnable);
        d.Link(Box(FieldEnable, {126.5, y + 18}, CaptionAt::Below).Top(), fieldSwitch_);
        LastBox(d, fieldSwitch_.Pivot(), FieldCondAngle, {141, y + 6});
    }

    /** A measured quantity less its offset. */
    Shape DrawMeasured(Drawing &d, double y, const QString &source, int offsetRow, int feedbackRow)
    {
        const Shape input = d.Function({0, y}, {14, 5}, source);
        const Shape sum = d.Sum({22, y}, QStringLiteral("+  -"));
        const Shape offset = Box(offsetRow, {4, y + 8}, CaptionAt::Below);
        const Shape feedback = Box(feedbackRow, {28, y});
        d.Wire(input.Right(), sum.Left());
        d.Wire(offset.Right(), sum.Bottom());
        d.Wire(sum.Right(), feedback.Left());
        return feedback;
    }

    /** The loop's filter turns the sign, so that demand and feedback are added. */
    void DrawCurrent(Drawing &d, double y)
    {
        const Shape feedback =
            DrawMeasured(d, y, QStringLiteral("Field current"), FieldIFBOffset, FieldIFeedback);
        const Port branch = d.Dot({45.5, y});
        const Shape negated = d.Gain({49, y}, QStringLiteral("-1"));
        const Shape filter = d.Filter({58, y});
        const Shape filtered = Box(FieldIFeedbackFiltered, {70.5, y}, CaptionAt::Below);
        const Shape scale = d.Scale({57.5, y + 9}, QStringLiteral("Scale"));
        const Shape amps = Box(FieldAmps, {113, y + 9}, CaptionAt::Below);
        d.Line(feedback.Right(), branch);
        d.Wire(branch, negated.Left());
        d.Chain({negated, filter, filtered});
        d.Wire(filtered.Right(), error_.Bottom());
        d.Path(branch, {{branch.at.x(), y + 9}}, scale.Left(), true);
        d.Wire(scale.Right(), amps.Left());
    }

    void DrawVoltage(Drawing &d, double y)
    {
        const Shape feedback =
            DrawMeasured(d, y, QStringLiteral("Field voltage"), FieldVFBOffset, FieldVoltageFeedback);
        const Shape filter = d.Filter({58, y});
        const Shape filtered = Box(FieldVFBFiltered, {70.5, y}, CaptionAt::Below);
        const Shape scale = d.Scale({98, y}, QStringLiteral("Scale"));
        const Shape volts = Box(FieldVolts, {113, y}, CaptionAt::Below);
        d.Chain({feedback, filter, filtered, scale, volts});
    }

    Shape error_;
    LivePart loopSwitch_;
    LivePart fieldSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockFieldLoop = {.form = "FormFieldLoop",
                                            .window = "Field Loop",
                                            .helpTopic = "Field Loop.htm",
                                            .rows = Rows,
                                            .sheet = MakeSheet<FieldLoopSheet>};

} // namespace quorvik
