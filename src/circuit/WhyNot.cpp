#include "circuit/WhyNot.h"

#include "model/Conversions.h"
#include "model/Faults.h"
#include "model/ParameterTable.h"

#include <algorithm>
#include <cmath>

namespace quorvik
{

using namespace Param;

namespace
{

constexpr double LeastTurning = 0.5; ///< per cent of the speed
constexpr double LeastCurrent = 5;   ///< per cent that a drive at work lets flow when it is asked for
constexpr double FoldedBack = 100;   ///< per cent, the nameplate of the motor
constexpr std::int32_t StateRun = 1;
constexpr std::int32_t StateJog = 3;

class Explanation
{
public:
    Explanation(const Circuit &circuit, const ParameterTable &table, const ConditionsGiven &given)
        : table_(table)
        , given_(given)
        , conditions_(circuit, table, given)
    {
    }

    WhyNot Explain()
    {
        AddFaults();
        conditions_.Walk(ArmPilotStatus, Wanted::True);
        AddCommands();
        conditions_.Walk(ConductionAngle, Wanted::NotZero);
        AddField();
        if (given_.isOnLine)
            AddOutcome();
        return Concluded();
    }

private:
    bool IsOn(int p) const { return table_.Value(p) != 0; }
    double Number(int p) const { return ShownNumber(table_.Value(p), table_[p].Attributes); }
    bool IsStarted() const { return IsOn(ArmPilotStatus) && (IsOn(RunStatus) || IsOn(JogStatus)); }
    bool IsTorqueMode() const { return IsOn(DriveModeLSB); }

    void AddFaults()
    {
        for (const int p : {PresentFault, LatchedFault}) {
            QString remedy;
            for (const Fault &fault : FaultsOf(table_.Value(p)))
                remedy += (remedy.isEmpty() ? QString() : QStringLiteral(" ")) + fault.check;
            if (p == LatchedFault)
                remedy = IsOn(PresentFault)
                             ? QString()
                             : QStringLiteral("Reset it once its cause is gone, by the Fault Log or by %1. ")
                                       .arg(table_.FullName(FaultReset)) +
                                   remedy;
            conditions_.Add(conditions_.Of(p, QStringLiteral("must be None"), !IsOn(p), remedy));
        }
    }

    void AddCommands()
    {
        if (IsOn(Run) && IsOn(Jog) && !IsOn(RunStatus)) {
            const QString name = table_.FullName(Run);
            conditions_.Add(conditions_.Of(
                Jog, QStringLiteral("must not be given together with Run"), false,
                QStringLiteral("The drive is asked to run and to jog at once: take it away, then give %1 "
                               "anew.")
                    .arg(name)));
        }
        if (!given_.isOnLine)
            return;
        const std::int32_t state = table_.Value(DriveState);
        conditions_.Add(conditions_.Of(DriveState, QStringLiteral("must be Run or Jog"),
                                       state == StateRun || state == StateJog,
                                       QStringLiteral("Wait until it has stopped, then start it again.")));
    }

    /** Started, with current asked for, and without the speed that is asked for. */
    bool IsStalled() const
    {
        const double turned = std::abs(Number(VelFeedback));
        return IsStarted() && std::abs(Number(FinalIDemand)) >= LeastCurrent &&
               (IsTorqueMode() ? turned < LeastTurning : turned < std::abs(Number(FinalVelDemand)) / 2);
    }

    void AddField()
    {
        // A motor with permanent magnets has no field to turn on, and is set up so.
        const bool isWithoutField = !IsOn(FieldEnable) && IsOn(FieldLossInhibit);
        if (isWithoutField && !(given_.isOnLine && IsStalled()))
            return;
        conditions_.Walk(FieldCondAngle, Wanted::NotZero);
        if (given_.isOnLine && !isWithoutField)
            conditions_.Add(conditions_.Of(
                FieldIFeedback,
                QStringLiteral("must reach %1, %2")
                    .arg(table_.FullName(FieldLossLevel), conditions_.TextOf(FieldLossLevel)),
                Number(FieldIFeedback) >= Number(FieldLossLevel) || IsOn(FieldLossInhibit),
                QStringLiteral("No field current flows: check field wiring, fuses and the field's supply.")));
    }

