#include "EmulatorTable.h"

#include "emulator/TimerBlock.h"
#include "platform/RuntimeFailure.h"

#include <array>
#include <gtest/gtest.h>

namespace quorvik::testing
{

TEST(EmulatedControlBlocks, Loops)
{
    RunCases("Aux PI", &DriveEmulator::EmulateAuxPI,
             {{"error", {{350, 5}, {351, 12}}, {{352, -7}}},
              {"overflow", {{350, Highest}, {351, -1}, {352, 3}}, {{352, 3}}, OutOfRange("350, 351")}});

    const auto currents = [](std::int32_t aux, std::int32_t demand, std::int32_t positive,
                             std::int32_t negative) {
        return Values{{98, aux}, {205, demand}, {99, positive}, {100, negative}, {102, 10}};
    };
    RunCases("Current Loop", &DriveEmulator::EmulateCurrentLoop,
             {{"velocity loop", {{205, 7}, {97, 8}, {99, 100}}, {{111, 7}, {101, 7}, {103, 7}}},
              {"torque reference", {{110, 1}, {205, 7}, {97, 8}, {99, 100}}, {{111, 8}, {101, 8}, {103, 8}}},
              {"mode 3 takes nothing", {{109, 1}, {110, 1}, {205, 7}, {97, 8}, {111, 5}}, {{111, 0}}},
              {"mode 256 is none", {{109, 128}, {111, 5}}, {{111, 5}}, OutOfRange("109, 110")},
              {"limited", currents(500, 600, 1000, -1000), {{101, 1000}, {103, 990}, {111, 600}}},
              {"limited below", currents(-500, -600, 1000, -1000), {{101, -1000}, {103, -1010}, {111, -600}}},
              {"a positive lower limit lifts a negative sum",
               currents(0, -5, 1000, 300),
               {{101, 300}, {103, 290}, {111, -5}}},
              {"a sum of 0 is never limited", currents(0, 0, -5, 5), {{101, 0}, {103, -10}}},
              {"a negative upper limit is looked at from below",
               currents(0, 5, -100, -50),
               {{101, -50}, {103, -60}, {111, 5}}},
              {"sum", currents(Highest, 1, 5, -5), {{111, 1}, {101, 0}}, OutOfRange("98, 111")}});

    RunCases("Field Loop", &DriveEmulator::EmulateFieldLoop,
             {{"offsets", {{342, 12}, {343, 34}}, {{336, -12}, {337, 12}, {333, -34}, {334, -34}}},
              {"enabled and open loop", {{331, 1}, {329, 1}, {330, 77}}, {{328, 77}}},
              {"closed loop", {{331, 1}, {329, 0}, {330, 77}, {328, 5}}, {{328, 0}}},
              {"disabled", {{331, 0}, {329, 1}, {330, 77}, {328, 5}}, {{328, 0}}},
              {"lowest offset", {{342, Lowest}, {343, 1}}, {{333, 0}}, OutOfRange("342")}});

    const auto feedbacks = [](std::int32_t select) {
        return Values{{129, 1000}, {130, 3}, {194, 10}, {195, 20}, {196, 30}, {197, select}};
    };
    RunCases("Velocity Loop", &DriveEmulator::EmulateVelocityLoop,
             {{"armature", feedbacks(0), {{193, 7}, {192, 993}}},
              {"tachometer", feedbacks(1), {{193, 17}, {192, 983}}},
              {"any other is the encoder", feedbacks(-1), {{193, 27}, {192, 973}}}});
}

TEST(EmulatedControlBlocks, LinksMinMaxAndMOP)
{
    RunCases("Internal Link 3", &DriveEmulator::EmulateInternalLinks,
             {{"the last link", {{404, 217}, {405, 218}, {217, 44}}, {{218, 44}}},
              {"cut above", {{366, 217}, {367, 218}, {217, 500}}, {{218, 100}}, "", {{218, 100}}},
              {"cut below", {{366, 217}, {367, 218}, {217, -500}}, {{218, -100}}, "", {{218, 100}}},
              {"unset links cut parameter 0", {{0, 500}}, {{0, 100}}, "", {{0, 100}}},
              {"a link may set a later link's source",
               {{366, 217}, {367, 368}, {369, 219}, {217, 218}, {218, 9}},
               {{219, 9}, {368, 218}}},
              {"source out of 16 bits", {{370, 32768}}, {}, OutOfRange("370, 371")},
              {"no such destination", {{371, -1}}, {}, NoParameter("370, 371", -1)}});

    const auto given = [](std::int32_t x, std::int32_t reset = 0) {
        return Values{{412, 217}, {413, reset}, {414, 100}, {415, -50}, {416, 1}, {217, x}};
    };
    RunCases("Min/Max", &DriveEmulator::EmulateMinMax,
             {{"new maximum", given(101), {{414, 101}, {415, -50}, {416, 151}}},
              {"new minimum", given(-51), {{414, 100}, {415, -51}, {416, 151}}},
              {"reset", given(500, 1), {{414, 0}, {415, 0}, {416, 0}}},
              {"reset by 1 only", given(500, 2), {{414, 500}, {415, -50}, {416, 550}}},
              {"one step: a maximum below the minimum",
               {{412, 217}, {414, 0}, {415, 50}, {217, 5}},
               {{414, 5}, {415, 50}, {416, -45}}},
              {"no such source", {{412, 431}}, {}, NoParameter("412", 431)}});

    RunCases("MOP", &DriveEmulator::EmulateMOP,
             {{"reset", {{322, 1}, {323, 5}, {324, 9}}, {{324, 5}}},
              {"otherwise the output stays", {{322, 2}, {323, 5}, {324, 9}}, {{324, 9}}}});
}

TEST(EmulatedControlBlocks, Threshold)
{
    // Input and hysteresis at each tick, and the output behind it.
    const std::vector<std::array<std::int32_t, 3>> steps = {
        {110, 10, 9},   {111, 10, 22},  {91, 10, 22}, {90, 10, 11},   {-110, 10, 11},
        {-111, 10, 22}, {100, 100, 22}, {0, 10, 11},  {202, 101, 22}, {202, 101, 11}};
    for (const std::uint8_t member : {1, 2}) {
        const int base = member == 1 ? 177 : 183;
        ParameterTable table;
        FillPlainTable(table);
        Put(table, {{base + 1, 100}, {base + 3, 11}, {base + 4, 22}, {base + 5, 9}});
        DriveEmulator emulator(table);
        for (const auto &[x, hysteresis, output] : steps) {
            Put(table, {{base, x}, {base + 2, hysteresis}});
            emulator.EmulateThreshold(member);
            EXPECT_EQ(table.Value(base + 5), output) << "member " << int(member) << " input " << x;
            EXPECT_FALSE(emulator.EmulatedThresholdOn[member == 1 ? 1 : 0]);
        }
        Put(table, {{base, Lowest}});
        EXPECT_THROW(emulator.EmulateThreshold(member), RuntimeFailure);
    }
}

TEST(EmulatedControlBlocks, TimerCountsWhileItIsNotReset)
{
    ParameterTable table;
    FillPlainTable(table);
    Put(table, {{312, 50}, {313, 3}, {314, 4}, {315, 9}});
    QObject window;
    TimerBlock block(table, &window);
    block.UpdateTimerEmulator();
    ASSERT_TRUE(block.TimerEmulator.isActive());
    const int running = block.TimerEmulator.timerId();
    for (int second = 1; second <= 6; ++second) {
        block.UpdateTimerEmulator();
        EXPECT_EQ(table.Value(315), 3) << "before second " << second;
        block.TimerEmulator_Timer();
    }
    block.UpdateTimerEmulator();
    EXPECT_EQ(table.Value(428), 60);
    EXPECT_EQ(table.Value(315), 4);
    EXPECT_EQ(block.TimerEmulator.timerId(), running) << "a second was begun anew";

    Put(table, {{428, 2399}});
    block.TimerEmulator_Timer();
    block.TimerEmulator_Timer();
    EXPECT_EQ(table.Value(428), 2409) << "only a count below 2400 rises";

    table.SetPortOpen(true);
    Put(table, {{315, 77}});
    block.UpdateTimerEmulator();
    EXPECT_FALSE(block.TimerEmulator.isActive());
    EXPECT_EQ(table.Value(315), 77) << "on line the drive computes the output";

    table.SetPortOpen(false);
    Put(table, {{365, 1}});
    block.UpdateTimerEmulator();
    EXPECT_EQ(table.Value(428), 0);
    EXPECT_EQ(table.Value(315), 3);
}

} // namespace quorvik::testing
