// The deaf moment: how long the program does not answer, with ten windows painting beside a drive that runs,
// while the whole table goes over a line paced as in the field.

#include "AttachedProgram.h"
#include "Figures.h"
#include "TenWindows.h"

#include "platform/Waiting.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

namespace
{

using namespace quorvik;

constexpr double NsPerMs = 1e6;
constexpr int PollingMs = 5000;
constexpr double LimitMs = 30;

/** The worst gap between the ticks of a timer that is due every millisecond, in milliseconds, while work
 * runs. */
template<typename Work> double WorstGap(Work work)
{
    QElapsedTimer sinceLast;
    qint64 worstNs = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, &ticker, [&] {
        worstNs = std::max(worstNs, sinceLast.nsecsElapsed());
        sinceLast.start();
    });
    sinceLast.start();
    ticker.start(1);
    work();
    return double(worstNs) / NsPerMs;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    AttachedProgram program;
    if (!program.GoOnLine({}))
        return 1;
    Engines &engines = program.Main().AllEngines();
    OpenTenWindows(program.Main());
    const auto poll = [] { PumpWhile([] { return true; }, QDeadlineTimer(PollingMs)); };
    poll();

    bool kept = Print("deaf-moment-polling", WorstGap(poll), "ms", LimitMs);
    kept &= Print("deaf-moment-reading", WorstGap([&] { engines.drive.ReadAll(); }), "ms", LimitMs);
    kept &= Print("deaf-moment-writing", WorstGap([&] {
                      engines.table.SetAllWriteFlags(WriteState::Queued);
                      // What a running drive would refuse.
                      for (int p = 0; p <= engines.table.LastParam; ++p)
                          if (engines.table.AttrBit(Attr::Icr, p))
                              engines.table.Row(p).WriteFlag = WriteState::None;
                      engines.drive.SendAll();
                  }),
                  "ms", LimitMs);
    engines.document.DriveModified = false;
    engines.drive.GoOffLine(OffLineReason::CommandEnded);
    return kept ? 0 : 1;
}
