#include "blocks/InputOutputForm.h"

#include <array>

namespace quorvik
{

namespace
{

enum RowIndex { Source, AbsoluteValue, OnValue, OffValue, Status, Linked };

constexpr BlockRow Rows[] = {
    {"Source", 0},    {"Absolute Value", 3}, {"On Value", 6},
    {"Off Value", 9}, {"Status", 96},        {"Source", LinkedRow},
};

struct RelayTerminals {
    int normallyOpen;
    int normallyClosed;
    int wiper;
};

constexpr std::array<RelayTerminals, 3> Terminals = {{{25, 26, 27}, {28, 29, 30}, {54, 55, 56}}};

enum RelayContact { Made, AtRest };

class FormRelayOutputs final : public InputOutputForm
{
public:
    FormRelayOutputs(Desk &desk, int member)
        : InputOutputForm(desk,
                          {.name = "FormRelayOutputs",
                           .caption = QStringLiteral("Relay Output ") + QString::number(member),
                           .helpTopic = "Relay Outputs.htm",
                           .rows = Rows,
                           .base = member + 68},
                          {.outputs = 1, .kind = 2, .member = std::uint8_t(member - 1)}, member)
        , terminals_(Terminals.at(std::size_t(member - 1)))
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape source = SourceEnd(d, Source, y);
        absSwitch_ =
            OptionalStage(d, source.Right(), {source.Rect().right() + 5, y}, Stage::Absolute, AbsoluteValue,
                          QStringLiteral("LineAbs"), CaptionAt::BelowRight, QStringLiteral("LabelAbs"));
        const double x = absSwitch_.Pivot().at.x() + 6.5;

        const Shape comparator = d.Hysteresis({x, y});
        const Shape on = Box(OnValue, {x - 2, y + RowAbove});
        const Shape off = Box(OffValue, {x - 2, y + RowBelow}, CaptionAt::Below);
        const Shape status = Box(Status, {x + 14, y});
        const Shape coil = d.Coil({x + 32, y});
        d.Wire(absSwitch_.Pivot(), comparator.Left());
        d.Wire(on.Bottom(), comparator.Top());
        d.Wire(off.Top(), comparator.Bottom());
        d.Wire(comparator.Right(), status.Left());
        d.Wire(status.Right(), coil.Left());

        const double contactX = x + 46;
        const double terminalX = contactX + 15;
        relay_ =
            d.Switch(QStringLiteral("LineRelay"), {contactX + 8, y}, {{contactX, y - 4}, {contactX, y + 4}});
        d.Link(coil.Right(), relay_);
        const auto terminal = [&](int number, const char *labelName, const char *role, double at) {
            const Shape screw =
                d.Terminal({terminalX, at}, QString::number(number), QLatin1String(labelName));
            d.Label({}, QLatin1String(role), {terminalX + 5, at}, Qt::AlignLeft);
            return screw.Left().at;
        };
        const QPointF open = terminal(terminals_.normallyOpen, "LabelNO", "NO", y - 8);
        const QPointF wiper = terminal(terminals_.wiper, "LabelWiper", "Wiper", y);
        const QPointF closed = terminal(terminals_.normallyClosed, "LabelNC", "NC", y + 8);
        const double aside = contactX - 2.5;
        d.Path({{relay_.Contact(Made).at, {aside, y - 4}, {aside, y - 8}, open}}, false);
        d.Path({{relay_.Contact(AtRest).at, {aside, y + 4}, {aside, y + 8}, closed}}, false);
        d.Path({{relay_.Pivot().at, wiper}}, false);
    }

    void Tick() override
    {
        absSwitch_.Set(RowValue(AbsoluteValue) != 0 ? SwitchedIn : PassedBy);
        relay_.Set(RowText(Status) == QStringLiteral("1") ? Made : AtRest);
    }

private:
    RelayTerminals terminals_;
    LivePart absSwitch_;
    LivePart relay_;
};

} // namespace

BlockForm *MakeFormRelayOutputs(Desk &desk, int member);

BlockForm *MakeFormRelayOutputs(Desk &desk, int member)
{
    return Loaded(new FormRelayOutputs(desk, member));
}

} // namespace quorvik
