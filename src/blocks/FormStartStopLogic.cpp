#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    DriveReady,
    LogicSelect,
    JogDelay,
    StopMode,
    Run,
    Stop,
    Jog,
    RunStatus,
    JogStatus,
    ArmPilotStatus,
    RunEnable,
};

constexpr BlockRow Rows[] = {
    {"Drive Ready", 303}, {"Logic Select", 245},
    {"Jog Delay", 246},   {"Stop Mode", 232},
    {"Run", 239},         {"Stop", 240},
    {"Jog", 241},         {"Run Status", 242},
    {"Jog Status", 243},  {"Arm Pilot Status", 244},
    {"Run Enable", 22},
};

/** Contacts of the logic switch, which are also the values of Logic Select. */
enum LogicContact { ThreeWire, TwoWire };

class FormStartStopLogic final : public BlockForm
{
public:
    explicit FormStartStopLogic(Desk &desk)
        : BlockForm(desk, {.name = "FormStartStopLogic",
                           .caption = QStringLiteral("Start/Stop Logic"),
                           .helpTopic = "Start Stop Logic.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        DrawRequest(d);
        DrawRelease(d);
        DrawGates(d);
        DrawOutput(d);
    }

    void Tick() override
    {
        const std::int32_t rawLogic = RowValue(LogicSelect);
        logicSwitch_.Set(rawLogic == ThreeWire || rawLogic == TwoWire ? rawLogic : -1);
    }

private:
    static constexpr double RunY = 11;
    static constexpr double StopY = 19;
    static constexpr double ReleaseY = 31;
    static constexpr double JogY = 47;
    static constexpr double SplitX = 60;

    /** Run and Stop: held by a latch with three wires, Run alone with two. */
    void DrawRequest(Drawing &d)
    {
        const Shape run = Box(Run, {0, RunY});
        const Shape stop = Box(Stop, {0, StopY});
        const double latchY = (RunY + StopY) / 2;
        const Shape latch =
            d.Function({24, latchY}, {12, 13}, QStringLiteral("Latch"), QStringLiteral("LabelLatch"));
        d.Label({}, QStringLiteral("S"), {25.5, RunY}, Qt::AlignHCenter);
        d.Label({}, QStringLiteral("R"), {25.5, StopY}, Qt::AlignHCenter);
        const Port split = d.Dot({18, RunY});
        d.Line(run.Right(), split);
        d.Wire(split, latch.LeftAt(RunY));
        d.Wire(stop.Right(), latch.LeftAt(StopY));

        const double directY = RunY - 6;
        logicSwitch_ =
            d.Switch(QStringLiteral("LineLogicSelect"), {53, RunY - 1}, {{44, latchY}, {44, directY}});
        d.Line(latch.Right(), logicSwitch_.Contact(ThreeWire));
        d.Path({{split.at, {split.at.x(), directY}, logicSwitch_.Contact(TwoWire).at}}, false);
        d.Label(QStringLiteral("Label3Wire"), QStringLiteral("3 Wire"), {43.5, latchY + 1.8}, Qt::AlignRight);
        d.Label(QStringLiteral("Label2Wire"), QStringLiteral("2 Wire"), {43.5, directY - 1.5},
                Qt::AlignRight);
        const Shape select = Box(LogicSelect, {48.5 - BoxSize(LogicSelect).width() / 2, directY - 7});
        d.Link(select.Bottom(), logicSwitch_);
    }

    /** What must be there before the drive runs or jogs. */
    void DrawRelease(Drawing &d)
    {
        const Shape enable = Box(RunEnable, {0, ReleaseY - 4});
        const Shape ready = Box(DriveReady, {0, ReleaseY + 4}, CaptionAt::Below);
        const Shape both = d.And({24, ReleaseY}, QStringLiteral("LabelRelease"), 12);
        d.Wire(enable.Right(), both.LeftAt(ReleaseY - 4));
        d.Wire(ready.Right(), both.LeftAt(ReleaseY + 4));
        d.Line(both.Right(), d.Dot({SplitX, ReleaseY}));
    }

    void DrawGates(Drawing &d)
    {
        const double x = SplitX + 5;
        const double runY = RunY + 1.5;
        const double jogY = JogY - 2.5;
        const Shape run = d.And({x, runY}, QStringLiteral("LabelRun"), 8);
        const Shape jog = d.And({x, jogY}, QStringLiteral("LabelJog"), 8);
        d.Wire(logicSwitch_.Pivot(), run.LeftAt(RunY - 1));
        d.Path({{{SplitX, ReleaseY}, {SplitX, runY + 2.5}, {x, runY + 2.5}}}, true);
        d.Path({{{SplitX, ReleaseY}, {SplitX, jogY - 2.5}, {x, jogY - 2.5}}}, true);
        const Shape jogInput = Box(Jog, {0, JogY});
        d.Wire(jogInput.Right(), jog.LeftAt(JogY));
        runStatus_ = Box(RunStatus, {x + 12, runY});
        d.Wire(run.Right(), runStatus_.Left());
        jogStatus_ = Box(JogStatus, {x + 12, jogY}, CaptionAt::Below);
        d.Wire(jog.Right(), jogStatus_.Left());
    }

    /** The armature stays on until the motor has stopped, or until the jog delay is over. */
    void DrawOutput(Drawing &d)
    {
        const double x = runStatus_.Rect().right() + 6;
        const double runY = runStatus_.Rect().center().y();
        const double jogY = jogStatus_.Rect().center().y();
        const double middle = (runY + jogY) / 2;
        const Shape stop =
            d.Function({x, runY}, {12, 6}, QStringLiteral("Stop"), QStringLiteral("LabelStop"));
        const Shape mode = Box(StopMode, {x + 6 - BoxSize(StopMode).width() / 2, runY - 12});
        const Shape delay =
            d.Function({x, jogY}, {12, 6}, QStringLiteral("Off Delay"), QStringLiteral("LabelOffDelay"));
        const Shape time = Box(JogDelay, {x + 6 - BoxSize(JogDelay).width() / 2, jogY - 11});
        d.Wire(runStatus_.Right(), stop.Left());
        d.Wire(mode.Bottom(), stop.Top());
        d.Wire(jogStatus_.Right(), delay.Left());
        d.Wire(time.Bottom(), delay.Top());

        const double orX = x + 20;
        const Shape either = d.Or({orX, middle}, QStringLiteral("LabelOr"), 8);
        d.Wire(stop.Right(), either.LeftAt(middle - 2), orX - 4);
        d.Wire(delay.Right(), either.LeftAt(middle + 2), orX - 4);
        const Shape pilot = Box(ArmPilotStatus, {orX + 12, middle});
        d.Wire(either.Right(), pilot.Left());
        d.Wire(pilot.Right(), {{pilot.Rect().right() + 5, middle}, Side::Left});
    }

    LivePart logicSwitch_;
    Shape runStatus_;
    Shape jogStatus_;
};

} // namespace

BlockForm *MakeFormStartStopLogic(Desk &desk, int);

BlockForm *MakeFormStartStopLogic(Desk &desk, int)
{
    return Loaded(new FormStartStopLogic(desk));
}

} // namespace quorvik
