#include "blocks/BlockForm.h"

#include "emulator/TimerBlock.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {TimerGreaterThan, TimerLessThanOrEqual, TimerThreshold, TimerReset,
                             TimerResetInvert, TimerOutput,          Timer};

enum OutputContact { Top, Bottom };

class TimerSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const double y = 14;
        const Shape reset = Box(TimerReset, {0, y});
        const Shape invert = Box(TimerResetInvert, {14.5, y + 11}, CaptionAt::Below);
        const Shape counter =
            d.Function({30, y}, {12, 8}, QStringLiteral("Timer"), QStringLiteral("LabelTimer"));
        d.Label({}, QStringLiteral("R"), {31.5, y}, Qt::AlignHCenter);
        // Wire and selector's line run on under the inverter, which covers them where it is shown.
        d.Wire(reset.Right(), counter.Left());
        d.Guide(invert.Top(), {{invert.Top().at.x(), y}, Side::Bottom});
        d.Inverter({18, y}, QStringLiteral("ShapeInvert"));
        inverter_ = d.Part(QStringLiteral("ShapeInvert"));
        const Shape count = Box(Timer, {48, y});
        d.Wire(counter.Right(), count.Left());

        const Shape comparator = d.Comparator({68, y}, QStringLiteral(">"), QStringLiteral("LabelCompare"));
        const Shape threshold = Box(TimerThreshold, {72 - BoxSize(TimerThreshold).width() / 2, y - 11});
        d.Wire(count.Right(), comparator.Left());
        d.Wire(threshold.Bottom(), comparator.Top());

        d.ShowsLevel(counter, count, threshold);
        const Shape greater = Box(TimerGreaterThan, {62, y + 10});
        const Shape less = Box(TimerLessThanOrEqual, {62, y + 18}, CaptionAt::Below);
        switch_ = d.Switch(QStringLiteral("LineSwitch"), {92, y + 14}, {{83, y + 10}, {83, y + 18}});
        d.Line(greater.Right(), switch_.Contact(Top));
        d.Line(less.Right(), switch_.Contact(Bottom));
        d.Link(comparator.Right(), switch_);
        LastBox(d, switch_.Pivot(), TimerOutput, {98, y + 14});
    }

    void Update() override
    {
        inverter_.Show(RowText(TimerResetInvert) == QStringLiteral("True"));
        switch_.Set(RowValue(Timer) <= RowValue(TimerThreshold) ? Bottom : Top);
    }

private:
    LivePart inverter_;
    LivePart switch_;
};

/** Counts while it is open, with no drive attached. */
class FormTimer final : public BlockForm
{
public:
    using BlockForm::BlockForm;

protected:
    void Tick() override { timer_.UpdateTimerEmulator(); }

    void Unload() override
    {
        timer_.TimerEmulator.stop();
        BlockForm::Unload();
    }

private:
    TimerBlock timer_{desk().table, this};
};

} // namespace

constexpr BlockDescriptor BlockTimer = {.form = "FormTimer",
                                        .window = "Timer",
                                        .helpTopic = "Timer.htm",
                                        .rows = Rows,
                                        .prefix = "Timer ",
                                        .sheet = MakeSheet<TimerSheet>,
                                        .make = MakeBlock<FormTimer>};

} // namespace quorvik
