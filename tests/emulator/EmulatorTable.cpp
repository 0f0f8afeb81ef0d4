#include "EmulatorTable.h"

#include "platform/RuntimeFailure.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

void FillPlainTable(Model &model)
{
    model.ParamTable.Resize(430);
    model.LastParam = 430;
    for (int p = 0; p <= 430; ++p) {
        model.ParamTable[p].Min = -1000000;
        model.ParamTable[p].Max = 1000000;
    }
    // Calibrated, so that a whole tick goes through.
    for (int p = 43; p <= 47; ++p)
        model.ParamTable[p].Value = 4095;
    model.ParamTable[65].Value = 60000;
}

void Put(Model &model, const Values &values)
{
    for (const auto &[p, raw] : values)
        model.ParamTable[p].Value = raw;
}

void RunCases(const char *block, const std::function<void(DriveEmulator &)> &routine,
              const std::vector<BlockCase> &cases)
{
    for (const BlockCase &one : cases) {
        SCOPED_TRACE(one.what);
        Model model;
        FillPlainTable(model);
        Put(model, one.given);
        for (const auto &[p, limit] : one.limits) {
            model.ParamTable[p].Max = limit;
            model.ParamTable[p].Min = -limit;
        }
        const RecordArray before = model.ParamTable;
        DriveEmulator emulator(model);
        QString failure;
        try {
            routine(emulator);
        } catch (const RuntimeFailure &raised) {
            failure = raised.Sentence();
        }
        EXPECT_EQ(failure.toStdString(), one.failure.empty() ? "" : block + (' ' + one.failure));
        Values expected = one.expected;
        for (int p = 0; p <= model.LastParam; ++p) {
            const auto [at, isLeftAlone] = expected.try_emplace(p, before[p].Value);
            EXPECT_EQ(model.Value(p), at->second) << "parameter " << p << (isLeftAlone ? ", left alone" : "");
            EXPECT_EQ(model.ParamTable[p].Max, before[p].Max) << "parameter " << p;
        }
    }
}

} // namespace quorvik::testing
