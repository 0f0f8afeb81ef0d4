#include "Agreement.h"

#include "drive/DriveTable.h"
#include "drive/MotorModel.h"
#include "emulator/DriveEmulator.h"
#include "emulator/TimerBlock.h"
#include "model/Conversions.h"
#include "model/TextTables.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"

#include <gmock/gmock.h>
#include <random>

namespace quorvik::testing
{

namespace
{

using namespace Param;

using Values = std::vector<std::pair<int, std::int32_t>>;

struct Plant {
    const char *name = "";
    Values values = {};
    double load = 0.1; ///< on the shaft
};

/** What every plant has: each input drives a parameter that nothing else writes, each output shows one. */
const Values Wiring = {
    {AnalogIn1Destination + 1, WinderLineSpeed},
    {AnalogIn1Destination + 2, AuxPISetpoint},
    {AnalogIn1Destination + 3, TorqueReference},
    {AnalogIn1Destination + 4, ThresholdAInput},
    {FrequencyInDestination, ThresholdBInput},
    {DigitalIn1Destination + 6, Aux1},
    {DigitalIn1ClosedValue + 6, 1234},
    {AnalogOut1Source + 1, CurrentFeedback},
    {MinMaxSource, VelFeedback},
    {InternalLink1Source, VelFeedback},
    {InternalLink1Source + 1, AuxPIFeedback},
    {WinderDiameter, 4000},
    {ThresholdALessThanOrEqual, 7},
    {ThresholdALessThanOrEqual + 6, 7},
    {TimerLessThanOrEqual, 7},
    {SetpointB, 700},
    {SetpointC, -300},
    {Reference1, -2500},
    {Reference2, 4000},
    {Reference3, 1500},
    {JogReference, 900},
};

const Plant Plants[] = {
    {"factory state", {}},
    {"quick stop", {{StopMode, 1}, {TimerThreshold, 5}, {AuxPITrim, 100}, {AuxPIIntegralClamp, 50}}},
    {"coast stop with two wires", {{StopMode, 2}, {LogicSelect, 1}, {RampBypass, 1}, {AuxPIPolarity, 0}}},
    {"tachometer, inverted, offset", {{FeedbackSelect, 1}, {InvertFeedback, 1}, {VFBOffset, 250}}},
    {"encoder, standstill logic", {{FeedbackSelect, 2}, {StandstillLogic, 1}, {ZeroSpeedSet, 100}}},
    {"compensated drop and field offsets", {{IRComp, 600}, {FieldIFBOffset, 200}, {FieldVFBOffset, -150}}},
    {"limits",
     {{ForwardMaxSpeed, 3000},
      {ReverseMaxSpeed, -500},
      {PositiveILimit, 1500},
      {NegativeILimit, -800},
      {AuxIDemand, 300},
      {AuxPIScale, 5000}}},
    {"torque, economy", {{DriveModeLSB, 1}, {FieldEconomyEnable, 1}, {MOPReset, 1}, {MOPResetValue, 777}}},
    {"no drive mode", {{DriveModeMSB, 1}, {FieldEnable, 0}, {TimerReset, 1}}},
    {"open loops",
     {{OpenLoopArmSelect, 1},
      {OpenLoopArmSetpoint, 300},
      {OpenLoopFieldSelect, 1},
      {OpenLoopFieldSetpoint, 900}}},
    {"crossover", {{FieldCrossoverEnable, 1}, {FieldCrossoverSetpoint, 2000}, {RampSelect, 1}}},
    {"inverted signs",
     {{SetpointSumInvertA, 1},
      {SetpointSumInvertB, 1},
      {SetpointSumInvertC, 1},
      {ReferenceInvert, 1},
      {FrequencyInSign, 1},
      {FreqDigitalOutMode, 1},
      {AnalogOut1AbsoluteValue, 1},
      {AnalogOut1AbsoluteValue + 1, 1}}},
    {"foldback", {{ArmIFoldbackTime, 1}, {Reference0, 9000}}, 1.6},
};

/** Has the table that drive, emulator and drawings share. */
class AgreementTest : public ::testing::Test
{
protected:
    AgreementTest()
    {
        EXPECT_EQ(LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), table), QString());
        table.ResetToDefaults();
    }
    void Put(const Values &values)
    {
        for (const auto &[p, raw] : values)
            table.SetValue(p, raw, ChangeCause::Entered);
    }
    /** Runs lives of all plants, and of some in which anything is set that limits allow. */
    void ForEachPlant(const std::function<void()> &live)
    {
        std::mt19937 dice(15);
        constexpr int AnyOthers = 12;
        for (int i = 0; i < int(std::size(Plants)) + AnyOthers; ++i) {
            table.ResetToDefaults();
            plant = i < int(std::size(Plants)) ? Plants[i] : Plant{"any other", {}};
            if (plant.values.empty() && i > 0)
                PutAnything(dice);
            Put(Wiring);
            Put(plant.values);
            for (int member = 0; member < 5; ++member)
                Put({{AnalogIn1Polarity + member, i % 2}, {AnalogIn1Invert + member, i / 2 % 2}});
            live();
        }
    }

