#include "batch/BatchFixture.h"

namespace quorvik
{

TEST_F(BatchTest, InfoTellsNumbersAsNumbersAndTheStateAsItsWord)
{
    Drive().Set(421, 1234);
    const Ended ended = RunAtDrive({QStringLiteral("info"), QStringLiteral("--json")});
    EXPECT_EQ(ended.code, 0) << ended.errors.constData();
    ASSERT_EQ(ended.Rows().size(), 1);
    const QJsonObject row = ended.Rows().front();
    EXPECT_EQ(row.value(QStringLiteral("operating_hours")).toInt(), 1234);
    EXPECT_EQ(row.value(QStringLiteral("state")).toString(), QStringLiteral("Stop"));
}

} // namespace quorvik
