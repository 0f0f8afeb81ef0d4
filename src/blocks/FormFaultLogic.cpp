#include "blocks/BlockSheet.h"

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {FieldLossInhibit,   VFBLossInhibit,
                             FieldLossLevel,     VFBLossLevel,
                             OverspeedLevel,     {ArmOverCurrentTime, "Arm  OverCurrent Time"},
                             ArmIFoldbackStatus, ArmIFoldbackTime};

class FaultLogicSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const Shape weak =
            DrawTest(d, 0, From(d, 0, QStringLiteral("Field Current"), FieldIFeedback), FieldLossLevel);
        DrawInhibit(d, weak, FieldLossInhibit, QStringLiteral("Field Loss"));
        const Shape apart = DrawTest(d, 23, DrawDifference(d, 23), VFBLossLevel, QStringLiteral(">"));
        DrawInhibit(d, apart, VFBLossInhibit, QStringLiteral("VFB Loss"));
        const Shape overspeed = DrawTest(d, 41, Size(d, 41, QStringLiteral("Velocity Feedback"), VelFeedback),
                                         OverspeedLevel, QStringLiteral(">"));
        DrawResult(d, overspeed.Right(), QStringLiteral("OverSpeed"));
        const QString current = QStringLiteral("Armature Current");
        const Shape overCurrent = DrawTest(d, 53, Size(d, 53, current, CurrentFeedback), ArmOverCurrentTime,
                                           QStringLiteral("Delay"));
        DrawResult(d, overCurrent.Right(), QStringLiteral("OverCurrent"));
        const Shape foldback =
            DrawTest(d, 65, Size(d, 65, current, CurrentFeedback), ArmIFoldbackTime, QStringLiteral("Delay"));
        const Shape status = Box(ArmIFoldbackStatus, {63, 65}, CaptionAt::Below);
        d.Wire(foldback.Right(), status.Left());
        DrawResult(d, status.Right(), QStringLiteral("Current Limit Foldback"));
    }

private:
    static constexpr double BoxX = 24;
    static constexpr double TestX = 46;
    static constexpr double ResultX = 79;
    static constexpr double Reach = 2.5;

    static Port From(Drawing &d, double y, const QString &signal, int p)
    {
        return d.From({BoxX, y - Reach}, signal, p);
    }

    /** A signal without its sign. */
    static Port Size(Drawing &d, double y, const QString &signal, int p)
    {
        const Shape magnitude = d.Absolute({29, y - Reach});
        d.Wire(From(d, y, signal, p), magnitude.Left());
        return magnitude.Right();
    }

    /** How far the armature's feedback lies above the one that is selected. */
    static Port DrawDifference(Drawing &d, double y)
    {
        const double above = y - Reach - 7;
        const Shape armature = d.Absolute({29, above});
        const Shape difference = d.Sum({41, y - Reach}, QStringLiteral("-+"));
        d.Wire(d.From({BoxX, above}, QStringLiteral("Armature Feedback"), AFB), armature.Left());
        d.Wire(Size(d, y, QStringLiteral("Velocity Feedback"), VelFeedback), difference.Left());
        d.Wire(armature.Right(), difference.Top());
        return difference.Right();
    }

    /** A signal held against the level or the time below it. */
    Shape DrawTest(Drawing &d, double y, const Port &signal, int limit,
                   const QString &test = QStringLiteral("<"))
    {
        const bool isDelay = test.size() > 1;
        const Shape shape = isDelay ? d.Delay({TestX, y}, test) : d.Comparator({TestX, y}, test, {}, 8);
        d.Wire(signal, shape.LeftAt(y - Reach));
        d.Wire(Box(limit, {BoxX, y + Reach}, CaptionAt::Left).Right(), shape.LeftAt(y + Reach));
        return shape;
    }

    static void DrawResult(Drawing &d, const Port &from, const QString &name)
    {
        d.To(from, {ResultX + 1, from.at.y()}, name);
    }

    /** The fault comes unless it is inhibited. */
    void DrawInhibit(Drawing &d, const Shape &test, int inhibit, const QString &fault)
    {
        const double y = test.Right().at.y();
        const Shape gate = d.And({65, y + Reach});
        d.Wire(test.Right(), gate.LeftAt(y));
        const double inhibitY = y + Reach + 5;
        const Shape inverter = d.Inverter({TestX + 2, inhibitY});
        d.Wire(Box(inhibit, {BoxX, inhibitY}, CaptionAt::Left).Right(), inverter.Left());
        d.Wire(inverter.Right(), gate.LeftAt(y + 2 * Reach), 60);
        DrawResult(d, gate.Right(), fault);
    }
};

} // namespace

constexpr BlockDescriptor BlockFaultLogic = {.form = "FormFaultLogic",
                                             .window = "Fault Logic",
                                             .helpTopic = "Fault Logic.htm",
                                             .rows = Rows,
                                             .sheet = MakeSheet<FaultLogicSheet>};

} // namespace quorvik
