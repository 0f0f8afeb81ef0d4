#include "history/PastStates.h"
#include "history/Journal.h"
#include "settings/SetFixture.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

namespace quorvik::testing
{

namespace
{

using enum EntryResult;
using ::testing::HasSubstr;
using Raw = std::optional<std::int32_t>;

constexpr int Ours = 100; ///< operating hours of the drive that is asked about
constexpr int Another = 5000;
constexpr int P = Param::FwdAccelA;

struct Change {
    int minute;
    Raw before;
    std::int32_t after;
    EntryResult result;
    int link = 1; ///< number of the connection in the order of the sightings; 0 off line
    int param = P;
    Raw found = {};
};
struct KeptFile {
    int minute;
    std::int32_t value; ///< of P
    int hours = Ours;
};
/** A history, and what P was at minute 60 of it. */
struct Case {
    std::vector<KeptFile> backups = {};
    std::vector<Change> changes = {};
    Raw value = {};
    const char *note = "";
    std::vector<std::pair<int, int>> seen = {{0, Ours}}; ///< minute and operating hours
};

class PastStatesTest : public SetTest
{
protected:
    PastStatesTest()
    {
        QCoreApplication::setApplicationVersion(QStringLiteral("1"));
        table.SetValue(Param::DriveModel, 3, ChangeCause::File);
    }

