#include "model/Faults.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace quorvik::testing
{

TEST(Faults, EveryBitHasANameAndEveryTextItsParameters)
{
    static const QRegularExpression unfilled(QStringLiteral("%\\d"));
    ASSERT_EQ(AllFaults().size(), 10U);
    for (const Fault &fault : FaultsOf(0xFFFF)) {
        const QString text = fault.meaning + u' ' + fault.check;
        EXPECT_FALSE(text.contains(unfilled)) << text.toStdString();
        EXPECT_FALSE(fault.meaning.isEmpty() || fault.check.isEmpty() || fault.name.isEmpty());
    }
    // What the log writes and what is shown must be of the same fault.
    for (const Fault &fault : AllFaults())
        EXPECT_EQ(fault.logText.first(2), fault.name.first(2));
    EXPECT_EQ(
        FaultNames(0x8000 + 1 + 64),
        QStringList({QStringLiteral("Field Loss"), QStringLiteral("Phase Loss"), QStringLiteral("bit 15")}));
    const std::pair<std::int32_t, const char *> inShort[] = {
        {0, ""}, {64, "Phase Loss"}, {96, "OverTemp, Phase Loss"}, {15, "Field Loss and 3 more"}};
    for (const auto &[rawFaults, text] : inShort)
        EXPECT_EQ(FaultsInShort(rawFaults).toStdString(), text);
}

} // namespace quorvik::testing
