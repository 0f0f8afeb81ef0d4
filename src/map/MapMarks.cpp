// What stands between the reference and the motor: switches that lead another signal on, and limits that
// hold.

#include "map/MapModel.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"

#include <array>
#include <cmath>

namespace quorvik
{

namespace
{

using namespace Param;

/** From one value of the main signal to the next, within one block. */
struct Step {
    const char *card;
    std::span<const int> from;
    int to;
    const char *held = ""; ///< where a switch without a selector stands away
    int enable = -1;       ///< holds the step while it is False
};

constexpr int References[] = {Reference0, Reference1, Reference2, Reference3, JogReference};
constexpr int RampIn[] = {RampInput};
constexpr int RampOut[] = {RampOutput};
constexpr int Demand[] = {VelocityDemand};
constexpr int FinalDemand[] = {FinalVelDemand};
constexpr int VelocityOut[] = {VelLoopOutput};
constexpr int Current[] = {CurrentDemand};
constexpr int FinalCurrent[] = {FinalIDemand};
constexpr int Field[] = {FinalFieldIDemand};

constexpr auto Steps = std::to_array<Step>({
    {"Setpoints", References, RampInput,
     "Ref Enable is off: the drive neither runs nor jogs, so the reference is switched to 0.00 %."},
    {"Accel/Decel", RampIn, RampOutput,
     "Ramp Enable is off: the drive does not run, so the ramp's output is switched to 0.00 %."},
    {"Setpoint Sum", RampOut, VelocityDemand},
    {"Velocity Loop", Demand, FinalVelDemand},
    {"Velocity Loop", FinalDemand, VelLoopOutput, "", LoopEnable},
    {"Current Loop", VelocityOut, CurrentDemand},
    {"Current Loop", Current, FinalIDemand},
    {"Current Loop", FinalCurrent, ConductionAngle},
    {"Field Loop", Field, FieldCondAngle},
});

constexpr auto Interest = std::to_array<int>(
    {DriveState,      DriveModeMSB,    DriveModeLSB,   OpenLoopArmSelect,   LoopEnable,    ForwardMaxSpeed,
     ReverseMaxSpeed, PositiveILimit,  NegativeILimit, ArmIFoldbackStatus,  CurrentDemand, AuxIDemand,
     VelocityDemand,  FinalVelDemand,  FinalIDemand,   RefSelectMSB,        RefSelectLSB,  JogStatus,
     RampBypass,      ReferenceInvert, FieldEnable,    OpenLoopFieldSelect, FeedbackSelect});

/** The smallest difference that a shown percentage has. */
constexpr double LeastDifference = 0.005;

class Walk
{
public:
    Walk(const Circuit &circuit, const ParameterTable &table, const Step &step)
        : circuit_(circuit)
        , table_(table)
        , step_(step)
    {
    }

    std::vector<MapMark> Marks() const
    {
        std::vector<MapMark> marks;
        const int card = MapModel::FindCard(QString::fromLatin1(step_.card));
        const int end = End(card);
        if (end < 0)
            return marks;
        const std::vector<int> way = Reach(end, Through::ActiveContacts);
        const auto block = [&](const QString &words) {
            marks.push_back({MapMark::Kind::Blocked, card, words});
        };
        if (!Arrives(way)) {
            for (const int node : way)
                if (TurnsAway(node)) {
                    block(BlockedBy(node));
                    break;
                }
            return marks;
        }
        if (step_.enable >= 0 && table_.Value(step_.enable) == 0)
            block(Follows() + Told(step_.enable));
        for (const int node : way)
            if (const QString words = HeldBy(node); !words.isEmpty())
                marks.push_back({MapMark::Kind::Limited, card, words});
        return marks;
    }

private:
    /** Where the step's value is made. */
    int End(int card) const
    {
        for (const int node : circuit_.NodesOf(step_.to))
            if (MapModel::CardOfWindow(circuit_.Block(circuit_.BlockOfNode(node)).window) == card &&
                circuit_.NodeAt(node).kind == NodeKind::Value)
                return node;
        return -1;
    }

    bool IsSwitch(int node) const
    {
        const NodeKind kind = circuit_.NodeAt(node).kind;
        return kind == NodeKind::Switch || kind == NodeKind::Contact;
    }

