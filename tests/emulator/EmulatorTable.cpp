#include "EmulatorTable.h"

#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

void FillPlainTable(ParameterTable &table)
{
    table.Resize(430);
    table.LastParam = 430;
    for (int p = 0; p <= 430; ++p) {
        table.Row(p).Min = -1000000;
        table.Row(p).Max = 1000000;
    }
    // Calibrated, so that a whole tick goes through.
    for (int p = 43; p <= 47; ++p)
        table.Row(p).Value = 4095;
    table.Row(65).Value = 60000;
}

void Put(ParameterTable &table, const Values &values)
{
    for (const auto &[p, raw] : values)
        table.Row(p).Value = raw;
}

void RunCases(const char *block, const std::function<void(DriveEmulator &)> &routine,
              const std::vector<BlockCase> &cases)
{
    for (const BlockCase &one : cases) {
        SCOPED_TRACE(block + (": " + std::string(one.what)));
        ParameterTable table;
        FillPlainTable(table);
        Put(table, one.given);
        for (const auto &[p, limit] : one.limits) {
            table.Row(p).Max = limit;
            table.Row(p).Min = -limit;
        }
        const RecordArray before = table.Records();
        DriveEmulator emulator(table);
        QString failure;
        try {
            routine(emulator);
        } catch (const RuntimeFailure &raised) {
            failure = raised.Sentence();
        }
        EXPECT_EQ(failure.toStdString(), one.failure.empty() ? "" : block + (' ' + one.failure));
        Values expected = one.expected;
        for (int p = 0; p <= table.LastParam; ++p) {
            const auto [at, isLeftAlone] = expected.try_emplace(p, before[p].Value);
            EXPECT_EQ(table.Value(p), at->second) << "parameter " << p << (isLeftAlone ? ", left alone" : "");
            EXPECT_EQ(table.Row(p).Max, before[p].Max) << "parameter " << p;
        }
    }
}

} // namespace quorvik::testing
