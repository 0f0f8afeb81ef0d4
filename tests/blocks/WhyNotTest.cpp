#include "circuit/WhyNot.h"

#include "blocks/DriveCircuit.h"
#include "drive/MotorModel.h"
#include "emulator/DriveEmulator.h"
#include "settings/SettingsFile.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

using namespace Param;
using Values = std::vector<std::pair<int, std::int32_t>>;
using drive::Terminals;

enum Input { RunContact, StopContact, JogContact, InvertContact };
constexpr int AnalogFull = 2047;

ParameterTable &Loaded(ParameterTable &parameters)
{
    EXPECT_EQ(LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), parameters), QString());
    return parameters;
}

/** A plant whose drive runs at half speed unless something is wrong. */
struct Plant {
    void Put(const Values &values)
    {
        for (const auto &[p, rawValue] : values)
            table.Put(p, rawValue);
    }
    void Pass(double seconds)
    {
        for (double left = seconds; left > 1e-9; left -= drive::MotorModel::TickSeconds)
            machine.Tick(drive::MotorModel::TickSeconds);
    }
    WhyNot Explained()
    {
        circuit.Get().Follow();
        return ExplainStandstill(circuit.Get(), parameters, {.isOnLine = true});
    }

    ParameterTable parameters;
    drive::DriveTable table{Loaded(parameters)};
    drive::MotorModel machine{table, 1};
    DriveCircuit circuit{parameters};
};

struct Scenario {
    const char *what;
    Values before;                               ///< set at standstill
    int first;                                   ///< the cause to be named; -1 for a drive that runs
    const char *says = "";                       ///< stands in the headline
    std::function<void(Plant &)> running = {};   ///< done to the drive while it runs
    std::function<void(Terminals &)> wires = {}; ///< what is wired otherwise than in a healthy plant
    double seconds = 4;                          ///< from the run contact on
};

