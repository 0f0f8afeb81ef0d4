#include "platform/Strip.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

QString Order(const Strip &strip)
{
    QString keys;
    for (const StripLine &line : strip.Lines())
        keys += line.key;
    return keys;
}

} // namespace

TEST(StripTest, StandsByUrgencyTheNewestFirst)
{
    Strip strip;
    strip.Show({QStringLiteral("a"), Urgency::News, QStringLiteral("1")});
    strip.Show({QStringLiteral("b"), Urgency::Fault, QStringLiteral("1")});
    strip.Show({QStringLiteral("c"), Urgency::News, QStringLiteral("1")});
    EXPECT_EQ(Order(strip), QStringLiteral("bca"));
    strip.Show({QStringLiteral("a"), Urgency::Fault, QStringLiteral("2")});
    EXPECT_EQ(Order(strip), QStringLiteral("abc"));
    strip.Withdraw(QStringLiteral("b"));
    EXPECT_EQ(Order(strip), QStringLiteral("ac"));
}

TEST(StripTest, StaysClosedUntilThereIsSomethingElseToSay)
{
    Strip strip;
    const StripLine line{QStringLiteral("a"), Urgency::News, QStringLiteral("1")};
    strip.Show(line);
    strip.Close(line.key);
    strip.Show(line);
    EXPECT_EQ(Order(strip), QString());
    strip.Show({line.key, line.urgency, QStringLiteral("2")});
    EXPECT_EQ(Order(strip), line.key);
    strip.Show(line);
    strip.Close(line.key);
    strip.Withdraw(line.key);
    strip.Show(line);
    EXPECT_EQ(Order(strip), line.key);
}

TEST(StripTest, AnActionMayShowAnotherLineInItsPlace)
{
    Strip strip;
    int runs = 0;
    const StripLine answer{QStringLiteral("a"), Urgency::News, QStringLiteral("done")};
    strip.Show({QStringLiteral("a"), Urgency::News, QStringLiteral("do"), {{QStringLiteral("Do"), [&] {
                                                                                ++runs;
                                                                                strip.Show(answer);
                                                                            }}}});
    strip.Run(QStringLiteral("a"), 1);
    strip.Run(QStringLiteral("b"), 0);
    EXPECT_EQ(runs, 0);
    strip.Run(QStringLiteral("a"), 0);
    EXPECT_EQ(runs, 1);
    // The same words with another offer are shown anew, for their buttons' sake.
    int changes = 0;
    QObject::connect(&strip, &Strip::Changed, &strip, [&] { ++changes; });
    strip.Show(answer);
    EXPECT_EQ(changes, 0);
    strip.Show({answer.key, answer.urgency, answer.sentence, {{QStringLiteral("Undo"), [] {}}}});
    EXPECT_EQ(changes, 1);
    ASSERT_NE(strip.Find(QStringLiteral("a")), nullptr);
    EXPECT_EQ(strip.Find(QStringLiteral("a"))->sentence, answer.sentence);
}

} // namespace quorvik::testing
