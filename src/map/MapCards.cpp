#include "map/MapCards.h"

#include "model/ParameterNumbers.h"

#include <array>

namespace quorvik
{

namespace
{

using namespace Param;
using enum CardRowKind;

constexpr CardRow AnalogInputs[] = {{"1", Linked, -1, AnalogIn1Destination},
                                    {"2", Linked, -1, AnalogIn2Destination},
                                    {"3", Linked, -1, AnalogIn3Destination},
                                    {"4", Linked, -1, AnalogIn4Destination},
                                    {"5", Linked, -1, AnalogIn5Destination}};
constexpr CardRow DigitalInputs[] = {{"1", Linked, DigitalIn1Status, DigitalIn1Destination},
                                     {"2", Linked, DigitalIn2Status, DigitalIn2Destination},
                                     {"3", Linked, DigitalIn3Status, DigitalIn3Destination},
                                     {"4", Linked, DigitalIn4Status, DigitalIn4Destination},
                                     {"5", Linked, DigitalIn5Status, DigitalIn5Destination},
                                     {"6", Linked, DigitalIn6Status, DigitalIn6Destination},
                                     {"7", Linked, DigitalIn7Status, DigitalIn7Destination}};
constexpr CardRow FrequencyInput[] = {{"", Linked, FrequencyInStatus, FrequencyInDestination}};

constexpr CardRow Setpoints[] = {{"Reference 0", Value, Reference0},
                                 {"Jog Reference", Value, JogReference},
                                 {"Reference Invert", Value, ReferenceInvert},
                                 {"Ramp Input", Value, RampInput}};
constexpr CardRow AccelDecel[] = {
    {"Ramp Output", Value, RampOutput}, {"Ramping", Value, RampingStatus}, {"Bypass", Value, RampBypass}};
constexpr CardRow SetpointSum[] = {{"Velocity Demand", Value, VelocityDemand},
                                   {"Setpoint B", Value, SetpointB},
                                   {"Setpoint C", Value, SetpointC}};
constexpr CardRow VelocityLoop[] = {{"Final Vel Demand", Value, FinalVelDemand},
                                    {"Vel Feedback", Value, VelFeedback},
                                    {"Vel Error", Value, VelError},
                                    {"Output", Value, VelLoopOutput}};
constexpr CardRow CurrentLoop[] = {{"Final I Demand", Value, FinalIDemand},
                                   {"I Feedback", Value, CurrentFeedback},
                                   {"Positive I Limit", Value, PositiveILimit},
                                   {"Cond. Angle", Value, ConductionAngle}};

constexpr CardRow Mop[] = {{"MOP Output", Value, MOPOutput}};
constexpr CardRow AuxPi[] = {{"Aux PI Output", Value, AuxPIOutput}, {"Error", Value, AuxPIError}};
constexpr CardRow Winder[] = {{"Winder Speed", Value, WinderSpeed}, {"Diameter", Value, WinderDiameter}};
constexpr CardRow Feedback[] = {
    {"AFB armature", Value, AFB}, {"TFB tacho", Value, TFB}, {"EFB encoder", Value, EFB}};

constexpr CardRow InternalLinks[] = {{"In use", Links, InternalLink1Source}};
constexpr CardRow StartStop[] = {{"Drive Ready", Value, DriveReady},
                                 {"Run Status", Value, RunStatus},
                                 {"Jog Status", Value, JogStatus},
                                 {"Arm Pilot", Value, ArmPilotStatus}};
constexpr CardRow ZeroSpeed[] = {{"Loop Enable", Value, LoopEnable},
                                 {"At Zero Speed", Value, AtZeroSpeed},
                                 {"At Standstill", Value, AtStandstill}};
constexpr CardRow FieldCrossover[] = {{"Output", Value, FieldCrossoverOutput},
                                      {"Enabled", Value, FieldCrossoverEnable}};
constexpr CardRow FieldLoop[] = {{"Field I Demand", Value, FieldIDemand},
                                 {"Field I Feedback", Value, FieldIFeedback},
                                 {"Cond. Angle", Value, FieldCondAngle}};

constexpr CardRow TimerRows[] = {{"Timer", Value, Timer}, {"Output", Value, TimerOutput}};
constexpr CardRow FaultLog[] = {{"Last", Faults, FaultLog1Faults}, {"Fault Reset", Value, FaultReset}};
constexpr CardRow FaultLogic[] = {{"Present", Faults, PresentFault}, {"Latched", Faults, LatchedFault}};
constexpr CardRow Thresholds[] = {{"A Output", Value, ThresholdAOutput},
                                  {"B Output", Value, ThresholdBOutput}};
constexpr CardRow MinMax[] = {{"Max", Value, MinMaxMax}, {"Min", Value, MinMaxMin}};

constexpr CardRow Auxillary[] = {{"Aux 1", Value, Aux1}};
constexpr CardRow System[] = {{"Operating Hours", Value, OperatingHours}};
constexpr CardRow Diagnostics[] = {{"Line Voltage", Value, LineVoltage}};
constexpr CardRow DateTime[] = {{"Clock", Clock, ClockMinutes}};
constexpr CardRow Custom[] = {{"Rows of your choice", Caption}};

constexpr CardRow Motor[] = {{"Speed", Value, MotorRPM},
                             {"Armature", Value, ArmatureAmps},
                             {"Voltage", Value, ArmatureVolts},
                             {"Field", Value, FieldAmps}};
constexpr CardRow AnalogOutputs[] = {{"1", Linked, -1, AnalogOut1Source},
                                     {"2", Linked, -1, AnalogOut2Source}};
constexpr CardRow RelayOutputs[] = {{"1", OnOff, RelayOut1Status, RelayOut1Source},
                                    {"2", OnOff, RelayOut2Status, RelayOut2Source},
                                    {"3", OnOff, RelayOut3Status, RelayOut3Source}};
constexpr CardRow FreqDigOutput[] = {{"", Linked, -1, FreqDigitalOutSource}};

} // namespace

std::span<const MapCard> MapCards()
{
    using enum CardGroup;
    static constexpr auto cards = std::to_array<MapCard>({
        {"Analog Inputs", "FormAnalogInputs", Terminals, 0, 0, AnalogInputs},
        {"Digital Inputs", "FormDigitalInputs", Terminals, 0, 1, DigitalInputs},
        {"Frequency Input", "FormFreqInput", Terminals, 0, 2, FrequencyInput},

        {"Setpoints", "FormSetpoints", References, 1, 0, Setpoints},
        {"Accel/Decel", "FormAccelDecel", References, 2, 0, AccelDecel},
        {"Setpoint Sum", "FormSetpointSum", References, 3, 0, SetpointSum},
        {"Velocity Loop", "FormVelocityLoop", Loops, 4, 0, VelocityLoop},
        {"Current Loop", "FormCurrentLoop", Loops, 5, 0, CurrentLoop},

        {"MOP", "FormMOP", References, 1, 1, Mop},
        {"Aux PI Loop", "FormAuxPI", References, 2, 1, AuxPi},
        {"Winder Speed", "FormWinderSpeedCalculator", References, 3, 1, Winder},
        {"Calibration, Feedback", "FormCalibration", Loops, 4, 1, Feedback, true},

        {"Internal Links", "FormInternalLinks", Service, 1, 2, InternalLinks},
        {"Start/Stop Logic", "FormStartStopLogic", Logic, 2, 2, StartStop},
        {"Zero Speed Logic", "FormZeroSpeedLogic", Logic, 3, 2, ZeroSpeed},
        {"Field Crossover", "FormFieldCrossover", Loops, 4, 2, FieldCrossover},
        {"Field Loop", "FormFieldLoop", Loops, 5, 2, FieldLoop},

        {"Timer", "FormTimer", Logic, 1, 3, TimerRows},
        {"Fault Log", "FormFaultLog", Logic, 2, 3, FaultLog},
        {"Fault Logic", "FormFaultLogic", Logic, 3, 3, FaultLogic},
        {"Thresholds", "FormThresholds", Logic, 4, 3, Thresholds},
        {"Min/Max", "FormMinMax", Logic, 5, 3, MinMax},

        {"Auxillary", "FormAux", Service, 1, 4, Auxillary},
        {"System", "FormSystem", Service, 2, 4, System},
        {"Diagnostics", "FormDiagnostics", Service, 3, 4, Diagnostics},
        {"Date/Time", "FormDateTime", Service, 4, 4, DateTime},
        {"Custom", "FormCustom", Service, 5, 4, Custom},

        {"Motor", "", Machine, 6, 0, Motor, true},
        {"Analog Outputs", "FormAnalogOutputs", Terminals, 6, 1, AnalogOutputs},
        {"Relay Outputs", "FormRelayOutputs", Terminals, 6, 2, RelayOutputs},
        {"Freq/Digital Output", "FormFreqDigOutput", Terminals, 6, 3, FreqDigOutput},
    });
    return cards;
}

std::span<const MachineWire> MachineWires()
{
    static constexpr auto wires = std::to_array<MachineWire>({
        {"Current Loop", "Motor", ConductionAngle, "the armature's current"},
        {"Field Loop", "Motor", FieldCondAngle, "the field's current"},
        {"Motor", "Calibration, Feedback", ArmatureVolts, "armature voltage, tachometer, encoder"},
        {"Calibration, Feedback", "Velocity Loop", AFB, "(194) AFB, (195) TFB, (196) EFB"},
        {"Start/Stop Logic", "Zero Speed Logic", RunStatus, "Ramp Enable, Quick Stop"},
        {"Fault Logic", "Fault Log", LatchedFault, "what tripped the drive"},
    });
    return wires;
}

} // namespace quorvik
