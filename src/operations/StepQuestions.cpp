// What can be stepped on a drive as it is set and stands now, and what is asked before.

#include "link/ValueStates.h"
#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/ShownText.h"
#include "model/TextTables.h"
#include "operations/StepTest.h"
#include "platform/Asker.h"
#include "platform/TimeUnits.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

namespace
{

constexpr int VelocityMode = 0;
constexpr int TorqueMode = 1;

int DriveMode(const ParameterTable &table)
{
    return 2 * (table.Value(Param::DriveModeMSB) != 0 ? 1 : 0) +
           (table.Value(Param::DriveModeLSB) != 0 ? 1 : 0);
}

int ActiveReference(const ParameterTable &table)
{
    return Param::Reference0 + 2 * (table.Value(Param::RefSelectMSB) != 0 ? 1 : 0) +
           (table.Value(Param::RefSelectLSB) != 0 ? 1 : 0);
}

bool MayWrite(const ParameterTable &table, int p)
{
    return p <= table.LastParam && table.AccessClass(p) == Access::ReadWrite;
}

/** Why an active reference is none to step. */
QString WhyNot(const ParameterTable &table, int p)
{
    const int source = table.FindLinkSource(p);
    if (source == 0)
        return QStringLiteral("%1 cannot be written now, so no step can be made.").arg(table.FullName(p));
    return QStringLiteral("%1 acts on the loop, and what comes by %2 overwrites it: a step would not stay.")
        .arg(table.FullName(p), table.FullName(source));
}

} // namespace

int StepTest::SetpointOf(TunedLoop loop)
{
    return loop == TunedLoop::Velocity ? Param::FinalVelDemand : Param::FinalIDemand;
}

int StepTest::FeedbackOf(TunedLoop loop)
{
    return loop == TunedLoop::Velocity ? Param::VelFeedback : Param::CurrentFeedback;
}

std::vector<int> StepTest::GainsOf(TunedLoop loop) const
{
    if (loop == TunedLoop::Current)
        return {Param::IProportionalGain, Param::IIntegralTime};
    if (table_.Value(Param::GainSelect) != 0)
        return {Param::PropGainB, Param::IntegralTimeB, Param::OvershootGainB};
    return {Param::PropGainA, Param::IntegralTimeA, Param::OvershootGainA};
}

StepSources StepTest::SourcesOf(TunedLoop loop) const
{
    const int mode = DriveMode(table_);
    if (loop == TunedLoop::Current) {
        if (mode != TorqueMode)
            return {{},
                    QStringLiteral("The current follows the velocity loop, so there is no reference of its "
                                   "own to step. Record the answer to the next change instead.")};
        if (!MayWrite(table_, Param::TorqueReference))
            return {{}, WhyNot(table_, Param::TorqueReference)};
        return {{Param::TorqueReference}, {}};
    }
    if (mode != VelocityMode)
        return {{},
                QStringLiteral("The drive does not run by speed, as (109) and (110) are set: the "
                               "velocity loop is not in use.")};
    if (table_.Value(Param::JogStatus) != 0)
        return {{}, QStringLiteral("The drive jogs: the references do not act now.")};
    const int reference = ActiveReference(table_);
    if (!MayWrite(table_, reference))
        return {{}, WhyNot(table_, reference)};
    StepSources sources{{reference}, {}};
    // These two are added behind the ramp.
    std::ranges::copy_if(std::vector{Param::SetpointB, Param::SetpointC}, std::back_inserter(sources.params),
                         [this](int p) { return MayWrite(table_, p); });
    return sources;
}

bool StepTest::IsRamped(int param) const
{
    return param >= Param::Reference0 && param <= Param::Reference3 && table_.Value(Param::RampBypass) == 0;
}

