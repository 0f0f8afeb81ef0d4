#include "EmulatorTable.h"

#include <gtest/gtest.h>
#include <limits>

namespace quorvik::testing
{

namespace
{
constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

// Analog input 1 with its destination, calibration, bias and gain; the reading is added by each case.
Values Analog(std::int32_t x, Values also = {})
{
    Values values{{23, 217}, {38, 0}, {43, 10000}, {48, 0}, {53, 10000}, {139, x}};
    for (const auto &[p, raw] : also)
        values[p] = raw;
    return values;
}

Values Frequency(std::int32_t x, Values also = {})
{
    Values values{{63, 217}, {64, 0}, {65, 10000}, {66, 0}, {67, 10000}, {164, x}};
    for (const auto &[p, raw] : also)
        values[p] = raw;
    return values;
}

} // namespace

TEST(EmulatedTerminals, AnalogInput)
{
    RunCases(
        {
            {"half way", Analog(5000), {{217, 5000}}},
            {"below 0% gives the bias", Analog(-1, {{48, 300}}), {{217, 300}}},
            {"at 0% gives the bias too", Analog(0, {{48, 300}}), {{217, 300}}},
            {"at 100%", Analog(10000), {{217, 10000}}},
            {"above 100% gives the gain", Analog(10001, {{53, 7000}}), {{217, 7000}}},
            {"a line from bias to gain", Analog(2500, {{48, 1000}, {53, 5000}}), {{217, 2000}}},
            {"between calibration points", Analog(300, {{38, 200}, {43, 600}}), {{217, 2500}}},
            {"cut toward zero", Analog(12349, {{43, 100000}}), {{217, 1234}}},
            {"cut toward zero below it", Analog(37, {{43, 100}, {53, -10}}), {{217, -3}}},
            {"inverted", Analog(5000, {{344, 1}}), {{217, -5000}}},
            {"any other inversion is none", Analog(5000, {{344, 2}}), {{217, 5000}}},
            {"bipolar, half way down", Analog(-5000, {{28, 1}}), {{217, -5000}}},
            {"bipolar at 100%", Analog(10000, {{28, 1}, {53, 7000}}), {{217, 7000}}},
            {"bipolar just below 100%", Analog(9999, {{28, 1}}), {{217, 9999}}},
            {"bipolar at -100%", Analog(-10000, {{28, 1}, {38, 100}}), {{217, -10000}}},
            {"bipolar just above -100%", Analog(-9999, {{28, 1}}), {{217, -9999}}},
            {"bipolar knows no bias", Analog(5000, {{28, 1}, {48, 900}}), {{217, 5000}}},
            {"bipolar, zero moved", Analog(0, {{28, 1}, {38, 2000}}), {{217, -2500}}},
            {"polarity is anything but 0", Analog(-5000, {{28, 2}}), {{217, -5000}}},
            {"bipolar and inverted", Analog(-5000, {{28, 1}, {344, 1}}), {{217, 5000}}},
            {"cut to the upper limit", Analog(5000), {{217, 4999}}, "", {{217, 4999}}},
            {"cut to the lower limit", Analog(5000, {{344, 1}}), {{217, -4999}}, "", {{217, 4999}}},
            {"at the limit", Analog(5000), {{217, 5000}}, "", {{217, 5000}}},
            {"a destination of 0 is written like any other", Analog(5000, {{23, 0}}), {{0, 5000}}},
            {"calibration points alike",
             Analog(700, {{38, 700}, {43, 700}}),
             {{217, 0}},
             "Analog Input 1 (38, 43): Division by zero."},
            {"calibration points alike, reading aside", Analog(701, {{38, 700}, {43, 700}}), {{217, 10000}}},
            {"reading less 0%",
             Analog(Highest, {{38, -1}, {43, Highest}}),
             {{217, 0}},
             "Analog Input 1 (139, 38): Overflow."},
            {"100% less 0%",
             Analog(-1, {{38, -1}, {43, Highest}}),
             {{217, 0}},
             "Analog Input 1 (43, 38): Overflow."},
            {"gain less bias",
             Analog(1, {{48, Lowest}, {53, 1}}),
             {{217, 0}},
             "Analog Input 1 (53, 48): Overflow."},
            {"100% negated", Analog(Lowest, {{28, 1}, {43, Lowest}, {53, 5}}), {{217, 5}}},
            {"gain negated",
             Analog(-10000, {{28, 1}, {53, Lowest}}),
             {{217, 0}},
             "Analog Input 1 (53): Overflow."},
            {"destination beyond the table",
             Analog(5000, {{23, 431}}),
             {},
             "Analog Input 1 (23): There is no parameter 431; the last one is 430."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateAnalogInput(1); });
}

TEST(EmulatedTerminals, FrequencyInput)
{
    RunCases(
        {
            {"half way", Frequency(5000), {{217, 5000}}},
            {"below 0%", Frequency(-1, {{66, 40}}), {{217, 40}}},
            {"above 100%", Frequency(10001, {{67, 400}}), {{217, 400}}},
            {"a line", Frequency(2500, {{66, 1000}, {67, 5000}}), {{217, 2000}}},
            {"rounded, not cut", Frequency(12349, {{65, 100000}}), {{217, 1235}}},
            {"2.5 to the even 2", Frequency(25, {{65, 100}, {67, 10}}), {{217, 2}}},
            {"3.5 to the even 4", Frequency(35, {{65, 100}, {67, 10}}), {{217, 4}}},
            {"-2.5 to the even -2", Frequency(25, {{65, 100}, {67, 10}, {349, 1}}), {{217, -2}}},
            {"sign of 1 only", Frequency(5000, {{349, 2}}), {{217, 5000}}},
            {"upper limit", Frequency(5000), {{217, 10}}, "", {{217, 10}}},
            {"lower limit", Frequency(5000, {{349, 1}}), {{217, -10}}, "", {{217, 10}}},
            {"calibration points alike",
             Frequency(7, {{64, 7}, {65, 7}}),
             {{217, 0}},
             "Frequency Input (64, 65): Division by zero."},
            {"destination below the table",
             Frequency(5000, {{63, -1}}),
             {},
             "Frequency Input (63): There is no parameter -1; the last one is 430."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateFreqInput(); });
}

TEST(EmulatedTerminals, DigitalInput)
{
    RunCases(
        {
            {"open", {{1, 217}, {8, 11}, {15, 22}, {132, 0}}, {{217, 11}}},
            {"closed", {{1, 217}, {8, 11}, {15, 22}, {132, 1}}, {{217, 22}}},
            {"only 1 is closed", {{1, 217}, {8, 11}, {15, 22}, {132, -1}}, {{217, 11}}},
            {"limits do not count", {{1, 217}, {15, 500}, {132, 1}}, {{217, 500}}, "", {{217, 100}}},
            {"destination 0", {{15, 5}, {132, 1}}, {{0, 5}}},
            {"destination beyond the table",
             {{1, 999}},
             {},
             "Digital Input 1 (1): There is no parameter 999; the last one is 430."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateDigitalInput(1); });
}

TEST(EmulatedTerminals, AnalogOutput)
{
    RunCases(
        {
            {"full scale", {{81, 217}, {83, 10000}, {217, 10000}}, {{168, 4095}}},
            {"2047.5 to the even 2048", {{81, 217}, {83, 10000}, {217, 5000}}, {{168, 2048}}},
            {"cut above", {{81, 217}, {83, 10000}, {217, 20000}}, {{168, 4095}}},
            {"cut below", {{81, 217}, {83, 10000}, {217, -20000}}, {{168, -4095}}},
            {"bias alone", {{85, 2000}}, {{168, 819}}},
            {"absolute, bias included",
             {{81, 217}, {83, 10000}, {85, 2000}, {87, 1}, {217, -6000}},
             {{168, 1638}}},
            {"largest before overflow", {{85, 80017}}, {{168, 4095}}},
            {"16 bits overflow",
             {{81, 217}, {83, 10000}, {85, 80019}, {168, 7}},
             {{168, 7}},
             "Analog Output 1 (81, 83, 85): Overflow."},
            {"source beyond the table",
             {{81, 431}},
             {},
             "Analog Output 1 (81): There is no parameter 431; the last one is 430."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateAnalogOutput(1); });
}

TEST(EmulatedTerminals, FrequencyOutput)
{
    RunCases(
        {
            {"the sign is lost", {{89, 217}, {95, 10000}, {217, -5000}}, {{170, 1000}}},
            {"bias before the division", {{89, 217}, {95, 10000}, {96, 2500}, {217, 5000}}, {{170, 1500}}},
            {"a negative bias may win", {{89, 217}, {95, 10000}, {96, -6000}, {217, 5000}}, {{170, -200}}},
            {"no limit at 2000 Hz", {{89, 217}, {95, 20000}, {217, 20000}}, {{170, 8000}}},
            {"0.5 to the even 0", {{96, 2}, {95, 0}}, {{170, 0}}},
            {"tie to even", {{89, 217}, {95, 10000}, {217, 12500}, {96, 2}}, {{170, 2500}}},
            {"mode 2 is a frequency", {{90, 2}, {96, 10000}}, {{170, 2000}}},
            {"lowest source", {{89, 217}, {217, Lowest}}, {}, "Frequency/Digital Output (89): Overflow."},
            {"overflow",
             {{89, 217}, {95, 1000000}, {96, 0}, {217, Highest}},
             {},
             "Frequency/Digital Output (89, 95, 96): Overflow."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateFreqDigitalOutput(); });
}

TEST(EmulatedTerminals, DigitalOutput)
{
    const auto given = [](std::int32_t x, std::int32_t on, std::int32_t off, std::int32_t was,
                          Values also = {}) {
        Values values{{89, 217}, {90, 1}, {92, on}, {93, off}, {170, was}, {217, x}};
        values.merge(also);
        return values;
    };
    RunCases(
        {
            {"on above: on point", given(100, 100, 50, 0), {{170, -1}}},
            {"on above: between, off", given(99, 100, 50, 0), {{170, 0}}},
            {"on above: between, on", given(51, 100, 50, -1), {{170, -1}}},
            {"on above: between, any other value is on", given(51, 100, 50, 7), {{170, -1}}},
            {"on above: off point", given(50, 100, 50, -1), {{170, 0}}},
            {"on below: off point", given(100, 50, 100, -1), {{170, 0}}},
            {"on below: between, on", given(99, 50, 100, -1), {{170, -1}}},
            {"on below: between, off", given(51, 50, 100, 0), {{170, 0}}},
            {"on below: on point", given(50, 50, 100, 0), {{170, -1}}},
            {"both alike, at them", given(50, 50, 50, -1), {{170, 0}}},
            {"both alike, below", given(49, 50, 50, 0), {{170, -1}}},
            {"signed", given(-100, 100, 50, -1), {{170, 0}}},
            {"absolute", given(-100, 100, 50, 0, {{91, 1}}), {{170, -1}}},
            {"inverted", given(100, 100, 50, 0, {{94, 1}}), {{170, 0}}},
            {"inverted, off", given(50, 100, 50, 0, {{94, 1}}), {{170, -1}}},
            {"lowest source needs no magnitude", given(Lowest, 100, 50, -1), {{170, 0}}},
            {"lowest source, absolute",
             given(Lowest, 100, 50, -1, {{91, 1}}),
             {{170, -1}},
             "Frequency/Digital Output (89): Overflow."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateFreqDigitalOutput(); });
    RunCases({{"inverted between the points flips back at the second tick",
               given(75, 100, 50, 0, {{94, 1}}),
               {{170, 0}}}},
             [](DriveEmulator &emulator) {
                 emulator.EmulateFreqDigitalOutput();
                 emulator.EmulateFreqDigitalOutput();
             });
    RunCases({{"and has flipped at the first", given(75, 100, 50, 0, {{94, 1}}), {{170, -1}}}},
             [](DriveEmulator &emulator) { emulator.EmulateFreqDigitalOutput(); });
}

TEST(EmulatedTerminals, RelayOutput)
{
    const auto given = [](std::int32_t x, std::int32_t on, std::int32_t off, std::int32_t was,
                          std::int32_t abs = 0) {
        return Values{{69, 217}, {72, abs}, {75, on}, {78, off}, {165, was}, {217, x}};
    };
    RunCases(
        {
            {"rising, below the on point", given(99, 100, 50, 0), {{165, 0}}},
            {"rising, at the on point", given(100, 100, 50, 0), {{165, 1}}},
            {"falling, above the off point", given(51, 100, 50, 1), {{165, 1}}},
            {"falling, at the off point", given(50, 100, 50, 1), {{165, 0}}},
            {"between, another value stays as it is", given(75, 100, 50, 7), {{165, 7}}},
            {"on below off: at the on point", given(50, 50, 100, 0), {{165, 1}}},
            {"on below off: above the on point", given(51, 50, 100, 0), {{165, 0}}},
            {"on below off: below the off point", given(99, 50, 100, 1), {{165, 1}}},
            {"on below off: at the off point", given(100, 50, 100, 1), {{165, 0}}},
            {"both alike: off wins", given(50, 50, 50, 1), {{165, 0}}},
            {"both alike: below", given(49, 50, 50, 0), {{165, 1}}},
            {"signed", given(-100, 100, 50, 1), {{165, 0}}},
            {"absolute", given(-100, 100, 50, 0, 1), {{165, 1}}},
            {"absolute is anything but 0", given(-100, 100, 50, 0, -1), {{165, 1}}},
            {"lowest source", given(Lowest, 100, 50, 1, 1), {{165, 1}}, "Relay Output 1 (69): Overflow."},
        },
        [](DriveEmulator &emulator) { emulator.EmulateRelayOutput(1); });
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
