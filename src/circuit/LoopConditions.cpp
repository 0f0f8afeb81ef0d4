#include "circuit/Conditions.h"

#include "model/ParameterTable.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

using namespace Param;

namespace
{

constexpr double PatientSeconds = 1; ///< so long a ramp may take until the motor is seen to turn

bool IsProportionalGain(int p)
{
    return p == PropGainA || p == PropGainB || p == IProportionalGain || p == FieldPropGain;
}

} // namespace

void Conditions::AddLimits(int node)
{
    const int high = walk_.InputOn(node, Side::Top);
    const int low = walk_.InputOn(node, Side::Bottom);
    const int left = walk_.InputOn(node, Side::Left);
    if (high < 0 || low < 0 || left < 0)
        return;
    const double asked = walk_.Result(left).value_or(0);
    for (const int limit : {high, low}) {
        const int p = circuit_.NodeAt(limit).param;
        if (p <= 0 || std::ranges::find(seen_, p) != seen_.end())
            continue;
        const bool isInUse = limit == high ? asked >= LeastPercent : asked <= -LeastPercent;
        const QString direction = limit == high ? QStringLiteral("positive") : QStringLiteral("negative");
        const bool holds = !isInUse || !IsNothing(p, walk_.ValueOf(p).value_or(1));
        QString remedy = QStringLiteral("The demand is %1, and this limit leaves nothing of it: open it, or "
                                        "ask for the other direction.")
                             .arg(direction);
        if (limit == low && p == ReverseMaxSpeed && table_.Value(ReferenceInvert) != 0)
            remedy += u' ' + Sentence(ReferenceInvert) + QStringLiteral(", which turns the reference.");
        Add(Of(p, QStringLiteral("must not be zero for a %1 demand").arg(direction), holds, remedy));
    }
}

void Conditions::AddRampTime()
{
    const bool isSetB = table_.Value(RampSelect) != 0;
    const double asked = walk_.ValueOf(RampInput).value_or(0);
    const int p = asked < 0 ? (isSetB ? RevAccelB : RevAccelA) : (isSetB ? FwdAccelB : FwdAccelA);
    const double level =
        std::min(std::abs(asked), std::max(walk_.ValueOf(ZeroSpeedSet).value_or(0), SeenTurning));
    const double seconds = walk_.ValueOf(p).value_or(0);
    const double reached = std::abs(walk_.ValueOf(RampOutput).value_or(0));
    const bool isOnItsWay =
        !walk_.IsPredicting() && level > reached && seconds * level / 100 > PatientSeconds;
    Add(Of(p, QStringLiteral("must not hold the ramp back"), !isOnItsWay,
           QStringLiteral("The ramp has only come to %1 of %2; this is its time for 100 %. Wait, or shorten "
                          "it.")
               .arg(TextOf(RampOutput), TextOf(RampInput))));
}

void Conditions::AddGain(int input)
{
    std::vector<int> candidates{input};
    if (circuit_.NodeAt(input).kind == NodeKind::Switch) {
        for (const int selector : walk_.SelectorsOf(input))
            AddChoice(selector);
        candidates = walk_.MembersOf(walk_.TakenInput(input, true));
    }
    for (const int node : candidates) {
        const int p = circuit_.NodeAt(node).param;
        if (!IsProportionalGain(p) || std::ranges::find(seen_, p) != seen_.end())
            continue;
        // Some controllers keep a least gain, so only an output that is missing proves it.
        const bool isProven = !given_.isOnLine || outputs_.empty() || walk_.IsPredicting() ||
                              IsNothing(outputs_.back(), walk_.ValueOf(outputs_.back()).value_or(0));
        const bool holds = !IsNothing(p, walk_.ValueOf(p).value_or(1)) || !isProven;
        Add(Of(p, QStringLiteral("must not be zero"), holds,
               QStringLiteral("Without gain the controller answers no error: set it.")));
    }
}

void Conditions::AddRegen(double asked)
{
    const double speed = given_.isOnLine ? walk_.ValueOf(VelFeedback).value_or(0) : 0;
    const bool isBackwards = asked <= -LeastPercent && speed < SeenTurning;
    const QString expected = QStringLiteral("must be True for a negative torque");
    if (table_.Value(RegenMode) != 0 && table_.IsModelDefined() && !table_.IsRegenerative()) {
        Add(Of(DriveModel, QStringLiteral("must be a regenerative one for a negative torque"), !isBackwards,
               QStringLiteral("This drive has one bridge and cannot turn the motor backwards: ask for the "
                              "forward direction.")));
        return;
    }
    Add(Of(RegenMode, expected, !isBackwards || table_.Value(RegenMode) != 0,
           QStringLiteral("The demand is negative, and only regenerating drives turn backwards: set it to "
                          "True, or ask for the forward direction.")));
}

} // namespace quorvik