    /** A switch with an open contact to which the step's beginning leads. */
    bool TurnsAway(int node) const
    {
        return IsSwitch(node) && std::ranges::any_of(circuit_.Into(node), [this](int edge) {
                   return circuit_.EdgeAt(edge).kind == Edge::Kind::Signal && circuit_.From(edge) >= 0 &&
                          !circuit_.Passes(edge) && Arrives(Reach(circuit_.From(edge), Through::AllContacts));
               });
    }

    /** All that leads to a node in its drawing, as far as the step's beginning. */
    std::vector<int> Reach(int node, Through through) const
    {
        std::vector<int> found{node};
        for (std::size_t i = 0; i < found.size(); ++i) {
            if (IsBeginning(found[i]))
                continue;
            for (const int edge : circuit_.Into(found[i])) {
                const int next = circuit_.From(edge);
                if (circuit_.EdgeAt(edge).kind != Edge::Kind::Signal || next < 0 ||
                    (through == Through::ActiveContacts && !circuit_.Passes(edge)))
                    continue;
                if (std::ranges::find(found, next) == found.end())
                    found.push_back(next);
            }
        }
        return found;
    }

    bool IsBeginning(int node) const
    {
        return std::ranges::find(step_.from, circuit_.NodeAt(node).param) != step_.from.end();
    }

    bool Arrives(const std::vector<int> &way) const
    {
        return std::ranges::any_of(way, [this](int node) { return IsBeginning(node); });
    }

    QString Shown(int p) const { return ShownText(table_.Value(p), table_[p].Attributes); }
    QString Told(int p) const { return QStringLiteral("%1 is %2.").arg(table_.FullName(p), Shown(p)); }
    QString Follows() const
    {
        return QStringLiteral("%1 does not follow %2: ")
            .arg(table_.FullName(step_.to), table_.FullName(step_.from.front()));
    }

    QString BlockedBy(int node) const
    {
        QStringList selectors;
        for (const int edge : circuit_.Into(node)) {
            const int from = circuit_.From(edge);
            if (circuit_.EdgeAt(edge).kind != Edge::Kind::Control || from < 0)
                continue;
            if (const int p = circuit_.NodeAt(from).param; p > 0)
                selectors.append(QStringLiteral("%1 is %2").arg(table_.FullName(p), Shown(p)));
        }
        if (selectors.isEmpty())
            return QString::fromLatin1(step_.held);
        return Follows() + selectors.join(QStringLiteral(", ")) + u'.';
    }

    /** Of a limit that lets less through than enters; empty for one that lets all. */
    QString HeldBy(int node) const
    {
        const Node &limit = circuit_.NodeAt(node);
        if (limit.kind != NodeKind::Limiter && limit.kind != NodeKind::Formula)
            return {};
        const std::optional<double> result = circuit_.Result(node);
        std::optional<double> entering;
        QString by;
        bool hasLimits = limit.kind == NodeKind::Limiter;
        for (const int edge : circuit_.Into(node)) {
            const std::optional<double> brought = circuit_.OnEdge(edge);
            if (circuit_.EdgeAt(edge).to.side == Side::Left) {
                entering = brought;
                continue;
            }
            hasLimits = true;
            const int from = circuit_.From(edge);
            if (result && brought && from >= 0 && circuit_.NodeAt(from).param > 0 &&
                std::abs(*brought - *result) < LeastDifference)
                by = QStringLiteral(" by ") + table_.FullName(circuit_.NodeAt(from).param);
        }
        if (!hasLimits || !result || !entering || std::abs(*result - *entering) < LeastDifference)
            return {};
        const QString unit = Shown(step_.to).section(u' ', 1);
        const auto number = [&unit](double value) {
            return (QString::number(value, 'f', 2) + u' ' + unit).trimmed();
        };
        return QStringLiteral("%1 is held at %2%3; %4 is asked for.")
            .arg(table_.FullName(step_.to), number(*result), by, number(*entering));
    }

    const Circuit &circuit_;
    const ParameterTable &table_;
    const Step &step_;
};

} // namespace

std::vector<MapMark> FindMarks(const Circuit &circuit, const ParameterTable &table)
{
    std::vector<MapMark> marks;
    for (const Step &step : Steps)
        for (MapMark &mark : Walk(circuit, table, step).Marks())
            if (std::ranges::find(marks, mark) == marks.end())
                marks.push_back(std::move(mark));
    return marks;
}

std::span<const int> MarkInterest()
{
    return Interest;
}

} // namespace quorvik
