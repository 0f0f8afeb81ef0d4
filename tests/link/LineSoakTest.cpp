#include "LineSoak.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

TEST(LineSoakTest, NoFaultOfTheLinePutsAForeignValueIntoATable)
{
    LineSoak soak(QStringLiteral(QUORVIK_PRESETS_FILE), 20);
    for (const double rate : {0.001, 0.01, 0.1}) {
        SCOPED_TRACE(rate);
        const SoakFigures figures = soak.Run(rate, 1500);
        EXPECT_EQ(figures.foreignRows, 0);
        EXPECT_TRUE(figures.problems.isEmpty()) << qPrintable(figures.problems.join(u'\n'));
        EXPECT_GE(figures.faults, rate * 1500 / 3);
        EXPECT_GT(figures.entries, 10);
        EXPECT_GT(figures.rowChanges, 10);
    }
}

} // namespace quorvik::testing
