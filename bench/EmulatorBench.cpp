#include "Figures.h"

#include "emulator/DriveEmulator.h"
#include "model/Document.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QString>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace quorvik;

namespace
{

constexpr int FirstLink = 366;
constexpr int Links = 20;
constexpr int Batches = 201;
constexpr int TicksInABatch = 200;

/** Median time of one tick in microseconds, with the first links of the table set and the others unset. */
double TickMicroseconds(ParameterTable &table, int linksSet)
{
    for (int i = 0; i < Links; ++i) {
        table.Row(FirstLink + 2 * i).Value = i < linksSet ? 217 : 0;
        table.Row(FirstLink + 2 * i + 1).Value = i < linksSet ? 218 : 0;
    }
    DriveEmulator emulator(table);
    std::vector<double> times;
    for (int batch = 0; batch < Batches; ++batch) {
        QElapsedTimer watch;
        watch.start();
        for (int tick = 0; tick < TicksInABatch; ++tick) {
            table.Row(139).Value = tick;
            emulator.TimerEmulateSvx_Timer();
        }
        times.push_back(double(watch.nsecsElapsed()) / 1000.0 / TicksInABatch);
    }
    std::nth_element(times.begin(), times.begin() + Batches / 2, times.end());
    return times[Batches / 2];
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    ParameterTable table;
    Document document{table};
    const QString problem = SettingsFile(table, document).LoadPresets(QStringLiteral(QUORVIK_PRESETS_FILE));
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(problem));
        return 2;
    }
    table.ResetToDefaults();

    const double unset = TickMicroseconds(table, 0);
    const double half = TickMicroseconds(table, Links / 2);
    const double all = TickMicroseconds(table, Links);
    bool good = Print("emulator tick, factory table", unset, "us", 20.0);
    good &= Print("emulator tick, all links set", all, "us", 20.0);
    // All links run at every tick, set or not, so setting more of them must not cost more than their copying.
    good &= Print("emulator tick, all links set against half of them", all / half, "times", 1.5);
    return good ? 0 : 1;
}
