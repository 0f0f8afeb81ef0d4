#include "circuit/Conditions.h"

#include "circuit/Remedies.h"
#include "circuit/ValueSources.h"
#include "model/Conversions.h"
#include "model/Faults.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "model/TextTables.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

using namespace Param;

namespace
{

constexpr std::int32_t MostStates = 8;

/** A switch between two ways of working, of which one is for tests: it is to blame for an empty input. */
bool IsMode(int p)
{
    return p == OpenLoopArmSelect || p == OpenLoopFieldSelect || p == DriveModeLSB;
}

QString ExpectedText(Wanted wanted)
{
    switch (wanted) {
    case Wanted::True:
        return QStringLiteral("must be True");
    case Wanted::False:
        return QStringLiteral("must be False");
    case Wanted::NotZero:
        break;
    }
    return QStringLiteral("must not be zero");
}

QString FaultsText(std::int32_t rawFaults)
{
    return rawFaults == 0 ? QStringLiteral("None") : FaultNames(rawFaults).join(QStringLiteral(", "));
}

} // namespace

Conditions::Conditions(const Circuit &circuit, const ParameterTable &table, const ConditionsGiven &given)
    : walk_(circuit, table)
    , circuit_(circuit)
    , table_(table)
    , given_(given)
{
    const bool isRunning = table.Value(RunStatus) != 0 || table.Value(JogStatus) != 0;
    walk_.SetPredicting(!given.isOnLine || !isRunning);
    const double turned = std::abs(walk_.ValueOf(VelFeedback).value_or(0));
    const double asked = std::abs(walk_.ValueOf(FinalVelDemand).value_or(0));
    isUnderWay_ = given.isOnLine && isRunning && turned >= SeenTurning && turned >= asked / 2;
}

bool Conditions::IsNothing(int p, double value) const
{
    const QString unit = UnitText(table_[p].Attributes);
    return std::abs(value) < (unit == QStringLiteral("%") ? LeastPercent : 1e-9);
}

QString Conditions::TextOf(int p) const
{
    const ParamRecord &record = table_[p];
    if (p == PresentFault || p == LatchedFault)
        return FaultsText(record.Value);
    if (p == DriveState)
        return record.Value >= 0 && record.Value <= MostStates ? DriveStateText(record.Value)
                                                               : QString::number(record.Value);
    std::int32_t raw = record.Value;
    // Nobody computes it off line: what it would be is shown.
    if (const std::optional<double> value = walk_.ValueOf(p);
        value && !given_.isOnLine && walk_.IsComputed(p))
        raw = RawOfShown(*value, record.Attributes).value_or(raw);
    return ShownText(raw, record.Attributes);
}

QString Conditions::Sentence(int p) const
{
    return QStringLiteral("%1 is %2").arg(table_.FullName(p), TextOf(p));
}

Condition Conditions::Of(int p, const QString &expected) const
{
    int node = walk_.MakerOf(p);
    // A window in which it acts, rather than one that brings it or shows what a selector points at.
    for (const int shown : circuit_.NodesOf(p))
        if (node < 0 && circuit_.Into(shown).empty())
            node = shown;
    Condition condition{.param = p,
                        .block = node >= 0 ? circuit_.Block(circuit_.BlockOfNode(node)).window : QString(),
                        .expected = expected,
                        .valueText = TextOf(p),
                        .source = SourceOf(p).text};
    if (!IsKnown(p)) {
        condition.verdict = Verdict::Unknown;
        condition.valueText = QStringLiteral("not known yet");
    }
    return condition;
}

Condition Conditions::Of(int p, const QString &expected, bool holds, const QString &remedy) const
{
    Condition condition = Of(p, expected);
    if (holds || condition.verdict == Verdict::Unknown)
        return condition;
    // What the drive works out follows from what was given to it.
    const bool isResult = walk_.IsComputed(p);
    const bool isFirst = std::ranges::none_of(found_, [](const Condition &before) {
        return before.verdict == Verdict::Blocks || before.verdict == Verdict::Unknown;
    });
    condition.verdict = isResult && !isFirst ? Verdict::Waits : Verdict::Blocks;
    if (condition.verdict == Verdict::Blocks)
        condition.remedy = remedy;
    return condition;
}

ValueSource Conditions::SourceOf(int p) const
{
    ValueSource source = SourceOfValue(circuit_, table_, p);
    if (!std::ranges::all_of(source.reads, [this](int read) { return IsKnown(read); }))
        source.text = source.name + QStringLiteral(" is its source");
    return source;
}

