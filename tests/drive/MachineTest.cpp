#include "DriveRig.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace quorvik::drive
{

namespace
{

using namespace Param;

constexpr int AnalogFull = 2047;

/** The machine without a line, its stop input closed as a healthy plant wires it. */
class Machine : public ::testing::Test
{
protected:
    Machine() { Close(2, true); }

    void Close(int member, bool closed) { machine.Inputs().digital[std::size_t(member - 1)] = closed; }
    void Run(double seconds)
    {
        for (double left = seconds; left > 1e-9; left -= MotorModel::TickSeconds)
            machine.Tick(MotorModel::TickSeconds);
    }
    void Start(int reference)
    {
        Close(2, true);
        machine.Inputs().analog[0] = reference * AnalogFull / 10000;
        Run(0.2);
        Close(1, true);
        Run(MotorModel::TickSeconds);
    }
    void Stop()
    {
        Close(1, false);
        Close(2, false);
    }
    bool RunUntil(State state, double limit)
    {
        for (double left = limit; left > 0 && table.DriveState() != state; left -= MotorModel::TickSeconds)
            machine.Tick(MotorModel::TickSeconds);
        return table.DriveState() == state;
    }

    std::unique_ptr<ParameterTable> parameters = FactoryParameters();
    DriveTable table{*parameters};
    MotorModel machine{table, 1};
};

/** Parameters whose boxes a block window draws behind a sum, and what the sum comes to. */
std::map<int, double> DrawnSums(const DriveTable &t)
{
    const auto turned = [&t](int p, int invert) { return t.IsOn(invert) ? -t.Get(p) : t.Get(p); };
    const bool isReferenced = t.DriveState() == State::Run || t.DriveState() == State::Jog;
    const int trims = turned(SetpointB, SetpointSumInvertB) + turned(SetpointC, SetpointSumInvertC);
    const int torque = isReferenced ? t.Get(TorqueReference) : 0;
    const int demand = t.Get(CurrentDemand) + t.Get(AuxIDemand);
    const double parts = t.Get(AuxPIPropStatus) + t.Get(AuxPIIntegralStatus);
    const double limited = t.IsOn(AuxPIPolarity) ? parts : std::max(parts, 0.0);
    return {
        {VelocityDemand, turned(RampOutput, SetpointSumInvertA) + (isReferenced ? trims : 0)},
        {VelError, t.Get(FinalVelDemand) - t.Get(VelFeedback)},
        {CurrentDemand, t.IsOn(DriveModeLSB) ? torque : t.Get(VelLoopOutput)},
        {FinalIDemand, std::clamp(demand, t.Get(NegativeILimit), t.Get(PositiveILimit))},
        {FinalFieldIDemand, t.Get(FieldIDemand) - t.Get(FieldCrossoverOutput)},
        {AuxPIOutput, limited * t.Get(AuxPIScale) / FullScale + t.Get(AuxPITrim)},
    };
}

TEST_F(Machine, BoxesShowWhatTheirDrawingsCompute)
{
    const std::initializer_list<std::pair<int, int>> setups[] = {
        {{SetpointB, 700}, {SetpointC, -300}, {SetpointSumInvertC, 1}, {AuxIDemand, 200}},
        {{DriveModeLSB, 1}, {TorqueReference, 2000}, {AuxPIFeedback, 900}, {AuxPIPolarity, 0}},
        {{FieldCrossoverEnable, 1}, {AuxPISetpoint, 900}, {AuxPIIntegralClamp, 50}, {AuxPITrim, 100}}};
    for (const auto &setup : setups) {
        for (const auto &[p, rawValue] : setup)
            table.Put(p, rawValue);
        Run(4);
        for (const double seconds : {0.0, 4.0, -0.1}) {
            if (seconds == 0)
                Start(5000);
            else if (seconds < 0)
                Stop();
            Run(std::abs(seconds));
            for (const auto &[p, computed] : DrawnSums(table))
                EXPECT_NEAR(table.Get(p), computed, 0.6)
                    << p << " in state " << int(table.DriveState()) << " of setup " << &setup - setups;
        }
        EXPECT_TRUE(RunUntil(State::Stop, 30));
    }
}

TEST_F(Machine, StopModesTakeTheirStates)
{
    for (const State state : {State::RampStop, State::QuickStop, State::CoastStop}) {
        table.Put(StopMode, state == State::RampStop ? 0 : state == State::QuickStop ? 1 : 2);
        Start(6000);
        Run(6);
        Stop();
        Run(MotorModel::TickSeconds);
        EXPECT_EQ(table.DriveState(), state);
        EXPECT_EQ(table.Get(RampOutput) > 5000, state == State::RampStop);
        EXPECT_EQ(table.Get(LoopEnable), state != State::CoastStop);
        EXPECT_TRUE(RunUntil(State::Stop, 60));
        EXPECT_EQ(table.Get(ArmPilotStatus), 0) << int(state);
    }
    Start(5000);
    Run(4);
    table.Put(RunEnable, 0);
    Run(0.1);
    EXPECT_EQ(table.DriveState(), State::CoastStop);
    EXPECT_EQ(table.Get(FinalIDemand), 0);
    EXPECT_EQ(table.Get(DriveReady), 0);
}

TEST_F(Machine, ThreeWiresLatchTheRunInputAndTwoDoNot)
{
    for (const bool isMaintained : {false, true}) {
        table.Put(LogicSelect, isMaintained);
        Start(3000);
        Close(1, false);
        Run(1);
        EXPECT_EQ(table.DriveState() == State::Run, !isMaintained);
        Close(2, false);
        EXPECT_TRUE(RunUntil(State::Stop, 20));
        for (const int member : {1, 3}) {
            Close(member, true);
            Run(0.5);
            EXPECT_EQ(table.DriveState() != State::Stop, isMaintained) << "two wires know no stop input";
            Close(2, true);
            Run(0.5);
            EXPECT_EQ(table.DriveState() != State::Stop, isMaintained)
                << "releasing the stop starts nothing by itself";
            Close(member, false);
            Close(2, false);
            EXPECT_TRUE(RunUntil(State::Stop, 20));
        }
    }
}

TEST_F(Machine, JogHoldsTheContactorForItsDelay)
{
    table.Put(JogDelay, 10);
    Run(0.2);
    Close(3, true);
    Run(2);
    EXPECT_EQ(table.DriveState(), State::Jog);
    EXPECT_NEAR(table.Get(VelFeedback), 500, 60);
    Close(3, false);
    EXPECT_TRUE(RunUntil(State::JogStop, 0.2));
    EXPECT_TRUE(RunUntil(State::JogDelay, 3));
    Run(0.8);
    EXPECT_EQ(table.DriveState(), State::JogDelay);
    EXPECT_EQ(table.Get(ArmPilotStatus), 1);
    EXPECT_TRUE(RunUntil(State::Stop, 0.4));
}

TEST_F(Machine, FaultStopsLatchesAndIsLogged)
{
    const int clock[] = {58, 59, 13, 4, 21, 11, 26};
    for (int word = 0; word < 7; ++word)
        table.Put(ClockSeconds + word, clock[word]);
    Start(3000);
    machine.Trip(64);
    Run(0.1);
    EXPECT_EQ(table.DriveState(), State::EStop);
    EXPECT_EQ(table.Get(LatchedFault), 64);
    EXPECT_EQ(table.Get(PresentFault), 0);
    EXPECT_EQ(table.Get(FaultLog1Faults), 64);
    for (int word = 0; word < 7; ++word)
        EXPECT_EQ(table.Get(FaultLog1Seconds + word), clock[word]) << word;
    for (const int bits : {1, 2, 4, 8, 16}) {
        machine.ClearFault();
        Run(0.1);
        EXPECT_EQ(table.DriveState(), State::Stop) << "the run input that is still there starts nothing";
        machine.Trip(bits);
        Run(0.1);
    }
    for (int record = 0; record < 5; ++record)
        EXPECT_EQ(table.Get(FaultLog1Faults + 8 * record), 16 >> record) << "the sixth has fallen out";
}

TEST_F(Machine, LoopsAnswerByTheirGains)
{
    // A current that no field turns into torque: what is there after a tick, and the most of the first
    // second.
    table.Put(FieldEnable, 0);
    table.Put(DriveModeLSB, 1);
    const struct {
        int gain, time, firstLow, firstHigh, mostLow, mostHigh;
    } rows[] = {{2000, 50, 1900, 2050, 1950, 2050}, // the factory's
                {200, 50, 500, 1100, 1950, 2050},   // slow
                {200, 10, 900, 1900, 2250, 2900},   // a short integral time swings
                {2000, 0, 1600, 1700, 1600, 1720}}; // none leaves an error
    for (const auto &row : rows) {
        table.Put(IProportionalGain, row.gain);
        table.Put(IIntegralTime, row.time);
        Start(0);
        Run(0.5);
        table.Put(TorqueReference, 2000);
        Run(MotorModel::TickSeconds);
        const int first = table.Get(CurrentFeedback);
        int most = first;
        for (int tick = 0; tick < 20; ++tick, machine.Tick(MotorModel::TickSeconds))
            most = std::max(most, table.Get(CurrentFeedback));
        EXPECT_TRUE(first > row.firstLow && first < row.firstHigh) << first;
        EXPECT_TRUE(most > row.mostLow && most < row.mostHigh) << most;
        table.Put(TorqueReference, 0);
        Stop();
        EXPECT_TRUE(RunUntil(State::Stop, 20));
    }
}

TEST_F(Machine, FeedbackDevicesTellWhatTheirWiresMakeOfIt)
{
    machine.Inputs().tachometer = -1;
    machine.Inputs().encoder = 0.5;
    Start(2000);
    Run(8);
    EXPECT_NEAR(table.Get(AFB), 2000, 60);
    EXPECT_NEAR(table.Get(TFB), -table.Get(AFB), 200);
    EXPECT_NEAR(table.Get(EFB), table.Get(AFB) / 2, 100);
}

TEST_F(Machine, InputsScaleIntoTheirDestinations)
{
    const struct {
        bool bipolar;
        int level, bias, gain, invert, expected;
    } rows[] = {{false, 1024, 2000, 10000, 0, 6002},
                {false, 4095, 0, 8000, 1, -8000},
                {true, -1024, 500, 9000, 0, -4502},
                {false, 2047, 0, 20000, 0, 10000}};
    for (const auto &row : rows) {
        table.Put(AnalogIn1Polarity, row.bipolar);
        table.Put(AnalogIn1Bias, row.bias);
        table.Put(AnalogIn1Gain, row.gain);
        table.Put(AnalogIn1Invert, row.invert);
        machine.Inputs().analog[0] = row.level;
        Run(0.5);
        EXPECT_NEAR(table.Get(Reference0), row.expected, 20) << "from " << row.level;
    }
}

TEST_F(Machine, ShownValuesStayWithinTheirLimits)
{
    table.Put(InvertFeedback, 1);
    table.Put(FeedbackSelect, 1);
    Start(9000);
    machine.Inputs().analog[2] = 4095;
    Run(20);
    for (int p = 0; p <= table.LastParam(); ++p) {
        const ParamRecord &record = table.Record(p);
        EXPECT_GE(record.Value, record.Min) << p;
        EXPECT_LE(record.Value, record.Max) << p;
    }
}

} // namespace

} // namespace quorvik::drive
