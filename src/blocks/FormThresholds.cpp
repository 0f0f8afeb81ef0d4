#include "blocks/BlockForm.h"

#include "platform/Arithmetic.h"

namespace quorvik
{

namespace
{

enum RowIndex { Input, Threshold, Hysteresis, LessThanOrEqual, GreaterThan, Output };

constexpr BlockRow Rows[] = {
    {"Input", 0},        {"Threshold", 1}, {"Hysteresis", 2}, {"Less Than or Equal", 3},
    {"Greater Than", 4}, {"Output", 5},
};

constexpr int NumbersOfMember = 6;

class FormThresholds final : public BlockForm
{
public:
    FormThresholds(Desk &desk, int member)
        : BlockForm(desk,
                    {.name = "FormThresholds",
                     .caption = QStringLiteral("Threshold ") + QChar(u'A' + member),
                     .helpTopic = "Thresholds.htm",
                     .rows = Rows,
                     .base = 177 + member * NumbersOfMember},
                    member)
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 22;
        const Shape input = Box(Input, {0, y});
        const Shape absolute = d.Absolute({20, y});
        const Shape comparator = d.Hysteresis({34, y});
        const Shape threshold = Box(Threshold, {16, y - 13});
        const Shape hysteresis = Box(Hysteresis, {40, y - 13});
        d.Wire(input.Right(), absolute.Left());
        d.Wire(absolute.Right(), comparator.Left());
        d.Wire(threshold.Bottom(), comparator.TopAt(36), y - 7);
        d.Wire(hysteresis.Bottom(), comparator.TopAt(40), y - 7);

        const Shape greater = Box(GreaterThan, {58, y + 8});
        const Shape less = Box(LessThanOrEqual, {58, y + 16}, CaptionAt::Below);
        switch_ = d.Switch(QStringLiteral("LineSwitch"), {88, y + 12}, {{79, y + 8}, {79, y + 16}});
        d.Line(greater.Right(), switch_.Contact(Top));
        d.Line(less.Right(), switch_.Contact(Bottom));
        d.Link(comparator.Right(), switch_);
        const Shape output = Box(Output, {95, y + 12});
        d.Wire(switch_.Pivot(), output.Left());
        d.Wire(output.Right(), {{112, y + 12}, Side::Left});
    }

    void Tick() override
    {
        const std::int32_t rawSize = CheckedAbs(RowValue(Input));
        const std::int32_t rawThreshold = RowValue(Threshold);
        const std::int32_t rawHysteresis = RowValue(Hysteresis);
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

BlockForm *MakeFormThresholds(Desk &desk, int member);

BlockForm *MakeFormThresholds(Desk &desk, int member)
{
    return Loaded(new FormThresholds(desk, member));
}

} // namespace quorvik
