#pragma once

#include "emulator/DriveEmulator.h"
#include "link/DriveLink.h"
#include "model/ParameterNumbers.h"
#include "platform/Waiting.h"
#include "settings/SetFixture.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendStore.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <memory>

namespace quorvik::testing
{

/** Two recordings as text, so that what differs is seen. */
inline std::vector<std::string> LinesOf(const TrendData &data)
{
    std::vector<std::string> lines;
    const auto add = [&](const QStringList &words) { lines.push_back(words.join(u' ').toStdString()); };
    const auto text = [](qint64 number) { return QString::number(number); };
    const TrendHead &head = data.head;
    add({head.title, head.notes, head.setName, text(head.beganUs), text(head.beganUtcMs),
         text(head.offsetMinutes), head.drive ? head.drive->Text() : QString(),
         text(data.triggerUs.value_or(-1))});
    for (const TrendTrack &track : data.tracks) {
        const TrendChannel &channel = track.channel;
        add({text(channel.param), text(qint64(channel.pace)), text(channel.attributes), channel.name});
        for (std::size_t i = 0; i < track.samples.Size(); ++i) {
            const TrendSample &sample = track.samples[i];
            add({text(sample.timeUs), text(sample.spanUs), text(sample.isAfterGap), text(sample.rawValue)});
        }
    }
    for (const TrendMark &mark : data.marks)
        add({text(mark.timeUs), text(qint64(mark.kind)), text(mark.param), mark.text});
    return lines;
}

/** A recorder whose samples and time the test makes, off line, and a store that follows it. */
class StoreTest : public SetTest
{
protected:
    static constexpr int LongMs = 20'000;

    StoreTest()
    {
        emulator.TimerEmulateSvx.stop();
        timings.storeMs = 10;
        timings.storeRetryMs = 20;
    }

    void Begin()
    {
        store = std::make_unique<TrendStore>(where, timings);
        QObject::connect(store.get(), &TrendStore::Trouble,
                         [this](const QString &sentence) { troubles += sentence; });
        QObject::connect(store.get(), &TrendStore::Recovered, [this] { ++recovered; });
        store->Follow(recorder);
        recorder.SetChannels({{Param::VelFeedback, TrendPace::Fast}, {Param::ArmatureAmps, TrendPace::Slow}});
    }
    /** A moment later all channels have a value. */
    void Sample(std::int32_t rawValue, int laterUs = 2000)
    {
        nowUs += laterUs;
        for (const TrendTrack &track : recorder.Data().tracks)
            table.Row(track.channel.param).Value = rawValue;
        Q_EMIT emulator.Emulated();
    }
    /** Records so many samples to the end. @return the file. */
    QString Record(int samples)
    {
        nowUs += 1000;
        recorder.Start();
        for (int i = 0; i < samples; ++i)
            Sample(i);
        recorder.Stop();
        Settle();
        return store->RunningPath();
    }
    /** Until all that was recorded is in its file. */
    void Settle()
    {
        ASSERT_TRUE(store->Flush(LongMs));
        QCoreApplication::processEvents();
        ASSERT_TRUE(store->Flush(LongMs));
        QCoreApplication::processEvents();
    }
    bool WaitFor(const std::function<bool()> &isTrue)
    {
        return PumpWhile([&] { return !isTrue(); }, QDeadlineTimer(LongMs));
    }
    std::vector<std::string> Loaded(const QString &path)
    {
        QString failure;
        const TrendDataPtr data = store->Load(path, &failure);
        return data ? LinesOf(*data) : std::vector<std::string>{failure.toStdString()};
    }
    QStringList Files() const { return QDir(where).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    QString where = folder.filePath(QStringLiteral("recordings"));
    TrendTimings timings;
    qint64 nowUs = 5'000'000;
    DriveLink link{table};
    DriveEmulator emulator{table};
    TrendRecorder recorder{table, document, link, emulator, timings, [this] { return nowUs; }};
    std::unique_ptr<TrendStore> store;
    QStringList troubles;
    int recovered = 0;
};

} // namespace quorvik::testing
