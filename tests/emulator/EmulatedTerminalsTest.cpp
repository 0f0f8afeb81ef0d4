#include "EmulatorTable.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

Values With(Values also, const Values &values)
{
    also.insert(values.begin(), values.end());
    return also;
}

// Analog input 1 with its destination, calibration, bias and gain; the reading is added by each case.
Values Analog(std::int32_t x, const Values &also = {})
{
    return With(also, {{23, 217}, {38, 0}, {43, 10000}, {48, 0}, {53, 10000}, {139, x}});
}

Values Frequency(std::int32_t x, const Values &also = {})
{
    return With(also, {{63, 217}, {64, 0}, {65, 10000}, {66, 0}, {67, 10000}, {164, x}});
}

} // namespace

TEST(EmulatedTerminals, AnalogInput)
{
    RunCases("Analog Input 1", [](DriveEmulator &emulator) { emulator.EmulateAnalogInput(1); },
             {
                 {"below 0% gives the bias", Analog(-1, {{48, 300}}), {{217, 300}}},
                 {"above 100% gives the gain", Analog(10001, {{53, 7000}}), {{217, 7000}}},
                 {"a line from bias to gain", Analog(2500, {{48, 1000}, {53, 5000}}), {{217, 2000}}},
                 {"between calibration points", Analog(300, {{38, 200}, {43, 600}}), {{217, 2500}}},
                 {"cut toward zero", Analog(12349, {{43, 100000}}), {{217, 1234}}},
                 {"cut toward zero below it", Analog(37, {{43, 100}, {53, -10}}), {{217, -3}}},
                 {"bipolar knows no bias", Analog(5000, {{28, 1}, {48, 900}}), {{217, 5000}}},
                 {"inverted", Analog(5000, {{344, 1}}), {{217, -5000}}},
                 {"any other inversion is none", Analog(5000, {{344, 2}}), {{217, 5000}}},
                 {"bipolar above 100%", Analog(20000, {{28, 1}, {53, 7000}}), {{217, 7000}}},
                 {"bipolar at -100%", Analog(-10000, {{28, 1}, {38, 100}}), {{217, -10000}}},
                 {"bipolar just above -100%", Analog(-9999, {{28, 1}, {38, 100}}), {{217, -10201}}},
                 {"bipolar, zero moved", Analog(0, {{28, 1}, {38, 2000}}), {{217, -2500}}},
                 {"polarity is anything but 0", Analog(-5000, {{28, 2}}), {{217, -5000}}},
                 {"bipolar and inverted", Analog(-5000, {{28, 1}, {344, 1}}), {{217, 5000}}},
                 {"cut to the upper limit", Analog(5000), {{217, 4999}}, "", {{217, 4999}}},
                 {"cut to the lower limit", Analog(5000, {{344, 1}}), {{217, -4999}}, "", {{217, 4999}}},
                 {"0 is a destination like any other", Analog(5000, {{23, 0}}), {{0, 5000}}},
                 {"points alike", Analog(7, {{38, 7}, {43, 7}}), {{217, 0}}, "(38, 43): Division by zero."},
                 {"reading",
                  Analog(Highest, {{38, -1}, {43, Highest}}),
                  {},
                  "(139, 38): The result is out of range."},
                 {"span", Analog(-1, {{38, -1}, {43, Highest}}), {}, "(43, 38): The result is out of range."},
                 {"gain less bias",
                  Analog(1, {{48, Lowest}, {53, 1}}),
                  {},
                  "(53, 48): The result is out of range."},
                 {"100% negated", Analog(Lowest, {{28, 1}, {43, Lowest}, {53, 5}}), {{217, 5}}},
                 {"gain negated",
                  Analog(-10000, {{28, 1}, {53, Lowest}}),
                  {},
                  "(53): The result is out of range."},
                 {"no such destination",
                  Analog(5000, {{23, 431}}),
                  {},
                  "(23): There is no parameter 431; the last one is 430."},
             });
}

TEST(EmulatedTerminals, FrequencyInput)
{
    RunCases("Frequency Input", &DriveEmulator::EmulateFreqInput,
             {
                 {"a line", Frequency(2500, {{66, 1000}, {67, 5000}}), {{217, 2000}}},
                 {"rounded, not cut", Frequency(12349, {{65, 100000}}), {{217, 1235}}},
                 {"2.5 to the even 2", Frequency(25, {{65, 100}, {67, 10}}), {{217, 2}}},
                 {"sign of 1 only", Frequency(5000, {{349, 2}}), {{217, 5000}}},
                 {"upper limit", Frequency(5000), {{217, 10}}, "", {{217, 10}}},
                 {"points alike", Frequency(7, {{64, 7}, {65, 7}}), {}, "(64, 65): Division by zero."},
             });
}

