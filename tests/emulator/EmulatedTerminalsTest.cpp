#include "EmulatorTable.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

// Of blocks with several members the last one is shown; what leads to the first is in the order of a tick.

namespace
{

Values With(Values also, const Values &values)
{
    also.insert(values.begin(), values.end());
    return also;
}

// Analog input 5 with its destination, calibration, bias and gain; the reading is added by each case.
Values Analog(std::int32_t x, const Values &also = {})
{
    return With(also, {{27, 217}, {42, 0}, {47, 10000}, {52, 0}, {57, 10000}, {143, x}});
}

Values Frequency(std::int32_t x, const Values &also = {})
{
    return With(also, {{63, 217}, {64, 0}, {65, 10000}, {66, 0}, {67, 10000}, {164, x}});
}

} // namespace

TEST(EmulatedTerminals, Inputs)
{
    RunCases("Analog Input 5", [](DriveEmulator &emulator) { emulator.EmulateAnalogInput(5); },
             {{"below 0% gives the bias", Analog(-1, {{52, 300}}), {{217, 300}}},
              {"above 100% gives the gain", Analog(10001, {{57, 7000}}), {{217, 7000}}},
              {"a line from bias to gain", Analog(2500, {{52, 1000}, {57, 5000}}), {{217, 2000}}},
              {"between calibration points", Analog(300, {{42, 200}, {47, 600}}), {{217, 2500}}},
              {"cut toward zero", Analog(12349, {{47, 100000}}), {{217, 1234}}},
              {"cut toward zero below it", Analog(37, {{47, 100}, {57, -10}}), {{217, -3}}},
              {"bipolar knows no bias", Analog(5000, {{32, 1}, {52, 900}}), {{217, 5000}}},
              {"any other inversion is none", Analog(5000, {{348, 2}}), {{217, 5000}}},
              {"bipolar above 100%", Analog(20000, {{32, 1}, {57, 7000}}), {{217, 7000}}},
              {"bipolar at -100%", Analog(-10000, {{32, 1}, {42, 100}}), {{217, -10000}}},
              {"bipolar just above -100%", Analog(-9999, {{32, 1}, {42, 100}}), {{217, -10201}}},
              {"polarity is anything but 0, and inverted", Analog(-5000, {{32, 2}, {348, 1}}), {{217, 5000}}},
              {"cut to the upper limit", Analog(5000), {{217, 4999}}, "", {{217, 4999}}},
              {"cut to the lower limit", Analog(5000, {{348, 1}}), {{217, -4999}}, "", {{217, 4999}}},
              {"points alike", Analog(7, {{42, 7}, {47, 7}}), {{217, 0}}, "(42, 47): Division by zero."},
              {"reading", Analog(Highest, {{42, -1}, {47, Highest}}), {}, OutOfRange("143, 42")},
              {"no such destination", Analog(5000, {{27, 431}}), {}, NoParameter("27", 431)}});

    RunCases("Frequency Input", &DriveEmulator::EmulateFreqInput,
             {{"a line", Frequency(3000, {{64, 500}, {65, 10500}, {66, 1000}, {67, 5000}}), {{217, 2000}}},
              {"rounded, not cut", Frequency(12349, {{65, 100000}}), {{217, 1235}}},
              {"2.5 to the even 2", Frequency(25, {{65, 100}, {67, 10}}), {{217, 2}}},
              {"sign of 1 only", Frequency(5000, {{349, 2}}), {{217, 5000}}}});

    RunCases("Digital Input 7", [](DriveEmulator &emulator) { emulator.EmulateDigitalInput(7); },
             {{"closed", {{7, 217}, {14, 11}, {21, 22}, {138, 1}}, {{217, 22}}},
              {"only 1 is closed", {{7, 217}, {14, 11}, {21, 22}, {138, -1}}, {{217, 11}}},
              {"limits do not count, destination 0", {{21, 500}, {138, 1}}, {{0, 500}}, "", {{0, 100}}},
              {"no such destination", {{7, 999}}, {}, NoParameter("7", 999)}});
}

