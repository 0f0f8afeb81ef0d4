#include "blocks/diagram/Drawing.h"

#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

struct RouteCase {
    Port from;
    Port to;
    double bend;
    QPolygonF corners;
};

TEST(Geometry, WiresLeaveAndEnterAtRightAngles)
{
    const double half = Drawing::HalfWay;
    const RouteCase cases[] = {
        {{{0, 5}, Side::Right}, {{9, 5}, Side::Left}, half, {{{0, 5}, {9, 5}}}},
        {{{0, 5}, Side::Right}, {{10, 9}, Side::Left}, half, {{{0, 5}, {5, 5}, {5, 9}, {10, 9}}}},
        {{{0, 5}, Side::Right}, {{10, 9}, Side::Left}, 8, {{{0, 5}, {8, 5}, {8, 9}, {10, 9}}}},
        {{{0, 5}, Side::Right}, {{10, 9}, Side::Top}, half, {{{0, 5}, {10, 5}, {10, 9}}}},
        {{{0, 5}, Side::Bottom}, {{10, 9}, Side::Left}, half, {{{0, 5}, {0, 9}, {10, 9}}}},
        {{{0, 0}, Side::Bottom}, {{10, 8}, Side::Top}, half, {{{0, 0}, {0, 4}, {10, 4}, {10, 8}}}},
        {{{0, 0}, Side::Bottom}, {{10, 8}, Side::Top}, 6, {{{0, 0}, {0, 6}, {10, 6}, {10, 8}}}},
        // A dot has no side of its own: the wire enters the other end as that one wants it.
        {{{0, 0}, Side::Any}, {{10, 8}, Side::Left}, half, {{{0, 0}, {0, 8}, {10, 8}}}},
        {{{0, 0}, Side::Any}, {{10, 8}, Side::Top}, half, {{{0, 0}, {10, 0}, {10, 8}}}},
    };
    for (const RouteCase &wire : cases)
        EXPECT_EQ(RouteWire(wire.from, wire.to, wire.bend), wire.corners);
}

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

TEST(Geometry, CrossingIsTheInsideOnly)
{
    const QRectF rect(10, 10, 20, 10);
    EXPECT_TRUE(CrossesRect({{{0, 15}, {40, 15}}}, rect));
    EXPECT_TRUE(CrossesRect({{{15, 12}, {16, 13}}}, rect)) << "all inside";
    EXPECT_TRUE(CrossesRect({{{0, 0}, {15, 0}, {15, 40}}}, rect)) << "second stretch";
    EXPECT_FALSE(CrossesRect({{{0, 10}, {40, 10}}}, rect)) << "along the edge";
    EXPECT_FALSE(CrossesRect({{{0, 15}, {10, 15}}}, rect)) << "ends at the edge";
    EXPECT_FALSE(CrossesRect({{{0, 25}, {40, 25}}}, rect));
    EXPECT_FALSE(CrossesRect({{{0, 30}, {0, 0}}}, rect));
}

TEST(Geometry, ASlantedShapeHasItsPortsOnItsEdges)
{
    const Shape triangle(QRectF(0, 0, 6, 8), Shape::Outline::Slanted);
    EXPECT_EQ(triangle.TopAt(3).at, QPointF(3, 2));
    EXPECT_EQ(triangle.BottomAt(3).at, QPointF(3, 6));
    EXPECT_EQ(triangle.Right().at, QPointF(6, 4));
}

TEST(Drawing, ArmsTouchTheirContactsOrHang)
{
    Drawing d;
    const LivePart tri = d.Switch(QStringLiteral("Tri"), {10, 5}, {{0, 0}, {0, 5}, {0, 10}});
    const LivePart make = d.Contact(QStringLiteral("Make"), {0, 20}, {8, 20});
    for (int i = 0; i < 3; ++i) {
        tri.Set(i);
        EXPECT_EQ(Drawing::ArmEnd(d.At(tri.Index())), QPointF(0, 5.0 * i));
    }
    EXPECT_EQ(tri.Pivot().side, Side::Right);
    EXPECT_EQ(tri.Contact(2).side, Side::Left);
    EXPECT_EQ(make.Pivot().side, Side::Left);
    EXPECT_LT(Drawing::ArmEnd(d.At(make.Index())).y(), 18) << "open at first, lifted off its contact";
    make.Set(1);
    EXPECT_EQ(Drawing::ArmEnd(d.At(make.Index())), QPointF(8, 20));
}

TEST(Drawing, TellsOfChangesAndOfNothingElse)
{
    Drawing d;
    const LivePart arm = d.Switch(QStringLiteral("Arm"), {10, 5}, {{0, 0}, {0, 10}});
    d.Link({{5, 20}, Side::Top}, arm);
    QList<Symbol> told;
    d.Changed = [&told](const Element &element) { told.append(element.symbol); };
    arm.Set(0);
    arm.Show(true);
    EXPECT_TRUE(told.isEmpty());
    arm.Set(1);
    EXPECT_TRUE(told.contains(Symbol::Link)) << "the link follows the arm";
    EXPECT_EQ(d.LinkLine(d.Elements().last()).last(), QPointF(5, 7.5));
}

} // namespace

} // namespace quorvik::testing
