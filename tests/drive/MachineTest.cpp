#include "DriveRig.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quorvik::drive
{

namespace
{

constexpr int AnalogFull = 2047;

/** The machine without a line, its stop input closed as a healthy plant wires it. */
class Machine : public ::testing::Test
{
protected:
    using Values = std::initializer_list<int>;

    Machine() { Close(2, true); }

    /** Values of parameters that follow each other. */
    void Put(int first, Values values)
    {
        for (const int value : values)
            table.Put(first++, value);
    }
    void Expect(int first, Values values) const
    {
        for (const int value : values) {
            EXPECT_EQ(table.Get(first), value) << "parameter " << first;
            ++first;
        }
    }
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

    std::unique_ptr<Model> model = FactoryModel();
    DriveTable table{*model};
    MotorModel machine{table, 1};
};

TEST_F(Machine, RampsUpAndHoldsItsReference)
{
    Start(5000);
    Run(1);
    EXPECT_EQ(table.DriveState(), State::Run);
    EXPECT_NEAR(table.Get(P::RampOutput), 2100, 101) << "5 seconds for full scale";
    EXPECT_EQ(table.Get(P::RampingStatus), 1);
    EXPECT_NEAR(table.Get(P::VelocityFeedback), table.Get(P::FinalVelocityDemand), 300);
    Run(5);
    EXPECT_EQ(table.Get(P::RampingStatus), 0);
    EXPECT_NEAR(table.Get(P::VelocityFeedback), 5000, 60);
    EXPECT_NEAR(table.Get(P::MotorRpm), 875, 15);
    EXPECT_NEAR(table.Get(P::ArmatureVolts), 250, 5);
    EXPECT_NEAR(table.Get(P::ArmatureAmps), table.Get(P::CurrentFeedback) * 174 / 10000.0, 3);
}

TEST_F(Machine, LoadAsksForCurrentAndOverloadFoldsItBack)
{
    Start(5000);
    Run(8);
    const int before = table.Get(P::CurrentFeedback);
    EXPECT_GT(before, 1000) << "the load wants torque";
    machine.SetLoad(0.6);
    Run(6);
    EXPECT_GT(table.Get(P::CurrentFeedback), before + 4000);
    EXPECT_NEAR(table.Get(P::VelocityFeedback), 5000, 80);
    machine.SetLoad(2);
    for (const auto &[limit, isFoldedBack] : {std::pair(15000, 0), std::pair(10000, 1)}) {
        Run(5.5);
        Expect(P::FinalCurrentDemand, {limit});
        Expect(P::FoldbackStatus, {isFoldedBack});
    }
}

TEST_F(Machine, StopModesTakeTheirStates)
{
    double seconds[3] = {};
    for (const State state : {State::RampStop, State::QuickStop, State::CoastStop}) {
        const int mode = state == State::RampStop ? 0 : state == State::QuickStop ? 1 : 2;
        table.Put(P::StopMode, mode);
        Start(6000);
        Run(6);
        Stop();
        Run(MotorModel::TickSeconds);
        EXPECT_EQ(table.DriveState(), state);
        EXPECT_EQ(table.Get(P::RampOutput) > 5000, state == State::RampStop);
        EXPECT_EQ(table.Get(P::LoopEnable), state != State::CoastStop);
        for (; table.DriveState() != State::Stop && seconds[mode] < 60; seconds[mode] += 0.05)
            Run(MotorModel::TickSeconds);
        EXPECT_EQ(table.Get(P::ArmPilotStatus), 0) << mode;
    }
    EXPECT_NEAR(seconds[0], 3, 0.5) << "60 % at 5 seconds for all of it";
    EXPECT_LT(seconds[1], 1);
    EXPECT_GT(seconds[2], seconds[1]);
    EXPECT_LT(seconds[2], 60);
    Start(5000);
    Run(4);
    table.Put(P::RunEnable, 0);
    Run(0.1);
    EXPECT_EQ(table.DriveState(), State::CoastStop);
    EXPECT_EQ(table.Get(P::FinalCurrentDemand), 0);
    EXPECT_EQ(table.Get(P::DriveReady), 0);
}

TEST_F(Machine, ThreeWiresLatchTheRunInputAndTwoDoNot)
{
    for (const bool isMaintained : {false, true}) {
        table.Put(P::LogicSelect, isMaintained);
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
    table.Put(P::JogDelay, 10);
    Run(0.2);
    Close(3, true);
    Run(2);
    EXPECT_EQ(table.DriveState(), State::Jog);
    EXPECT_NEAR(table.Get(P::VelocityFeedback), 500, 60);
    Close(3, false);
    EXPECT_TRUE(RunUntil(State::JogStop, 0.2));
    EXPECT_TRUE(RunUntil(State::JogDelay, 3));
    Run(0.8);
    EXPECT_EQ(table.DriveState(), State::JogDelay);
    EXPECT_EQ(table.Get(P::ArmPilotStatus), 1);
    EXPECT_TRUE(RunUntil(State::Stop, 0.4));
}

TEST_F(Machine, ReferenceIsSelectedInvertedAndLimited)
{
    Put(P::Reference0 + 1, {1000, 2000, 3000});
    table.Put(P::RampBypass, 1);
    table.Put(P::SetpointB, 500);
    table.Put(P::InvertB, 1);
    table.Put(P::ReverseMaxSpeed, -2000);
    Start(4000);
    const struct {
        bool high, low, invert;
        int input, final;
    } rows[] = {{false, true, false, 1000, 500},
                {true, false, false, 2000, 1500},
                {true, true, false, 3000, 2500},
                {true, true, true, -3000, -2000}};
    for (const auto &row : rows) {
        Close(5, row.high);
        Close(6, row.low);
        Close(4, row.invert);
        Run(0.1);
        Expect(P::RampInput, {row.input});
        Expect(P::FinalVelocityDemand, {row.final});
    }
}

TEST_F(Machine, OneBridgeCannotBrake)
{
    for (const int code : {5, 21}) {
        table.SetDriveModel(code);
        table.Put(P::RampTimesA + 1, 10); // faster than the load alone slows it down
        Start(8000);
        Run(8);
        Stop();
        int lowest = 0;
        for (int i = 0; i < 100; ++i) {
            Run(MotorModel::TickSeconds);
            lowest = std::min(lowest, table.Get(P::FinalCurrentDemand));
        }
        EXPECT_EQ(lowest < 0, code == 5);
        EXPECT_TRUE(RunUntil(State::Stop, 60));
    }
}

TEST_F(Machine, TorqueModeFollowsItsReference)
{
    table.Put(P::DriveModeLow, 1);
    table.Put(P::TorqueReference, 3000);
    Start(5000);
    Run(0.5);
    EXPECT_EQ(table.Get(P::CurrentDemand), 3000);
    EXPECT_NEAR(table.Get(P::CurrentFeedback), 3000, 50);
    table.Put(P::DriveModeHigh, 1);
    Run(0.5);
    EXPECT_EQ(table.Get(P::FinalCurrentDemand), 0);
}

TEST_F(Machine, FaultStopsLatchesAndIsLogged)
{
    Put(P::Seconds, {58, 59, 13, 4, 21, 11, 26});
    Start(3000);
    machine.Trip(64);
    Run(0.1);
    EXPECT_EQ(table.DriveState(), State::EStop);
    EXPECT_EQ(table.Get(P::LatchedFault), 64);
    EXPECT_EQ(table.Get(P::PresentFault), 0);
    Expect(P::FaultLog, {64, 58, 59, 13, 4, 21, 11, 26});
    for (const int bits : {1, 2, 4, 8, 16}) {
        machine.ClearFault();
        Run(0.1);
        EXPECT_EQ(table.DriveState(), State::Stop) << "the run input that is still there starts nothing";
        machine.Trip(bits);
        Run(0.1);
    }
    for (int record = 0; record < 5; ++record)
        EXPECT_EQ(table.Get(P::FaultLog + 8 * record), 16 >> record) << "the sixth has fallen out";
}

TEST_F(Machine, MissingFieldAndOverspeedAreFaults)
{
    Run(3);
    EXPECT_EQ(table.Get(P::LatchedFault), 0);
    table.Put(P::FieldCurrentDemand, 1000);
    Run(4);
    EXPECT_EQ(table.Get(P::LatchedFault), Fault::FieldLoss);
    table.Put(P::FieldCurrentDemand, 5000);
    Run(4);
    Close(7, true);
    Run(0.1);
    EXPECT_EQ(table.Get(P::LatchedFault), 0) << "the fault reset input";
    table.Put(P::OverspeedLevel, 3000);
    Start(6000);
    EXPECT_TRUE(RunUntil(State::EStop, 5));
    EXPECT_EQ(table.Get(P::LatchedFault), Fault::Overspeed);
}

TEST_F(Machine, ClockCarriesOver)
{
    const struct {
        Values before, after;
    } rows[] = {
        // Seconds, minutes, hours, day, date, month, year.
        {{59, 59, 9, 2, 3, 4, 5}, {0, 0, 10, 2, 3, 4, 5}},
        {{59, 59, 23, 7, 31, 12, 99}, {0, 0, 0, 1, 1, 1, 0}},
        {{59, 59, 23, 3, 28, 2, 28}, {0, 0, 0, 4, 29, 2, 28}},
        {{59, 59, 23, 3, 28, 2, 27}, {0, 0, 0, 4, 1, 3, 27}},
    };
    for (const auto &[before, after] : rows) {
        Put(P::Seconds, before);
        Run(1);
        Expect(P::Seconds, after);
    }
}

TEST_F(Machine, InputsScaleIntoTheirDestinations)
{
    const struct {
        const char *what;
        bool bipolar;
        int level, bias, gain, invert, expected;
    } rows[] = {
        {"half way", false, 1024, 0, 10000, 0, 5002},   {"from a bias", false, 0, 2000, 10000, 0, 2000},
        {"above range", false, 4095, 0, 8000, 0, 8000}, {"inverted", false, 2047, 0, 8000, 1, -8000},
        {"bipolar", true, -2047, 500, 9000, 0, -9000},  {"past the limit", false, 2047, 0, 20000, 0, 10000}};
    for (const auto &row : rows) {
        table.Put(P::AnalogInPolarity, row.bipolar);
        table.Put(P::AnalogInBias, row.bias);
        table.Put(P::AnalogInGain, row.gain);
        table.Put(P::AnalogInInvert, row.invert);
        machine.Inputs().analog[0] = row.level;
        Run(0.5);
        EXPECT_NEAR(table.Get(P::Reference0), row.expected, 20) << row.what;
    }
    table.Put(P::DigitalInDestination + 6, P::Reference0 + 1);
    table.Put(P::DigitalInOpenValue + 6, -7);
    table.Put(P::DigitalInClosedValue + 6, 20000);
    for (const auto &[closed, value] : {std::pair(false, -7), std::pair(true, 20000)}) {
        Close(7, closed);
        Run(0.05);
        EXPECT_EQ(table.Get(P::Reference0 + 1), value) << "as it stands, past all limits";
    }
}

TEST_F(Machine, FreeBlocksWork)
{
    Put(P::LinkSource, {218, 219, 219, P::ThresholdA}); // the second link sees the first in the same tick
    Put(P::ThresholdA + 1, {1000, 100, 1, 2});
    table.Put(P::MinMaxSource, 218);
    table.Put(P::RelaySource, 218);
    table.Put(P::RelayOnValue, 100);
    table.Put(P::RelayOffValue, 50);
    const struct {
        int value, threshold, relay;
    } rows[] = {{1100, 1, 1}, {1101, 2, 1}, {901, 2, 1}, {900, 1, 1},
                {51, 1, 1},   {50, 1, 0},   {99, 1, 0},  {-300, 1, 0}};
    for (const auto &row : rows) {
        table.Put(218, row.value);
        Run(MotorModel::TickSeconds);
        EXPECT_EQ(table.Get(P::ThresholdA + 5), row.threshold) << row.value;
        EXPECT_EQ(table.Get(P::RelayStatus), row.relay) << row.value;
    }
    EXPECT_EQ(table.Get(P::MinMaxMax), 1101);
    EXPECT_EQ(table.Get(P::MinMaxDifference), 1401);
    const int count = table.Get(P::TimerCount);
    table.Put(P::MopIncrease, 1);
    table.Put(P::MopMax, 1500);
    Run(1);
    EXPECT_NEAR(table.Get(P::TimerCount), count + 10, 1);
    EXPECT_NEAR(table.Get(P::MopOutput), 1000, 60) << "10 seconds for full scale";
    table.Put(P::TimerReset, 1);
    Run(1);
    EXPECT_EQ(table.Get(P::TimerCount), 0);
    EXPECT_EQ(table.Get(P::MopOutput), 1500);
}

TEST_F(Machine, ShownValuesStayWithinTheirLimits)
{
    table.Put(P::InvertFeedback, 1);
    table.Put(P::FeedbackSelect, 1);
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
