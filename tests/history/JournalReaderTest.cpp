#include "history/JournalFixture.h"
#include "platform/TimeUnits.h"
#include "support/Name.h"

#include <QDateTime>

namespace quorvik::testing
{

/** Action numbers, the newest first. */
std::vector<int> NumbersOf(const std::vector<ShownAction> &actions)
{
    std::vector<int> numbers;
    for (const ShownAction &shown : actions)
        numbers.push_back(shown.action.number);
    return numbers;
}

TEST_F(JournalTest, FiltersShowWhatTheySay)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const DriveIdentity drive{.model = 3, .operatingHours = 100};
    const DriveIdentity other{.model = 4, .operatingHours = 100};
    Start();
    // 1 off line, 2 a movement on the first drive, 3 a note alone, 4 on the other, 5 of a connection not
    // known.
    JournalBatch one = bursts.Next(2, {now - 9000, 60});
    one.actions[0].setName = QStringLiteral("/home/100%_pump.Svx");
    JournalBatch two = bursts.Next(1, {now - 8000, 60});
    two.actions[0].origin = Origin::VirtualOperator;
    two.actions[0].link = 1;
    const int moved = bursts.sequences;
    two.results.push_back({moved, {now, 0}, EntryResult::Moved, 77, QStringLiteral("77 %")});
    two.results.push_back({moved, {now, 0}, EntryResult::Differs, 78, QStringLiteral("78 %")});
    two.drives.push_back({1, {now - 8000, 0}, drive});
    JournalBatch three = bursts.Next(0, {now - 7000, 60});
    three.actions[0].origin = Origin::File;
    three.notes = {{3, QStringLiteral("Opened a")}, {3, QStringLiteral("Opened b")}};
    JournalBatch four = bursts.Next(3, {now - 6000, 60});
    four.actions[0].link = 2;
    four.drives.push_back({2, {now - 6000, 0}, other});
    JournalBatch five = bursts.Next(1, {now - 5000, 60});
    five.actions[0].link = 3;
    five.rows[0].rawBefore.reset();
    for (const JournalBatch &batch : {one, two, three, four, five})
        journal->Add(batch);
    Settle();
    const JournalTime hourAgo{now - 3'600'000, 0};
    const std::pair<JournalFilter, std::vector<int>> cases[] = {
        {{}, {5, 4, 3, 2, 1}},
        {{.text = Name("REFERENCE 1")}, {4, 1}},
        {{.text = Name("100%_P")}, {1}},
        {{.text = Name("0_%")}, {}},
        {{.text = Name("opened B")}, {3}},
        {{.text = Name("(%1)").arg(Param::Reference0 + 2)}, {4}},
        {{.param = Param::Reference0 + 1}, {4, 1}},
        {{.text = Name("pump"), .param = Param::Reference0 + 1}, {}},
        {{.origins = {Origin::File, Origin::VirtualOperator}}, {3, 2}},
        {{.results = {EntryResult::Differs}}, {2}},
        {{.results = {EntryResult::Queued}}, {}},
        {{.results = {EntryResult::Acknowledged, EntryResult::Differs}}, {5, 4, 2, 1}},
        {{.sinceUtcMs = now - 6000}, {5, 4}},
        {{.drive = JournalSighting{drive, {now, 0}}}, {2}},
        {{.drive = JournalSighting{{.model = 4, .operatingHours = 99}, hourAgo}}, {4}},
        {{.drive = JournalSighting{{.model = 4, .operatingHours = 90}, hourAgo}}, {}},
        {{.param = Param::Reference0, .origins = {Origin::EditDialog}, .sinceUtcMs = now - 8500}, {5, 4}},
    };
    JournalReader reader(path);
    for (const auto &[filter, numbers] : cases) {
        EXPECT_EQ(NumbersOf(reader.Actions(filter, 0, 10)), numbers) << &filter - &cases[0].first;
        EXPECT_EQ(reader.Failure(), QString());
    }
    const std::vector<ShownAction> all = reader.Actions({}, 0, 10);
    EXPECT_EQ(NumbersOf(reader.Actions({}, all[1].id, 2)), (std::vector<int>{3, 2}));
    EXPECT_EQ(all[0].drive, std::nullopt);
    EXPECT_EQ(all[1].drive, other);
    EXPECT_EQ(all[2].action.title, Name("Opened a; Opened b"));
    EXPECT_EQ(all[0].run.user, Name("somebody"));
    EXPECT_EQ(all[0].action.time.offsetMinutes, 60);
    const JournalFilter oneParam{.param = Param::Reference0 + 1};
    EXPECT_EQ(reader.Actions(oneParam, 0, 1)[0].rowCount, 1);
    EXPECT_EQ(reader.RowsOf(all[1], oneParam).size(), 1U);
    EXPECT_EQ(reader.RowsOf(all[0], {})[0].row.rawBefore, std::nullopt);
    const ShownRow movement = reader.RowsOf(all[3], {})[0];
    EXPECT_EQ(movement.row.rawAfter, 77);
    EXPECT_EQ(movement.rawFound, 78);
    EXPECT_EQ(movement.row.result, EntryResult::Differs);
    const std::vector<JournalSighting> seen = reader.Sightings();
    EXPECT_EQ(seen.front().identity, other);
    EXPECT_EQ(reader.ChangesOn({seen.back()}, now - 8001, now).size(), 1U);
    EXPECT_EQ(reader.ChangesOn({seen.back()}, now - 8000, now).size(), 0U);
}

TEST_F(JournalTest, WhatIsTooOldGoesWithAllThatBelongsToIt)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const auto ago = [now](double days) { return JournalTime{now - qint64(days * MsPerDay), 0}; };
    struct {
        int mostDays;
        int mostRows;
        std::vector<qint64> actions;
    } const cases[] = {
        {730, 100, {3, 4, 5, 6}}, {20, 100, {4, 5, 6}}, {730, 6, {4, 5, 6}}, {730, 5, {5, 6}}, {730, 0, {6}}};
    for (const auto &test : cases) {
        timings = {};
        Start();
        for (const auto &[rows, days] :
             {std::pair{2, 800.}, {0, 731.}, {2, 50.}, {3, 10.}, {2, 1.}, {0, .5}}) {
            JournalBatch batch = bursts.Next(rows, ago(days));
            batch.notes.push_back({bursts.actions, QStringLiteral("note")});
            journal->Add(batch);
        }
        // A row that came late, when the next action had its rows.
        JournalBatch late;
        late.rows = {bursts.Next(1, ago(1)).rows};
        late.rows[0].action = 4;
        late.results = {{late.rows[0].sequence, ago(1), EntryResult::Verified}};
        journal->Add(late);
        Settle();
        Ask(QStringLiteral("UPDATE actions SET title = '4' WHERE number = 4"));
        Ask(QStringLiteral("UPDATE runs SET began = 0"));
        timings.mostDays = test.mostDays;
        timings.mostRows = test.mostRows;
        Start();
        Settle();
        EXPECT_EQ(Ask(QStringLiteral("SELECT number FROM actions ORDER BY number")), test.actions);
        EXPECT_EQ(Count("notes"), qint64(test.actions.size()));
        EXPECT_EQ(Count("runs"), 2);
        ExpectWhole();
        journal.reset();
        QFile::remove(path);
    }
}

} // namespace quorvik::testing