std::vector<Scenario> Scenarios()
{
    const auto open = [](Input input) {
        return [input](Terminals &wires) { wires.digital[std::size_t(input)] = false; };
    };
    const auto closed = [](Input input) {
        return [input](Terminals &wires) { wires.digital[std::size_t(input)] = true; };
    };
    const auto byPanel = [](Plant &plant) {
        plant.circuit.Get().SetOperatorLinks({{.kind = CircuitLink::Kind::Operator,
                                               .destination = Param::Run,
                                               .name = QStringLiteral("Slider")}});
    };
    const auto putting = [](const Values &values) { return [values](Plant &plant) { plant.Put(values); }; };
    const auto referring = [](int percent) {
        return [percent](Terminals &wires) { wires.analog[0] = percent * AnalogFull / 100; };
    };
    return {
        {"healthy", {}, -1, "The drive runs: 49."},
        {"a phase is lost", {}, LatchedFault, "Phase Loss", [](Plant &plant) { plant.machine.Trip(64); }},
        {"the field is lost", {{FieldIDemand, 0}}, PresentFault, "Field Loss"},
        {"enable wired and open",
         {{DigitalIn3Destination, RunEnable}},
         RunEnable,
         "(22) Run Enable is False: digital input 3 is its source and reads Open. Close digital input 3."},
        {"two inputs on one parameter: the higher one wins",
         {{DigitalIn3Destination, RunEnable}, {DigitalIn7Destination, RunEnable}},
         RunEnable,
         "digital input 7 is its source and reads Open",
         {},
         closed(JogContact)},
        {"a link after an input",
         {{DigitalIn3Destination, RunEnable},
          {InternalLink1Source, RampBypass},
          {InternalLink1Destination, RunEnable}},
         RunEnable,
         "Internal Link 1 brings it from",
         {},
         closed(JogContact)},
        {"an input after the virtual operator", {}, Run, "digital input 1", byPanel, open(RunContact)},
        {"the virtual operator alone", {{DigitalIn1Destination, 0}}, Run, ": Slider writes it.", byPanel},
        {"enable off in the set", {{RunEnable, 0}}, RunEnable, "set it to True"},
        {"stop is open", {}, Stop, "Close digital input 2", {}, open(StopContact)},
        {"no run command", {}, Run, "Close digital input 1", {}, open(RunContact)},
        {"two wires, no run", {{LogicSelect, 1}}, Run, "", {}, open(RunContact)},
        {"two wires leave the stop aside", {{LogicSelect, 1}}, -1, "", {}, open(StopContact)},
        {"run was there before the enable",
         {{RunEnable, 0}},
         RunStatus,
         "take it away, and give it again",
         putting({{RunEnable, 1}})},
        {"stopped while run stays",
         {},
         RunStatus,
         "",
         [](Plant &plant) {
             plant.machine.Inputs().digital[StopContact] = false;
             plant.Pass(8);
             plant.machine.Inputs().digital[StopContact] = true;
         }},
        {"jogs, and run comes on top",
         {},
         Jog,
         "at once",
         [](Plant &plant) {
             plant.machine.Inputs().digital[RunContact] = false;
             plant.machine.Inputs().digital[StopContact] = false;
             plant.Pass(10);
             plant.machine.Inputs().digital[StopContact] = true;
             plant.machine.Inputs().digital[JogContact] = true;
             plant.Pass(2);
             plant.machine.Inputs().digital[RunContact] = true;
         }},
        {"jog without a speed",
         {{JogReference, 0}},
         JogReference,
         "",
         {},
         [](Terminals &wires) {
             wires.digital[RunContact] = false;
             wires.digital[JogContact] = true;
         }},
        {"no reference", {}, Reference0, "analog input 1", {}, referring(0)},
        {"an empty reference is chosen", {{DigitalIn6OpenValue, 1}}, Reference1, "(216)"},
        {"inverted into a closed reverse",
         {{ReverseMaxSpeed, 0}},
         ReverseMaxSpeed,
         "(222) Reference Invert",
         {},
         [](Terminals &wires) { wires.digital[InvertContact] = true; }},
        {"no forward speed", {{ForwardMaxSpeed, 0}}, ForwardMaxSpeed},
        {"reverse speed closed for a forward demand", {{ReverseMaxSpeed, 0}}, -1},
        {"the ramp takes ten minutes", {{FwdAccelA, 6000}}, FwdAccelA, "600.0"},
        {"the ramp of ten minutes is passed by", {{FwdAccelA, 6000}, {RampBypass, 1}}, -1},
        {"a trim cancels the reference", {{SetpointB, -5000}}, VelocityDemand, "cancels"},
        {"standstill logic above the demand",
         {{StandstillLogic, 1}, {ZeroSpeedSet, 600}},
         StandstillLogic,
         "(207)",
         {},
         referring(3)},
        {"a mode that is none", {{DriveModeMSB, 1}}, DriveModeMSB},
        {"torque mode by mistake", {{DriveModeLSB, 1}}, DriveModeLSB, "torque mode"},
        {"torque mode without a torque", {{DriveModeLSB, 1}}, TorqueReference, "", {}, referring(0)},
        {"no current forwards", {{PositiveILimit, 0}}, PositiveILimit},
        {"too little current for the load", {{PositiveILimit, 700}}, PositiveILimit, "stands at it"},
        {"no current backwards", {{NegativeILimit, 0}}, NegativeILimit, "", {}, referring(-50)},
        {"backwards without regeneration", {{RegenMode, 0}}, RegenMode, "", {}, referring(-50)},
        {"backwards with one bridge", {{DriveModel, 21}}, DriveModel, "", {}, referring(-50)},
        {"the armature is in open loop", {{OpenLoopArmSelect, 1}}, OpenLoopArmSelect},
        {"the field is off", {{FieldEnable, 0}}, FieldEnable},
        {"the field is in open loop", {{OpenLoopFieldSelect, 1}, {FieldLossInhibit, 1}}, OpenLoopFieldSelect},
        {"no field demand, no watch on it", {{FieldIDemand, 0}, {FieldLossInhibit, 1}}, FieldIDemand},
        {"the encoder tells nothing",
         {{FeedbackSelect, 2}, {FullRPMLevel, 1}, {VFBLossInhibit, 1}, {PositiveILimit, 2500}},
         FeedbackSelect,
         "coupling"},
        {"the tachometer is turned round",
         {{FeedbackSelect, 1}, {InvertFeedback, 1}, {PositiveILimit, 2500}},
         InvertFeedback},
        {"the shaft is stuck",
         {},
         PositiveILimit,
         "stands at it",
         [](Plant &plant) { plant.machine.SetLoad(2); }},
    };
}

