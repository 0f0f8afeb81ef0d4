#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {
    FieldCrossoverEnable, MinFieldCurrentDemand,      FieldCrossoverSetpoint,
    FieldCrossoverOutput, {AFB, "Armature Feedback"},
};

enum EnableContact { Off, On };

class FieldCrossoverSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 14;
        const Shape setpoint = Box(FieldCrossoverSetpoint, {0, y});
        const Shape feedback = Box(AFB, {0, y + 11}, CaptionAt::Below);
        const Shape magnitude = d.Absolute({22, y + 11});
        const Shape sum = d.Sum({33, y}, QStringLiteral("+  -"));
        const Shape generator = d.Function({38, y}, {27, 8}, QStringLiteral("Field Referece Generator"),
                                           QStringLiteral("Label2"));
        const Port demand = d.From({49, y - 8}, QStringLiteral("(339) Field I Demand"), FieldIDemand);
        const Shape minimum = Box(MinFieldCurrentDemand, {45.5, y + 14}, CaptionAt::Below);
        d.Wire(setpoint.Right(), sum.Left());
        d.Wire(feedback.Right(), magnitude.Left());
        d.Wire(magnitude.Right(), sum.Bottom());
        d.Wire(demand, generator.Top());
        d.Wire(sum.Right(), generator.Left());
        d.Wire(minimum.Top(), generator.Bottom());

        switch_ = d.Switch(QStringLiteral("ShapeSwitch"), {86, y + 3}, {{77, y + 6}, {77, y}});
        d.Line(generator.Right(), switch_.Contact(On));
        d.Constant(QStringLiteral("Label3"), QStringLiteral("0.00%"), switch_.Contact(Off));
        ClickToFlip(QStringLiteral("Image1"), switch_.Area(),
                    QStringLiteral("Double-click to turn the field crossover on or off"),
                    FieldCrossoverEnable);
        d.Link(Box(FieldCrossoverEnable, {75.5, y + 14}, CaptionAt::Below).Top(), switch_);
        LastBox(d, switch_.Pivot(), FieldCrossoverOutput, {93, y + 3}, QStringLiteral("Field Loop"));
    }

    void Update() override
    {
        switch_.Set(RowText(FieldCrossoverEnable) == QStringLiteral("False") ? Off : On);
    }

private:
    LivePart switch_;
};

} // namespace

constexpr BlockDescriptor BlockFieldCrossover = {.form = "FormFieldCrossover",
                                                 .window = "Field Crossover",
                                                 .helpTopic = "Field Crossover.htm",
                                                 .rows = Rows,
                                                 .sheet = MakeSheet<FieldCrossoverSheet>};

} // namespace quorvik
