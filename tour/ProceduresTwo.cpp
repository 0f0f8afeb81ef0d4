// The procedures of the help from start and stop to the winder, tried as they are written.

#include "tour/Journey.h"
#include "tour/Walk.h"
#include "tour/WindowTitles.h"

#include "desktop/Form.h"
#include "desktop/ValueBox.h"
#include "model/ParameterNumbers.h"

#include <memory>

namespace quorvik
{

namespace
{

const QString AnalogInput2 = QStringLiteral("Analog Input 2");
const QString AnalogInput3 = QStringLiteral("Analog Input 3");
const QString AuxPi = QStringLiteral("Aux PI");
const QString DigitalInput = QStringLiteral("Digital Input 2");
const QString FieldCrossover = QStringLiteral("Field Crossover");
const QString InternalLinks = QStringLiteral("Internal Links");
const QString RelayOutput2 = QStringLiteral("Relay Output 2");
const QString RelayOutput3 = QStringLiteral("Relay Output 3");
const QString SetpointSum = QStringLiteral("Setpoint Sum");
const QString ThresholdA = QStringLiteral("Threshold A");
const QString Winder = QStringLiteral("Winder Speed Calculator");

const QString True = QStringLiteral("True");
const QString False = QStringLiteral("False");

/** Waits until drive and box agree that a bit is so; the box alone may still show what was before. */
void AddIs(Tour &tour, const QString &caption, int p, bool isOn)
{
    const QString text = isOn ? True : False;
    tour.Add(
        QStringLiteral("%1: (%2) is %3").arg(caption).arg(p).arg(text),
        [&tour, caption, p, text, start = QStringLiteral("%1 %2 ").arg(p).arg(int(isOn))] {
            const ValueBox *box = Walk::BoxIn(tour, caption, p);
            return box && box->text() == text && tour.Drive().Print(p).value_or(QString()).startsWith(start);
        },
        [] { return QString(); });
}

void AddStartStop(Tour &tour, Walk &walk)
{
    walk.AtDrive(QStringLiteral("The machine goes by hand"),
                 {QStringLiteral("demo off"), Contact(3, false), Analog(1, 0)});
    walk.Stop();
    walk.AtDrive(QStringLiteral("The wires are healthy"), {Contact(2, true)});
    walk.Open(QStringLiteral("mnuBlockAnalogInput(1)"), Title::AnalogInput1);
    walk.Enter(Title::AnalogInput1, Param::AnalogIn1ZeroCalibration, QStringLiteral("0"), 0);
    walk.Enter(Title::AnalogInput1, Param::AnalogIn1FullCalibration, QStringLiteral("2047"), 2047);
    walk.Enter(Title::AnalogInput1, Param::AnalogIn1Gain, QStringLiteral("100"), 10000);
    walk.Close(Title::AnalogInput1);
    walk.Open(QStringLiteral("mnuBlockStartStopLogic"), Title::StartStopLogic);
    AddIs(tour, Title::StartStopLogic, Param::DriveReady, true);
    AddIs(tour, Title::StartStopLogic, Param::Stop, false);
    walk.AtDrive(QStringLiteral("Start is pushed"), {Contact(1, true)});
    AddIs(tour, Title::StartStopLogic, Param::RunStatus, true);
    walk.AtDrive(QStringLiteral("and let go"), {Contact(1, false)});
    AddIs(tour, Title::StartStopLogic, Param::Run, false);
    AddIs(tour, Title::StartStopLogic, Param::RunStatus, true);
    walk.AtDrive(QStringLiteral("The wire of the stop button is off"), {Contact(2, false)});
    AddIs(tour, Title::StartStopLogic, Param::Stop, true);
    walk.SeeState(QStringLiteral("Stop"));
    walk.AtDrive(QStringLiteral("Start is pushed all the same"), {Contact(1, true)});
    AddIs(tour, Title::StartStopLogic, Param::Run, true);
    AddIs(tour, Title::StartStopLogic, Param::RunStatus, false);
    walk.Picture(QStringLiteral("80-three-wires"));

    walk.AtDrive(QStringLiteral("All contacts are open"), {Contact(1, false)});
    walk.Enter(Title::StartStopLogic, Param::LogicSelect, QStringLiteral("2 Wire"), 1);
    walk.Open(QStringLiteral("mnuBlockDigitalInput(2)"), DigitalInput);
    walk.Enter(DigitalInput, Param::DigitalIn2OpenValue, False, 0);
    walk.Enter(DigitalInput, Param::DigitalIn2ClosedValue, True, 1);
    walk.Enter(DigitalInput, Param::DigitalIn2Destination, QStringLiteral("22 Run Enable"), Param::RunEnable);
    AddIs(tour, Title::StartStopLogic, Param::DriveReady, false);
    walk.AtDrive(QStringLiteral("The guard is closed, then the run contact"), {Contact(2, true)});
    AddIs(tour, Title::StartStopLogic, Param::DriveReady, true);
    walk.AtDrive(QStringLiteral("A fifth of the speed"), {Contact(1, true), Analog(1, 20)});
    walk.SeeState(QStringLiteral("Run"));
    walk.AtDrive(QStringLiteral("The guard is opened"), {Contact(2, false)});
    AddIs(tour, Title::StartStopLogic, Param::ArmPilotStatus, false);
    walk.SeeState(QStringLiteral("Stop"));
    walk.AtDrive(QStringLiteral("and closed again"), {Contact(2, true)});
    AddIs(tour, Title::StartStopLogic, Param::DriveReady, true);
    AddIs(tour, Title::StartStopLogic, Param::RunStatus, false);
    walk.Picture(QStringLiteral("80-two-wires"));

    walk.AtDrive(QStringLiteral("Back to three wires"), {Contact(1, false), Analog(1, 0)});
    walk.Enter(DigitalInput, Param::DigitalIn2Destination, QStringLiteral("240 Stop"), Param::Stop);
    walk.Enter(DigitalInput, Param::DigitalIn2OpenValue, True, 1);
    walk.Enter(DigitalInput, Param::DigitalIn2ClosedValue, False, 0);
    walk.Enter(Title::StartStopLogic, Param::LogicSelect, QStringLiteral("3 Wire"), 0);
    walk.Close(DigitalInput);
    walk.Close(Title::StartStopLogic);
}

void AddFieldCrossover(Walk &walk)
{
    walk.AtDrive(QStringLiteral("A motor of 1200 and 2000 RPM"), {QStringLiteral("motor base 60")});
    walk.Open(QStringLiteral("mnuBlockFaultLogic"), Title::FaultLogic);
    walk.Enter(Title::FaultLogic, Param::VFBLossInhibit, True, 1);
    walk.Close(Title::FaultLogic);
    walk.Open(QStringLiteral("mnuBlockVloop"), Title::VelocityLoop);
    walk.Enter(Title::VelocityLoop, Param::FullRPMLevel, QStringLiteral("2000"), 2000);
    walk.Enter(Title::VelocityLoop, Param::FeedbackSelect, QStringLiteral("TFB"), 1);
    walk.Open(QStringLiteral("mnuBlockFloop"), Title::FieldLoop);
    walk.Enter(Title::FieldLoop, Param::FieldIDemand, QStringLiteral("50"), 5000);
    walk.See(Title::FieldLoop, Param::FieldAmps, {3.9, 4.1});
    walk.Open(QStringLiteral("mnuBlockFieldCrossover"), FieldCrossover);
    walk.Enter(FieldCrossover, Param::MinFieldCurrentDemand, QStringLiteral("25"), 2500);
    walk.Enter(FieldCrossover, Param::FieldCrossoverSetpoint, QStringLiteral("95"), 9500);
    walk.Enter(FieldCrossover, Param::FieldCrossoverEnable, True, 1);
    walk.AtDrive(QStringLiteral("Below base speed"), {Analog(1, 50)});
    walk.Start();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {49.5, 50.5});
    walk.See(FieldCrossover, Param::AFB, {82, 88});
    walk.See(FieldCrossover, Param::FieldCrossoverOutput, {0, 0});
    walk.See(Title::FieldLoop, Param::FieldAmps, {3.9, 4.1});
    walk.Open(QStringLiteral("mnuBlockAccelDecel"), Title::AccelDecel);
    walk.Enter(Title::AccelDecel, Param::FwdAccelA, QStringLiteral("10"), 100);
    walk.Enter(Title::AccelDecel, Param::FwdDecelA, QStringLiteral("2"), 20);
    walk.Close(Title::AccelDecel);
    walk.AtDrive(QStringLiteral("Up to the top speed"), {Analog(1, 100)});
    walk.See(Title::VelocityLoop, Param::VelFeedback, {99.5, 100.5});
    walk.See(Title::VelocityLoop, Param::MotorRPM, {1980, 2020});
    walk.See(FieldCrossover, Param::AFB, {94, 96});
    walk.See(FieldCrossover, Param::FieldCrossoverOutput, {19, 24});
    walk.See(Title::FieldLoop, Param::FieldAmps, {2.1, 2.5});
    walk.Picture(QStringLiteral("81-field-crossover"));
    walk.Stop();
    walk.Close(FieldCrossover);
    walk.Close(Title::FieldLoop);
    walk.AtDrive(QStringLiteral("Another motor, whose field may stay as it is"),
                 {QStringLiteral("motor base 100")});
}

/** Before: the velocity loop is open. */
void AddRelays(Walk &walk)
{
    walk.Open(QStringLiteral("mnuBlockAccelDecel"), Title::AccelDecel);
    walk.Enter(Title::AccelDecel, Param::FwdAccelA, QStringLiteral("2"), 20);
    walk.Close(Title::AccelDecel);
    walk.Open(QStringLiteral("mnuBlockRelayOutput(2)"), RelayOutput2);
    walk.Enter(RelayOutput2, Param::RelayOut2Source, QStringLiteral("193 Vel Feedback"), Param::VelFeedback);
    walk.Enter(RelayOutput2, Param::RelayOut2AbsoluteValue, True, 1);
    walk.Enter(RelayOutput2, Param::RelayOut2OnValue, QStringLiteral("50"), 5000);
    walk.Enter(RelayOutput2, Param::RelayOut2OffValue, QStringLiteral("45"), 4500);
    walk.AtDrive(QStringLiteral("Below the band"), {Analog(1, 40)});
    walk.Start();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {39.5, 40.5});
    walk.See(RelayOutput2, Param::RelayOut2Status, {0, 0});
    walk.AtDrive(QStringLiteral("Above it"), {Analog(1, 60)});
    walk.See(RelayOutput2, Param::RelayOut2Status, {1, 1});
    walk.AtDrive(QStringLiteral("Within it: the relay stays"), {Analog(1, 48)});
    walk.See(Title::VelocityLoop, Param::VelFeedback, {47.5, 48.5});
    walk.See(RelayOutput2, Param::RelayOut2Status, {1, 1});
    walk.Picture(QStringLiteral("82-speed-switch"));
    walk.AtDrive(QStringLiteral("Below it"), {Analog(1, 40)});
    walk.See(RelayOutput2, Param::RelayOut2Status, {0, 0});
    walk.Stop();
    walk.Close(RelayOutput2);

