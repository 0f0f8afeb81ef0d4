#include "blocks/BlockForm.h"
#include "blocks/FormWhyNot.h"

#include <QPushButton>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {DriveReady, LogicSelect, JogDelay,  StopMode,       Run,      Stop,
                             Jog,        RunStatus,   JogStatus, ArmPilotStatus, RunEnable};

/** Contacts of the logic switch, which are also the values of Logic Select. */
enum LogicContact { ThreeWire, TwoWire };

class StartStopLogicSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        run_ = Box(Run, {0, RunY});
        stop_ = Box(Stop, {0, StopY});
        jog_ = Box(Jog, {0, JogY});
        DrawReady(d);
        DrawStop(d);
        DrawRun(d);
        DrawJog(d);
        DrawOutput(d);
    }

    void Update() override
    {
        const std::int32_t rawLogic = RowValue(LogicSelect);
        const int wires = rawLogic == ThreeWire || rawLogic == TwoWire ? rawLogic : -1;
        logicSwitch_.Set(wires);
        holdSwitch_.Set(wires);
        runLatch_.Set(RowText(RunStatus) == QStringLiteral("True"));
        jogLatch_.Set(RowText(JogStatus) == QStringLiteral("True"));
    }

private:
    static constexpr double RunY = 9;
    static constexpr double StopY = 27;
    static constexpr double JogY = 40;
    static constexpr double ReadyY = 58;
    static constexpr double BranchX = 14.5;
    static constexpr double ContactX = 33;
    static constexpr double OrX = 67.5;
    static constexpr double LatchX = 77.5;
    static constexpr double StatusX = 91.5;
    static constexpr double Beside = 2.5; ///< of a gate's inputs, from its middle

    /** What must be there before the drive runs or jogs. */
    void DrawReady(Drawing &d)
    {
        const Shape enable = Box(RunEnable, {0, ReadyY - Beside});
        const Port fault = d.From({14, ReadyY + Beside}, QStringLiteral("(304) Latched Fault"), LatchedFault);
        const Shape noFault = d.Inverter({16, ReadyY + Beside});
        const Shape both = d.And({23.2, ReadyY});
        const Shape ready = Box(DriveReady, {32.5, ReadyY});
        d.Wire(enable.Right(), both.LeftAt(ReadyY - Beside));
        d.Wire(fault, noFault.Left());
        d.Wire(noFault.Right(), both.LeftAt(ReadyY + Beside));
        d.Wire(both.Right(), ready.Left());
        ready_ = d.Dot({47, ReadyY});
        d.Line(ready.Right(), ready_);
    }

    /** What ends running and jogging alike: the stop input of three wires, and a drive not ready. */
    void DrawStop(Drawing &d)
    {
        logicSwitch_ = d.Switch(QStringLiteral("LineLogicSelect"), {ContactX + 7, StopY + 2.5},
                                {{ContactX, StopY}, {ContactX, StopY + 5}});
        d.Line(stop_.Right(), logicSwitch_.Contact(ThreeWire));
        d.Constant({}, QStringLiteral("False"), logicSwitch_.Contact(TwoWire));
        d.Label(QStringLiteral("Label3Wire"), QStringLiteral("3 Wire"), {ContactX - 0.5, StopY - 1.5},
                Qt::AlignRight);
        const Shape select = Box(LogicSelect, {ContactX + 3.5 - BoxSize(LogicSelect).width() / 2, 0});
        d.Link(select.BottomAt(ContactX + 3.5), logicSwitch_);
        select_ = select;

        const double y = StopY + 2.5 + Beside;
        const Shape notReady = d.Inverter({49.5, ReadyY});
        const Shape either = d.Or({57, y});
        d.Wire(ready_, notReady.Left());
        d.Wire(logicSwitch_.Pivot(), either.LeftAt(y - Beside));
        d.Wire(notReady.Right(), either.LeftAt(y + Beside), 55.5);
        ended_ = d.Dot({65.5, y});
        d.Line(either.Right(), ended_);
    }

    /** Three wires keep a run until it is stopped, two as long as Run is there. */
    void DrawRun(Drawing &d)
    {
        const double holdY = RunY + 2 * Drawing::LatchReach - 5;
        const Port branch = d.Dot({BranchX, RunY});
        const Shape noRun = d.Inverter({17, holdY});
        holdSwitch_ = d.Switch(QStringLiteral("LineHold"), {ContactX + 7, holdY + 2.5},
                               {{ContactX, holdY + 5}, {ContactX, holdY}});
        d.Line(run_.Right(), branch);
        d.Wire(branch.To(Side::Bottom), noRun.Left());
        d.Line(noRun.Right(), holdSwitch_.Contact(TwoWire));
        d.Constant({}, QStringLiteral("False"), holdSwitch_.Contact(ThreeWire));
        d.Label(QStringLiteral("Label2Wire"), QStringLiteral("2 Wire"), {ContactX - 0.5, holdY - 1.5},
                Qt::AlignRight);
        d.Link(select_.BottomAt(ContactX + 3.5), holdSwitch_);

        const double y = holdY + 2.5 + Beside;
        const Shape ended = d.Or({OrX, y});
        d.Wire(holdSwitch_.Pivot(), ended.LeftAt(y - Beside));
        d.Path(ended_, {{ended_.at.x(), y + Beside}}, ended.LeftAt(y + Beside), true);
        runStatus_ = DrawLatch(d, QStringLiteral("LatchRun"), branch, ended, RunStatus);
        runLatch_ = d.Part(QStringLiteral("LatchRun"));
    }

    void DrawJog(Drawing &d)
    {
        const Port branch = d.Dot({BranchX, JogY});
        const Shape noJog = d.Inverter({17, JogY + 5});
        const double y = JogY + 2 * Drawing::LatchReach;
        const Shape ended = d.Or({OrX, y});
        d.Line(jog_.Right(), branch);
        d.Wire(branch.To(Side::Bottom), noJog.Left());
        d.Wire(noJog.Right(), ended.LeftAt(y + Beside), 63);
        d.Path(ended_, {{ended_.at.x(), y - Beside}}, ended.LeftAt(y - Beside), true);
        jogStatus_ = DrawLatch(d, QStringLiteral("LatchJog"), branch, ended, JogStatus);
        jogLatch_ = d.Part(QStringLiteral("LatchJog"));
    }

    Shape DrawLatch(Drawing &d, const QString &name, const Port &set, const Shape &reset, int status)
    {
        const double y = set.at.y() + Drawing::LatchReach;
        const Shape latch = d.Latch(name, {LatchX, y});
        const Shape box = Box(status, {StatusX, y});
        d.Wire(set, Drawing::SetInput(latch));
        d.Wire(reset.Right(), Drawing::ResetInput(latch));
        d.Wire(latch.Right(), box.Left());
        return box;
    }

    /** The armature stays on until the motor has stopped, and after jogging until the delay is over. */
    void DrawOutput(Drawing &d)
    {
        const double runY = runStatus_.Right().at.y();
        const double jogY = jogStatus_.Right().at.y();
        const double stopX = StatusX + 15;
        const double delayX = stopX + 15;
        const Shape stop =
            d.Function({stopX, runY}, {12, 6}, QStringLiteral("Stop"), QStringLiteral("LabelStop"));
        const Shape mode = Box(StopMode, {stopX + 6 - BoxSize(StopMode).width() / 2, 0});
        const Shape ramp = d.Function({stopX, jogY}, {13, 6}, QStringLiteral("Ramp Stop"));
        const Shape delay =
            d.Delay({delayX, jogY}, QStringLiteral("Off Delay"), QStringLiteral("LabelOffDelay"));
        const Shape time =
            Box(JogDelay, {delayX + 6 - BoxSize(JogDelay).width() / 2, jogY - 10}, CaptionAt::AboveRight);
        d.Wire(runStatus_.Right(), stop.Left());
        d.Wire(mode.Bottom(), stop.Top());
        d.Chain({jogStatus_, ramp, delay});
        d.Wire(time.Bottom(), delay.Top());

        const double x = delayX + 16;
        const double middle = (runY + jogY) / 2 - 4;
        const Shape either = d.Or({x, middle}, QStringLiteral("LabelOr"));
        const Shape released = d.And({x + 9.5, middle + Beside}, QStringLiteral("LabelRelease"));
        const Shape pilot = Box(ArmPilotStatus, {x + 19, middle + Beside});
        d.Wire(stop.Right(), either.LeftAt(middle - Beside), x - 2);
        d.Wire(delay.Right(), either.LeftAt(middle + Beside), x - 2);
        d.Wire(either.Right(), released.LeftAt(middle));
        const double below = ReadyY + 6;
        d.Path(ready_, {{ready_.at.x(), below}, {x + 8, below}, {x + 8, middle + 2 * Beside}},
               released.LeftAt(middle + 2 * Beside), true);
        d.Wire(released.Right(), pilot.Left());
        d.Wire(pilot.Right(), {{pilot.Rect().right() + 4, middle + Beside}, Side::Left});
    }

    LivePart logicSwitch_;
    LivePart holdSwitch_;
    LivePart runLatch_;
    LivePart jogLatch_;
    Shape run_;
    Shape stop_;
    Shape jog_;
    Shape select_;
    Port ready_;
    Port ended_;
    Shape runStatus_;
    Shape jogStatus_;
};

class FormStartStopLogic final : public BlockForm
{
public:
    using BlockForm::BlockForm;

protected:
    void Extend() override
    {
        QPushButton *why = AddButton(QStringLiteral("CommandWhyNot"), QStringLiteral("Wh&y?"),
                                     QStringLiteral("Shows why the drive does not run"));
        On(why, &QPushButton::clicked, this, [this] { OpenWhyNot(desk()); });
    }
};

} // namespace

constexpr BlockDescriptor BlockStartStopLogic = {.form = "FormStartStopLogic",
                                                 .window = "Start/Stop Logic",
                                                 .helpTopic = "Start Stop Logic.htm",
                                                 .rows = Rows,
                                                 .sheet = MakeSheet<StartStopLogicSheet>,
                                                 .make = MakeBlock<FormStartStopLogic>};

} // namespace quorvik
