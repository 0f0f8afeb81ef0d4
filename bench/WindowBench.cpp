// What the windows and the settings files cost, in the release build, on line with a drive paced as in the
// field.

#include "AttachedProgram.h"
#include "Figures.h"

#include "blocks/BlockCatalogue.h"
#include "blocks/BlockForm.h"
#include "blocks/DriveCircuit.h"
#include "compare/forms/FormCompare.h"
#include "find/forms/FormFind.h"
#include "history/forms/FormHistory.h"
#include "history/forms/HistoryModel.h"
#include "history/forms/HistoryView.h"
#include "map/FormMap.h"
#include "map/MapView.h"
#include "settings/forms/FormViewParameters.h"
#include "shell/OpenWindows.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMainWindow>
#include <QTableView>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <array>
#include <cstdio>
#include <sys/resource.h>

namespace
{

using namespace quorvik;

constexpr double NsPerMs = 1e6;
constexpr int TableFactor = 10;
constexpr int CpuSeconds = 10;

template<typename Work> double MillisecondsOf(Work &&work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return double(clock.nsecsElapsed()) / NsPerMs;
}

template<typename Work> double MedianOfFive(Work &&work)
{
    std::array<double, 5> times{};
    for (double &time : times)
        time = MillisecondsOf(work);
    std::sort(times.begin(), times.end());
    return times[2];
}

double CpuSecondsUsed()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void RunEventsFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool MeasureFiles(const QString &folder)
{
    ParameterTable table;
    Document document{table};
    SettingsFile file(table, document);
    if (!file.LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE)).isEmpty())
        return false;
    table.ResetToDefaults();
    const QString path = folder + QStringLiteral("/bench.Svx");
    const double save = MedianOfFive([&] { file.Save(path); });
    const double load = MedianOfFive([&] { file.LoadSettings(path); });

    const int rows = table.FileLastParam + 1;
    table.Resize(rows * TableFactor - 1);
    table.PresetTable.Resize(rows * TableFactor - 1);
    for (int i = rows; i < rows * TableFactor; ++i)
        table.Row(i) = table.Row(i % rows);
    table.FileLastParam = table.LastParam = std::int16_t(rows * TableFactor - 1);
    const double saveMany = MedianOfFive([&] { file.Save(path); });
    const double loadMany = MedianOfFive([&] { file.LoadSettings(path); });
    bool kept = Print("settings-save", save, "ms", 20);
    kept &= Print("settings-load", load, "ms", 20);
    kept &= Print("settings-save-ten-times-the-rows", saveMany / save, "x", 12);
    kept &= Print("settings-load-ten-times-the-rows", loadMany / load, "x", 12);
    return kept;
}

/** From the menu to painted. */
double OpeningTime(MDIFormMain &main, const BlockMenuEntry &entry, int member)
{
    return MillisecondsOf([&] {
        OpenBlock(main.TheDesk(), entry, member);
        QCoreApplication::sendPostedEvents();
        main.repaint();
        for (QWidget *window : main.findChildren<QWidget *>())
            if (window->objectName() == QLatin1String(entry.form))
                window->repaint();
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    });
}

bool MeasureWindows(MDIFormMain &main, double emptyMiB)
{
    double worst = 0;
    int windows = 0;
    double ofTen = 0;
    for (const BlockMenuEntry &entry : BlockCatalogue()) {
        if (!entry.sheet)
            continue;
        const int first = entry.IsFamily() ? entry.firstMember : 0;
        const int last = entry.IsFamily() ? entry.lastMember : 0;
        for (int member = first; member <= last; ++member) {
            worst = std::max(worst, OpeningTime(main, entry, member));
            if (++windows == 10) {
                RunEventsFor(1000);
                ofTen = ResidentMiB();
            }
        }
    }
    bool kept = Print("window-opening-worst", worst, "ms", 50);
    kept &= Print("memory-of-ten-windows", ofTen, "MiB", 80);
    std::printf("memory-of-ten-windows-to-an-empty-frame: %.3g x (limit none)\n", ofTen / emptyMiB);

    RunEventsFor(2000);
    const double before = CpuSecondsUsed();
    RunEventsFor(CpuSeconds * 1000);
    const double share = (CpuSecondsUsed() - before) / CpuSeconds * 100;
    std::printf("windows-open: %d windows (limit none)\n", windows);
    kept &= Print("cpu-of-all-windows", share, "% of a core", 4);
    kept &= Print("memory-of-all-windows", ResidentMiB(), "MiB", 120);
    return kept;
}

