#include "report/CommissioningPlace.h"

#include "model/Document.h"
#include "model/ParameterTable.h"
#include "settings/SettingsTables.h"

#include <gtest/gtest.h>

namespace quorvik
{

TEST(CommissioningPlaceTest, NotesTakeThePlaceAndGiveItBack)
{
    struct Case {
        const char *before;
        CommissioningPlace place;
        const char *after;
        const char *without; ///< what the report prints as notes
    };
    const auto text = [](const char *latin) { return QString::fromUtf8(latin); };
    const Case cases[] = {
        {" ", {text("Mill 3"), {}, {}, {}}, "Site: Mill 3", ""},
        {"Belt changed.\n",
         {text("Mill 3"), text("Press"), {}, {}},
         "Belt changed.\nSite: Mill 3\nMachine: Press",
         "Belt changed."},
        {"a\n  sITE :old\nb", {text("new"), {}, {}, {}}, "a\nSite: new\nb", "a\nb"},
        // The first one counts; what is the same already is not written anew.
        {"site:  Mill 3\nSite: 4", {text("Mill 3"), {}, {}, {}}, "site:  Mill 3\nSite: 4", "Site: 4"},
        {"Site: 1\nSite: 2\nend", {}, "end", "end"},
        {"Website: x\nThe person: y",
         {{}, {}, {}, text("A\nSite: B")},
         "Website: x\nThe person: y\nPerson: A Site: B",
         "Website: x\nThe person: y"},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.before);
        const std::optional<QString> notes = NotesWithPlace(text(one.before), one.place);
        ASSERT_TRUE(notes);
        EXPECT_EQ(*notes, text(one.after));
        EXPECT_EQ(NotesWithoutPlace(*notes), text(one.without));
        EXPECT_EQ(NotesWithPlace(*notes, PlaceIn(*notes)), *notes);
    }
}

TEST(CommissioningPlaceTest, ASetIsMarkedOnlyWhereItsNotesChangeAndHoldsThemAll)
{
    const ParameterTable table;
    Document document(table);
    document.Notes = QStringLiteral("Site: Mill 3");
    EXPECT_EQ(KeepPlace(document, PlaceIn(document.Notes)), QString());
    EXPECT_FALSE(document.FileModified);
    EXPECT_NE(KeepPlace(document, {QString(LongestNotes, u'x'), {}, {}, {}}), QString());
    EXPECT_FALSE(document.FileModified);
    EXPECT_EQ(document.Notes, QStringLiteral("Site: Mill 3"));
    EXPECT_EQ(KeepPlace(document, {QStringLiteral("Mill 4"), {}, {}, {}}), QString());
    EXPECT_TRUE(document.FileModified);
}

} // namespace quorvik
