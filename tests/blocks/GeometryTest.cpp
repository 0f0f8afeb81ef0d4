#include "blocks/diagram/Drawing.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

TEST(Geometry, AnArrowHeadLiesBehindItsTip)
{
    for (const QPointF &tip : {QPointF(5, 0), QPointF(-5, 0), QPointF(0, 5), QPointF(0, -5)}) {
        const QPolygonF head = ArrowHead({{{0, 0}, tip}});
        ASSERT_EQ(head.size(), 3);
        EXPECT_EQ(head.first(), tip);
        const QPointF back = (head.at(1) + head.at(2)) / 2;
        EXPECT_LT(back.manhattanLength(), tip.manhattanLength());
        EXPECT_GT(QPointF::dotProduct(back, tip), 0) << "on the line";
    }
    EXPECT_TRUE(ArrowHead({{{1, 1}, {1, 1}}}).isEmpty());
    EXPECT_TRUE(ArrowHead({{{1, 1}}}).isEmpty());
}

TEST(Drawing, ArmsTouchTheirContactsOrHangAndALinkFollows)
{
    Drawing d;
    const LivePart arm = d.Switch(QStringLiteral("Arm"), {10, 5}, {{0, 0}, {0, 5}, {0, 10}});
    const LivePart make = d.Contact(QStringLiteral("Make"), {0, 20}, {8, 20});
    d.Link({{5, 20}, Side::Top}, arm);
    bool linkChanged = false;
    d.Changed = [&](const Element &element) { linkChanged |= element.symbol == Symbol::Link; };
    for (int i = 0; i < 3; ++i) {
        arm.Set(i);
        EXPECT_EQ(Drawing::ArmEnd(d.At(arm.Index())), QPointF(0, 5.0 * i));
        EXPECT_EQ(d.LinkLine(d.Elements().last()).last(), QPointF(5, 2.5 + 2.5 * i));
    }
    EXPECT_TRUE(linkChanged);
    EXPECT_LT(Drawing::ArmEnd(d.At(make.Index())).y(), 18) << "open at first, lifted off its contact";
    make.Set(1);
    EXPECT_EQ(Drawing::ArmEnd(d.At(make.Index())), QPointF(8, 20));
}

} // namespace quorvik::testing