bool MeasureList(MDIFormMain &main)
{
    FormViewParameters *list = nullptr;
    const double opening = MillisecondsOf([&] {
        list = new FormViewParameters(main.TheDesk(), main.Print(), ReportFilter::All);
        main.TheDesk().ShowChild(list, true);
        list->repaint();
    });
    auto *view = list->findChild<QTreeView *>(QStringLiteral("ListView"));
    double sorting = 0;
    for (const int column : {3, 1, 2, 0, 0})
        sorting = std::max(sorting, MillisecondsOf([&] {
                               Q_EMIT view->header()->sectionClicked(column);
                               view->repaint();
                           }));
    bool kept = Print("list-opening", opening, "ms", 50);
    kept &= Print("list-sorting-worst", sorting, "ms", 20);
    return kept;
}

/** All rows of the open set against the drive and against the factory set, from the choice to painted. */
bool MeasureCompare(MDIFormMain &main)
{
    ShowCompare(main, true);
    auto *window = main.findChild<FormCompare *>();
    auto *view = window->findChild<QTableView *>(QStringLiteral("TableDifferences"));
    for (auto *check : window->findChildren<QCheckBox *>())
        check->setChecked(false);
    for (const char *kind : {"CheckSettings", "CheckModel", "CheckClock", "CheckCommands", "CheckStatus"})
        window->findChild<QCheckBox *>(QString::fromLatin1(kind))->setChecked(true);
    bool isDrive = true;
    double worst = 0;
    for (int i = 0; i < 6; ++i) {
        isDrive = !isDrive;
        worst = std::max(worst, MillisecondsOf([&] {
                             window->Sides().Select(
                                 1, {isDrive ? CompareSource::Kind::Drive : CompareSource::Kind::Factory});
                             view->repaint();
                         }));
    }
    std::printf("compare-rows: %d (limit none)\n", view->model()->rowCount());
    return Print("compare-and-show-worst", worst, "ms", 20);
}

/** Ten searches typed letter by letter, each from the key to painted. */
bool MeasureFind(MDIFormMain &main)
{
    FormFind *window = nullptr;
    const double opening = MillisecondsOf([&] {
        ShowFind(main);
        window = main.findChild<FormFind *>();
        window->repaint();
    });
    auto *field = window->findChild<QLineEdit *>(QStringLiteral("TextFind"));
    QWidget *rows = window->findChild<QTreeView *>(QStringLiteral("ListFound"))->viewport();
    double worst = 0;
    for (const char *query :
         {"22", "run enable", "estop", "veloctiy loop", "acceleraton forward", "field loss",
          "maximum reverse speed", "save drive", "tachometer voltage", "nothing called that"}) {
        field->clear();
        for (const QChar letter : QString::fromLatin1(query))
            worst = std::max(worst, MillisecondsOf([&] {
                                 field->insert(QString(letter));
                                 QCoreApplication::sendPostedEvents();
                                 rows->repaint();
                             }));
    }
    window->close();
    bool kept = Print("find-opening", opening, "ms", 100);
    kept &= Print("find-key-worst", worst, "ms", 16);
    return kept;
}

