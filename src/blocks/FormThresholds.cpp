#include "blocks/BlockSheet.h"

#include "platform/Arithmetic.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {ThresholdAInput,           ThresholdAThreshold,   ThresholdAHysteresis,
                             ThresholdALessThanOrEqual, ThresholdAGreaterThan, ThresholdAOutput};

class ThresholdsSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 22;
        const Shape input = Box(ThresholdAInput, {0, y});
        const Shape absolute = d.Absolute({20, y});
        const Shape comparator = d.Hysteresis({34, y});
        const Shape threshold = Box(ThresholdAThreshold, {16, y - 13});
        const Shape hysteresis = Box(ThresholdAHysteresis, {40, y - 13});
        d.Chain({input, absolute, comparator});
        d.Wire(threshold.Bottom(), comparator.TopAt(36), y - 7);
        d.Wire(hysteresis.Bottom(), comparator.TopAt(40), y - 7);

        const Shape greater = Box(ThresholdAGreaterThan, {58, y + 8});
        const Shape less = Box(ThresholdALessThanOrEqual, {58, y + 16}, CaptionAt::Below);
        switch_ = d.Switch(QStringLiteral("LineSwitch"), {88, y + 12}, {{79, y + 8}, {79, y + 16}});
        d.Line(greater.Right(), switch_.Contact(Top));
        d.Line(less.Right(), switch_.Contact(Bottom));
        d.Link(comparator.Right(), switch_);
        LastBox(d, switch_.Pivot(), ThresholdAOutput, {95, y + 12});
    }

    void Update() override
    {
        const std::int32_t rawSize = CheckedAbs(RowValue(ThresholdAInput));
        const std::int32_t rawThreshold = RowValue(ThresholdAThreshold);
        const std::int32_t rawHysteresis = RowValue(ThresholdAHysteresis);
        if (thresholdState_) {
            if (rawSize <= CheckedSubtract(rawThreshold, rawHysteresis) || rawHysteresis > rawThreshold)
                thresholdState_ = false;
        } else if (rawSize > CheckedAdd(rawThreshold, rawHysteresis)) {
            thresholdState_ = true;
        }
        switch_.Set(thresholdState_ ? Top : Bottom);
    }

private:
    enum OutputContact { Top, Bottom };

    LivePart switch_;
    bool thresholdState_ = false;
};

} // namespace

constexpr BlockDescriptor BlockThresholds = {.form = "FormThresholds",
                                             .window = "Threshold ",
                                             .helpTopic = "Thresholds.htm",
                                             .rows = Rows,
                                             .prefix = "Threshold A ",
                                             .sheet = MakeSheet<ThresholdsSheet>,
                                             .firstMember = 0,
                                             .lastMember = 1,
                                             .memberDistance = ThresholdBInput - ThresholdAInput};

} // namespace quorvik
