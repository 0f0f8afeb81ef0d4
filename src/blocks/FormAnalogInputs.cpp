#include "blocks/InputOutputSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {AnalogIn1Destination,     AnalogIn1Polarity, AnalogIn1Status,
                             AnalogIn1Filtering,       AnalogIn1Type,     AnalogIn1ZeroCalibration,
                             AnalogIn1FullCalibration, AnalogIn1Bias,     AnalogIn1Gain,
                             AnalogIn1Invert,          LinkedRow};

enum TypeContact { Voltage, Current };

class AnalogInputsSheet final : public InputOutputSheet
{
public:
    using InputOutputSheet::InputOutputSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape input = d.Function({-3, y}, {15, 6}, QStringLiteral("Analog In %1").arg(Member()));
        typeSwitch_ = d.Switch(QStringLiteral("LineType"), {27, y}, {{21, y - 3}, {21, y + 3}});
        const Port fork = d.Dot({15, y});
        d.Line(input.Right(), fork);
        d.Path(fork, {{15, y - 3}}, typeSwitch_.Contact(Voltage), false);
        d.Path(fork, {{15, y + 3}}, typeSwitch_.Contact(Current), false);
        d.Label(QStringLiteral("LabelVoltage"), QStringLiteral("Voltage"), {18, y - 4.6});
        d.Label(QStringLiteral("LabelCurrent"), QStringLiteral("Current"), {18, y + 4.6});
        d.Link(Box(AnalogIn1Type, {18, y + RowBelow}, CaptionAt::Below).Top(), typeSwitch_);

        const Shape filter = d.Filter({34, y}, QStringLiteral("LabelFiltering"));
        const Shape filtering = Box(AnalogIn1Filtering, {32.5, y + RowBelow}, CaptionAt::Below);
        const Shape status = Box(AnalogIn1Status, {48, y});
        d.Wire(typeSwitch_.Pivot(), filter.Left());
        d.Wire(filtering.Top(), filter.Bottom());
        d.Wire(filter.Right(), status.Left());

        const Shape polarity = Box(AnalogIn1Polarity, {45, y + RowAbove});
        const QString curveName = QStringLiteral("CurvePolarity");
        const Shape curve = CalibrationStage(d, {66, y}, AnalogIn1ZeroCalibration, AnalogIn1FullCalibration,
                                             AnalogIn1Bias, AnalogIn1Gain, curveName);
        curve_ = d.Part(curveName);
        d.Wire(status.Right(), curve.Left());
        d.Wire(polarity.Right(), curve.LeftAt(y - 4), 61.5);

        signSwitch_ = OptionalStage(d, curve.Right(), {91, y}, Stage::Negate, AnalogIn1Invert,
                                    QStringLiteral("LineInvert"));
        DestinationEnd(d, signSwitch_.Pivot(), AnalogIn1Destination, 117);
    }

    void Update() override
    {
        typeSwitch_.Set(RowText(AnalogIn1Type) == QStringLiteral("Voltage") ? Voltage : Current);
        curve_.Set(RowValue(AnalogIn1Polarity) != 0);
        signSwitch_.Set(RowValue(AnalogIn1Invert) == 1 ? SwitchedIn : PassedBy);
    }

private:
    LivePart typeSwitch_;
    LivePart curve_;
    LivePart signSwitch_;
};

} // namespace

constexpr BlockDescriptor BlockAnalogInputs = {.form = "FormAnalogInputs",
                                               .window = "Analog Input ",
                                               .helpTopic = "Analog Inputs.htm",
                                               .rows = Rows,
                                               .prefix = "Analog In 1 ",
                                               .sheet = MakeSheet<AnalogInputsSheet>,
                                               .firstMember = 1,
                                               .lastMember = 5,
                                               .mentorStart = WizardIOStartRecord{.outputs = 0, .kind = 0}};

} // namespace quorvik
