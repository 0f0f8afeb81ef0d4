// The journal: what an entry costs the event loop while the disk is busy, how soon it is written, and how
// long a full journal takes to be read and pruned.

#include "Figures.h"

#include "compare/Backups.h"
#include "compare/VerifiedWrite.h"
#include "history/Journal.h"
#include "history/JournalReader.h"
#include "history/Recorder.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <deque>
#include <thread>

using namespace quorvik;

namespace
{

constexpr double NsPerMs = 1e6;
constexpr int Entries = 5000;
constexpr int EntriesOfABurst = 20;
constexpr double EntryLimitMs = 0.2;
/** With the time that changes are gathered, a quarter of a second. */
constexpr double WrittenLimitMs = 150;
constexpr int Rows = 100'000;
constexpr int MostRowsOfAnAction = 4;
constexpr int Page = 100;
constexpr double PageLimitMs = 50;
constexpr double FilterLimitMs = 200;
constexpr double PruneLimitMs = 3000;
constexpr int WaitMs = 120'000;

double MsOf(const std::function<void()> &work)
{
    QElapsedTimer watch;
    watch.start();
    work();
    return double(watch.nsecsElapsed()) / NsPerMs;
}

/** Keeps the disk below a folder busy as long as it stands. */
class BusyDisk
{
public:
    explicit BusyDisk(const QString &folder)
        : thread_([this, path = folder + QStringLiteral("/busy")] {
            const QByteArray block(1 << 20, 'x');
            while (!isOver_) {
                QFile file(path);
                if (file.open(QIODevice::WriteOnly) && file.write(block) > 0 && file.flush())
                    ::fdatasync(file.handle());
            }
        })
    {
    }
    ~BusyDisk()
    {
        isOver_ = true;
        thread_.join();
    }
    BusyDisk(const BusyDisk &) = delete;
    BusyDisk &operator=(const BusyDisk &) = delete;

private:
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

bool EntriesCostLittle(const QString &folder)
{
    ParameterTable table;
    if (!LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), table).isEmpty())
        return false;
    table.ResetToDefaults();
    Document document(table);
    DriveLink link(table);
    const Backups backups(folder);
    VerifiedWrite writing(table, link, backups);
    Journal journal(folder + QStringLiteral("/entries.sqlite"));
    Recorder recorder(table, document, link, writing, journal);
    const BusyDisk busy(folder);
    journal.Begin({});
    std::vector<double> times;
    double total = 0;
    for (int i = 0; i < Entries; ++i) {
        times.push_back(MsOf([&] {
            const Intent intent(table, Origin::EditDialog);
            table.SetParamValue(Param::Reference0, i % 2 == 0 ? i : -i, true, true);
        }));
        total += times.back();
        if (i % EntriesOfABurst == 0)
            total += MsOf([&] { recorder.HandOver(); });
    }
    std::ranges::sort(times);
    const bool isKept = journal.Flush(WaitMs);
    bool result =
        Print("journal, an entry, mean with its share of handing over", total / Entries, "ms", EntryLimitMs);
    result &=
        Print("journal, an entry, 99 of 100", times[std::size_t(Entries) * 99 / 100], "ms", EntryLimitMs);
    return result && isKept;
}

/** Full by actions of few rows; the last ones are those of the tests' rare cases. */
class Filler
{
public:
    JournalBatch Next(int rows, Origin origin, EntryResult result)
    {
        JournalBatch batch;
        const JournalTime now = JournalTime::Now();
        batch.actions.push_back({.number = ++actions_,
                                 .time = now,
                                 .origin = origin,
                                 .title = {},
                                 .setName = QStringLiteral("/home/somebody/pump %1.Svx").arg(actions_ % 40),
                                 .link = actions_ % 3});
        for (int i = 0; i < rows; ++i) {
            batch.rows.push_back({.action = actions_,
                                  .sequence = ++Sequences,
                                  .time = now,
                                  .param = Sequences % Param::Reference0,
                                  .name = QStringLiteral("Parameter %1").arg(Sequences % Param::Reference0),
                                  .rawBefore = i,
                                  .rawAfter = Sequences,
                                  .textBefore = QStringLiteral("%1 Sec").arg(i),
                                  .textAfter = QStringLiteral("%1 Sec").arg(Sequences),
                                  .result = EntryResult::Queued});
            batch.results.push_back({Sequences, now, EntryResult::Acknowledged});
            batch.results.push_back({Sequences, now, result});
        }
        return batch;
    }
    int Sequences = 0;

private:
    int actions_ = 0;
};

