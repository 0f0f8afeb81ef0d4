#include "blocks/DriveCircuit.h"

#include "support/TestDesk.h"

#include <gmock/gmock.h>

#include <QSet>

namespace quorvik::testing
{

using namespace Param;

class CircuitTest : public ::testing::Test
{
protected:
    void Put(int p, std::int32_t rawValue)
    {
        desk.table.SetValue(p, rawValue, ChangeCause::Entered);
        circuit.Follow();
    }
    static std::vector<int> Params(const std::vector<CircuitNeighbour> &neighbours, bool onlyActive)
    {
        std::vector<int> params;
        for (const CircuitNeighbour &neighbour : neighbours)
            if (neighbour.isActive || !onlyActive)
                params.push_back(neighbour.param);
        std::ranges::sort(params);
        return params;
    }
    std::vector<int> Sources(int p, bool onlyActive = false) const
    {
        return Params(circuit.SourcesOf(p), onlyActive);
    }
    std::vector<int> Feeds(int p) const { return Params(circuit.FeedsOf(p), true); }
    std::optional<double> Entering(int p) const
    {
        for (const int node : circuit.NodesOf(p))
            if (const std::optional<double> value = circuit.Entering(node))
                return value;
        return std::nullopt;
    }

    TestDesk desk;
    DriveCircuit drive{desk.table};
    Circuit &circuit = drive.Get();
};

TEST_F(CircuitTest, EveryWireComesFromSomethingAndGoesOnOrLeavesBehindABox)
{
    for (int edge = 0; edge < circuit.EdgeCount(); ++edge) {
        const Edge &wire = circuit.EdgeAt(edge);
        const std::string where = QStringLiteral("%1, wire %2")
                                      .arg(circuit.Block(circuit.BlockOfEdge(edge)).window)
                                      .arg(edge)
                                      .toStdString();
        ASSERT_GE(wire.from.node, 0) << where;
        const Net &net = *circuit.Block(circuit.BlockOfEdge(edge)).net;
        const NodeKind from = net.nodes[std::size_t(wire.from.node)].kind;
        EXPECT_TRUE(wire.to.node >= 0 || from == NodeKind::Value) << where;
        // A wire drawn against its signal would leave a joint without one.
        EXPECT_TRUE(from != NodeKind::Joint || !circuit.Into(circuit.From(edge)).empty()) << where;
    }
}

TEST_F(CircuitTest, ParametersKnowTheirNeighboursThroughSwitchesLinksAndWindows)
{
    EXPECT_EQ(Sources(VelocityDemand, true), (std::vector<int>{RampOutput}));
    EXPECT_EQ(Sources(VelocityDemand), (std::vector<int>{RampOutput, SetpointB, SetpointC}));
    EXPECT_EQ(Sources(RampInput),
              (std::vector<int>{Reference0, Reference1, Reference2, Reference3, JogReference}));
    Put(DriveState, 1);
    Put(RefSelectLSB, 1);
    EXPECT_EQ(Sources(RampInput, true), (std::vector<int>{Reference1}));
    EXPECT_EQ(Sources(VelocityDemand, true), (std::vector<int>{RampOutput, SetpointB, SetpointC}));
    // The factory set drives it from the first analog input, whose counts come along.
    EXPECT_THAT(Sources(Reference0, true), ::testing::Contains(int(AnalogIn1Status)));
    Put(AnalogIn1Destination, SetpointB);
    EXPECT_THAT(Sources(SetpointB, true), ::testing::Contains(int(AnalogIn1Status)));
    EXPECT_TRUE(Sources(Reference0).empty());
    Put(InternalLink3Source, MOPOutput);
    Put(InternalLink3Destination, Reference2);
    EXPECT_EQ(Sources(Reference2, true), (std::vector<int>{MOPOutput}));
    EXPECT_THAT(Feeds(MOPOutput), ::testing::Contains(int(Reference2)));
    const auto &link = circuit.Links().at(std::size_t(circuit.SourcesOf(Reference2).front().link));
    EXPECT_EQ(link.name, Name("Internal Link 3"));
}

TEST_F(CircuitTest, APathRunsFromTheInputToTheMotorAndOnlyWhereTheSwitchesLetIt)
{
    Put(DriveState, 1);
    const auto windows = [this](const CircuitPath &path) {
        QSet<QString> found;
        for (const int node : path.nodes)
            found.insert(circuit.Block(circuit.BlockOfNode(node)).window);
        return found;
    };
    const int demand = circuit.NodesOf(ConductionAngle).front();
    EXPECT_EQ(windows(circuit.Upstream(demand, Through::ActiveContacts)), QSet<QString>{Name("Current Loop")})
        << "the loops are blocked";
    Put(LoopEnable, 1);
    const QSet<QString> whole = windows(circuit.Upstream(demand, Through::ActiveContacts));
    for (const char *window :
         {"Current Loop", "Velocity Loop", "Setpoint Sum", "Accel/Decel", "Setpoints", "Analog Input 1"})
        EXPECT_TRUE(whole.contains(Name(window))) << window;
    EXPECT_FALSE(whole.contains(Name("Analog Input 2")));
    Put(DriveModeLSB, 1);
    EXPECT_FALSE(windows(circuit.Upstream(demand, Through::ActiveContacts)).contains(Name("Setpoints")));
    EXPECT_TRUE(windows(circuit.Upstream(demand, Through::AllContacts)).contains(Name("Setpoints")));
}

TEST_F(CircuitTest, ValuesComeInTheUnitsOfTheBoxes)
{
    Put(DriveState, 1);
    Put(RampOutput, 7288);
    Put(SetpointB, 512);
    EXPECT_DOUBLE_EQ(Entering(VelocityDemand).value_or(0), 78.0);
    Put(SetpointSumInvertB, 1);
    EXPECT_DOUBLE_EQ(Entering(VelocityDemand).value_or(0), 67.76);
    Put(DriveState, 2);
    EXPECT_DOUBLE_EQ(Entering(VelocityDemand).value_or(0), 72.88);
}

} // namespace quorvik::testing