    walk.Open(QStringLiteral("mnuBlockInternalLinks"), InternalLinks);
    walk.Enter(InternalLinks, Param::InternalLink1Source, QStringLiteral("112 Current Feedback (Filtered)"),
               Param::CurrentFeedbackFiltered);
    walk.Enter(InternalLinks, Param::InternalLink1Destination, QStringLiteral("177 Threshold A Input"),
               Param::ThresholdAInput);
    walk.Close(InternalLinks);
    walk.Open(QStringLiteral("mnuBlockMiscThreshold(0)"), ThresholdA);
    walk.Enter(ThresholdA, Param::ThresholdAThreshold, QStringLiteral("60"), 6000);
    walk.Enter(ThresholdA, Param::ThresholdAHysteresis, QStringLiteral("5"), 500);
    walk.Open(QStringLiteral("mnuBlockRelayOutput(3)"), RelayOutput3);
    walk.Enter(RelayOutput3, Param::RelayOut3Source, QStringLiteral("182 Threshold A Output"),
               Param::ThresholdAOutput);
    walk.Start();
    walk.See(ThresholdA, Param::ThresholdAOutput, {0, 0});
    walk.AtDrive(QStringLiteral("A heavy load"), {QStringLiteral("load 80")});
    walk.See(ThresholdA, Param::ThresholdAInput, {75, 110});
    walk.See(ThresholdA, Param::ThresholdAOutput, {1, 1});
    walk.See(RelayOutput3, Param::RelayOut3Status, {1, 1});
    walk.Picture(QStringLiteral("82-overload"));
    walk.AtDrive(QStringLiteral("It is taken off"), {QStringLiteral("load 10")});
    walk.See(RelayOutput3, Param::RelayOut3Status, {0, 0});
    walk.Stop();
    walk.Close(RelayOutput3);
    walk.Close(ThresholdA);
}

