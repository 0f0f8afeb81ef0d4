#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex { Enable, MinFieldCurrent, Setpoint, Output, ArmatureFeedback };

constexpr BlockRow Rows[] = {
    {"Field Crossover Enable", 423}, {"Min Field Current Demand", 424}, {"Field Crossover Setpoint", 425},
    {"Field Crossover Output", 426}, {"Armature Feedback", 194},
};

enum EnableContact { Off, On };

class FormFieldCrossover final : public BlockForm
{
public:
    explicit FormFieldCrossover(Desk &desk)
        : BlockForm(desk, {.name = "FormFieldCrossover",
                           .caption = QStringLiteral("Field Crossover"),
                           .helpTopic = "Field Crossover.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 14;
        const Shape setpoint = Box(Setpoint, {0, y});
        const Shape feedback = Box(ArmatureFeedback, {0, y + 11}, CaptionAt::Below);
        const Shape magnitude = d.Absolute({22, y + 11});
        const Shape sum = d.Sum({33, y}, QStringLiteral("+  -"));
        const Shape generator = d.Function({38, y}, {27, 8}, QStringLiteral("Field Referece Generator"),
                                           QStringLiteral("Label2"));
        const Port demand = d.From({49, y - 8}, QStringLiteral("(339) Field I Demand"));
        const Shape minimum = Box(MinFieldCurrent, {45.5, y + 14}, CaptionAt::Below);
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
                    QStringLiteral("Double-click to turn the field crossover on or off"), Enable);
        const Shape enable = Box(Enable, {75.5, y + 14}, CaptionAt::Below);
        d.Link(enable.Top(), switch_);
        const Shape output = Box(Output, {93, y + 3});
        d.Wire(switch_.Pivot(), output.Left());
        d.Wire(output.Right(), {{110, y + 3}, Side::Left});
        d.Label({}, QStringLiteral("Field Loop"), {111, y + 3}, Qt::AlignLeft, true);
    }

    void Tick() override { switch_.Set(RowText(Enable) == QStringLiteral("False") ? Off : On); }

private:
    LivePart switch_;
};

} // namespace

BlockForm *MakeFormFieldCrossover(Desk &desk, int);

BlockForm *MakeFormFieldCrossover(Desk &desk, int)
{
    return Loaded(new FormFieldCrossover(desk));
}

} // namespace quorvik