    ParameterTable table;
    Plant plant;

private:
    void PutAnything(std::mt19937 &dice)
    {
        for (int p = 1; p <= table.LastParam; ++p) {
            const bool isSelector = TypeOf(TypeCode(table[p].Attributes)).form == ValueType::Form::Parameter;
            if (isSelector || table.AttrBit(Attr::ReadOnly, p) || dice() % 2 == 0)
                continue;
            const std::int64_t span = std::int64_t(table[p].Max) - table[p].Min + 1;
            Put({{p, std::int32_t(table[p].Min + std::int64_t(dice() % std::uint64_t(span)))}});
        }
    }
};

TEST_F(AgreementTest, TheSimulatedDriveShowsWhatItsDrawingsCompute)
{
    drive::DriveTable driven(table);
    drive::MotorModel machine(driven, 1);
    Agreement agreement(table);
    const auto isAny = [](int) { return true; };
    const auto run = [&](double seconds) {
        for (double left = seconds; left > 1e-9; left -= drive::MotorModel::TickSeconds) {
            machine.Tick(drive::MotorModel::TickSeconds);
            agreement.Compare(plant.name, isAny, [](int) { return false; });
        }
    };
    const auto close = [&](int member, bool closed, double seconds) {
        machine.Inputs().digital[std::size_t(member - 1)] = closed;
        run(seconds);
    };
    const auto stop = [&] {
        close(1, false, 0);
        close(2, false, 0.5);
        for (double left = 20; left > 0 && !table.DriveIsStopped(); left -= 0.05)
            machine.Tick(drive::MotorModel::TickSeconds);
        close(2, true, 0.1);
    };
    ForEachPlant([&] {
        machine.PowerOn();
        machine.ClearFault();
        machine.SetLoad(plant.load);
        machine.Inputs() = {.analog = {1500, -700, 2500, 900, 1200}, .digital = {}, .frequency = 30000};
        stop();
        close(1, true, 1);
        for (const int member : {4, 5, 6, 5, 7, 6, 4})
            close(member, !machine.Inputs().digital[std::size_t(member - 1)], 0.2);
        machine.Inputs().analog = {-1200, 2600, 700, -800, 4000};
        run(0.5);
        stop();
        close(3, true, 0.4);
        close(3, false, 0.8);
        close(1, true, 0.5);
        machine.Trip(64);
        run(0.1);
        machine.ClearFault();
        stop();
        close(1, true, 0.3);
        Put({{RunEnable, 0}});
        run(0.2);
    });
    EXPECT_THAT(agreement.Missing(isAny), ::testing::IsEmpty());
}

/** Where drawing and emulator have to differ, and when. */
const struct {
    int param;
    bool (*when)(const ParameterTable &table);
} Forced[] = {
    // The emulator passes a torque reference in every state of the drive.
    {CurrentDemand,
     [](const ParameterTable &table) {
         return table.Value(DriveModeLSB) == 1 && table.Value(DriveState) != 1 &&
                table.Value(DriveState) != 3;
     }},
    // The emulator knows no foldback.
    {FinalIDemand, [](const ParameterTable &table) { return table.Value(ArmIFoldbackStatus) != 0; }},
    // The emulator stores the output only when the threshold is crossed.
    {ThresholdAOutput, [](const ParameterTable &) { return true; }},
    {ThresholdBOutput, [](const ParameterTable &) { return true; }},
};

TEST_F(AgreementTest, TheEmulatorShowsWhatTheDrawingsCompute)
{
    DriveEmulator emulator(table);
    TimerBlock timer(table, &emulator);
    Agreement agreement(table);
    std::set<int> computed;
    QObject::connect(&table.Signals(), &TableSignals::Computed, [&](int p) { computed.insert(p); });
    const auto isComputed = [&](int p) { return computed.contains(p); };
    std::vector<bool> differed(std::size(Forced));
    const auto excused = [&](int p) {
        for (std::size_t i = 0; i < std::size(Forced); ++i)
            if (Forced[i].param == p && Forced[i].when(table))
                return bool(differed[i] = true);
        return false;
    };
    ForEachPlant([&] {
        for (int state = 0; state <= 8; ++state) {
            Put({{DriveState, state},
                 {FrequencyInStatus, 7000 * state},
                 {Timer, 40 * state},
                 {ArmIFoldbackStatus, state / 2 % 2},
                 {VelLoopOutput, 9000 + 500 * state}});
            for (int member = 0; member < 7; ++member)
                Put({{DigitalIn1Status + member, (state >> member % 4) & 1}});
            for (int member = 0; member < 5; ++member)
                Put({{AnalogIn1Status + member, -2000 + 700 * state + 100 * member}});
            try {
                // What a block computes late reaches an earlier one at the next pass, and the current loop
                // follows the velocity loop in the one after it.
                for (int pass = 0; pass < 3; ++pass) {
                    emulator.EmulateAll();
                    timer.UpdateTimerEmulator();
                }
            } catch (const RuntimeFailure &) {
                continue; // a calibration that no line passes through; the rest of the pass is not computed
            }
            agreement.Compare(plant.name, isComputed, excused);
        }
    });
    EXPECT_THAT(agreement.Missing(isComputed), ::testing::IsEmpty());
    EXPECT_THAT(differed, ::testing::Each(true)) << "what no longer differs is not to be excused";
}

} // namespace

} // namespace quorvik::testing
