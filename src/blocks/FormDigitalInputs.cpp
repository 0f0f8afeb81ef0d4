#include "blocks/InputOutputSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {DigitalIn1Destination, DigitalIn1OpenValue, DigitalIn1ClosedValue,
                             DigitalIn1Status, LinkedRow};

enum ValueContact { Open, Closed };

class DigitalInputsSheet final : public InputOutputSheet
{
public:
    using InputOutputSheet::InputOutputSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double inputY = 4;
        const double openY = 14;
        const double closedY = 21;
        const Shape input = d.Function({-3, inputY}, {15, 6}, QStringLiteral("Digital In %1").arg(Member()));
        contact_ = d.Contact(QStringLiteral("Line6"), {17, inputY}, {24, inputY});
        const Shape status = Box(DigitalIn1Status, {31, inputY});
        d.Line(input.Right(), contact_.Pivot());
        d.Wire(contact_.Contact(0), status.Left());

        valueSwitch_ =
            d.Switch(QStringLiteral("LineValue"), {57, (openY + closedY) / 2}, {{50, openY}, {50, closedY}});
        d.Line(Box(DigitalIn1OpenValue, {31, openY}).Right(), valueSwitch_.Contact(Open));
        d.Line(Box(DigitalIn1ClosedValue, {31, closedY}).Right(), valueSwitch_.Contact(Closed));
        d.Link(status.Right(), valueSwitch_);
        // The values go on as counts, whatever the unit of what they drive.
        DestinationEnd(d, valueSwitch_.Pivot(), DigitalIn1Destination, 64, 1);
    }

    void Update() override
    {
        const bool open = RowText(DigitalIn1Status) == QStringLiteral("Open");
        contact_.Set(open ? 0 : 1);
        valueSwitch_.Set(open ? Open : Closed);
    }

private:
    LivePart contact_;
    LivePart valueSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockDigitalInputs = {.form = "FormDigitalInputs",
                                                .window = "Digital Input ",
                                                .helpTopic = "Digital Inputs.htm",
                                                .rows = Rows,
                                                .prefix = "Digital In 1 ",
                                                .sheet = MakeSheet<DigitalInputsSheet>,
                                                .firstMember = 1,
                                                .lastMember = 7,
                                                .mentorStart = WizardIOStartRecord{.outputs = 0, .kind = 1}};

} // namespace quorvik
