// A program that records into a folder until it is killed: trend-child <folder> <presets file>. Each sample's
// raw value is one more than the last one's; prints each with the time.

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "model/ParameterNumbers.h"
#include "settings/SettingsFile.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>

int main(int argc, char **argv)
{
    constexpr int EveryMs = 3;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    quorvik::ParameterTable table;
    quorvik::Document document(table);
    if (!quorvik::SettingsFile(table, document).LoadPresets(arguments[2]).isEmpty())
        return 2;
    table.ResetToDefaults();
    quorvik::DriveLink link(table);
    quorvik::DriveEmulator emulator(table);
    emulator.TimerEmulateSvx.stop();
    quorvik::TrendRecorder recorder(table, document, link, emulator);
    quorvik::TrendStore store(arguments[1]);
    store.Follow(recorder);
    for (const int p : {quorvik::Param::VelFeedback, quorvik::Param::VelocityDemand})
        recorder.AddChannel(p, quorvik::TrendPace::Fast);
    recorder.Start();
    QTimer timer;
    int count = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++count;
        for (const quorvik::TrendTrack &track : recorder.Data().tracks)
            table.Row(track.channel.param).Value = count;
        Q_EMIT emulator.Emulated();
        std::printf("%d %lld\n", count, static_cast<long long>(quorvik::MicrosecondsUp()));
        std::fflush(stdout);
    });
    timer.start(EveryMs);
    return QCoreApplication::exec();
}