bool WrittenSoon(const QString &folder)
{
    constexpr int Batches = 300;
    constexpr int EveryMs = 10;
    Journal journal(folder + QStringLiteral("/soon.sqlite"));
    const BusyDisk busy(folder);
    std::deque<QElapsedTimer> handed;
    double worst = 0;
    QObject::connect(&journal, &Journal::Written, [&] {
        worst = std::max(worst, double(handed.front().nsecsElapsed()) / NsPerMs);
        handed.pop_front();
    });
    journal.Begin({});
    journal.Flush(WaitMs);
    Filler filler;
    for (int i = 0; i < Batches; ++i) {
        handed.emplace_back().start();
        journal.Add(filler.Next(MostRowsOfAnAction, Origin::EditDialog, EntryResult::Verified));
        QElapsedTimer watch;
        for (watch.start(); watch.elapsed() < EveryMs;)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    journal.Flush(WaitMs);
    QCoreApplication::processEvents();
    return Print("journal, from handing over to the file, longest", worst, "ms", WrittenLimitMs);
}

bool Fill(const QString &path)
{
    Journal journal(path);
    journal.Begin({});
    Filler filler;
    journal.Add(filler.Next(1, Origin::Undo, EntryResult::Refused));
    while (filler.Sequences < Rows - MostRowsOfAnAction) {
        JournalBatch batch =
            filler.Next(1 + filler.Sequences % MostRowsOfAnAction, Origin::EditDialog, EntryResult::Verified);
        if (filler.Sequences % 1000 < MostRowsOfAnAction)
            batch.notes.push_back({batch.actions.front().number, QStringLiteral("Opened something")});
        journal.Add(std::move(batch));
    }
    journal.Add({.drives = {{1, JournalTime::Now(), {.model = 1}}, {2, JournalTime::Now(), {.model = 2}}}});
    return journal.Flush(WaitMs);
}

bool ReadQuickly(const QString &folder)
{
    const QString path = folder + QStringLiteral("/full.sqlite");
    if (!Fill(path))
        return false;
    // The program that shows it writes to it.
    Journal journal(path);
    journal.Begin({});
    journal.Flush(WaitMs);

    bool result = Print("journal, opening and the first page of 100,000 rows", MsOf([&] {
                            JournalReader reader(path);
                            for (const ShownAction &action : reader.Actions({}, 0, Page))
                                reader.RowsOf(action, {});
                        }),
                        "ms", PageLimitMs);
    const JournalSighting nobody{.identity = {.model = 3}, .time = JournalTime::Now()};
    const JournalSighting somebody{.identity = {.model = 1}, .time = JournalTime::Now()};
    const struct {
        const char *name;
        JournalFilter filter;
        std::size_t found;
    } cases[] = {
        {"journal, filter: a text that is nowhere", {.text = QStringLiteral("nowhere")}, 0},
        {"journal, filter: a text that is rare", {.text = QStringLiteral("something")}, Page},
        {"journal, filter: a parameter that never changed", {.param = Param::Reference0 + 1}, 0},
        {"journal, filter: a parameter", {.param = 1}, Page},
        {"journal, filter: a rare origin", {.origins = {Origin::Undo}}, 1},
        {"journal, filter: a rare result", {.results = {EntryResult::Refused}}, 1},
        {"journal, filter: none since now", {.sinceUtcMs = JournalTime::Now().utcMs}, 0},
        {"journal, filter: another drive", {.drive = nobody}, 0},
        {"journal, filter: a drive", {.drive = somebody}, Page},
        {"journal, filter: all of it",
         {.text = QStringLiteral("Parameter 7 "),
          .param = 7,
          .origins = {Origin::Undo},
          .results = {EntryResult::Refused},
          .drive = somebody},
         0},
    };
    JournalReader reader(path);
    reader.Actions({}, 0, 1);
    for (const auto &test : cases) {
        std::size_t found = 0;
        const double time = MsOf([&] { found = reader.Actions(test.filter, 0, Page).size(); });
        result &= Print(test.name, time, "ms", FilterLimitMs) && found == test.found;
        if (found != test.found)
            std::printf("found %zu\n", found);
    }
    JournalTimings timings;
    timings.mostRows = Rows / 10;
    Journal pruning(path, timings);
    result &= Print("journal, beginning with 90,000 rows to let go of", MsOf([&] {
                        pruning.Begin({});
                        pruning.Flush(WaitMs);
                    }),
                    "ms", PruneLimitMs);
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    // On the disk that the program is built on: the one for temporary files may be none.
    const QTemporaryDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/journal-XXXXXX"));
    const bool results[] = {EntriesCostLittle(folder.path()), WrittenSoon(folder.path()),
                            ReadQuickly(folder.path())};
    return std::ranges::all_of(results, std::identity()) ? 0 : 1;
}
