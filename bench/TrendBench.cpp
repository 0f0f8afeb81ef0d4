// The plots of the trend recorder: what they cost while they follow a recording at the full rate of the line,
// how long the event loop does not listen meanwhile, and how soon an hour of samples is drawn and zoomed.

#include "Figures.h"

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "model/Document.h"
#include "platform/Clock.h"
#include "settings/SettingsFile.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendView.h"
#include "trend/forms/PlotCanvas.h"
#include "trend/forms/TrendPlot.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <algorithm>
#include <cmath>
#include <ctime>

using namespace quorvik;

namespace
{

constexpr double NsPerMs = 1e6;
constexpr qint64 UsPerSecond = 1'000'000;
constexpr double MostPercent = 15;
constexpr double MostDeafMs = 10;
constexpr double MostHourMs = 100;
constexpr int Width = 1200;
constexpr int Height = 560;
constexpr int WarmUpMs = 1000;
constexpr int MeasuredMs = 10'000;
constexpr int SecondsSeen = 60;
constexpr int SecondsOfAnHour = 3600;
constexpr int FastChannels = 8;
constexpr int ZoomSteps = 16;

double CpuMs()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1000 + double(time.tv_nsec) / NsPerMs;
}

void RunFor(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

std::int32_t WaveAt(int channel, qint64 timeUs)
{
    const double seconds = double(timeUs) / double(UsPerSecond);
    const auto noise = std::int32_t((timeUs * 2654435761U >> 8) % 101) - 50;
    return std::int32_t(4000 * std::sin(seconds * (0.7 + channel))) + noise;
}

/** A recorder that is fed as by the line, first with the minute that is past. */
class Line
{
public:
    Line(ParameterTable &table, int channels, int samplesPerSecond)
        : table_(table)
        , emulator_(table)
        , recorder_(table, document_, link_, emulator_, {}, [this] { return nowUs_; })
    {
        emulator_.TimerEmulateSvx.stop();
        for (int channel = 0; channel < channels; ++channel)
            recorder_.AddChannel(Param::VelFeedback + channel, TrendPace::Fast);
        const qint64 endUs = MicrosecondsUp();
        const qint64 stepUs = UsPerSecond / samplesPerSecond;
        nowUs_ = endUs - SecondsSeen * UsPerSecond;
        recorder_.Start();
        for (; nowUs_ < endUs; nowUs_ += stepUs)
            Sample();
        // As many as are due: a timer of whole milliseconds would not keep the rate.
        QObject::connect(&timer_, &QTimer::timeout, [this, stepUs] {
            for (const qint64 dueUs = MicrosecondsUp(); nowUs_ < dueUs; nowUs_ += stepUs)
                Sample();
        });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(2);
    }

    TrendRecorder &Recorder() { return recorder_; }

private:
    void Sample()
    {
        int channel = 0;
        for (const TrendTrack &track : recorder_.Data().tracks)
            table_.Row(track.channel.param).Value = WaveAt(channel++, nowUs_);
        Q_EMIT emulator_.Emulated();
    }

    ParameterTable &table_;
    Document document_{table_};
    DriveLink link_{table_};
    DriveEmulator emulator_;
    qint64 nowUs_ = 0;
    TrendRecorder recorder_;
    QTimer timer_;
};

/** Looks at how long each event took. */
class Listener : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        const double before = CpuMs();
        const bool result = QApplication::notify(receiver, event);
        longestMs_ = std::max(longestMs_, CpuMs() - before);
        return result;
    }
    void Reset() { longestMs_ = 0; }
    double LongestMs() const { return longestMs_; }

private:
    double longestMs_ = 0;
};

bool FollowingCostsLittle(ParameterTable &table, int channels, int samplesPerSecond, const char *what)
{
    Line line(table, channels, samplesPerSecond);
    // What is recorded costs, too, but it is not the plots' doing.
    const double idleBefore = CpuMs();
    RunFor(MeasuredMs / 2);
    const double idlePercent = (CpuMs() - idleBefore) * 100 / (MeasuredMs / 2.0);

    TrendView view(line.Recorder());
    view.Zoom(double(SecondsSeen) * UsPerSecond / double(view.ToUs() - view.FromUs()), view.ToUs());
    TrendPlot plot(view);
    plot.resize(Width, Height);
    plot.show();
    RunFor(WarmUpMs);
    auto &listener = static_cast<Listener &>(*QCoreApplication::instance());
    listener.Reset();
    QElapsedTimer watch;
    watch.start();
    const double before = CpuMs();
    RunFor(MeasuredMs);
    const double percent = (CpuMs() - before) * 100 * NsPerMs / double(watch.nsecsElapsed()) - idlePercent;
    const auto name = [what](const char *figure) {
        return QStringLiteral("trend, %1, %2").arg(QLatin1String(what), QLatin1String(figure)).toLatin1();
    };
    const bool isCheap = Print(name("following, of one core").constData(), percent, "%", MostPercent);
    return Print(name("event loop deaf at most").constData(), listener.LongestMs(), "ms", MostDeafMs) &&
           isCheap;
}

bool AnHourIsFluent(ParameterTable &table)
{
    constexpr int samplesPerSecond = 70;
    auto data = std::make_shared<TrendData>();
    for (int channel = 0; channel < FastChannels; ++channel) {
        const int p = Param::VelFeedback + channel;
        TrendTrack &track = data->tracks.emplace_back(
            TrendTrack{{p, TrendPace::Fast, table[Param::VelFeedback].Attributes, table[p].Name}, {}});
        for (int i = 0; i < SecondsOfAnHour * samplesPerSecond; ++i) {
            const qint64 timeUs = i * UsPerSecond / samplesPerSecond + channel;
            track.samples.Append({.timeUs = timeUs, .rawValue = WaveAt(channel, timeUs)});
        }
    }
    Line line(table, 1, 1);
    TrendView view(line.Recorder());
    TrendPlot plot(view);
    plot.resize(Width, Height);
    plot.show();
    RunFor(WarmUpMs);
    const auto drawn = [&](const auto &change) {
        const double before = CpuMs();
        change();
        plot.Canvas().Redraw();
        plot.Canvas().repaint();
        return CpuMs() - before;
    };
    const double openedMs = drawn([&] { view.Show(data); });
    double longestMs = 0;
    for (int step = 0; step < ZoomSteps; ++step)
        longestMs = std::max(longestMs, drawn([&] { view.Zoom(0.8, SecondsOfAnHour / 3 * UsPerSecond); }));
    const bool isOpened = Print("trend, an hour of 8 channels, opened", openedMs, "ms", MostHourMs);
    return Print("trend, an hour of 8 channels, zoomed", longestMs, "ms", MostHourMs) && isOpened;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Listener application(argc, argv);
    ParameterTable table;
    if (!LoadFactoryTable(QStringLiteral(QUORVIK_PRESETS_FILE), table).isEmpty())
        return 1;
    table.ResetToDefaults();
    bool result = FollowingCostsLittle(table, FastChannels, 73, "8 channels at 73 a second");
    result &= FollowingCostsLittle(table, 1, 349, "1 channel at 349 a second");
    result &= AnHourIsFluent(table);
    return result ? 0 : 1;
}
