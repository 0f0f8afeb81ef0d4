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
constexpr int AnotherDrive = 5000;
constexpr int P = Param::FwdAccelA;

/** A drive connects. */
struct Seen {
    int minute;
    int hours;
};
struct Change {
    int minute;
    int param;
    Raw before;
    std::int32_t after;
    EntryResult result;
    Raw found = {};
    int link = 1; ///< number of the connection in the order of the sightings; 0 off line
};
struct KeptFile {
    int minute;
    int hours;
    std::int32_t value; ///< of P
};
/** A history, and what P was at minute 60 of it. */
struct Case {
    const char *what = "";
    std::vector<KeptFile> backups = {};
    std::vector<Change> changes = {};
    Raw value = {};
    const char *note = "";
    std::vector<Seen> seen = {{0, Ours}};
};

class PastStatesTest : public SetTest
{
protected:
    static constexpr int Moment = 60;

    PastStatesTest()
    {
        QCoreApplication::setApplicationVersion(QStringLiteral("1"));
        table.SetValue(Param::DriveModel, 3, ChangeCause::File);
        table.SetValue(Param::Reference0, 1234, ChangeCause::File);
    }

    DriveIdentity Identity(int hours) const
    {
        DriveIdentity identity = DriveIdentity::Of([this](int p) { return table.Value(p); }, table.LastParam);
        identity.operatingHours = hours;
        return identity;
    }
    qint64 At(int minute) const { return start + minute * 60'000LL; }

    std::vector<ShownRow> Write(const Case &given)
    {
        Journal journal(path);
        journal.Begin({});
        JournalBatch batch;
        int number = 0;
        for (const Seen &seen : given.seen)
            batch.drives.push_back({++number, {At(seen.minute), 0}, Identity(seen.hours)});
        number = 0;
        for (const Change &change : given.changes) {
            const JournalTime time{At(change.minute), 0};
            batch.actions.push_back(
                {++number, time, Origin::EditDialog, {}, QStringLiteral("unnamed"), change.link});
            batch.rows.push_back({number,
                                  number,
                                  time,
                                  change.param,
                                  {},
                                  change.before,
                                  change.after,
                                  {},
                                  {},
                                  change.link > 0 ? Queued : change.result});
            if (change.link > 0 && change.result != Queued)
                batch.results.push_back({number, time, change.result, change.found});
        }
        journal.Add(batch);
        EXPECT_TRUE(journal.Flush(10'000));
        for (const KeptFile &kept : given.backups) {
            ParameterTable drive(table);
            drive.SetValue(P, kept.value, ChangeCause::File);
            drive.SetValue(Param::OperatingHours, kept.hours, ChangeCause::File);
            QString name;
            EXPECT_EQ(backups.Keep(ParameterSet::Of(drive, {}), table,
                                   QDateTime::fromMSecsSinceEpoch(At(kept.minute)), name),
                      QString());
        }
        std::vector<ShownRow> rows;
        for (const ShownAction &action : reader.Actions({}, 0, 100))
            for (const ShownRow &row : reader.RowsOf(action, {}))
                rows.push_back(row);
        return rows;
    }
    static Raw ValueIn(const ParameterSet &set, int p) { return set.Knows(p) ? Raw(set.Value(p)) : Raw(); }
    static auto Known(const ParameterSet &set) { return std::ranges::count(set.known, true); }

    // A whole second, as the names of backups have it.
    const qint64 start = QDateTime::currentSecsSinceEpoch() * 1000 + 3'600'000;
    QString path = folder.filePath(QStringLiteral("history.sqlite"));
    Backups backups{folder.filePath(QStringLiteral("backups"))};
    JournalReader reader{path};
    PastStates states{reader, backups, table};
};

class StateAt : public PastStatesTest, public ::testing::WithParamInterface<Case>
{
};

const Case Cases[] = {
    {"forward from a backup",
     {{10, Ours, 50}},
     {{5, P, 40, 50, Verified},
      {20, P, 50, 70, Acknowledged},
      {30, P, 70, 75, Verified},
      {70, P, 75, 90, Verified}},
     75,
     "2 changes since"},
    {"the newest of the backups",
     {{10, Ours, 50}, {15, Ours, 55}, {90, Ours, 99}},
     {},
     55,
     "0 changes since"},
    {"what the drive told instead", {{10, Ours, 50}}, {{20, P, 50, 70, Differs, 66}}, 66, "1 change since"},
    {"not taken", {{10, Ours, 50}}, {{20, P, 50, 70, Refused}, {21, P, 50, 71, GivenUp}}, 50, "0 changes"},
    {"lost with the link", {{10, Ours, 50}}, {{20, P, 50, 70, Lost}}, {}, "backup"},
    {"never answered", {{10, Ours, 50}}, {{20, P, 50, 70, Queued}}, {}, "backup"},
    {"off line", {{10, Ours, 50}}, {{20, P, 50, 70, Kept, {}, 0}}, 50, "0 changes"},
    {"taken back from a later backup",
     {{90, Ours, 90}},
     {{70, P, 75, 80, Verified}, {80, P, 80, 90, Verified}, {95, P, 90, 30, Verified}},
     75,
     "2 changes taken back"},
    {"taken back over what was not sent",
     {{90, Ours, 90}},
     {{70, P, 75, 80, GivenUp}, {80, P, 80, 90, Verified}},
     75,
     "1 change taken back"},
    {"nobody knew what was before", {{90, Ours, 90}}, {{70, P, {}, 90, Verified}}, {}, "later"},
    {"but an earlier change tells it",
     {{90, Ours, 90}},
     {{30, P, 5, 75, Verified}, {70, P, {}, 90, Verified}},
     75,
     "later"},
    {"changed by something else meanwhile",
     {{90, Ours, 90}},
     {{30, P, 5, 75, Verified}, {70, P, 60, 90, Verified}},
     {},
     "later"},
    {"from the journal alone", {}, {{30, P, 5, 75, Verified}}, 75, "no backup"},
    {"from the journal alone, by what came after", {}, {{70, P, 75, 90, Verified}}, 75, "no backup"},
    {"loaded from the drive's memory",
     {{10, Ours, 50}},
     {{20, P, 50, 70, Verified},
      {30, Param::SaveParameters, 0, 1, Acknowledged},
      {40, P, 70, 80, Verified},
      {50, Param::LoadParameters, 0, 1, Acknowledged}},
     70,
     "4 changes"},
    {"loaded, and never saved before",
     {{10, Ours, 50}},
     {{40, P, 70, 80, Verified}, {50, Param::LoadParameters, 0, 1, Acknowledged}},
     {},
     "loaded its memory"},
    {"not saved", {{10, Ours, 50}}, {{40, P, 50, 80, Verified}}, 80, "1 value had not been saved"},
    {"another drive of the type",
     {{10, Ours, 50}, {30, AnotherDrive, 99}},
     {{20, P, 50, 70, Verified, {}, 1}, {40, P, 99, 11, Verified, {}, 2}, {70, P, 70, 22, Verified, {}, 1}},
     70,
     "1 change since",
     {{0, Ours}, {0, AnotherDrive}}},
    {"the meter goes on",
     {{10, Ours, 50}},
     {{20, P, 50, 70, Verified, {}, 1}, {50, P, 70, 80, Verified, {}, 2}},
     80,
     "2 changes since",
     {{0, Ours}, {45, Ours + 1}}},
    {"before all that is known",
     {{90, Ours, 90}},
     {{70, P, 75, 80, Verified}},
     {},
     "Nothing is known",
     {{65, Ours}}},
};

TEST_P(StateAt, Moment)
{
    const Case &given = GetParam();
    SCOPED_TRACE(given.what);
    Write(given);
    const PastState state = states.StateAt(states.Drives().front(), At(Moment));
    EXPECT_EQ(ValueIn(state.set, P), given.value);
    EXPECT_THAT(state.note.toStdString(), HasSubstr(given.note));
}

INSTANTIATE_TEST_SUITE_P(PastStates, StateAt, ::testing::ValuesIn(Cases),
                         [](const auto &given) { return std::to_string(given.index); });

TEST_F(PastStatesTest, ListsEachDriveOnceAndNamesItsSet)
{
    Write({.changes = {{20, P, 50, 70, Verified, {}, 3}, {25, Param::Run, 0, 1, Verified, {}, 3}},
           .seen = {{0, AnotherDrive}, {5, Ours}, {10, Ours}, {7, AnotherDrive}}});
    const std::vector<JournalSighting> drives = states.Drives();
    ASSERT_EQ(drives.size(), 2);
    EXPECT_EQ(drives[0].time.utcMs, At(10));
    EXPECT_EQ(drives[1].identity, Identity(AnotherDrive));
    const ParameterSet set = states.StateAt(drives[0], At(Moment)).set;
    EXPECT_EQ(set.name,
              QStringLiteral("SVR060-000 at ") +
                  QDateTime::fromMSecsSinceEpoch(At(Moment)).toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    EXPECT_EQ(ValueIn(set, Param::DriveModel), 3);
    EXPECT_EQ(Known(set), 5) << "one value and what the drive is; no command";
    EXPECT_EQ(Known(states.StateAt(drives[1], At(Moment)).set), 0) << "nothing was changed there";
}

TEST_F(PastStatesTest, KnowsOfChosenRowsWhatWasBeforeTheEarliest)
{
    const std::vector<ShownRow> rows = Write({.changes = {{20, P, 50, 70, Kept, {}, 0},
                                                          {30, P, 70, 80, Kept, {}, 0},
                                                          {30, Param::Run, 0, 1, Kept, {}, 0},
                                                          {40, Param::Reference0, {}, 7, Verified}}});
    const PastState state = states.Before(rows);
    EXPECT_EQ(ValueIn(state.set, P), 50);
    EXPECT_EQ(Known(state.set), 1);
    EXPECT_THAT(state.note.toStdString(), HasSubstr("Of 1 parameter nobody knew it. Commands"));
}

} // namespace
} // namespace quorvik::testing
