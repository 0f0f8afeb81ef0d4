#include "model/ModelFixture.h"

#include "model/Document.h"
#include "operations/EntryRules.h"
#include "platform/RuntimeFailure.h"
#include "support/ScriptedAsker.h"

namespace quorvik::testing
{

class EntryRulesTest : public ModelTest
{
protected:
    void ExpectShown(const char *text, const char *title, MsgIcon icon = MsgIcon::Exclamation,
                     MsgButtons buttons = MsgButtons::Ok)
    {
        ASSERT_FALSE(asker.Shown.isEmpty());
        const ShownBox &box = asker.Shown.last();
        EXPECT_EQ(box.text.toStdString(), text);
        EXPECT_EQ(box.title.toStdString(), title);
        EXPECT_EQ(box.icon, icon);
        EXPECT_EQ(box.buttons, buttons);
    }

    Document document{table};
    ScriptedAsker asker;
    EntryRules rules{table, asker};
};

TEST_F(EntryRulesTest, EditActsOnWritableClassesOnly)
{
    int shown = 0;
    bool confirm = true;
    asker.OnEditValue = [&](int, std::int32_t rawValue) {
        ++shown;
        return confirm ? std::optional(rawValue + 5) : std::nullopt;
    };
    for (const int accessClass :
         {Access::IcrReadOnly, Access::ReadOnly, Access::LinkedDestination, Access::Empty})
        rules.EditParameter(accessClass, 10);
    EXPECT_EQ(shown, 0);

    Shape(20, -3, 3, 32);
    rules.EditParameter(Access::ReadWrite, 10);
    EXPECT_EQ(At(10).Value, 5);
    EXPECT_TRUE(document.DriveModified);
    confirm = false;
    rules.EditParameter(Access::IcrReadWrite, 10);
    EXPECT_EQ(At(10).Value, 5) << "cancelled";

    // On line the acknowledgement refreshes what hangs on the parameter.
    confirm = true;
    for (const bool online : {true, false}) {
        table.SetPortOpen(online);
        At(2).Value = 15;
        rules.EditParameter(Access::ReadWrite, 2);
        EXPECT_EQ(At(9).Max, online ? 1000 : 3);
    }
}

TEST_F(EntryRulesTest, EntriesAreCheckedWithExactWords)
{
    At(Param::DriveModel).Value = 17;
    Shape(10, -5, 123, 12 * 32 + 1);
    const std::pair<const char *, const char *> entries[] = {
        {"12.345", nullptr},
        {"-0.54", nullptr},
        {"", "Please enter a numerical value for the Time."},
        {"12.35", "The valid Time range for model SVN020-000 is:\r\n  Min: -0.5 Sec\r\n  Max: 12.3 Sec"},
        {"-0.55", "The valid Time range for model SVN020-000 is:\r\n  Min: -0.5 Sec\r\n  Max: 12.3 Sec"},
    };
    for (const auto &[text, told] : entries) {
        SCOPED_TRACE(text);
        const bool isGood = told == nullptr;
        if (!isGood)
            asker.Expect(QString());
        EXPECT_EQ(rules.ValidateEntry(QLatin1String(text), QStringLiteral("Time"), 10), isGood);
        if (!isGood)
            ExpectShown(told, "Quorvik Mentor");
    }
    EXPECT_THROW(rules.ValidateEntry(QStringLiteral("1e10"), QStringLiteral("Time"), 10), RuntimeFailure);
    asker.Expect(QString());
    rules.ShowRangeMessage(QStringLiteral("Field Current"), 0, 800, 450, true);
    ExpectShown("The valid Field Current range is:\r\n  Min: 0.00 Amps\r\n  Max: 8.00 Amps",
                "Quorvik Mentor");
}

TEST_F(EntryRulesTest, ATargetHasOneDriver)
{
    for (const int selector : {0, 3, 5})
        At(selector).Attributes = Attr::Destination;
    EXPECT_TRUE(rules.ResolveDestinationConflict(5, 0)) << "many selectors may drive nothing";
    At(0).Value = 100;
    EXPECT_EQ(rules.FindDestinationConflict(5, 100), 0) << "the walk starts at 1";
    Shape(100, -7, 7, 64);
    table.SetParamValue(3, 100, false, true);
    EXPECT_EQ(At(10).Max, 7);
    EXPECT_TRUE(rules.ResolveDestinationConflict(3, 100)) << "a selector does not conflict with itself";

    asker.Expect(QString(), MsgAnswer::No);
    EXPECT_FALSE(rules.ResolveDestinationConflict(5, 100));
    ExpectShown("P3 is already set to (100) P100.\r\nOverwrite this input?",
                "Overwrite Destination Conflict?", MsgIcon::None, MsgButtons::YesNo);
    EXPECT_EQ(At(3).Value, 100);
    asker.Expect(QString(), MsgAnswer::Yes);
    EXPECT_TRUE(rules.ResolveDestinationConflict(5, 100));
    EXPECT_EQ(At(3).Value, 0);
    EXPECT_EQ(At(10).Max, 1000) << "its dependants go back to factory limits";
    EXPECT_TRUE(document.FileModified);
}

TEST_F(EntryRulesTest, ChoicesLeaveOutWhatCannotBeDriven)
{
    At(200).Attributes |= Attr::ReadOnly;
    At(3).Attributes = Attr::Destination;
    At(3).Value = 201;
    const ParamChoices destinations = rules.FillParamCombo(3);
    EXPECT_EQ(destinations.items.size(), 432) << "neither itself nor what is read-only";
    EXPECT_EQ(destinations.items[destinations.selected], QStringLiteral("201 P201"));
    At(69).Value = 200;
    const ParamChoices sources = rules.FillParamCombo(69);
    EXPECT_EQ(sources.items.size(), 433);
    EXPECT_EQ(ParamOfChoice(sources.items[sources.selected]), 200);
    At(69).Value = 69;
    EXPECT_EQ(rules.FillParamCombo(69).selected, -1);
}

} // namespace quorvik::testing