/** Before: the velocity loop is open. */
void AddWinder(Walk &walk)
{
    walk.AtDrive(QStringLiteral("Line at rest, roll and dancer in the middle"),
                 {Analog(1, 0), Analog(2, 50), Analog(3, 50)});
    walk.Open(QStringLiteral("mnuBlockWSCalc"), Winder);
    walk.Enter(Winder, Param::WinderCore, QStringLiteral("12.5"), 1250);
    walk.Open(QStringLiteral("mnuBlockAnalogInput(1)"), Title::AnalogInput1);
    walk.Enter(Title::AnalogInput1, Param::AnalogIn1Destination, QStringLiteral("430 Winder Line Speed"),
               Param::WinderLineSpeed);
    walk.Close(Title::AnalogInput1);
    walk.Open(QStringLiteral("mnuBlockAnalogInput(2)"), AnalogInput2);
    walk.Enter(AnalogInput2, Param::AnalogIn2Destination, QStringLiteral("432 Winder Diameter"),
               Param::WinderDiameter);
    walk.Close(AnalogInput2);
    walk.Open(QStringLiteral("mnuBlockInternalLinks"), InternalLinks);
    walk.Enter(InternalLinks, Param::InternalLink2Source, QStringLiteral("433 Winder Speed"),
               Param::WinderSpeed);
    walk.Enter(InternalLinks, Param::InternalLink2Destination, QStringLiteral("217 Reference 0"),
               Param::Reference0);
    walk.See(Winder, Param::WinderDiameterRatio, {24.5, 25.5});
    walk.AtDrive(QStringLiteral("The line at 80 %"), {Analog(1, 80)});
    walk.See(Winder, Param::WinderSpeed, {19.5, 20.5});
    walk.Start();
    walk.See(Title::VelocityLoop, Param::VelFeedback, {19.5, 20.5});
    walk.AtDrive(QStringLiteral("A full roll"), {Analog(2, 100)});
    walk.See(Title::VelocityLoop, Param::VelFeedback, {9.5, 10.5});
    walk.AtDrive(QStringLiteral("An empty core"), {Analog(2, 12.5)});
    walk.See(Title::VelocityLoop, Param::VelFeedback, {79, 81});
    walk.See(Winder, Param::WinderSpeed, {79, 81});
    walk.Picture(QStringLiteral("83-winder"));
    walk.AtDrive(QStringLiteral("A full roll again"), {Analog(2, 100)});
    walk.Stop();

    walk.Open(QStringLiteral("mnuBlockAnalogInput(3)"), AnalogInput3);
    walk.Enter(AnalogInput3, Param::AnalogIn3Destination, QStringLiteral("351 Aux PI Feedback"),
               Param::AuxPIFeedback);
    walk.Close(AnalogInput3);
    walk.Open(QStringLiteral("mnuBlockAuxPI"), AuxPi);
    walk.Enter(AuxPi, Param::AuxPISetpoint, QStringLiteral("50"), 5000);
    walk.Enter(AuxPi, Param::AuxPIScale, QStringLiteral("5"), 500);
    walk.Enter(AuxPi, Param::AuxPIPropGain, QStringLiteral("100"), 10000);
    walk.Enter(AuxPi, Param::AuxPIIntegralTime, QStringLiteral("0"), 0);
    walk.Enter(InternalLinks, Param::InternalLink3Source, QStringLiteral("364 Aux PI Output"),
               Param::AuxPIOutput);
    walk.Enter(InternalLinks, Param::InternalLink3Destination, QStringLiteral("234 Setpoint B"),
               Param::SetpointB);
    walk.Close(InternalLinks);
    walk.Open(QStringLiteral("mnuBlockSetpointSum"), SetpointSum);
    walk.AtDrive(QStringLiteral("The dancer is lifted"), {Analog(3, 30)});
    walk.See(AuxPi, Param::AuxPIError, {19.5, 20.5});
    walk.See(AuxPi, Param::AuxPIOutput, {0.9, 1.1});
    walk.Start();
    walk.See(SetpointSum, Param::VelocityDemand, {10.8, 11.2});
    walk.AtDrive(QStringLiteral("and lowered"), {Analog(3, 70)});
    walk.See(SetpointSum, Param::VelocityDemand, {8.8, 9.2});
    walk.Picture(QStringLiteral("83-dancer"));
    walk.Stop();
    walk.Close(SetpointSum);
    walk.Close(AuxPi);
    walk.Close(Winder);
    walk.Close(Title::VelocityLoop);
}

} // namespace

void AddProceduresTwo(Tour &tour)
{
    const auto since = std::make_shared<qint64>(0);
    tour.Do(QStringLiteral("The procedures of the help: from start and stop to the winder"), [&tour, since] {
        *since = tour.SinceStart();
        return QString();
    });
    Walk walk(tour);
    AddStartStop(tour, walk);
    AddFieldCrossover(walk);
    AddRelays(walk);
    AddWinder(walk);
    tour.Do(QStringLiteral("The next four procedures are done"), [&tour, since] {
        tour.Note(QStringLiteral("four more procedures of the help walked in: %1 s")
                      .arg(double(tour.SinceStart() - *since) / 1000));
        return QString();
    });
}

} // namespace quorvik