    DriveIdentity Identity(int hours)
    {
        table.SetValue(Param::OperatingHours, hours, ChangeCause::File);
        return DriveIdentity::Of([this](int p) { return table.Value(p); }, table.LastParam);
    }
    JournalTime At(int minute) const { return {start + minute * 60'000LL, 0}; }

    std::vector<ShownRow> Write(const Case &given)
    {
        Journal journal(path);
        journal.Begin({});
        JournalBatch batch;
        for (const auto &[minute, hours] : given.seen)
            batch.drives.push_back({int(batch.drives.size()) + 1, At(minute), Identity(hours)});
        for (const Change &change : given.changes) {
            const int number = int(batch.rows.size()) + 1;
            batch.actions.push_back(
                {number, At(change.minute), Origin::EditDialog, {}, QStringLiteral("unnamed"), change.link});
            batch.rows.push_back({number,
                                  number,
                                  At(change.minute),
                                  change.param,
                                  {},
                                  change.before,
                                  change.after,
                                  {},
                                  {},
                                  change.result});
            if (change.found)
                batch.results.push_back({number, At(change.minute), change.result, change.found});
        }
        journal.Add(batch);
        EXPECT_TRUE(journal.Flush(10'000));
        for (const KeptFile &backup : given.backups) {
            table.SetValue(P, backup.value, ChangeCause::File);
            Identity(backup.hours);
            QString keptAs;
            backups.Keep(ParameterSet::Of(table, {}), table,
                         QDateTime::fromMSecsSinceEpoch(At(backup.minute).utcMs), keptAs);
        }
        std::vector<ShownRow> rows;
        for (const ShownAction &action : reader.Actions({}, 0, 100))
            std::ranges::copy(reader.RowsOf(action, {}), std::back_inserter(rows));
        return rows;
    }
    PastState StateOf(const JournalSighting &drive) { return states.StateAt(drive, At(60).utcMs); }
    static Raw ValueIn(const ParameterSet &set, int p) { return set.Knows(p) ? Raw(set.Value(p)) : Raw(); }
    static auto Known(const ParameterSet &set) { return std::ranges::count(set.known, true); }

    // A whole second, as the names of backups have it; after the journal begins.
    const qint64 start = QDateTime::currentSecsSinceEpoch() * 1000 + 3'600'000;
    const QString path = folder.filePath(QStringLiteral("history.sqlite"));
    Backups backups{folder.filePath(QStringLiteral("backups"))};
    JournalReader reader{path};
    PastStates states{reader, backups, table};
};

class PastStateAt : public PastStatesTest,
                    public ::testing::WithParamInterface<std::pair<const std::string, Case>>
{
};

constexpr int Save = Param::SaveParameters;
constexpr int Load = Param::LoadParameters;
const std::map<std::string, Case> Cases = {
    {"Forward",
     {{{10, 50}},
      {{5, 4, 50, Verified}, {20, 50, 70, Acknowledged}, {30, 70, 75, Verified}, {70, 75, 9, Verified}},
      75,
      "2 changes since"}},
    {"NewestBackup", {{{10, 50}, {15, 55}, {90, 99}}, {}, 55, "0 changes since"}},
    {"Differs", {{{10, 50}}, {{20, 50, 70, Differs, 1, P, 66}}, 66, "1 change since"}},
    {"NotTaken", {{{10, 50}}, {{20, 50, 70, Refused}, {21, 50, 71, GivenUp}}, 50, "0 changes"}},
    {"Lost", {{{10, 50}}, {{20, 50, 70, Lost}}, {}, "backup"}},
    {"NeverAnswered", {{{10, 50}}, {{20, 50, 70, Queued}}, {}, "backup"}},
    {"OffLine", {{{10, 50}}, {{20, 50, 70, Kept, 0}}, 50, "0 changes"}},
    {"Back",
     {{{90, 90}},
      {{70, 75, 80, Verified}, {80, 80, 90, Verified}, {95, 90, 3, Verified}},
      75,
      "2 changes taken back"}},
    {"BackOverUnsent",
     {{{90, 90}}, {{70, 75, 80, GivenUp}, {80, 80, 90, Verified}}, 75, "1 change taken back"}},
    {"NobodyKnewBefore", {{{90, 90}}, {{70, {}, 90, Verified}}, {}, "later"}},
    {"ToldByEarlierChange", {{{90, 90}}, {{30, 5, 75, Verified}, {70, {}, 90, Verified}}, 75, "later"}},
    {"ChangedOtherwise", {{{90, 90}}, {{30, 5, 75, Verified}, {70, 60, 90, Verified}}, {}, "later"}},
    {"JournalAlone", {{}, {{30, 5, 75, Verified}}, 75, "no backup"}},
    {"JournalAloneFromLater", {{}, {{70, 75, 90, Verified}}, 75, "no backup"}},
    {"Loaded",
     {{{10, 50}},
      {{20, 50, 70, Verified},
       {30, 0, 1, Acknowledged, 1, Save},
       {40, 70, 80, Verified},
       {50, 0, 1, Acknowledged, 1, Load}},
      70,
      "4 changes"}},
    {"LoadedNeverSaved",
     {{{10, 50}}, {{40, 50, 80, Verified}, {50, 0, 1, Acknowledged, 1, Load}}, {}, "loaded its memory"}},
    {"NotSaved",
     {{{10, 50}},
      {{20, 0, 7, Verified, 1, Param::Reference0}, {30, 0, 1, Acknowledged, 1, Save}, {40, 50, 80, Verified}},
      80,
      "1 value had not been saved"}},
    {"AnotherDrive",
     {{{10, 50}, {30, 99, Another}},
      {{20, 50, 70, Verified}, {40, 99, 11, Verified, 2}, {70, 70, 22, Verified}},
      70,
      "1 change since",
      {{0, Ours}, {0, Another}}}},
    {"MeterGoesOn",
     {{{10, 50}},
      {{20, 50, 70, Verified}, {50, 70, 80, Verified, 2}},
      80,
      "2 changes",
      {{0, Ours}, {45, Ours + 1}}}},
    {"BeforeAll", {{{90, 90}}, {{70, 75, 80, Verified}}, {}, "Nothing is known", {{65, Ours}}}},
};

TEST_P(PastStateAt, IsKnownAsFarAsCanBe)
{
    Write(GetParam().second);
    const PastState state = StateOf(states.Drives().front());
    EXPECT_EQ(ValueIn(state.set, P), GetParam().second.value);
    EXPECT_THAT(state.note.toStdString(), HasSubstr(GetParam().second.note));
}

INSTANTIATE_TEST_SUITE_P(Moments, PastStateAt, ::testing::ValuesIn(Cases),
                         [](const auto &given) { return given.param.first; });

TEST_F(PastStatesTest, ListsEachDriveOnceAndNamesItsSet)
{
    Write({.changes = {{20, 50, 70, Verified, 3}, {25, 0, 1, Verified, 3, Param::Run}},
           .seen = {{0, Another}, {5, Ours}, {10, Ours}, {7, Another}}});
    const std::vector<JournalSighting> drives = states.Drives();
    ASSERT_EQ(drives.size(), 2);
    EXPECT_EQ(drives[0].time.utcMs, At(10).utcMs);
    EXPECT_EQ(drives[1].identity, Identity(Another));
    const ParameterSet set = StateOf(drives[0]).set;
    EXPECT_TRUE(set.name.startsWith(QStringLiteral("SVR060-000 at 20")));
    EXPECT_EQ(ValueIn(set, Param::DriveModel), 3);
    EXPECT_EQ(Known(set), 5) << "one value and what the drive is; no command";
    EXPECT_EQ(Known(StateOf(drives[1]).set), 0) << "nothing was changed there";
}

TEST_F(PastStatesTest, KnowsOfChosenRowsWhatWasBeforeTheEarliest)
{
    const PastState state = states.Before(Write({.changes = {{20, 50, 70, Kept, 0},
                                                             {30, 70, 80, Kept, 0},
                                                             {30, 0, 1, Kept, 0, Param::Run},
                                                             {40, {}, 7, Verified, 1, Param::Reference0}}}));
    EXPECT_EQ(ValueIn(state.set, P), 50);
    EXPECT_EQ(Known(state.set), 1);
    EXPECT_THAT(state.note.toStdString(), HasSubstr("Of 1 parameter nobody knew it. Commands"));
}

} // namespace
} // namespace quorvik::testing