TEST(WhyNotTest, NamesWhatKeepsTheDriveFromRunning)
{
    for (const Scenario &scenario : Scenarios()) {
        SCOPED_TRACE(scenario.what);
        Plant plant;
        Terminals &wires = plant.machine.Inputs();
        Terminals healthy;
        healthy.digital[RunContact] = healthy.digital[StopContact] = true;
        healthy.analog[0] = AnalogFull / 2;
        if (scenario.wires)
            scenario.wires(healthy);
        // The contacts that start come last, as at a plant.
        plant.Put(scenario.before);
        wires = healthy;
        wires.digital[RunContact] = wires.digital[JogContact] = false;
        plant.Pass(3);
        wires = healthy;
        plant.Pass(scenario.seconds);
        if (scenario.running) {
            scenario.running(plant);
            plant.Pass(2);
        }
        const WhyNot why = plant.Explained();
        EXPECT_EQ(why.first < 0 ? -1 : why.conditions[std::size_t(why.first)].param, scenario.first)
            << qPrintable(why.AsText());
        EXPECT_TRUE(why.headline.contains(QLatin1String(scenario.says))) << qPrintable(why.AsText());
        EXPECT_EQ(why.runs, scenario.first < 0);
        for (std::size_t i = std::size_t(why.first + 1); i < why.conditions.size(); ++i)
            EXPECT_FALSE(why.first >= 0 && why.conditions[i].verdict == Verdict::Blocks &&
                         plant.parameters.AttrBit(Attr::ReadOnly, why.conditions[i].param))
                << "what follows is no cause:\n"
                << qPrintable(why.AsText());
    }
}

TEST(WhyNotTest, SaysWhatIsNotKnownAndDoesNotJudgeByIt)
{
    Plant plant;
    plant.Put({{DigitalIn3Destination, RunEnable}});
    plant.Pass(1);
    plant.circuit.Get().Follow();
    std::vector<int> unknown{Stop};
    const auto explained = [&] {
        return ExplainStandstill(plant.circuit.Get(), plant.parameters,
                                 {.isOnLine = true, .isKnown = [&unknown](int p) {
                                      return std::ranges::find(unknown, p) == unknown.end();
                                  }});
    };
    WhyNot why = explained();
    EXPECT_TRUE(why.headline.endsWith(QStringLiteral("not known yet: 1.)"))) << qPrintable(why.headline);
    EXPECT_EQ(why.conditions[std::size_t(why.first)].param, RunEnable);
    unknown = {DigitalIn3Status};
    plant.machine.Inputs().digital[StopContact] = true;
    plant.Pass(1);
    plant.circuit.Get().Follow();
    why = explained();
    EXPECT_EQ(why.headline.section(u'.', 0, 1),
              QStringLiteral("(22) Run Enable is False: digital input 3 is its source. Close the enable "
                             "contact of the plant, or set it to True"));
    for (const int p : {RunEnable, DigitalIn3Status, DigitalIn2Status, AnalogIn1Status, FieldIFeedback})
        EXPECT_TRUE(std::ranges::binary_search(why.reads, p)) << p << " would never become known";
}

TEST(WhyNotTest, TellsOfASetWithoutADriveWhatWouldKeepOneFromRunning)
{
    const struct {
        const char *what;
        Values values;
        int first; ///< -1 for none
    } sets[] = {
        {"nothing", {}, -1},
        {"stop", {{DigitalIn2Status, 0}}, Stop},
        {"no run", {{DigitalIn1Status, 0}}, Param::Run},
        {"no enable", {{RunEnable, 0}}, RunEnable},
        {"no reference", {{AnalogIn1Status, 0}}, Reference0},
        {"closed for the demand", {{AnalogIn1Status, -1000}, {ReverseMaxSpeed, 0}}, ReverseMaxSpeed},
        {"one bridge", {{AnalogIn1Status, -1000}, {RegenMode, 0}}, RegenMode},
        {"no current", {{PositiveILimit, 0}}, PositiveILimit},
        {"held at standstill", {{StandstillLogic, 1}, {ZeroSpeedSet, 6000}}, StandstillLogic},
        {"no gain", {{PropGainA, 0}}, PropGainA},
        {"no field", {{FieldEnable, 0}}, FieldEnable},
        {"permanent magnets", {{FieldEnable, 0}, {FieldLossInhibit, 1}}, -1},
    };
    for (const auto &set : sets) {
        SCOPED_TRACE(set.what);
        ParameterTable table;
        Loaded(table);
        table.ResetToDefaults();
        DriveEmulator emulator(table);
        DriveCircuit circuit(table);
        for (const Values &values :
             {Values{{DigitalIn1Status, 1}, {DigitalIn2Status, 1}, {AnalogIn1Status, 1000}}, set.values})
            for (const auto &[p, rawValue] : values)
                table.SetValue(p, rawValue, ChangeCause::Entered);
        emulator.EmulateAll();
        circuit.Get().Follow();
        const WhyNot why = ExplainStandstill(circuit.Get(), table, {});
        EXPECT_EQ(why.first < 0 ? -1 : why.conditions[std::size_t(why.first)].param, set.first)
            << qPrintable(why.AsText());
        EXPECT_FALSE(why.runs);
    }
}

} // namespace

} // namespace quorvik::testing