QString StepTest::Refusal(const StepWish &wish) const
{
    if (!link_.PortOpen())
        return QStringLiteral("A step needs a drive on line.");
    if (link_.IsScanning())
        return QStringLiteral("The drive is being read or written. Try again when that is done.");
    if (table_.DriveStateUnread)
        return QStringLiteral("The drive has not told its state yet.");
    const StepSources sources = SourcesOf(wish.loop);
    if (!sources.whyNone.isEmpty())
        return sources.whyNone;
    const QString name = table_.FullName(wish.param);
    if (std::ranges::find(sources.params, wish.param) == sources.params.end())
        return QStringLiteral("%1 does not act on the loop now.").arg(name);
    if (leftover_)
        return QStringLiteral("Something of the last step may still be in the drive: put it back first.");
    if (wish.rawSize == 0)
        return QStringLiteral("A step of nothing shows nothing.");
    const ValueState state = states_.Of(wish.param);
    if (state != ValueState::Live && state != ValueState::Old)
        return QStringLiteral("The drive has not told what %1 is.").arg(name);
    const ParamRecord &record = table_[wish.param];
    const std::int64_t rawStepped = std::int64_t(record.Value) + wish.rawSize;
    if (rawStepped < record.Min || rawStepped > record.Max)
        return QStringLiteral("%1 is at %2 and takes %3 to %4: the step would leave that.")
            .arg(name, ShownText(record.Value, record.Attributes), ShownText(record.Min, record.Attributes),
                 ShownText(record.Max, record.Attributes));
    return {};
}

std::vector<Question> StepTest::QuestionsBefore(const StepWish &wish) const
{
    const ParamRecord &record = table_[wish.param];
    const QString size = ShownText(wish.rawSize, record.Attributes);
    const QString title = QStringLiteral("Make a Step");
    std::vector<Question> questions;
    if (std::abs(ShownNumber(wish.rawSize, record.Attributes)) > timings_.mostPercent)
        questions.push_back(
            {.text = QStringLiteral("A step of %1 is larger than %2 % of full scale. Make "
                                    "one so large?")
                         .arg(size)
                         .arg(timings_.mostPercent),
             .title = title,
             .icon = MsgIcon::Exclamation,
             .explanation = QStringLiteral("A large step runs into the limits of current and "
                                           "speed, and then shows them and not the gains."),
             .choices = {{MsgAnswer::Yes, QStringLiteral("&Large Step")}, {MsgAnswer::Cancel}},
             .safe = MsgAnswer::Cancel});

    const std::int32_t state = table_.Value(Param::DriveState);
    const bool hasName = state >= 0 && state <= LastDriveState;
    const QString stateText = hasName ? DriveStateText(state) : QString::number(state);
    const bool isSpeedKnown = states_.Of(Param::VelFeedback) == ValueState::Live;
    const QString machine =
        table_.DriveIsStopped()
            ? QStringLiteral("The drive is in the state %1: the motor will not answer.").arg(stateText)
        : isSpeedKnown
            ? QStringLiteral("The motor runs at %1.")
                  .arg(ShownText(table_.Value(Param::VelFeedback), table_[Param::VelFeedback].Attributes))
            : QStringLiteral("The drive is in the state %1, and its speed is not known just now.")
                  .arg(stateText);
    const bool isSpeed = wish.loop == TunedLoop::Velocity;
    QStringList lines{QStringLiteral("The drive is in the state %1.").arg(stateText),
                      QStringLiteral("%1 goes from %2 to %3, and back by itself. Esc puts it back at once.")
                          .arg(table_.FullName(wish.param), ShownText(record.Value, record.Attributes),
                               ShownText(record.Value + wish.rawSize, record.Attributes))};
    if (IsRamped(wish.param))
        lines << QStringLiteral(
            "It goes through the ramp, so the answer shows the ramp more than the gains.");
    if (!isSpeed)
        lines << QStringLiteral("Nothing holds the speed while the drive runs by torque.");
    const int holdMs = std::clamp(wish.holdMs, timings_.leastHoldMs, timings_.mostHoldMs);
    questions.push_back(
        {.text = QStringLiteral("%1 %2 will be changed by %3 for %4\u00a0s. Make the step?")
                     .arg(machine, isSpeed ? QStringLiteral("Its speed") : QStringLiteral("Its torque"), size,
                          QString::number(double(holdMs) / MsPerSecond)),
         .title = title,
         .icon = MsgIcon::Exclamation,
         .explanation = lines.join(QStringLiteral("\r\n")),
         .choices = {{MsgAnswer::Yes, QStringLiteral("&Make the Step")}, {MsgAnswer::Cancel}},
         .safe = MsgAnswer::Cancel});
    return questions;
}

} // namespace quorvik