TEST(EmulatedTerminals, DigitalInput)
{
    RunCases(
        "Digital Input 1", [](DriveEmulator &emulator) { emulator.EmulateDigitalInput(1); },
        {
            {"open", {{1, 217}, {8, 11}, {15, 22}, {132, 0}}, {{217, 11}}},
            {"closed", {{1, 217}, {8, 11}, {15, 22}, {132, 1}}, {{217, 22}}},
            {"only 1 is closed", {{1, 217}, {8, 11}, {15, 22}, {132, -1}}, {{217, 11}}},
            {"limits do not count", {{1, 217}, {15, 500}, {132, 1}}, {{217, 500}}, "", {{217, 100}}},
            {"destination 0", {{15, 5}, {132, 1}}, {{0, 5}}},
            {"no such destination", {{1, 999}}, {}, "(1): There is no parameter 999; the last one is 430."},
        });
}

TEST(EmulatedTerminals, AnalogOutput)
{
    RunCases(
        "Analog Output 1", [](DriveEmulator &emulator) { emulator.EmulateAnalogOutput(1); },
        {
            {"2047.5 to the even 2048", {{81, 217}, {83, 10000}, {217, 5000}}, {{168, 2048}}},
            {"cut above", {{81, 217}, {83, 10000}, {217, 20000}}, {{168, 4095}}},
            {"cut below", {{81, 217}, {83, 10000}, {217, -20000}}, {{168, -4095}}},
            {"bias alone", {{85, 2000}}, {{168, 819}}},
            {"absolute, bias included",
             {{81, 217}, {83, 10000}, {85, 2000}, {87, 1}, {217, -6000}},
             {{168, 1638}}},
            {"largest before overflow", {{85, 80017}}, {{168, 4095}}},
            {"16 bits", {{85, 80019}, {168, 7}}, {{168, 7}}, "(81, 83, 85): The result is out of range."},
            {"no such source", {{81, 431}}, {}, "(81): There is no parameter 431; the last one is 430."},
        });
}

TEST(EmulatedTerminals, FrequencyOutput)
{
    RunCases(
        "Frequency/Digital Output", &DriveEmulator::EmulateFreqDigitalOutput,
        {
            {"the sign is lost", {{89, 217}, {95, 10000}, {217, -5000}}, {{170, 1000}}},
            {"a negative bias may win", {{89, 217}, {95, 10000}, {96, -6000}, {217, 5000}}, {{170, -200}}},
            {"no limit at 2000 Hz", {{89, 217}, {95, 20000}, {217, 20000}}, {{170, 8000}}},
            {"tie to even", {{89, 217}, {95, 10000}, {217, 12500}, {96, 2}}, {{170, 2500}}},
            {"mode 2 is a frequency", {{90, 2}, {96, 10000}}, {{170, 2000}}},
            {"lowest source", {{89, 217}, {217, Lowest}}, {}, "(89): The result is out of range."},
            {"result",
             {{89, 217}, {95, 1000000}, {217, Highest}},
             {},
             "(89, 95, 96): The result is out of range."},
        });
}

TEST(EmulatedTerminals, DigitalOutput)
{
    const auto given = [](std::int32_t x, std::int32_t was, const Values &also = {}) {
        return With(also, {{89, 217}, {90, 1}, {92, 100}, {93, 50}, {170, was}, {217, x}});
    };
    RunCases("Frequency/Digital Output", &DriveEmulator::EmulateFreqDigitalOutput,
             {
                 {"on point", given(100, 0), {{170, -1}}},
                 {"between, off", given(99, 0), {{170, 0}}},
                 {"between, any other value is on", given(51, 7), {{170, -1}}},
                 {"off point", given(50, -1), {{170, 0}}},
                 {"signed", given(-100, -1), {{170, 0}}},
                 {"absolute", given(-100, 0, {{91, 1}}), {{170, -1}}},
                 {"inverted", given(100, 0, {{94, 1}}), {{170, 0}}},
                 {"inverted, off", given(50, 0, {{94, 1}}), {{170, -1}}},
                 {"inverted between the points, on at one tick", given(75, 0, {{94, 1}}), {{170, -1}}},
                 {"and off at the next", given(75, -1, {{94, 1}}), {{170, 0}}},
                 {"lowest source needs no magnitude", given(Lowest, -1), {{170, 0}}},
                 {"lowest source, absolute",
                  given(Lowest, -1, {{91, 1}}),
                  {{170, -1}},
                  "(89): The result is out of range."},
             });
}

