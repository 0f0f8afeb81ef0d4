#include "blocks/BlockFixture.h"

#include <cmath>

namespace quorvik::testing
{

namespace
{

using namespace Param;

class ShapeLookTest : public BlockFixture
{
protected:
    /** The only element of that symbol. */
    ShapeLook Look(Symbol symbol) const
    {
        const auto at = std::ranges::find(form->drawing().Elements(), symbol, &Element::symbol);
        return at == form->drawing().Elements().end() ? ShapeLook() : at->look;
    }
};

TEST_F(ShapeLookTest, ShapesShowWhetherTheyAct)
{
    const struct {
        const char *form;
        Symbol symbol;
        std::initializer_list<std::pair<int, std::int32_t>> idle;
        std::initializer_list<std::pair<int, std::int32_t>> acting;
    } shapes[] = {
        {"FormVelocityLoop", Symbol::Limiter, {{VelocityDemand, 3000}}, {{ForwardMaxSpeed, 2999}}},
        {"FormVelocityLoop", Symbol::Pi, {{VelLoopOutput, -1999}}, {{IntegralClamp, 1999}}},
        {"FormAccelDecel",
         Symbol::Ramp,
         {{DriveState, 1}, {RampInput, 500}, {RampOutput, 500}},
         {{RampOutput, 400}}},
        {"FormAccelDecel", Symbol::Comparator, {{RampInput, 500}, {RampThreshold, 100}}, {{RampOutput, 399}}},
        {"FormAuxPI", Symbol::Limiter, {{AuxPIPropStatus, -1}, {AuxPIPolarity, 1}}, {{AuxPIPolarity, 0}}},
        {"FormAuxPI", Symbol::DeadBand, {{AuxPIError, -301}, {AuxPIDeadband, 300}}, {{AuxPIError, -300}}},
        {"FormAuxPI",
         Symbol::Pi,
         {{AuxPIIntegralStatus, -99}, {AuxPIIntegralClamp, 100}},
         {{AuxPIIntegralStatus, -100}}},
        {"FormThresholds", Symbol::Hysteresis, {{ThresholdAInput, -1100}}, {{ThresholdAInput, -1101}}},
        {"FormTimer",
         Symbol::Function,
         {{Timer, 100}, {TimerThreshold, 100}, {TimerReset, 0}},
         {{TimerThreshold, 99}}},
        {"FormAnalogInputs", Symbol::Curve, {{AnalogIn1Status, 2047}}, {{AnalogIn1FullCalibration, 2046}}},
    };
    for (const auto &shape : shapes) {
        SCOPED_TRACE(::testing::Message() << "symbol " << int(shape.symbol) << " of " << shape.form);
        Open(shape.form, Name(shape.form) == Name("FormAnalogInputs"));
        for (const auto &[p, raw] : shape.idle)
            P(p) = raw;
        Tick();
        EXPECT_FALSE(Look(shape.symbol).isActive);
        for (const auto &[p, raw] : shape.acting)
            P(p) = raw;
        Tick();
        EXPECT_TRUE(Look(shape.symbol).isActive);
        Close();
    }
}

TEST_F(ShapeLookTest, TheCurveFollowsItsPointsByWhatCanBeSeen)
{
    Open("FormAnalogInputs", 1);
    Set({{AnalogIn1Status, 1024}, {AnalogIn1Gain, 10000}, {AnalogIn1Bias, 0}, {AnalogIn1Polarity, 0}});
    Tick();
    const ShapeLook unipolar = Look(Symbol::Curve);
    const QPointF middle = (unipolar.line.at(1) + unipolar.line.at(2)) / 2;
    EXPECT_NEAR(unipolar.point->x(), middle.x(), 0.01);
    EXPECT_NEAR(unipolar.point->y(), middle.y(), 0.01);
    for (const auto &[p, raw, isSeen] :
         {std::tuple(AnalogIn1Status, 1026, false), std::tuple(AnalogIn1Status, 1100, true),
          std::tuple(AnalogIn1Bias, 2000, true), std::tuple(AnalogIn1Polarity, 1, true)}) {
        const ShapeLook last = Look(Symbol::Curve);
        P(p) = raw;
        Tick();
        EXPECT_EQ(Look(Symbol::Curve) != last, isSeen) << p;
    }
    EXPECT_LT(Look(Symbol::Curve).origin.y(), unipolar.origin.y()) << "room below zero";
}

TEST_F(ShapeLookTest, AHysteresisStandsOnTheBranchThatItsOutputIsOn)
{
    Open("FormRelayOutputs", 1);
    for (const auto &[status, on, off, isFlipped] :
         {std::tuple(0, 5000, 4000, false), std::tuple(1, 5000, 4000, false),
          std::tuple(1, 4000, 5000, true)}) {
        Set({{RelayOut1Source, VelFeedback},
             {VelFeedback, 4500},
             {RelayOut1Status, status},
             {RelayOut1OnValue, on},
             {RelayOut1OffValue, off}});
        Tick();
        const ShapeLook look = Look(Symbol::Hysteresis);
        EXPECT_EQ(look.isActive, status == 1);
        EXPECT_EQ(look.isFlipped, isFlipped);
        EXPECT_NEAR(look.point.value_or(QPointF()).x(), 0.5, 0.01) << "in the middle of the band";
    }
}

} // namespace

} // namespace quorvik::testing
