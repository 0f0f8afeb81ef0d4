#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {MinMaxSource, MinMaxReset, MinMaxMax, MinMaxMin, MinMaxDifference, LinkedRow};

class MinMaxSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 18;
        const Shape source = Box(MinMaxSource, {0, y - 12});
        const Shape linked = Box(LinkedRow, {0, y});
        d.Guide(source.Bottom(), {{6, y - 4}, Side::Top, linked.Node()});
        const double detectorX = linked.Rect().right() + 8;
        const Shape detector =
            d.Function({detectorX, y}, {18, 14}, QStringLiteral("Peak Detector"), QStringLiteral("Label2"));
        const Shape reset = Box(MinMaxReset, {detectorX + 3, y + 14}, CaptionAt::Below);
        d.Wire(linked.Right(), detector.Left());
        d.Wire(reset.Top(), detector.Bottom());

        const double outX = detectorX + 26;
        const Shape highest = Box(MinMaxMax, {outX, y - 5});
        const Shape lowest = Box(MinMaxMin, {outX, y + 5}, CaptionAt::Below);
        const Shape sum = d.Sum({outX + 22, y}, QStringLiteral(" + -"));
        const Shape difference = Box(MinMaxDifference, {outX + 29, y});
        d.Wire(detector.RightAt(y - 5), highest.Left());
        d.Wire(detector.RightAt(y + 5), lowest.Left());
        d.Wire(highest.Right(), sum.Top());
        d.Wire(lowest.Right(), sum.Bottom());
        d.Wire(sum.Right(), difference.Left());
    }
};

} // namespace

constexpr BlockDescriptor BlockMinMax = {.form = "FormMinMax",
                                         .window = "Min/Max",
                                         .helpTopic = "MinMax.htm",
                                         .rows = Rows,
                                         .prefix = "Min/Max ",
                                         .sheet = MakeSheet<MinMaxSheet>};

} // namespace quorvik