void Conditions::Add(Condition condition)
{
    if (std::ranges::find(seen_, condition.param) == seen_.end())
        seen_.push_back(condition.param);
    found_.push_back(std::move(condition));
}

bool Conditions::HasBlocked() const
{
    return std::ranges::find(found_, Verdict::Blocks, &Condition::verdict) != found_.end();
}

void Conditions::Judge(int p, Wanted wanted)
{
    const std::optional<double> value =
        given_.isOnLine && walk_.IsComputed(p)
            ? std::optional(ShownNumber(table_.Value(p), table_[p].Attributes))
            : walk_.ValueOf(p);
    const bool isThere = value && !IsNothing(p, *value);
    // A loop at work passes through zero.
    const bool isAtWork = isUnderWay_ && wanted == Wanted::NotZero && walk_.IsComputed(p);
    const bool holds = wanted == Wanted::False ? !isThere : isThere || isAtWork;
    const ValueSource source = SourceOf(p);
    const bool isRead = std::ranges::all_of(source.reads, [this](int read) { return IsKnown(read); });
    QString remedy = isRead ? source.Remedy(table_, wanted == Wanted::False) : QString();
    if (remedy.isEmpty())
        remedy = RemedyFor(p);
    if (remedy.isEmpty())
        remedy = QStringLiteral("It %1.").arg(ExpectedText(wanted));
    Add(Of(p, ExpectedText(wanted), holds, remedy));
}

void Conditions::AddChoice(int p)
{
    // What the drive itself chooses stands among its results.
    if (!walk_.IsComputed(p) && std::ranges::find(seen_, p) == seen_.end())
        Add(Of(p, {}));
}

void Conditions::Block(int p)
{
    const auto at = std::ranges::find(found_, p, &Condition::param);
    if (at == found_.end() || at->verdict == Verdict::Unknown)
        return;
    at->verdict = Verdict::Blocks;
    at->remedy = RemedyFor(p);
}

void Conditions::Walk(int p, Wanted wanted)
{
    IntoValue(p, wanted);
}

void Conditions::IntoValue(int p, Wanted wanted)
{
    if (std::ranges::find(seen_, p) != seen_.end())
        return;
    seen_.push_back(p);
    outputs_.push_back(p);
    if (const int made = walk_.MakerOf(p); made >= 0)
        Into(circuit_.From(circuit_.Inputs(made).front()), wanted);
    outputs_.pop_back();
    Judge(p, wanted);
}

void Conditions::Into(int node, Wanted wanted)
{
    if (node < 0)
        return;
    const Node &found = circuit_.NodeAt(node);
    switch (found.kind) {
    case NodeKind::Value:
    case NodeKind::Signal:
        if (found.param > 0)
            IntoValue(found.param, wanted);
        break;
    case NodeKind::Not:
        Into(walk_.InputOn(node, Side::Left), wanted == Wanted::False ? Wanted::True : Wanted::False);
        break;
    case NodeKind::And:
        IntoGate(node, wanted, wanted != Wanted::False);
        break;
    case NodeKind::Nand:
        IntoGate(node, wanted == Wanted::False ? Wanted::True : Wanted::False, wanted == Wanted::False);
        break;
    case NodeKind::Or:
        IntoGate(node, wanted, wanted == Wanted::False);
        break;
    case NodeKind::Switch:
    case NodeKind::Contact:
        IntoSwitch(node, wanted);
        break;
    case NodeKind::Sum:
        IntoSum(node, wanted);
        break;
    case NodeKind::Memory:
        IntoMemory(node, wanted);
        break;
    case NodeKind::Limiter:
    case NodeKind::Formula:
        Into(walk_.InputOn(node, Side::Left), wanted);
        AddLimits(node);
        break;
    case NodeKind::Joint:
    case NodeKind::Gain:
    case NodeKind::Absolute:
        for (const int edge : circuit_.Inputs(node))
            Into(circuit_.From(edge), wanted);
        break;
    case NodeKind::Constant:
    case NodeKind::Terminal:
    case NodeKind::Product:
    case NodeKind::Comparator:
    case NodeKind::Group:
        break;
    }
}

