#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex { Source, Reset, Max, Min, Difference, Linked };

constexpr BlockRow Rows[] = {
    {"Source", 0}, {"Reset", 1}, {"Max", 2}, {"Min", 3}, {"Difference", 4}, {"Source", LinkedRow},
};

class FormMinMax final : public BlockForm
{
public:
    explicit FormMinMax(Desk &desk)
        : BlockForm(desk, {.name = "FormMinMax",
                           .caption = QStringLiteral("Min/Max"),
                           .helpTopic = "MinMax.htm",
                           .rows = Rows,
                           .base = 412})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 18;
        const Shape source = Box(Source, {0, y - 12});
        const Shape linked = Box(Linked, {0, y});
        d.Guide(source.Bottom(), {{6, y - 4}, Side::Top});
        const double detectorX = linked.Rect().right() + 8;
        const Shape detector =
            d.Function({detectorX, y}, {18, 14}, QStringLiteral("Peak Detector"), QStringLiteral("Label2"));
        const Shape reset = Box(Reset, {detectorX + 3, y + 14}, CaptionAt::Below);
        d.Wire(linked.Right(), detector.Left());
        d.Wire(reset.Top(), detector.Bottom());

        const double outX = detectorX + 26;
        const Shape highest = Box(Max, {outX, y - 5});
        const Shape lowest = Box(Min, {outX, y + 5}, CaptionAt::Below);
        const Shape sum = d.Sum({outX + 22, y}, QStringLiteral(" + -"));
        const Shape difference = Box(Difference, {outX + 29, y});
        d.Wire(detector.RightAt(y - 5), highest.Left());
        d.Wire(detector.RightAt(y + 5), lowest.Left());
        d.Wire(highest.Right(), sum.Top());
        d.Wire(lowest.Right(), sum.Bottom());
        d.Wire(sum.Right(), difference.Left());
    }
};

} // namespace

BlockForm *MakeFormMinMax(Desk &desk, int);

BlockForm *MakeFormMinMax(Desk &desk, int)
{
    return Loaded(new FormMinMax(desk));
}

} // namespace quorvik