TEST(EmulatedTerminals, Outputs)
{
    RunCases("Analog Output 2", [](DriveEmulator &emulator) { emulator.EmulateAnalogOutput(2); },
             {{"2047.5 to the even 2048", {{82, 217}, {84, 10000}, {217, 5000}}, {{169, 2048}}},
              {"cut below", {{82, 217}, {84, 10000}, {217, -20000}}, {{169, -4095}}},
              {"absolute, with the bias",
               {{82, 217}, {84, 10000}, {86, 2000}, {88, 1}, {217, -6000}},
               {{169, 1638}}},
              {"cut above, the largest before overflow", {{86, 80017}}, {{169, 4095}}},
              {"16 bits", {{86, 80019}, {169, 7}}, {{169, 7}}, OutOfRange("82, 84, 86")}});

    RunCases("Frequency/Digital Output", &DriveEmulator::EmulateFreqDigitalOutput,
             {{"the sign is lost", {{89, 217}, {95, 10000}, {217, -5000}}, {{170, 1000}}},
              {"a negative bias may win", {{89, 217}, {95, 10000}, {96, -6000}, {217, 5000}}, {{170, -200}}},
              {"no limit at 2000 Hz", {{89, 217}, {95, 20000}, {217, 20000}}, {{170, 8000}}},
              {"mode 2 is a frequency", {{90, 2}, {96, 10000}}, {{170, 2000}}},
              {"lowest source", {{89, 217}, {217, Lowest}}, {}, OutOfRange("89")},
              {"result", {{89, 217}, {95, 1000000}, {217, Highest}}, {}, OutOfRange("89, 95, 96")}});

    const auto digital = [](std::int32_t x, std::int32_t was, const Values &also = {}) {
        return With(also, {{89, 217}, {90, 1}, {92, 100}, {93, 50}, {170, was}, {217, x}});
    };
    RunCases("Frequency/Digital Output", &DriveEmulator::EmulateFreqDigitalOutput,
             {{"between, off", digital(99, 0), {{170, 0}}},
              {"between, any other value is on", digital(51, 7), {{170, -1}}},
              {"signed", digital(-100, -1), {{170, 0}}},
              {"absolute", digital(-100, 0, {{91, 1}}), {{170, -1}}},
              {"inverted", digital(100, 0, {{94, 1}}), {{170, 0}}},
              {"inverted between the points, on at one tick", digital(75, 0, {{94, 1}}), {{170, -1}}},
              {"and off at the next", digital(75, -1, {{94, 1}}), {{170, 0}}},
              {"lowest source, absolute", digital(Lowest, -1, {{91, 1}}), {{170, -1}}, OutOfRange("89")}});

    const auto relay = [](std::int32_t x, std::int32_t on, std::int32_t off, std::int32_t was,
                          std::int32_t abs = 0) {
        return Values{{71, 217}, {74, abs}, {77, on}, {80, off}, {167, was}, {217, x}};
    };
    RunCases("Relay Output 3", [](DriveEmulator &emulator) { emulator.EmulateRelayOutput(3); },
             {{"rising, at the on point", relay(100, 100, 50, 0), {{167, 1}}},
              {"falling, at the off point", relay(50, 100, 50, 1), {{167, 0}}},
              {"between, another value stays as it is", relay(75, 100, 50, 7), {{167, 7}}},
              {"on below off: at the on point", relay(50, 50, 100, 0), {{167, 1}}},
              {"on below off: above the on point", relay(51, 50, 100, 0), {{167, 0}}},
              {"on below off: below the off point", relay(99, 50, 100, 1), {{167, 1}}},
              {"on below off: at the off point", relay(100, 50, 100, 1), {{167, 0}}},
              {"both alike: off wins", relay(50, 50, 50, 1), {{167, 0}}},
              {"both alike: below", relay(49, 50, 50, 0), {{167, 1}}},
              {"signed", relay(-100, 100, 50, 1), {{167, 0}}},
              {"absolute is anything but 0", relay(-100, 100, 50, 0, -1), {{167, 1}}}});
}

} // namespace quorvik::testing
