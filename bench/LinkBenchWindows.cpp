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
#include <array>

namespace
{

using namespace quorvik;

constexpr double NsPerMs = 1e6;
constexpr int PollingMs = 5000;
constexpr double LimitMs = 5;
constexpr int OfferRounds = 5;
constexpr int LostMs = 3000;
constexpr int WaitMs = 10000;
constexpr double OfferLimitMs = 2000;

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

/** The same three times, and the middle one of them: what the machine itself once keeps from the program is
 * not the program's. */
template<typename Work> double UsualWorstGap(Work work)
{
    std::array<double, 3> gaps{};
    for (double &gap : gaps)
        gap = WorstGap(work);
    std::ranges::sort(gaps);
    return gaps[1];
}

/** The worst time from the drive's return to the offer of reading it, in milliseconds; negative where it did
 * not come. */
double WorstOffer(AttachedProgram &program)
{
    Engines &engines = program.Main().AllEngines();
    program.ExpectMessages();
    engines.document.DriveModified = false;
    double worst = 0;
    for (int round = 0; round < OfferRounds; ++round) {
        program.Drive().Send(QStringLiteral("fault drop"));
        // Falls on another moment of the search each time.
        const QDeadlineTimer moment(LostMs + round * 170);
        PumpWhile([&] { return !moment.hasExpired() || !engines.states.IsLost(); }, QDeadlineTimer(WaitMs));
        QElapsedTimer sinceReturn;
        program.Drive().Send(QStringLiteral("faults off"));
        sinceReturn.start();
        if (!PumpWhile([&] { return engines.reconnection.Found() != Reconnection::Finding::Drive; },
                       QDeadlineTimer(WaitMs)))
            return -1;
        worst = std::max(worst, double(sinceReturn.nsecsElapsed()) / NsPerMs);
        if (!engines.reconnection.Read().IsDone())
            return -1;
    }
    return worst;
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

    bool kept = Print("deaf-moment-polling", UsualWorstGap(poll), "ms", LimitMs);
    kept &= Print("deaf-moment-reading", UsualWorstGap([&] { engines.drive.ReadAll(); }), "ms", LimitMs);
    kept &= Print("deaf-moment-writing", UsualWorstGap([&] {
                      engines.table.SetAllWriteFlags(WriteState::Queued);
                      // What a running drive would refuse.
                      for (int p = 0; p <= engines.table.LastParam; ++p)
                          if (engines.table.AttrBit(Attr::Icr, p))
                              engines.table.Row(p).WriteFlag = WriteState::None;
                      engines.drive.SendAll();
                  }),
                  "ms", LimitMs);
    const double offer = WorstOffer(program);
    kept &= offer >= 0;
    kept &= Print("offer-after-return", offer, "ms", OfferLimitMs);
    engines.document.DriveModified = false;
    engines.drive.GoOffLine(OffLineReason::CommandEnded);
    return kept ? 0 : 1;
}
