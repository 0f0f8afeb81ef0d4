#include "blocks/InputOutputForm.h"

namespace quorvik
{

namespace
{

enum RowIndex { Destination, OpenValue, ClosedValue, Status, Linked };

constexpr BlockRow Rows[] = {
    {"Destination", 0}, {"Open Value", 7}, {"Closed Value", 14}, {"Status", 131}, {"Destination", LinkedRow},
};

enum ValueContact { Open, Closed };

class FormDigitalInputs final : public InputOutputForm
{
public:
    FormDigitalInputs(Desk &desk, int member)
        : InputOutputForm(desk,
                          {.name = "FormDigitalInputs",
                           .caption = QStringLiteral("Digital Input ") + QString::number(member),
                           .helpTopic = "Digital Inputs.htm",
                           .rows = Rows,
                           .base = member},
                          {.outputs = 0, .kind = 1, .member = std::uint8_t(member - 1)}, member)
        , member_(member)
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double inputY = 4;
        const double openY = 14;
        const double closedY = 21;
        const Shape input = d.Function({-3, inputY}, {15, 6}, QStringLiteral("Digital In %1").arg(member_));
        contact_ = d.Contact(QStringLiteral("Line6"), {17, inputY}, {24, inputY});
        const Shape status = Box(Status, {31, inputY});
        d.Line(input.Right(), contact_.Pivot());
        d.Wire(contact_.Contact(0), status.Left());

        valueSwitch_ =
            d.Switch(QStringLiteral("LineValue"), {57, (openY + closedY) / 2}, {{50, openY}, {50, closedY}});
        d.Line(Box(OpenValue, {31, openY}).Right(), valueSwitch_.Contact(Open));
        d.Line(Box(ClosedValue, {31, closedY}).Right(), valueSwitch_.Contact(Closed));
        d.Link(status.Right(), valueSwitch_);
        DestinationEnd(d, valueSwitch_.Pivot(), Destination, 64);
    }

    void Tick() override
    {
        const bool open = RowText(Status) == QStringLiteral("Open");
        contact_.Set(open ? 0 : 1);
        valueSwitch_.Set(open ? Open : Closed);
    }

private:
    int member_;
    LivePart contact_;
    LivePart valueSwitch_;
};

} // namespace

BlockForm *MakeFormDigitalInputs(Desk &desk, int member);

BlockForm *MakeFormDigitalInputs(Desk &desk, int member)
{
    return Loaded(new FormDigitalInputs(desk, member));
}

} // namespace quorvik
