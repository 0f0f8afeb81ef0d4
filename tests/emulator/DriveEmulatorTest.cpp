#include "EmulatorTable.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace quorvik::testing
{

class DriveEmulatorTest : public ::testing::Test
{
protected:
    DriveEmulatorTest()
    {
        FillPlainTable(table);
        SetFailureReporter([this](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    }
    ~DriveEmulatorTest() override
    {
        SetFailureReporter([](const RuntimeFailure &) {});
    }

    ParameterTable table;
    QStringList told;
    DriveEmulator emulator{table};
};

TEST_F(DriveEmulatorTest, TicksByItselfFromTheStart)
{
    EXPECT_TRUE(emulator.TimerEmulateSvx.isActive());
    ParameterTable empty;
    DriveEmulator(empty).TimerEmulateSvx_Timer();
    EXPECT_TRUE(told.isEmpty()) << "a tick before the factory table is read is no failure";
}

TEST_F(DriveEmulatorTest, PanelsShowStateOnLineOnlyAndModelAlways)
{
    Put(table, {{422, 0}, {411, 1}, {350, 5}});
    QSignalSpy panels(&emulator, &DriveEmulator::StatusPanels);
    emulator.TimerEmulateSvx_Timer();
    ASSERT_EQ(panels.size(), 1);
    EXPECT_EQ(panels.at(0).at(0).toString(), QString());
    const QString modelText = panels.at(0).at(1).toString();
    EXPECT_FALSE(modelText.isEmpty());

    table.SetPortOpen(true);
    Put(table, {{352, 99}});
    emulator.TimerEmulateSvx_Timer();
    EXPECT_EQ(panels.at(1).at(0).toString(), QStringLiteral("Stop"));
    EXPECT_EQ(panels.at(1).at(1).toString(), modelText);
    EXPECT_EQ(table.Value(352), 99) << "on line nothing is computed";

    table.SetPortOpen(false);
    Put(table, {{411, 99}});
    emulator.TimerEmulateSvx_Timer();
    ASSERT_EQ(panels.size(), 3) << "a bad model must not leave the state of a drive that is gone";
    EXPECT_EQ(panels.at(2).at(0).toString(), QString());
    EXPECT_EQ(panels.at(2).at(1).toString(), modelText);
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.at(0).startsWith(QStringLiteral("Drive Model (411): "))) << told.at(0).toStdString();
    EXPECT_EQ(table.Value(352), 99) << "the failure ends the tick";
}

TEST_F(DriveEmulatorTest, OrderDecidesWhichTickAValueArrivesIn)
{
    const std::tuple<const char *, Values, int, std::int32_t, int> paths[] = {
        {"analog input to current demand", {{23, 97}, {53, 4095}, {139, 70}, {110, 1}}, 111, 70, 1},
        {"digital over analog input", {{23, 217}, {139, 9}, {53, 4095}, {7, 217}, {14, 33}}, 217, 33, 1},
        {"highest digital input", {{1, 217}, {8, 5}, {7, 217}, {14, 33}}, 217, 33, 1},
        {"digital input to output", {{1, 217}, {8, 5000}, {89, 217}, {95, 10000}}, 170, 1000, 1},
        {"frequency to output", {{63, 217}, {67, 60000}, {164, 50}, {89, 217}, {95, 10000}}, 170, 10, 2},
        {"link to relay", {{217, 5}, {366, 217}, {367, 218}, {69, 218}, {75, 5}, {78, 1}}, 165, 1, 1},
        {"link to current loop", {{217, 5}, {366, 217}, {367, 98}, {99, 50}}, 101, 5, 2},
        {"peak to analog output", {{412, 217}, {217, 10000}, {81, 414}, {83, 10000}}, 168, 4095, 1},
        {"error to demand", {{194, 40}, {129, 100}, {366, 192}, {367, 205}, {99, 100}}, 111, 60, 3},
        {"field current demand", {{331, 1}, {329, 1}, {330, 77}}, 328, 77, 1},
        {"motor-operated potentiometer", {{322, 1}, {323, 5}}, 324, 5, 1},
        {"threshold to relay", {{177, 5}, {181, 9}, {69, 182}, {75, 9}, {78, 1}}, 165, 1, 2},
    };
    for (const auto &[what, given, target, raw, arrival] : paths) {
        SCOPED_TRACE(what);
        ParameterTable own;
        FillPlainTable(own);
        Put(own, given);
        DriveEmulator one(own);
        for (int tick = 1; tick <= arrival; ++tick) {
            EXPECT_NE(own.Value(target), raw) << "too early, before tick " << tick;
            one.TimerEmulateSvx_Timer();
        }
        EXPECT_EQ(own.Value(target), raw);
        EXPECT_EQ(own.Row(target).WriteFlag, WriteState::None) << "a tick is no edit";
        EXPECT_FALSE(own.WritePending);
    }
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(DriveEmulatorTest, AFailureEndsItsTickAndIsToldOnce)
{
    Put(table, {{350, 5}, {38, 10}, {43, 10}, {139, 10}});
    emulator.TimerEmulateSvx_Timer();
    emulator.TimerEmulateSvx_Timer();
    EXPECT_EQ(told, QStringList{QStringLiteral("Analog Input 1 (38, 43): Division by zero.")});
    EXPECT_EQ(table.Value(352), 0) << "what comes later in the tick did not run";

    Put(table, {{43, 11}});
    emulator.TimerEmulateSvx_Timer();
    EXPECT_EQ(table.Value(352), 5) << "the next tick starts anew";
    Put(table, {{43, 10}});
    emulator.TimerEmulateSvx_Timer();
    EXPECT_EQ(told.size(), 2) << "told again after a tick went through";
}

} // namespace quorvik::testing
