#include "blocks/BlockForm.h"

namespace quorvik
{

namespace
{

enum RowIndex {
    FieldLossInhibit,
    VfbLossInhibit,
    FieldLossLevel,
    VfbLossLevel,
    OverspeedLevel,
    OverCurrentTime,
    FoldbackStatus,
    FoldbackTime,
};

constexpr BlockRow Rows[] = {
    {"Field Loss Inhibit", 250},    {"VFB Loss Inhibit", 248},    {"Field Loss Level", 249},
    {"VFB Loss Level", 247},        {"Overspeed Level", 223},     {"Arm  OverCurrent Time", 253},
    {"Arm I Foldback Status", 252}, {"Arm I Foldback Time", 251},
};

class FormFaultLogic final : public BlockForm
{
public:
    explicit FormFaultLogic(Desk &desk)
        : BlockForm(desk, {.name = "FormFaultLogic",
                           .caption = QStringLiteral("Fault Logic"),
                           .helpTopic = "Fault Logic.htm",
                           .rows = Rows})
    {
    }

protected:
    void Draw(Drawing &d) override
    {
        DrawLoss(d, 0, {QStringLiteral("Field Current"), FieldLossLevel, FieldLossInhibit},
                 QStringLiteral("Field Loss"));
        DrawLoss(d, 16, {QStringLiteral("Velocity Feedback"), VfbLossLevel, VfbLossInhibit},
                 QStringLiteral("VFB Loss"));
        const Shape overspeed =
            DrawTest(d, 32, QStringLiteral("Velocity Feedback"), QStringLiteral(">"), OverspeedLevel);
        DrawResult(d, overspeed.Right(), QStringLiteral("OverSpeed"));
        const QString current = QStringLiteral("Armature Current");
        const Shape overCurrent = DrawTest(d, 43, current, QStringLiteral("Delay"), OverCurrentTime);
        DrawResult(d, overCurrent.Right(), QStringLiteral("OverCurrent"));
        const Shape foldback = DrawTest(d, 54, current, QStringLiteral("Delay"), FoldbackTime);
        const Shape status = Box(FoldbackStatus, {56, 54}, CaptionAt::Below);
        d.Wire(foldback.Right(), status.Left());
        DrawResult(d, status.Right(), QStringLiteral("Current Limit Foldback"));
    }

private:
    struct Loss {
        QString signal;
        RowIndex level;
        RowIndex inhibit;
    };

    static constexpr double BoxX = 24;
    static constexpr double TestX = 43;
    static constexpr double ResultX = 76;
    static constexpr double Reach = 2.5;

    /** A signal held against the level or the time below it. */
    Shape DrawTest(Drawing &d, double y, const QString &signal, const QString &test, RowIndex limit)
    {
        const Shape shape = d.Function({TestX, y}, {9, 8}, test);
        d.Label({}, signal, {BoxX - 0.8, y - Reach}, Qt::AlignRight);
        d.Wire({{BoxX, y - Reach}, Side::Right}, shape.LeftAt(y - Reach));
        d.Wire(Box(limit, {BoxX, y + Reach}, CaptionAt::Left).Right(), shape.LeftAt(y + Reach));
        return shape;
    }

    static void DrawResult(Drawing &d, const Port &from, const QString &name)
    {
        d.Wire(from, {{ResultX, from.at.y()}, Side::Left});
        d.Label({}, name, {ResultX + 1, from.at.y()}, Qt::AlignLeft, true);
    }

    /** The fault comes below the level, unless it is inhibited. */
    void DrawLoss(Drawing &d, double y, const Loss &loss, const QString &fault)
    {
        const Shape below = DrawTest(d, y, loss.signal, QStringLiteral("<"), loss.level);
        const Shape gate = d.And({62, y + Reach}, {}, 8);
        d.Wire(below.Right(), gate.LeftAt(y));
        const double inhibitY = y + Reach + 5;
        const Shape inverter = d.Inverter({TestX + 2, inhibitY});
        d.Wire(Box(loss.inhibit, {BoxX, inhibitY}, CaptionAt::Left).Right(), inverter.Left());
        d.Wire(inverter.Right(), gate.LeftAt(y + 2 * Reach), 57);
        DrawResult(d, gate.Right(), fault);
    }
};

} // namespace

BlockForm *MakeFormFaultLogic(Desk &desk, int);

BlockForm *MakeFormFaultLogic(Desk &desk, int)
{
    return Loaded(new FormFaultLogic(desk));
}

} // namespace quorvik
