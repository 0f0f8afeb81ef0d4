#include "ModelFixture.h"
#include "model/ReadInterest.h"
#include "platform/RuntimeFailure.h"

#include <QObject>

namespace quorvik::testing
{

TEST_F(ModelTest, EachChangeIsAnnouncedWithItsCauseAndACopyHasNoListeners)
{
    std::vector<std::tuple<int, int, int, ChangeCause>> changes;
    std::vector<std::pair<int, bool>> entries;
    QObject::connect(&table.Signals(), &TableSignals::Changed, [&](const ParamChange &change) {
        changes.emplace_back(change.param, change.before, change.after, change.cause);
    });
    QObject::connect(&table.Signals(), &TableSignals::Entered,
                     [&](int p, bool modified) { entries.emplace_back(p, modified); });
    table.SetValue(100, 7, ChangeCause::Drive);
    table.SetValue(100, 7, ChangeCause::Drive); // a poll that tells nothing new
    table.SetParamValue(100, 7, true, false);
    table.SetParamValue(100, 9, false, false);
    table.SetParamValue(406, 1, true, false);
    table.DropCommand(406);
    At(101).Value = 2000;
    table.ClampValue(101);

    ParameterTable scratch(table);
    scratch.SetParamValue(100, 50, true, false);
    EXPECT_EQ(scratch.Value(100), 50);
    EXPECT_EQ(table.Value(100), 9);
    EXPECT_EQ(scratch.LastParam, table.LastParam);

    table.ResetToDefaults();
    const std::vector<std::tuple<int, int, int, ChangeCause>> expected = {
        {100, 0, 7, ChangeCause::Drive},      {100, 7, 9, ChangeCause::Entered},
        {406, 0, 1, ChangeCause::Entered},    {406, 1, 0, ChangeCause::Command},
        {101, 2000, 1000, ChangeCause::Rule}, {100, 9, 0, ChangeCause::Factory},
        {101, 1000, 0, ChangeCause::Factory}, {122, 174, 0, ChangeCause::Factory},
        {123, 174, 0, ChangeCause::Factory},  {122, 0, 174, ChangeCause::Rule},
        {123, 0, 174, ChangeCause::Rule}};
    EXPECT_EQ(changes, expected);
    EXPECT_EQ(entries, (std::vector<std::pair<int, bool>>{{100, true}, {100, false}, {406, true}}));
}

TEST_F(ModelTest, InterestsAreCountedByOwnerAndGivenBack)
{
    const auto flags = [this] {
        std::vector<int> found;
        for (const int p : {100, 101, 102, 433})
            found.push_back(At(p).ReadFlag);
        return found;
    };
    using Flags = std::vector<int>;
    ReadInterest other(table);
    other.Set({100, 433});
    {
        ReadInterest interest(table);
        interest.Set({100, 101});
        interest.Add(101);
        EXPECT_EQ(flags(), (Flags{2, 1, 0, 1}));
        interest.Set({101, 102, 433});
        EXPECT_EQ(flags(), (Flags{1, 1, 1, 2}));
        EXPECT_THROW(interest.Set({100, 434}), RuntimeFailure);
        interest.Set({101, 102, 433});
        EXPECT_EQ(flags(), (Flags{1, 1, 1, 2})) << "what was half done is not done again";
    }
    EXPECT_EQ(flags(), (Flags{1, 0, 0, 1}));
    // Of a table that has become shorter what is left is given back.
    table.FileLastParam = 432;
    table.ResetToDefaults();
    EXPECT_THROW(other.Set({101}), RuntimeFailure);
    other.Set({101});
    table.FileLastParam = 433;
    table.ResetToDefaults();
    EXPECT_EQ(flags(), (Flags{0, 1, 0, 0}));
}

} // namespace quorvik::testing
