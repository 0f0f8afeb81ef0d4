#include "blocks/InputOutputForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    Destination,
    Filtering,
    Status,
    LowCalibration,
    HighCalibration,
    Bias,
    Gain,
    Sign,
    Linked,
};

constexpr BlockRow Rows[] = {
    {"Destination", 63},        {"Filtering", 68}, {"Status", 164}, {"0% Calibration", 64},
    {"100% Calibration", 65},   {"Bias", 66},      {"Gain", 67},    {"Sign", 349},
    {"Destination", LinkedRow},
};

class FormFreqInput final : public InputOutputForm
{
public:
    explicit FormFreqInput(Desk &desk)
        : InputOutputForm(desk,
                          {.name = "FormFreqInput",
                           .caption = QStringLiteral("Frequency Input 1"),
                           .helpTopic = "Frequency Input.htm",
                           .rows = Rows},
                          {.outputs = 0, .kind = 2, .member = 0})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape input = d.Function({0, y}, {12, 6}, QStringLiteral("Freq In"));
        const Shape filter = d.Filter({18, y});
        const Shape filtering = Box(Filtering, {16.5, y + RowBelow}, CaptionAt::Below);
        const Shape status = Box(Status, {33, y});
        d.Wire(input.Right(), filter.Left());
        d.Wire(filtering.Top(), filter.Bottom());
        d.Wire(filter.Right(), status.Left());

        const Shape curve = CalibrationStage(d, {51, y}, LowCalibration, HighCalibration, Bias, Gain);
        d.Wire(status.Right(), curve.Left());
        signSwitch_ =
            OptionalStage(d, curve.Right(), {76, y}, Stage::Negate, Sign, QStringLiteral("LineSign"));
        DestinationEnd(d, signSwitch_.Pivot(), Destination, 102);
    }

    void Tick() override { signSwitch_.Set(RowValue(Sign) == 1 ? SwitchedIn : PassedBy); }

private:
    LivePart signSwitch_;
};

} // namespace

BlockForm *MakeFormFreqInput(Desk &desk, int);

BlockForm *MakeFormFreqInput(Desk &desk, int)
{
    return Loaded(new FormFreqInput(desk));
}

} // namespace quorvik
