#include "blocks/BlockSheet.h"

#include <algorithm>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    AuxPIPropGain,
    AuxPIIntegralTime,
    AuxPIIntegralClamp,
    AuxPIPolarity,
    AuxPIDeadband,
    AuxPISetpoint,
    AuxPIFeedback,
    AuxPIError,
    AuxPIReset,
    {AuxPITrim, "PI Trim"},
    {AuxPIScale, "PI Scale"},
    AuxPIPropStatus,
    AuxPIIntegralStatus,
    AuxPIOutput,
    AuxPIAtLimit,
};

class AuxPISheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        DrawError(d);
        DrawLoop(d);
        DrawOutput(d);
        DrawLimit(d);
    }

    void Update() override { polarity_.Set(RowValue(AuxPIPolarity) != 0); }

private:
    static constexpr double PathY = 24;

    void DrawError(Drawing &d)
    {
        const double y = PathY;
        const Shape setpoint = Box(AuxPISetpoint, {0, y});
        const Shape feedback = Box(AuxPIFeedback, {0, y + 11}, CaptionAt::Below);
        const Shape sum = d.Sum({18, y}, QStringLiteral("+  -"));
        const Shape error = Box(AuxPIError, {24, y});
        d.Wire(setpoint.Right(), sum.Left());
        d.Wire(feedback.Right(), sum.Bottom());
        d.Wire(sum.Right(), error.Left());

        // The size of the error decides whether it lies within the dead band.
        const Port split = d.Dot({39, y});
        const Shape magnitude = d.Absolute({41, y + 11}, QStringLiteral("Label2"));
        const Shape band = d.DeadBand({46, y});
        const Shape deadband = Box(AuxPIDeadband, {46.5, y + 20}, CaptionAt::Below);
        d.Line(error.Right(), split);
        d.Wire(split, band.Left());
        d.Wire(split.To(Side::Bottom), magnitude.Left());
        d.Wire(magnitude.Right(), band.BottomAt(50));
        d.Wire(deadband.Top(), band.BottomAt(52.5));
        d.Gives(band, [](const NetInputs &inputs) {
            const std::optional<double> asked = inputs.On(Side::Left);
            const std::optional<double> size = inputs.On(Side::Bottom, 0);
            const std::optional<double> dead = inputs.On(Side::Bottom, 1);
            if (!asked || !size || !dead)
                return std::optional<double>();
            return std::optional(*size <= *dead ? 0.0 : *asked);
        });
        band_ = band;
    }

    void DrawLoop(Drawing &d)
    {
        const double y = PathY;
        const Shape pi = d.Pi({62, y}, {16, 12});
        const Shape reset = Box(AuxPIReset, {42, y - 18});
        const Shape gain = Box(AuxPIPropGain, {59, y - 18});
        const Shape time = Box(AuxPIIntegralTime, {76, y - 18});
        clamp_ = Box(AuxPIIntegralClamp, {62, y + 20}, CaptionAt::Below);
        d.Wire(band_.Right(), pi.Left());
        d.Wire(reset.Right(), pi.LeftAt(y - 4), 57.5);
        d.Wire(gain.Bottom(), pi.TopAt(65));
        d.Wire(time.Bottom(), pi.TopAt(75), y - 10);
        d.Wire(clamp_.Top(), pi.BottomAt(68));
        pi_ = pi;
    }

    void DrawOutput(Drawing &d)
    {
        const double y = PathY;
        const Shape proportional = Box(AuxPIPropStatus, {86, y - 4});
        const Shape integral = Box(AuxPIIntegralStatus, {86, y + 4}, CaptionAt::AboveRight);
        integral_ = d.Dot({100.5, y + 4});
        const Shape sum = d.Sum({103, y}, QStringLiteral(" + +"));
        d.Wire(pi_.RightAt(y - 4), proportional.Left());
        d.Wire(pi_.RightAt(y + 4), integral.Left());
        d.ShowsLevel(pi_, integral, clamp_);
        d.Wire(proportional.Right(), sum.Top());
        d.Line(integral.Right(), integral_);
        d.Wire(integral_.To(Side::Right), sum.Bottom());

        const Shape limiter = d.Limiter({109, y}, QStringLiteral("LimiterPolarity"));
        polarity_ = d.Part(QStringLiteral("LimiterPolarity"));
        const Shape polarity = Box(AuxPIPolarity, {106, y - 18});
        const Shape scale = d.Multiplier({126, y});
        const Shape factor = Box(AuxPIScale, {120, y - 18});
        const Shape trimSum = d.Sum({140, y}, QStringLiteral("++"));
        const Shape trim = Box(AuxPITrim, {134, y - 18});
        const Shape output = Box(AuxPIOutput, {OutputX, y});
        d.Wire(sum.Right(), limiter.Left());
        d.Wire(polarity.Bottom(), limiter.Top());
        d.Wire(limiter.Right(), scale.Left());
        d.Wire(factor.Bottom(), scale.Top());
        d.Wire(scale.Right(), trimSum.Left());
        d.Wire(trim.Bottom(), trimSum.Top());
        d.Wire(trimSum.Right(), output.Left());
        d.Wire(output.Right(), {{OutputX + 17, y}, Side::Left});
        d.Gives(limiter, [](const NetInputs &inputs) {
            const std::optional<double> asked = inputs.On(Side::Left);
            const std::optional<double> isBipolar = inputs.On(Side::Top);
            if (!asked || !isBipolar)
                return std::optional<double>();
            return std::optional(*isBipolar != 0 ? *asked : std::max(*asked, 0.0));
        });
    }

    /** At its limit is the loop whose integral part stands at the clamp. */
    void DrawLimit(Drawing &d)
    {
        const double y = PathY + 12;
        const Shape magnitude = d.Absolute({105, y});
        const Shape comparator = d.Comparator({118, y}, QStringLiteral("\u2265"));
        const Shape limit = Box(AuxPIAtLimit, {OutputX, y}, CaptionAt::Below);
        d.Wire(integral_.To(Side::Bottom), magnitude.Left());
        d.Wire(magnitude.Right(), comparator.Left());
        d.Wire(clamp_.Right(), comparator.Bottom());
        d.Wire(comparator.Right(), limit.Left());
    }

    static constexpr double OutputX = 146;

    Shape band_;
    Shape pi_;
    Shape clamp_;
    Port integral_;
    LivePart polarity_;
};

} // namespace

constexpr BlockDescriptor BlockAuxPI = {.form = "FormAuxPI",
                                        .window = "Aux PI",
                                        .helpTopic = "Aux PI.htm",
                                        .rows = Rows,
                                        .prefix = "Aux PI ",
                                        .sheet = MakeSheet<AuxPISheet>};

} // namespace quorvik
