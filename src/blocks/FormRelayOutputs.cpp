#include "blocks/InputOutputSheet.h"

#include <array>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {RelayOut1Source,   RelayOut1AbsoluteValue, RelayOut1OnValue,
                             RelayOut1OffValue, RelayOut1Status,        LinkedRow};

struct RelayTerminals {
    int normallyOpen;
    int normallyClosed;
    int wiper;
};

constexpr std::array<RelayTerminals, 3> Terminals = {{{25, 26, 27}, {28, 29, 30}, {54, 55, 56}}};

enum RelayContact { Made, AtRest };

class RelayOutputsSheet final : public InputOutputSheet
{
public:
    using InputOutputSheet::InputOutputSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 20;
        const Shape source = SourceEnd(d, RelayOut1Source, y);
        absSwitch_ = OptionalStage(d, source.Right(), {source.Rect().right() + 5, y}, Stage::Absolute,
                                   RelayOut1AbsoluteValue, QStringLiteral("LineAbs"), CaptionAt::BelowRight,
                                   QStringLiteral("LabelAbs"));
        const double x = absSwitch_.Pivot().at.x() + 6.5;

        const Shape comparator = d.Hysteresis({x, y});
        const Shape on = Box(RelayOut1OnValue, {x - 2, y + RowAbove});
        const Shape off = Box(RelayOut1OffValue, {x - 2, y + RowBelow}, CaptionAt::Below);
        const Shape status = Box(RelayOut1Status, {x + 14, y});
        const Shape coil = d.Coil({x + 32, y});
        // The points are held against the counts of what is selected, whatever their units.
        d.SetScale(on, PercentPerCount);
        d.SetScale(off, PercentPerCount);
        d.Wire(absSwitch_.Pivot(), comparator.Left());
        d.Wire(on.Bottom(), comparator.Top());
        d.Wire(off.Top(), comparator.Bottom());
        d.Chain({comparator, status, coil});

        const double contactX = x + 46;
        const double terminalX = contactX + 15;
        relay_ =
            d.Switch(QStringLiteral("LineRelay"), {contactX + 8, y}, {{contactX, y - 4}, {contactX, y + 4}});
        d.Link(coil.Right(), relay_);
        const RelayTerminals &terminals = Terminals.at(std::size_t(Member() - 1));
        const auto terminal = [&](int number, const QString &labelName, const QString &role, double at) {
            return d.Terminal({terminalX, at}, number, labelName, role).Left();
        };
        const Port open =
            terminal(terminals.normallyOpen, QStringLiteral("LabelNO"), QStringLiteral("NO"), y - 8);
        const Port wiper =
            terminal(terminals.wiper, QStringLiteral("LabelWiper"), QStringLiteral("Wiper"), y);
        const Port closed =
            terminal(terminals.normallyClosed, QStringLiteral("LabelNC"), QStringLiteral("NC"), y + 8);
        const double aside = contactX - 2.5;
        d.Path(relay_.Contact(Made), {{aside, y - 4}, {aside, y - 8}}, open, false);
        d.Path(relay_.Contact(AtRest), {{aside, y + 4}, {aside, y + 8}}, closed, false);
        d.Path(relay_.Pivot(), {}, wiper, false);
    }

    void Update() override
    {
        absSwitch_.Set(RowValue(RelayOut1AbsoluteValue) != 0 ? SwitchedIn : PassedBy);
        relay_.Set(RowText(RelayOut1Status) == QStringLiteral("1") ? Made : AtRest);
    }

private:
    LivePart absSwitch_;
    LivePart relay_;
};

} // namespace

constexpr BlockDescriptor BlockRelayOutputs = {.form = "FormRelayOutputs",
                                               .window = "Relay Output ",
                                               .helpTopic = "Relay Outputs.htm",
                                               .rows = Rows,
                                               .prefix = "Relay Out 1 ",
                                               .sheet = MakeSheet<RelayOutputsSheet>,
                                               .firstMember = 1,
                                               .lastMember = 3,
                                               .mentorStart = WizardIOStartRecord{.outputs = 1, .kind = 2}};

} // namespace quorvik
