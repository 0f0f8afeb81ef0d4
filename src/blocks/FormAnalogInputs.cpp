#include "blocks/BlockForm.h"

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
enum SignContact { AsIs, Inverted };

class FormAnalogInputs final : public BlockForm
{
public:
    FormAnalogInputs(Desk &desk, int member)
        : BlockForm(desk,
                    {.name = "FormAnalogInputs",
                     .caption = QStringLiteral("Analog Input ") + QString::number(member),
                     .helpTopic = "Analog Inputs.htm",
                     .rows = Rows,
                     .base = member + 22},
                    member)
        , member_(member)
    {
    }

protected:
    std::optional<WizardIOStartRecord> IOMentorStart() const override
    {
        return WizardIOStartRecord{.outputs = 0, .kind = 0, .member = std::uint8_t(member_ - 1)};
    }

    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape input = d.Function({0, y}, {12, 6}, QStringLiteral("Analog In %1").arg(member_));
        typeSwitch_ = d.Switch(QStringLiteral("LineType"), {27, y}, {{21, y - 3}, {21, y + 3}});
        const Port fork = d.Dot({15, y});
        d.Line(input.Right(), fork);
        d.Path({{fork.at, {15, y - 3}, typeSwitch_.Contact(Voltage).at}}, false);
        d.Path({{fork.at, {15, y + 3}, typeSwitch_.Contact(Current).at}}, false);
        d.Label(QStringLiteral("LabelVoltage"), QStringLiteral("Voltage"), {18, y - 4.6});
        d.Label(QStringLiteral("LabelCurrent"), QStringLiteral("Current"), {18, y + 4.6});
        d.Link(Box(Type, {18, y + 13}, CaptionAt::Below).Top(), typeSwitch_);

        const Shape filter =
            d.Function({34, y}, {9, 6}, QStringLiteral("Filter"), QStringLiteral("LabelFiltering"));
        const Shape filtering = Box(Filtering, {32.5, y + 13}, CaptionAt::Below);
        const Shape status = Box(Status, {48, y});
        d.Line(typeSwitch_.Pivot(), filter.Left());
        d.Wire(filtering.Top(), filter.Bottom());
        d.Wire(filter.Right(), status.Left());

        const Shape curve = d.Curve({66, y}, {20, 14});
        const Shape polarity = Box(Polarity, {45, y - 13});
        const Shape bias = Box(Bias, {63, y - 13});
        const Shape gain = Box(Gain, {77, y - 13});
        const Shape low = Box(LowCalibration, {63, y + 13}, CaptionAt::BelowRight);
        const Shape high = Box(HighCalibration, {77, y + 13}, CaptionAt::Below);
        d.Wire(status.Right(), curve.Left());
        d.Wire(polarity.Right(), curve.LeftAt(y - 4), 61.5);
        d.Wire(bias.Bottom(), curve.TopAt(69));
        d.Wire(gain.Bottom(), curve.TopAt(83));
        d.Wire(low.Top(), curve.BottomAt(69));
        d.Wire(high.Top(), curve.BottomAt(83));

        const Port split = d.Dot({91, y});
        const Shape inverter = d.Gain({94.5, y + 4}, QStringLiteral("-1"));
        signSwitch_ = d.Switch(QStringLiteral("LineInvert"), {111, y}, {{104, y - 4}, {104, y + 4}});
        d.Line(curve.Right(), split);
        d.Path({{split.at, {91, y - 4}, signSwitch_.Contact(AsIs).at}}, false);
        d.Path({{split.at, {91, y + 4}, inverter.Left().at}}, true);
        d.Line(inverter.Right(), signSwitch_.Contact(Inverted));
        d.Link(Box(Invert, {101.5, y + 13}, CaptionAt::Below).Top(), signSwitch_);

        const Shape linked = Box(Linked, {117, y});
        const Shape destination = Box(Destination, {117, y - 13});
        d.Wire(signSwitch_.Pivot(), linked.Left());
        d.Guide(destination.Bottom(), {{123, y - 4}, Side::Top});
        d.Wire(linked.Right(), {{linked.Rect().right() + 5, y}, Side::Left});
    }

    void Tick() override
    {
        typeSwitch_.Set(RowText(Type) == QStringLiteral("Voltage") ? Voltage : Current);
        signSwitch_.Set(RowText(Invert) == QStringLiteral("True") ? Inverted : AsIs);
    }

private:
    int member_;
    LivePart typeSwitch_;
    LivePart signSwitch_;
};

} // namespace

BlockForm *MakeFormAnalogInputs(Desk &desk, int member);

BlockForm *MakeFormAnalogInputs(Desk &desk, int member)
{
    return Loaded(new FormAnalogInputs(desk, member));
}

} // namespace quorvik
