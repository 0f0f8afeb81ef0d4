// A program that writes to a journal: journal-child <file> <bursts>, 0 for ever. Prints each batch with the
// time at which it was handed over, in milliseconds for which the program ran, and how many are written.

#include "history/Bursts.h"
#include "history/Journal.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <cstdio>

int main(int argc, char **argv)
{
    constexpr int EveryMs = 2;
    // For longer between two batches the machine stood still or was busy with others.
    constexpr qint64 RanAtMostMs = 5;
    constexpr int MostRows = 9;
    constexpr int EndMs = 60'000;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    const int wanted = arguments[2].toInt();
    quorvik::JournalTimings timings;
    timings.closeMs = EndMs;
    quorvik::Journal journal(arguments[1], timings);
    quorvik::testing::Bursts bursts;
    int written = 0;
    int result = 0;
    QObject::connect(&journal, &quorvik::Journal::Written, [&] {
        std::printf("written %d\n", ++written);
        std::fflush(stdout);
        if (written == wanted)
            QCoreApplication::exit(result);
    });
    QObject::connect(&journal, &quorvik::Journal::Trouble, [&](const QString &sentence) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(sentence));
        result = 1;
    });
    QElapsedTimer clock;
    clock.start();
    qint64 ranMs = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (wanted > 0 && bursts.actions == wanted)
            return;
        journal.Add(bursts.Next(1 + bursts.actions % MostRows));
        ranMs += std::min<qint64>(clock.restart(), RanAtMostMs);
        std::printf("handed %lld\n", static_cast<long long>(ranMs));
        std::fflush(stdout);
    });
    journal.Begin(QStringLiteral("somebody"));
    timer.start(EveryMs);
    return QCoreApplication::exec();
}