/** All inputs must be as wanted, or one of them; of one the way with the fewest hindrances is shown. */
void Conditions::IntoGate(int node, Wanted wanted, bool needsAll)
{
    std::vector<Condition> best;
    std::vector<int> bestSeen;
    int fewest = -1;
    for (const int edge : circuit_.Inputs(node)) {
        if (needsAll) {
            Into(circuit_.From(edge), wanted);
            continue;
        }
        const std::vector<Condition> before = found_;
        const std::vector<int> seenBefore = seen_;
        Into(circuit_.From(edge), wanted);
        const int hindrances = int(std::ranges::count(found_, Verdict::Blocks, &Condition::verdict));
        // What leads to nothing that is known is no way.
        const bool isWay = found_.size() > before.size() || seen_.size() > seenBefore.size() ||
                           walk_.Result(circuit_.From(edge)).has_value();
        const bool isSetting = !found_.empty() && !walk_.IsComputed(found_.back().param);
        if (isWay && (fewest < 0 || hindrances < fewest ||
                      (hindrances == fewest && isSetting && wanted == Wanted::False))) {
            fewest = hindrances;
            best = found_;
            bestSeen = seen_;
        }
        found_ = before;
        seen_ = seenBefore;
    }
    if (!needsAll && fewest >= 0) {
        found_ = std::move(best);
        seen_ = std::move(bestSeen);
    }
}

void Conditions::IntoSwitch(int node, Wanted wanted)
{
    const std::vector<int> selectors = walk_.SelectorsOf(node);
    const int taken = walk_.TakenInput(node, true);
    if (circuit_.NodeAt(node).kind == NodeKind::Contact) {
        Into(taken, wanted);
        for (const int selector : selectors)
            IntoValue(selector, Wanted::True);
        return;
    }
    const bool isWrong = taken < 0 || (circuit_.NodeAt(taken).kind == NodeKind::Constant &&
                                       (circuit_.NodeAt(taken).number != 0) != (wanted != Wanted::False));
    // A choice stands behind what it lets through; what is to blame, before it.
    const bool isBefore = isWrong || (!selectors.empty() && IsMode(selectors.back()));
    const auto addChoices = [&] { std::ranges::for_each(selectors, [this](int p) { AddChoice(p); }); };
    if (isBefore)
        addChoices();
    if (isWrong) {
        if (!selectors.empty())
            Block(selectors.front());
        if (taken >= 0)
            Into(walk_.OtherInput(node, taken), wanted);
        return;
    }
    Into(taken, wanted);
    if (!isBefore)
        addChoices();
    if (wanted != Wanted::NotZero || selectors.empty() || !IsMode(selectors.back()))
        return;
    const auto isNothing = [this](int input) {
        const std::optional<double> value = walk_.Result(input);
        return input < 0 || !value || std::abs(*value) < LeastPercent;
    };
    if (isNothing(taken) && !isNothing(walk_.OtherInput(node, taken)))
        Block(selectors.back());
}

/** The input that makes the sum what it is; all of them where they cancel each other out. */
void Conditions::IntoSum(int node, Wanted wanted)
{
    const auto isSomething = [this](int input) {
        const std::optional<double> value = walk_.Result(input);
        return value && std::abs(*value) >= LeastPercent;
    };
    const int main = walk_.InputOn(node, Side::Left) >= 0 ? walk_.InputOn(node, Side::Left)
                                                          : circuit_.From(circuit_.Inputs(node).front());
    const bool isCancelled = isSomething(main) && !isSomething(node) && walk_.Result(node);
    std::vector<int> others;
    for (const int edge : circuit_.Inputs(node))
        if (const int input = circuit_.From(edge); input != main && isSomething(input))
            others.push_back(input);
    if (isSomething(main) || others.empty() || isCancelled)
        Into(main, wanted);
    if (!isSomething(main) || isCancelled)
        for (const int input : others)
            Into(input, wanted);
}

void Conditions::IntoMemory(int node, Wanted wanted)
{
    if (walk_.SetpointOf(node) >= 0) {
        IntoController(node);
        return;
    }
    const std::vector<int> left = walk_.InputsOn(node, Side::Left);
    if (left.size() == 2 && wanted != Wanted::False) {
        // A latch: what resets it comes before what sets it, for it wins.
        Into(left.back(), Wanted::False);
        Into(left.front(), Wanted::True);
        return;
    }
    if (!left.empty())
        Into(left.front(), wanted);
    if (!outputs_.empty() && outputs_.back() == RampOutput)
        AddRampTime();
}

void Conditions::IntoController(int node)
{
    const int setpoint = walk_.SetpointOf(node);
    Into(setpoint, Wanted::NotZero);
    for (const int input : walk_.InputsOn(node, Side::Top))
        AddGain(input);
    for (const int input : walk_.InputsOn(node, Side::Bottom)) {
        const int p = circuit_.NodeAt(input).param;
        if (p == LoopEnable)
            IntoValue(p, Wanted::True);
        else if (p == RegenMode)
            AddRegen(walk_.Result(setpoint).value_or(0));
    }
}

} // namespace quorvik
