#include "find/FindIndex.h"

#include "find/EntrySources.h"
#include "find/FoldedWords.h"
#include "find/HelpWords.h"
#include "find/RecentFinds.h"
#include "model/ParameterTable.h"
#include "platform/SettingsStore.h"
#include "settings/SettingsFile.h"
#include "support/Name.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace quorvik::testing
{

TEST(FoldedWord, FitsByItsBeginningItsPartsAndWithFewErrors)
{
    using enum WordFit;
    const struct {
        const char *typed;
        const char *word;
        WordFit fit;
    } rows[] = {
        {"run", "run", Whole},
        {"ru", "run", Prefix},
        {"stop", "estop", Inside},
        {"s", "estop", None},
        {"rum", "run", None},
        {"stpo", "stop", OneError},
        {"rmap", "ramp", OneError},
        {"velcity", "velocity", OneError},
        {"velocuity", "velocity", OneError},
        {"velositi", "velocity", TwoErrors},
        {"velsiti", "velocity", None}, // too short for so many
        {"setpion", "setpoint", OneError},
        {"stop", "storage", None}, // what begins alike is another word
        {"ab12", "ab13", None},
    };
    for (const auto &row : rows)
        EXPECT_EQ(FitOf(Name(row.typed), Name(row.word)), row.fit) << row.typed << " in " << row.word;
    EXPECT_EQ(FoldedWords(QString::fromUtf8("(38) Analog-In 0% Ré")).join(u'|'), Name("38|analog|in|0|%|re"));
}

class FindIndexTest : public ::testing::Test
{
protected:
    FindIndexTest()
    {
        EXPECT_EQ(LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), table), QString());
        table.ResetToDefaults();
        HelpWords words;
        words.parameters = {{Param::LoopEnable, Name("bridge")},
                            {Param::JogStatus, Name("brake released setpoint sum")}};
        words.topics = {{Name("Lost Link.htm"),
                         Name("When the link is lost"),
                         Name("First steps"),
                         {Name("cable")},
                         Name("adapter pulled")}};
        QStringList blocks(table.UpperBound() + 1);
        blocks[Param::IRComp] = Name("Velocity Loop");
        AddParameters(index, table, blocks, words);
        index.Add({FindKind::Window, 0, Name("mnuBlockVloop"), Name("Velocity Loop"), Name("Blocks")}, {});
        index.Add({FindKind::Topic, 0, Name("Velocity Loop.htm"), Name("Velocity Loop"), Name("Loops")}, {});
        AddTopics(index, words);
    }

    /** The titles of the best. */
    std::vector<std::string> Best(const char *query, std::size_t most) const
    {
        std::vector<std::string> titles;
        for (const FindHit &hit : index.Search(Name(query)))
            if (titles.size() < most)
                titles.push_back(index.At(hit.entry).title.toStdString());
        return titles;
    }

    ParameterTable table;
    FindIndex index;
};

TEST_F(FindIndexTest, TheBestComesFirst)
{
    const struct {
        const char *query;
        std::vector<std::string> best;
    } rows[] = {
        {"22", {"(22) Run Enable", "(224) Ramp Input"}},
        {"(2)", {"(2) Digital In 2 Destination"}},
        {"433", {"(433) Winder Speed"}},
        {"enable run", {"(22) Run Enable"}},
        {"runenab", {"(22) Run Enable"}},
        {"fwd acc", {"(226) Fwd Accel A", "(307) Fwd Accel B"}}, // alike: by number
        {"acceleration forward", {"(226) Fwd Accel A", "(307) Fwd Accel B"}},
        {"EStop", {"(422) Drive State"}},
        {"field loss", {"(249) Field Loss Level", "(250) Field Loss Inhibit", "(255) Present Fault"}},
        {"phase loss", {"(255) Present Fault"}},
        {"hertz status", {"(164) Frequency In Status"}},
        {"jog", {"(241) Jog", "(246) Jog Delay"}},
        {"velocity loop", {"Velocity Loop", "Velocity Loop", "(205) Vel Loop Output"}},
        {"comp velocity loop", {"(131) IR Comp"}},
        {"zero speed", {"(207) Zero Speed Set", "(210) At Zero Speed"}}, // though that is shorter
        {"bridge", {"(212) Loop Enable"}},
        {"setpoint sum", {"(233) Setpoint Sum Invert A"}},
        {"setpiont sum", {"(233) Setpoint Sum Invert A"}},
        {"brigde", {"(212) Loop Enable"}}, // nothing else is like it
        {"cabel", {"When the link is lost"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Best(row.query, row.best.size()), row.best) << row.query;
    EXPECT_EQ(index.At(index.Search(Name("velocity loop")).front().entry).kind, FindKind::Window);
    EXPECT_THAT(Best("stop brigde", 9), ::testing::IsEmpty()) << "each word must fit";
    EXPECT_THAT(Best("ramp", 99), ::testing::Not(::testing::Contains(::testing::HasSubstr("Amps"))));
    // An error in what the help says does not stand beside what fits without one.
    EXPECT_THAT(Best("brake", 9), ::testing::ElementsAre("(243) Jog Status"));
    EXPECT_THAT(Best("setpiont sum", 99), ::testing::Not(::testing::Contains("(243) Jog Status")));
    EXPECT_THAT(Best(" - ", 9), ::testing::IsEmpty());
}

TEST_F(FindIndexTest, WhatIsNotInSightIsToldAsTheReason)
{
    const std::pair<const char *, const char *> rows[] = {
        {"estop state", "EStop"}, {"bridge", "help: bridge"}, {"pulled", ""},
        {"forward accel", ""},    {"hertz status", "Hertz"},  {"ir velocity", ""},
    };
    for (const auto &[query, reasons] : rows)
        EXPECT_EQ(index.Reasons(index.Search(Name(query)).front().entry, Name(query)).join(u'|'),
                  Name(reasons))
            << query;
}

TEST(RecentFindsTest, TheNewestComesFirstAndTenAreKept)
{
    const QTemporaryDir folder;
    SettingsStore settings(folder.filePath(QStringLiteral("a.ini")));
    for (int i = 0; i < 12; ++i)
        RecentFinds(settings).Add(QStringLiteral("(%1)").arg(i));
    RecentFinds(settings).Add(Name("(4)"));
    EXPECT_EQ(RecentFinds(settings).Keys().join(u' '), Name("(4) (11) (10) (9) (8) (7) (6) (5) (3) (2)"));
}

} // namespace quorvik::testing
