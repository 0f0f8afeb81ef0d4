#include "blocks/InputOutputSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    FrequencyInDestination,
    FrequencyInFiltering,
    FrequencyInStatus,
    FrequencyInZeroCalibration,
    FrequencyInFullCalibration,
    FrequencyInBias,
    FrequencyInGain,
    FrequencyInSign,
    LinkedRow,
};

class FreqInputSheet final : public InputOutputSheet
{
public:
    using InputOutputSheet::InputOutputSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape input = d.Function({0, y}, {12, 6}, QStringLiteral("Freq In"));
        const Shape filter = d.Filter({18, y});
        const Shape filtering = Box(FrequencyInFiltering, {16.5, y + RowBelow}, CaptionAt::Below);
        const Shape status = Box(FrequencyInStatus, {33, y});
        d.Wire(input.Right(), filter.Left());
        d.Wire(filtering.Top(), filter.Bottom());
        d.Wire(filter.Right(), status.Left());

        const Shape curve = CalibrationStage(d, {51, y}, FrequencyInZeroCalibration,
                                             FrequencyInFullCalibration, FrequencyInBias, FrequencyInGain);
        d.Wire(status.Right(), curve.Left());
        signSwitch_ = OptionalStage(d, curve.Right(), {76, y}, Stage::Negate, FrequencyInSign,
                                    QStringLiteral("LineSign"));
        DestinationEnd(d, signSwitch_.Pivot(), FrequencyInDestination, 102);
    }

    void Update() override { signSwitch_.Set(RowValue(FrequencyInSign) == 1 ? SwitchedIn : PassedBy); }

private:
    LivePart signSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockFreqInput = {.form = "FormFreqInput",
                                            .window = "Frequency Input 1",
                                            .helpTopic = "Frequency Input.htm",
                                            .rows = Rows,
                                            .prefix = "Frequency In ",
                                            .sheet = MakeSheet<FreqInputSheet>,
                                            .mentorStart = WizardIOStartRecord{.outputs = 0, .kind = 2}};

} // namespace quorvik
