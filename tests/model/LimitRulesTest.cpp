#include "ModelFixture.h"

#include "platform/Guard.h"

#include <QStringList>
#include <array>
#include <vector>

namespace quorvik::testing
{

/** Parameter 300, limits -50 to 60, is what selectors point at; dependants stand outside its limits. */
class LimitRulesTest : public ModelTest
{
protected:
    static constexpr int Target = 300;
    static constexpr std::int32_t Masked = 12 * 32 | 1 | Attr::Long | Attr::Refresh;

    void Point(int selector)
    {
        Shape(Target, -50, 60, Masked | Attr::ReadOnly | Attr::Icr | Attr::Destination);
        At(selector).Value = Target;
    }

    void ExpectLimits(int number, std::int32_t rawMin, std::int32_t rawMax, std::int32_t attributes)
    {
        EXPECT_EQ(At(number).Min, rawMin) << number;
        EXPECT_EQ(At(number).Max, rawMax) << number;
        EXPECT_EQ(At(number).Attributes, attributes) << number;
    }
};

TEST_F(LimitRulesTest, InputsTakeOverTheirDestination)
{
    const std::vector<std::array<int, 4>> followers = {{1, 7, 7, 14}, {23, 27, 25, 30}, {63, 63, 3, 4}};
    for (const auto &[first, last, low, high] : followers) {
        for (int selector = first; selector <= last; ++selector) {
            SCOPED_TRACE(selector);
            const int dependants[] = {selector + low, selector + high};
            At(dependants[0]).Value = -51;
            At(dependants[1]).Value = 61;
            Point(selector);
            table.RefreshDependentParams(selector);
            for (const int dependant : dependants)
                ExpectLimits(dependant, -50, 60, Masked);
            EXPECT_EQ(At(dependants[0]).Value, -50);
            EXPECT_EQ(At(dependants[1]).Value, 60);

            At(selector).Value = 0;
            At(dependants[1]).Value = 5000;
            table.RefreshDependentParams(selector);
            for (const int dependant : dependants)
                ExpectLimits(dependant, -1000, 1000, 32);
            EXPECT_EQ(At(dependants[1]).Value, 5000) << "going back to factory limits never clamps";
        }
    }
}

TEST_F(LimitRulesTest, PolarityLimitsTheCalibration)
{
    for (int selector = 28; selector <= 32; ++selector) {
        SCOPED_TRACE(selector);
        At(selector).Value = 1;
        At(selector + 10).Value = -3000;
        At(selector + 15).Value = 4095;
        table.RefreshDependentParams(selector);
        ExpectLimits(selector + 10, -2048, 2047, 32);
        ExpectLimits(selector + 15, 0, 2047, 32);
        EXPECT_EQ(At(selector + 10).Value, -2048);
        EXPECT_EQ(At(selector + 15).Value, 2047);

        At(selector).Value = 0;
        At(selector + 10).Value = -100;
        At(selector + 15).Value = -1;
        table.RefreshDependentParams(selector);
        ExpectLimits(selector + 10, 0, 2047, 32);
        EXPECT_EQ(At(selector + 10).Value, 0);
        EXPECT_EQ(At(selector + 15).Value, 0);
    }
}

TEST_F(LimitRulesTest, RelaysFollowTheirSourceWithoutClamping)
{
    for (int source = 69; source <= 71; ++source) {
        for (const bool byAbsolute : {false, true}) {
            for (const bool absolute : {false, true}) {
                SCOPED_TRACE(source);
                table.ResetToDefaults();
                Point(source);
                At(source + 3).Value = absolute ? -1 : 0;
                At(source + 6).Value = 900;
                table.RefreshDependentParams(byAbsolute ? source + 3 : source);
                // The Source of relay 3 triggers nothing when it changes.
                const bool runs = byAbsolute || source != 71;
                for (const int dependant : {source + 6, source + 9})
                    ExpectLimits(dependant, runs ? (absolute ? 0 : -50) : -1000, runs ? 60 : 1000,
                                 runs ? Masked : 32);
                EXPECT_EQ(At(source + 6).Value, 900);
            }
        }
        At(source).Value = 0;
        table.RefreshDependentParams(source + 3);
        ExpectLimits(source + 6, -1000, 1000, 32);
        ExpectLimits(source + 9, -1000, 1000, 32);
    }
}

TEST_F(LimitRulesTest, OffValueOfTheDigitalOutputKeepsItsLimits)
{
    Point(89);
    At(92).Value = 900;
    At(93).Value = 1500;
    table.RefreshDependentParams(89);
    ExpectLimits(92, -50, 60, Masked);
    ExpectLimits(93, -1000, 1000, Masked);
    EXPECT_EQ(At(92).Value, 60);
    EXPECT_EQ(At(93).Value, 1000);
    At(89).Value = 0;
    table.RefreshDependentParams(89);
    ExpectLimits(92, -1000, 1000, 32);
    ExpectLimits(93, -1000, 1000, 32);
}

TEST_F(LimitRulesTest, ModelFixesTheCurrents)
{
    // The rated current, the least motor current, and whether it is a regenerative model.
    const std::tuple<std::int32_t, std::int32_t, std::int32_t, bool> rows[] = {
        {0, 0, 0, true},      {1, 36, 7, true},   {5, 174, 35, true},   {7, 256, 51, true},
        {10, 510, 102, true}, {17, 36, 7, false}, {26, 510, 102, false}};
    for (const auto &[code, rated, least, isRegenerative] : rows) {
        SCOPED_TRACE(code);
        At(Param::DriveModel).Value = code;
        At(123).Value = 1;
        table.RefreshDependentParams(Param::DriveModel);
        EXPECT_EQ(At(122).Value, rated);
        EXPECT_EQ(At(123).Value, rated);
        EXPECT_EQ(At(123).Preset, rated);
        ExpectLimits(123, least, rated, 32);
        EXPECT_EQ(table.IsModelDefined(), code != 0);
        EXPECT_EQ(table.IsRegenerative(), isRegenerative);
    }
    for (const std::int32_t code : {11, 27, 31}) {
        At(Param::DriveModel).Value = code;
        EXPECT_THROW(table.RefreshDependentParams(Param::DriveModel), RuntimeFailure) << code;
        EXPECT_EQ(table.IsModelDefined(), code == 27) << code;
    }
}

TEST_F(LimitRulesTest, OneThatPointsBeyondTheTableKeepsNoOtherFromItsTurn)
{
    QStringList told;
    SetFailureReporter([&](const RuntimeFailure &failure) { told.append(failure.Sentence()); });
    At(2).Value = 9999;
    At(3).Value = Target;
    At(Target).Max = 7;
    table.RefreshAllDependents();
    SetFailureReporter([](const RuntimeFailure &) {});
    EXPECT_EQ(At(10).Max, 7);
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().startsWith(QStringLiteral("(2) P2: "))) << qPrintable(told.first());
}

TEST_F(LimitRulesTest, NoOtherParameterLeads)
{
    Point(Target);
    for (int i = 0; i <= 433; ++i) {
        const bool leads = (i >= 1 && i <= 7) || (i >= 23 && i <= 32) || i == 63 || i == 69 || i == 70 ||
                           (i >= 72 && i <= 74) || i == 89 || i == Param::DriveModel;
        if (leads)
            continue;
        At(i).Value = Target;
        table.RefreshDependentParams(i);
    }
    for (int i = 0; i <= 433; ++i)
        if (i != Target && i != 123 && !(i >= 38 && i <= 47))
            ExpectLimits(i, -1000, 1000, 32);
}

} // namespace quorvik::testing