    /** A tachometer or an encoder, against what the armature itself shows. */
    void AddFeedback()
    {
        if (!IsOn(FeedbackSelect))
            return;
        const double own = Number(AFB);
        const double measured = Number(VelFeedback);
        const double level = Number(VFBLossLevel);
        const bool isTurning = std::abs(own) > level;
        Judge(InvertFeedback, QStringLiteral("must give the feedback the sign of the armature's own"),
              !isTurning || std::abs(measured) < level || own * measured > 0,
              QStringLiteral("The motor turns one way and the feedback says the other: turn this over, or "
                             "swap the wires of the feedback."));
        Judge(FeedbackSelect, QStringLiteral("must choose a feedback that is there"),
              std::abs(own) - std::abs(measured) <= level,
              QStringLiteral("The armature's own feedback, %1, is much larger: check coupling, cable and "
                             "scaling of what is chosen.")
                  .arg(conditions_.TextOf(AFB)));
    }

    /** What comes of it at the motor. */
    void AddOutcome()
    {
        const double asked = Number(FinalIDemand);
        const bool isAsked = IsStarted() && std::abs(asked) >= LeastCurrent;
        const int limit = asked < 0 ? NegativeILimit : PositiveILimit;
        const bool isFlowing = std::abs(Number(CurrentFeedback)) >= LeastCurrent / 2;
        Judge(CurrentFeedback, QStringLiteral("must follow the current's demand"), !isAsked || isFlowing,
              QStringLiteral("Current is asked for and none flows: check line fuses, contactor and the wires "
                             "of the armature."));
        AddFeedback();
        if (!isAsked || !isFlowing)
            return;
        const bool isStalled = IsStalled();
        if (IsOn(ArmIFoldbackStatus))
            Judge(ArmIFoldbackStatus, QStringLiteral("must be False for more than the motor's current"),
                  !isStalled || std::abs(asked) < FoldedBack,
                  QStringLiteral("After an overload the drive gives the motor's nominal current only: take "
                                 "load away and wait."));
        Judge(limit, QStringLiteral("must leave enough current for the load"),
              !isStalled || std::abs(asked) < std::abs(Number(limit)) - LeastTurning,
              QStringLiteral("The current stands at it, and the motor does not get to its speed: free what "
                             "holds the motor, check that its field is on, or open the limit."));
        Judge(VelFeedback, QStringLiteral("must follow the demand"), !isStalled || IsTorqueMode(),
              QStringLiteral("Current flows and no speed is measured: check what holds the motor, and the "
                             "feedback that %1 chooses.")
                  .arg(table_.FullName(FeedbackSelect)));
    }

    /** Also of what the walk has met before. */
    void Judge(int p, const QString &expected, bool holds, const QString &remedy)
    {
        conditions_.Add(conditions_.Of(p, expected, holds, remedy));
    }

    /** It turns as asked, and so that it is seen, whatever of the conditions says otherwise. */
    bool IsWellUnderWay() const
    {
        const double turned = std::abs(Number(VelFeedback));
        return !IsTorqueMode() && turned >= SeenTurning && turned >= std::abs(Number(FinalVelDemand)) / 2;
    }

    WhyNot Concluded() const
    {
        WhyNot result{.conditions = conditions_.All()};
        const auto at = std::ranges::find(result.conditions, Verdict::Blocks, &Condition::verdict);
        const bool isBlocked = at != result.conditions.end();
        const double asked = Number(FinalVelDemand);
        const double turned = Number(VelFeedback);
        const bool isTurning = given_.isOnLine && IsStarted() && std::abs(turned) >= LeastTurning &&
                               (IsTorqueMode() || asked * turned > 0);
        result.runs =
            isTurning && (!isBlocked || IsWellUnderWay()) && !(IsOn(Jog) && IsOn(Run) && !IsOn(RunStatus));
        if (isBlocked && !result.runs)
            result.first = int(at - result.conditions.begin());
        result.headline = Headline(result);
        result.reads = Reads(result);
        return result;
    }

