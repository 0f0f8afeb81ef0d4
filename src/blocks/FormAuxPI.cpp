#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    PropGain,
    IntegralTime,
    IntegralClamp,
    Polarity,
    Deadband,
    Setpoint,
    Feedback,
    Error,
    Reset,
    PiTrim,
    PiScale,
    PropStatus,
    IntegralStatus,
    Output,
    AtLimit,
};

constexpr BlockRow Rows[] = {
    {"Prop Gain", 355},       {"Integral Time", 356}, {"Integral Clamp", 353}, {"Polarity", 358},
    {"Deadband", 354},        {"Setpoint", 350},      {"Feedback", 351},       {"Error", 352},
    {"Reset", 357},           {"PI Trim", 359},       {"PI Scale", 360},       {"Prop Status", 362},
    {"Integral Status", 363}, {"Output", 364},        {"At Limit", 361},
};

class FormAuxPI final : public BlockForm
{
public:
    explicit FormAuxPI(Desk &desk)
        : BlockForm(desk, {.name = "FormAuxPI",
                           .caption = QStringLiteral("Aux PI"),
                           .helpTopic = "Aux PI.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        DrawError(d);
        DrawLoop(d);
        DrawOutput(d);
    }

private:
    static constexpr double PathY = 24;

    void DrawError(Drawing &d)
    {
        const double y = PathY;
        const Shape setpoint = Box(Setpoint, {0, y});
        const Shape feedback = Box(Feedback, {0, y + 11}, CaptionAt::Below);
        const Shape sum = d.Sum({18, y}, QStringLiteral("+  -"));
        const Shape error = Box(Error, {24, y});
        d.Wire(setpoint.Right(), sum.Left());
        d.Wire(feedback.Right(), sum.Bottom());
        d.Wire(sum.Right(), error.Left());

        // The size of the error decides whether it lies within the dead band.
        const Port split = d.Dot({39, y});
        const Shape absolute =
            d.Function({33, y + 13}, {8, 5}, QStringLiteral("ABS"), QStringLiteral("Label2"));
        const Shape band = d.Hysteresis({46, y});
        const Shape deadband = Box(Deadband, {45, y + 20}, CaptionAt::Below);
        d.Line(error.Right(), split);
        d.Wire(split, band.Left());
        d.Wire({split.at, Side::Bottom}, {{39, absolute.Rect().top()}, Side::Top});
        d.Wire(absolute.Right(), band.BottomAt(47.5));
        d.Wire(deadband.Top(), band.BottomAt(51));
        band_ = band;
    }

    void DrawLoop(Drawing &d)
    {
        const double y = PathY;
        const Shape pi = d.Function({62, y}, {16, 12}, QStringLiteral("PI"), QStringLiteral("LabelPI"));
        const Shape polarity = Box(Polarity, {42, y - 18});
        const Shape gain = Box(PropGain, {59, y - 18});
        const Shape time = Box(IntegralTime, {76, y - 18});
        const Shape clamp = Box(IntegralClamp, {61, y + 20}, CaptionAt::Below);
        const Shape reset = Box(Reset, {82, y + 20}, CaptionAt::Below);
        d.Wire(band_.Right(), pi.Left());
        d.Wire(polarity.Right(), pi.LeftAt(y - 4), 57.5);
        d.Wire(gain.Bottom(), pi.TopAt(65));
        d.Wire(time.Bottom(), pi.TopAt(75), y - 10);
        d.Wire(clamp.Top(), pi.BottomAt(67));
        d.Wire(reset.Top(), pi.BottomAt(74), y + 13);
        pi_ = pi;
    }

    void DrawOutput(Drawing &d)
    {
        const double y = PathY;
        const Shape proportional = Box(PropStatus, {86, y - 4});
        const Shape integral = Box(IntegralStatus, {86, y + 4}, CaptionAt::Below);
        const Shape sum = d.Sum({103, y}, QStringLiteral(" + +"));
        d.Wire(pi_.RightAt(y - 4), proportional.Left());
        d.Wire(pi_.RightAt(y + 4), integral.Left());
        d.Wire(proportional.Right(), sum.Top());
        d.Wire(integral.Right(), sum.Bottom());

        const Shape scale = d.Multiplier({110, y});
        const Shape factor = Box(PiScale, {104, y - 18});
        const Shape trimSum = d.Sum({117, y}, QStringLiteral("+  +"));
        const Shape trim = Box(PiTrim, {111, y + 20}, CaptionAt::Below);
        const Shape output = Box(Output, {123, y});
        const Shape limit = Box(AtLimit, {127, y + 20}, CaptionAt::Below);
        d.Wire(sum.Right(), scale.Left());
        d.Wire(factor.Bottom(), scale.Top());
        d.Wire(scale.Right(), trimSum.Left());
        d.Wire(trim.Top(), trimSum.Bottom());
        d.Wire(trimSum.Right(), output.Left());
        d.Guide(output.BottomAt(133), limit.TopAt(133));
        d.Wire(output.Right(), {{140, y}, Side::Left});
    }

    Shape band_;
    Shape pi_;
};

} // namespace

BlockForm *MakeFormAuxPI(Desk &desk, int);

BlockForm *MakeFormAuxPI(Desk &desk, int)
{
    return Loaded(new FormAuxPI(desk));
}

} // namespace quorvik
