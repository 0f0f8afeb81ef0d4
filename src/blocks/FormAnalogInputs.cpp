#include "blocks/InputOutputForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    Destination,
    Polarity,
    Status,
    Filtering,
    Type,
    LowCalibration,
    HighCalibration,
    Bias,
    Gain,
    Invert,
    Linked,
};

constexpr BlockRow Rows[] = {
    {"Destination", 0},         {"Polarity", 5},          {"Status", 116}, {"Filtering", 35}, {"Type", 10},
    {"0% Calibration", 15},     {"100% Calibration", 20}, {"Bias", 25},    {"Gain", 30},      {"Invert", 321},
    {"Destination", LinkedRow},
};

enum TypeContact { Voltage, Current };

class FormAnalogInputs final : public InputOutputForm
{
public:
    FormAnalogInputs(Desk &desk, int member)
        : InputOutputForm(desk,
                          {.name = "FormAnalogInputs",
                           .caption = QStringLiteral("Analog Input ") + QString::number(member),
                           .helpTopic = "Analog Inputs.htm",
                           .rows = Rows,
                           .base = member + 22},
                          {.outputs = 0, .kind = 0, .member = std::uint8_t(member - 1)}, member)
        , member_(member)
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape input = d.Function({-3, y}, {15, 6}, QStringLiteral("Analog In %1").arg(member_));
        typeSwitch_ = d.Switch(QStringLiteral("LineType"), {27, y}, {{21, y - 3}, {21, y + 3}});
        const Port fork = d.Dot({15, y});
        d.Line(input.Right(), fork);
        d.Path({{fork.at, {15, y - 3}, typeSwitch_.Contact(Voltage).at}}, false);
        d.Path({{fork.at, {15, y + 3}, typeSwitch_.Contact(Current).at}}, false);
        d.Label(QStringLiteral("LabelVoltage"), QStringLiteral("Voltage"), {18, y - 4.6});
        d.Label(QStringLiteral("LabelCurrent"), QStringLiteral("Current"), {18, y + 4.6});
        d.Link(Box(Type, {18, y + RowBelow}, CaptionAt::Below).Top(), typeSwitch_);

        const Shape filter = d.Filter({34, y}, QStringLiteral("LabelFiltering"));
        const Shape filtering = Box(Filtering, {32.5, y + RowBelow}, CaptionAt::Below);
        const Shape status = Box(Status, {48, y});
        d.Wire(typeSwitch_.Pivot(), filter.Left());
        d.Wire(filtering.Top(), filter.Bottom());
        d.Wire(filter.Right(), status.Left());

        const Shape polarity = Box(Polarity, {45, y + RowAbove});
        const QString curveName = QStringLiteral("CurvePolarity");
        const Shape curve =
            CalibrationStage(d, {66, y}, LowCalibration, HighCalibration, Bias, Gain, curveName);
        curve_ = d.Part(curveName);
        d.Wire(status.Right(), curve.Left());
        d.Wire(polarity.Right(), curve.LeftAt(y - 4), 61.5);

        signSwitch_ =
            OptionalStage(d, curve.Right(), {91, y}, Stage::Negate, Invert, QStringLiteral("LineInvert"));
        DestinationEnd(d, signSwitch_.Pivot(), Destination, 117);
    }

    void Tick() override
    {
        typeSwitch_.Set(RowText(Type) == QStringLiteral("Voltage") ? Voltage : Current);
        curve_.Set(RowValue(Polarity) != 0);
        signSwitch_.Set(RowValue(Invert) == 1 ? SwitchedIn : PassedBy);
    }

private:
    int member_;
    LivePart typeSwitch_;
    LivePart curve_;
    LivePart signSwitch_;
};

} // namespace

BlockForm *MakeFormAnalogInputs(Desk &desk, int member);

BlockForm *MakeFormAnalogInputs(Desk &desk, int member)
{
    return Loaded(new FormAnalogInputs(desk, member));
}

} // namespace quorvik