    /** What the window shows, and what decides how it goes on. */
    std::vector<int> Reads(const WhyNot &result) const
    {
        std::vector<int> reads = {RunStatus,      JogStatus,    Run,         Jog,          ArmPilotStatus,
                                  FinalVelDemand, FinalIDemand, VelFeedback, RampInput,    RampOutput,
                                  FieldLossLevel, FieldEnable,  RampSelect,  ZeroSpeedSet, FieldLossInhibit,
                                  DriveModeLSB,   DriveModeMSB, LogicSelect, RegenMode,    CurrentFeedback};
        for (const Condition &condition : result.conditions) {
            reads.push_back(condition.param);
            const ValueSource source = conditions_.SourceOf(condition.param);
            reads.insert(reads.end(), source.reads.begin(), source.reads.end());
        }
        std::ranges::sort(reads);
        reads.erase(std::unique(reads.begin(), reads.end()), reads.end());
        return reads;
    }

    QString Headline(const WhyNot &result) const
    {
        const auto unknown = std::count_if(
            result.conditions.begin(),
            result.first < 0 ? result.conditions.end() : result.conditions.begin() + result.first,
            [](const Condition &condition) { return condition.verdict == Verdict::Unknown; });
        QString text;
        if (result.first >= 0) {
            const Condition &first = result.conditions[std::size_t(result.first)];
            text = QStringLiteral("%1 is %2").arg(table_.FullName(first.param), first.valueText);
            text += (first.source.isEmpty() ? QString() : QStringLiteral(": ") + first.source) + u'.';
            if (!first.remedy.isEmpty())
                text += u' ' + first.remedy;
            if (unknown > 0)
                text += QStringLiteral(" (Values before it that are not known yet: %1.)").arg(unknown);
        } else if (result.runs && IsTorqueMode()) {
            text = QStringLiteral("The drive runs: %1 current demanded, %2 turned.")
                       .arg(conditions_.TextOf(FinalIDemand), conditions_.TextOf(VelFeedback));
        } else if (result.runs) {
            text = QStringLiteral("The drive runs: %1 demanded, %2 turned.")
                       .arg(conditions_.TextOf(FinalVelDemand), conditions_.TextOf(VelFeedback));
        } else if (unknown > 0) {
            text = QStringLiteral("Nothing that is known keeps the drive from running; values not known yet: "
                                  "%1.")
                       .arg(unknown);
        } else if (!given_.isOnLine) {
            text = QStringLiteral("Nothing in this set keeps a drive from running. What a motor makes of it "
                                  "shows on line only.");
        } else {
            text = QStringLiteral("All conditions are met, and the motor does not turn: check the wires of "
                                  "the armature, the coupling, and what holds the load.");
        }
        return text;
    }

    const ParameterTable &table_;
    const ConditionsGiven &given_;
    Conditions conditions_;
};

} // namespace

WhyNot ExplainStandstill(const Circuit &circuit, const ParameterTable &table, const ConditionsGiven &given)
{
    return Explanation(circuit, table, given).Explain();
}

QString WordOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Met:
        return QStringLiteral("met");
    case Verdict::Blocks:
        return QStringLiteral("blocks");
    case Verdict::Waits:
        return QStringLiteral("follows");
    case Verdict::Unknown:
        break;
    }
    return QStringLiteral("not known");
}

QString WhyNot::AsText() const
{
    QString text = headline + u'\n';
    for (const Condition &condition : conditions)
        text += QStringLiteral("\n%1\t%2\t%3\t%4\t%5")
                    .arg(WordOf(condition.verdict), QStringLiteral("(%1)").arg(condition.param),
                         condition.valueText, condition.expected, condition.source);
    return text + u'\n';
}

} // namespace quorvik
