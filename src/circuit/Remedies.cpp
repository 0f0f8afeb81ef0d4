#include "circuit/Remedies.h"

#include "model/ParameterNumbers.h"

#include <array>

namespace quorvik
{

namespace
{

using namespace Param;

/** A remedy as it is written down here: %1 and so on stand for its parameters, by number and name. */
struct Remedy {
    int param;
    std::array<int, 4> named;
    const char *text;
};

constexpr Remedy Remedies[] = {
    {PresentFault, {}, "The cause is still there: see Faults in the help for what to check."},
    {LatchedFault, {FaultReset}, "Remove the cause, then reset it by the Fault Log or by %1."},
    {RunEnable, {}, "Close the enable contact of the plant, or set it to True."},
    {Stop, {}, "With three wires a stop holds as long as it is True: release it."},
    {Run, {}, "Give the run command: nothing else keeps the drive from starting."},
    {RunStatus,
     {Run},
     "A start counts at the moment in which %1 becomes True: take it away, and give it again."},
    {JogStatus,
     {Jog},
     "A start counts at the moment in which %1 becomes True: take it away, and give it again."},
    {ArmPilotStatus, {}, "The drive keeps the armature off: look at its state and at the line contactor."},
    {DriveState, {Run}, "Wait until it has stopped, then give %1 again."},
    {Reference0, {RefSelectMSB, RefSelectLSB}, "Raise it, or select another reference by %1 and %2."},
    {Reference1, {RefSelectMSB, RefSelectLSB}, "Raise it, or select another reference by %1 and %2."},
    {Reference2, {RefSelectMSB, RefSelectLSB}, "Raise it, or select another reference by %1 and %2."},
    {Reference3, {RefSelectMSB, RefSelectLSB}, "Raise it, or select another reference by %1 and %2."},
    {JogReference, {}, "Set the speed for jogging."},
    {RampOutput, {}, "The ramp gives nothing on: see its state and its times."},
    {VelocityDemand, {}, "What is added here cancels out: change one of the inputs."},
    {FinalVelDemand, {ForwardMaxSpeed, ReverseMaxSpeed}, "Its limits hold it at zero: %1, %2."},
    {StandstillLogic,
     {ZeroSpeedSet},
     "The drive stands, the demand is not above %1, and so the loops are blocked: ask for more speed, or set "
     "this to False."},
    {VelLoopOutput, {PropGainA, PropGainB}, "The velocity loop gives nothing: see its gains, %1 or %2."},
    {DriveModeMSB, {DriveModeLSB}, "There is no such mode: with %1 at 0 it must be 0 for velocity."},
    {DriveModeLSB,
     {TorqueReference},
     "The drive is in torque mode, follows %1, and leaves the speed's demand aside: set this to 0 for "
     "velocity."},
    {TorqueReference, {DriveModeLSB}, "Raise it; for a speed instead of a torque set %1 to 0."},
    {FinalIDemand, {PositiveILimit, NegativeILimit}, "The current limits leave nothing of it: %1, %2."},
    {OpenLoopArmSelect,
     {OpenLoopArmSetpoint},
     "The armature follows %1 and not the current loop: set this to False."},
    {OpenLoopArmSetpoint, {OpenLoopArmSelect}, "Raise it, or set %1 to False for the closed loop."},
    {ConductionAngle, {}, "The bridges are not fired: look at the drive's state and at the line voltage."},
    {FieldEnable, {}, "Set it to True: without a field the motor has no torque."},
    {FieldIDemand, {}, "Set it to the field current that the motor's nameplate asks for."},
    {OpenLoopFieldSelect,
     {OpenLoopFieldSetpoint},
     "The field follows %1 and not its demand: set this to False."},
    {OpenLoopFieldSetpoint, {OpenLoopFieldSelect}, "Raise it, or set %1 to False for the closed loop."},
    {FinalFieldIDemand, {FieldCrossoverOutput}, "The field crossover takes all of it away: see %1."},
    {FieldCondAngle, {}, "The field bridge is not fired: check its line side and its fuses."},
};

} // namespace

QString RemedyFor(int p)
{
    for (const Remedy &remedy : Remedies) {
        if (remedy.param != p)
            continue;
        QString filled = QString::fromLatin1(remedy.text);
        for (std::size_t i = 0; i < remedy.named.size(); ++i)
            if (const int named = remedy.named[i])
                filled.replace(u'%' + QString::number(i + 1),
                               QStringLiteral("(%1) %2").arg(named).arg(QLatin1String(FactoryNames[named])));
        return filled;
    }
    return {};
}

} // namespace quorvik