/** Writes 100,000 rows into the journal: nine changes of one value to one of several. */
void FillHistory(Journal &journal)
{
    constexpr int rowsInAll = 100000;
    constexpr int rowsAtOnce = 1000;
    constexpr int rowsOfMany = 10;
    int action = 1000; // what the program does by itself has numbers too
    for (int sequence = action; sequence < rowsInAll + action;) {
        JournalBatch batch;
        while (int(batch.rows.size()) < rowsAtOnce) {
            batch.actions.push_back({.number = ++action,
                                     .time = JournalTime::Now(),
                                     .origin = Origin::EditDialog,
                                     .title = QString(),
                                     .setName = QStringLiteral("/home/anna/pump.Svx")});
            for (int row = 0; row < (action % rowsOfMany == 0 ? rowsOfMany : 1); ++row)
                batch.rows.push_back({.action = action,
                                      .sequence = ++sequence,
                                      .time = JournalTime::Now(),
                                      .param = Param::Reference0 + row,
                                      .name = QStringLiteral("Reference 0"),
                                      .rawBefore = sequence,
                                      .rawAfter = sequence + 1,
                                      .textBefore = QStringLiteral("1.00 %"),
                                      .textAfter = QStringLiteral("2.00 %"),
                                      .result = EntryResult::Acknowledged});
        }
        journal.Add(batch);
        journal.Flush(10000);
    }
}

/** The history over a full journal, from the command to the first page painted, and another page. */
bool MeasureHistory(MDIFormMain &main)
{
    FillHistory(main.AllEngines().journal);
    FormHistory *window = nullptr;
    const double opening = MillisecondsOf([&] {
        ShowHistory(main);
        window = main.findChild<FormHistory *>();
        window->View().viewport()->repaint();
    });
    auto *model = qobject_cast<HistoryModel *>(window->View().model());
    double page = 0;
    for (int i = 0; i < 20; ++i)
        page = std::max(page, MillisecondsOf([&] {
                            model->FetchOlder();
                            window->View().scrollToBottom();
                            window->View().viewport()->repaint();
                        }));
    bool kept = Print("history-opening", opening, "ms", 50);
    kept &= Print("history-page-worst", page, "ms", 50);
    window->close();
    return kept;
}

/** A frame while the map is dragged to and fro, in a window of a small screen; and what a look at the whole
 * circuit takes. */
bool MeasureMap(MDIFormMain &main)
{
    constexpr int frames = 100;
    main.resize(1366, 768);
    OpenMap(main.TheDesk(), -1);
    auto *window = main.findChild<FormMap *>();
    window->showMaximized();
    RunEventsFor(100);
    MapView &view = window->View();
    view.SetFocusCard(MapModel::FindCard(QStringLiteral("Velocity Loop")));
    bool kept = true;
    for (const auto &[name, zoom] :
         {std::pair{"map-frame-while-panning", 1.3}, {"map-frame-whole", view.Zoom()}}) {
        view.SetZoom(zoom, {});
        int frame = 0;
        const double all = MillisecondsOf([&] {
            while (frame < frames) {
                view.PanBy(frame++ % 40 < 20 ? QPointF(-9, -3) : QPointF(9, 3));
                view.repaint();
            }
        });
        kept &= Print(name, all / frames, "ms", 16);
    }
    DriveCircuit circuit(main.TheDesk().table);
    kept &= Print("whole-circuit-evaluated", MedianOfFive([&] { circuit.Get().Follow(); }), "ms", 1);
    window->close();
    return kept;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    double emptyMiB = 0;
    {
        QMainWindow frame;
        frame.show();
        QCoreApplication::processEvents();
        emptyMiB = ResidentMiB();
    }

    AttachedProgram program;
    bool kept = MeasureFiles(program.Folder());
    // The program looks for the words of its help beside itself.
    if (!QFile::copy(QStringLiteral(QUORVIK_WORDS_FILE), program.Folder() + QStringLiteral("/quorvik.words")))
        return 1;
    if (!program.GoOnLine({}))
        return 1;
    MDIFormMain &main = program.Main();
    DriveOperations &drive = main.AllEngines().drive;
    drive.ReadAll();
    kept &= MeasureList(main);
    kept &= MeasureFind(main);
    kept &= MeasureHistory(main);
    kept &= MeasureCompare(main);
    kept &= MeasureMap(main);
    kept &= MeasureWindows(main, emptyMiB);
    drive.GoOffLine(OffLineReason::CommandEnded);
    return kept ? 0 : 1;
}