TEST(EmulatedTerminals, RelayOutput)
{
    const auto given = [](std::int32_t x, std::int32_t on, std::int32_t off, std::int32_t was,
                          std::int32_t abs = 0) {
        return Values{{69, 217}, {72, abs}, {75, on}, {78, off}, {165, was}, {217, x}};
    };
    RunCases(
        "Relay Output 1", [](DriveEmulator &emulator) { emulator.EmulateRelayOutput(1); },
        {
            {"rising, at the on point", given(100, 100, 50, 0), {{165, 1}}},
            {"falling, at the off point", given(50, 100, 50, 1), {{165, 0}}},
            {"between, another value stays as it is", given(75, 100, 50, 7), {{165, 7}}},
            {"on below off: at the on point", given(50, 50, 100, 0), {{165, 1}}},
            {"on below off: above the on point", given(51, 50, 100, 0), {{165, 0}}},
            {"on below off: below the off point", given(99, 50, 100, 1), {{165, 1}}},
            {"on below off: at the off point", given(100, 50, 100, 1), {{165, 0}}},
            {"both alike: off wins", given(50, 50, 50, 1), {{165, 0}}},
            {"both alike: below", given(49, 50, 50, 0), {{165, 1}}},
            {"signed", given(-100, 100, 50, 1), {{165, 0}}},
            {"absolute is anything but 0", given(-100, 100, 50, 0, -1), {{165, 1}}},
            {"lowest source", given(Lowest, 100, 50, 1, 1), {{165, 1}}, "(69): The result is out of range."},
        });
}

// Every member reads and writes parameters of its own.
TEST(EmulatedTerminals, MembersKeepApart)
{
    Model model;
    FillPlainTable(model);
    Put(model,
        {{1, 201},   {2, 202},  {3, 203},  {4, 204},    {5, 205},     {6, 206},    {7, 207},   {8, 10},
         {9, 11},    {10, 12},  {11, 13},  {12, 14},    {13, 15},     {14, 16},    {15, 20},   {16, 21},
         {17, 22},   {18, 23},  {19, 24},  {20, 25},    {21, 26},     {132, 1},    {133, 0},   {134, 1},
         {135, 0},   {136, 1},  {137, 0},  {138, 1},    {23, 211},    {24, 212},   {25, 213},  {26, 214},
         {27, 215},  {28, 0},   {29, 1},   {30, 0},     {31, 1},      {32, 0},     {38, 0},    {39, 0},
         {40, 10},   {41, 0},   {42, 20},  {43, 100},   {44, 200},    {45, 110},   {46, 400},  {47, 520},
         {48, 5},    {49, 6},   {50, 7},   {51, 8},     {52, 9},      {53, 105},   {54, 200},  {55, 307},
         {56, 400},  {57, 509}, {139, 40}, {140, -50},  {141, 60},    {142, -80},  {143, 120}, {344, 0},
         {345, 0},   {346, 1},  {347, 1},  {348, 0},    {69, 230},    {70, 231},   {71, 232},  {230, 5},
         {231, -5},  {232, 10}, {72, 0},   {73, 1},     {74, 0},      {75, 5},     {76, 4},    {77, 9},
         {78, 0},    {79, 0},   {80, 6},   {81, 240},   {82, 241},    {83, 10000}, {84, 5000}, {85, 0},
         {86, 1000}, {87, 0},   {88, 1},   {240, 2000}, {241, -8000}, {167, 0}});
    DriveEmulator emulator(model);
    for (std::uint8_t member = 1; member <= 5; ++member)
        emulator.EmulateAnalogInput(member);
    for (std::uint8_t member = 1; member <= 7; ++member)
        emulator.EmulateDigitalInput(member);
    for (std::uint8_t member = 1; member <= 3; ++member)
        emulator.EmulateRelayOutput(member);
    for (std::uint8_t member = 1; member <= 2; ++member)
        emulator.EmulateAnalogOutput(member);
    const Values expected{{201, 20}, {202, 11}, {203, 22},  {204, 13},   {205, 24},  {206, 15},
                          {207, 26}, {211, 45}, {212, -50}, {213, -157}, {214, 80},  {215, 109},
                          {165, 1},  {166, 1},  {167, 1},   {168, 819},  {169, 1229}};
    for (const auto &[p, raw] : expected)
        EXPECT_EQ(model.Value(p), raw) << "parameter " << p;
}

} // namespace quorvik::testing
