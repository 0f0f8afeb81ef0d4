#include "trend/TrendStore.h"

#include "platform/Guard.h"
#include "trend/TrendFile.h"
#include "trend/TrendFollower.h"
#include "trend/TrendRecorder.h"
#include "trend/TrendWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSemaphore>
#include <QUuid>
#include <algorithm>
#include <functional>

namespace quorvik
{

namespace
{

/** So much of a number that never comes twice goes into a name. */
constexpr int TokenLength = 6;

QString Sentence(const QString &what, const QString &path, const QString &why)
{
    return QStringLiteral("%1 %2: %3.").arg(what, QFileInfo(path).fileName(), why);
}

} // namespace

TrendStore::TrendStore(const QString &folder, const TrendTimings &timings)
    : folder_(folder)
    , timings_(timings)
    , writer_(new TrendWriter(folder, timings))
{
    writer_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, writer_, &QObject::deleteLater);
    connect(writer_, &TrendWriter::ListChanged, this, &TrendStore::ListChanged);
    connect(writer_, &TrendWriter::Trouble, this, &TrendStore::Trouble);
    connect(writer_, &TrendWriter::Recovered, this, &TrendStore::Recovered);
    connect(writer_, &TrendWriter::Done, this, [this](const QString &path, bool isWritten) {
        if (follower_)
            follower_->Take(path, isWritten);
    });
    thread_.setObjectName(QStringLiteral("Recordings"));
    thread_.start(QThread::LowPriority);
}

TrendStore::~TrendStore()
{
    if (follower_)
        follower_->Finish();
    QMetaObject::invokeMethod(writer_, &TrendWriter::Finish);
    Flush(timings_.storeCloseMs);
    thread_.quit();
    thread_.wait();
}

void TrendStore::Follow(TrendRecorder &recorder)
{
    follower_ = std::make_unique<TrendFollower>(recorder, timings_, [this] { return NewPath(); });
    On(follower_.get(), &TrendFollower::Gathered, this, [this](const TrendBatch &batch) {
        QMetaObject::invokeMethod(writer_, [writer = writer_, batch] { writer->WriteRunning(batch); });
    });
    follower_->FollowState();
}

QString TrendStore::RunningPath() const
{
    return follower_ ? follower_->Path() : QString();
}

QString TrendStore::NewPath() const
{
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"));
    const QString token = QUuid::createUuid().toString(QUuid::Id128).left(TokenLength);
    return QDir(folder_).filePath(time + u' ' + token + TrendFile::Suffix());
}

QString TrendStore::Save(TrendDataPtr data, RecordingKind kind)
{
    QString path = NewPath();
    QMetaObject::invokeMethod(writer_, [writer = writer_, data = std::move(data), kind, path] {
        TrendBatch batch;
        batch.path = path;
        batch.kind = kind;
        batch.head = data->head;
        batch.triggerUs = data->triggerUs;
        for (const TrendTrack &track : data->tracks) {
            TrendPart &part = batch.parts.emplace_back();
            part.channel = track.channel;
            for (std::size_t i = 0; i < track.samples.Size(); ++i)
                part.samples.push_back(track.samples[i]);
        }
        batch.marks = data->marks;
        batch.isWhole = batch.isLast = true;
        writer->Save(batch);
    });
    return path;
}

std::vector<StoredRecording> TrendStore::List()
{
    std::vector<StoredRecording> recordings;
    std::map<QString, Listed> listed;
    const QFileInfoList files =
        QDir(folder_).entryInfoList({QLatin1Char('*') + TrendFile::Suffix()}, QDir::Files);
    for (const QFileInfo &info : files) {
        // One that is just being made, or whose program got no further.
        if (info.size() == 0)
            continue;
        const QString path = info.filePath();
        Listed now{.changed = info.lastModified(), .size = info.size(), .recording = {}};
        const bool isRunning = TrendFile::IsBeingWritten(path);
        const auto known = listed_.find(path);
        if (!isRunning && known != listed_.end() && known->second.changed == now.changed &&
            known->second.size == now.size && !known->second.recording.isRunning) {
            now = known->second;
        } else {
            now.recording.path = path;
            TrendFile file(path, timings_.storeBusyMs);
            if (!file.Open(false) || !file.ReadHead(now.recording)) {
                now.recording = {};
                now.recording.path = path;
                now.recording.firstUtcMs = info.lastModified().toMSecsSinceEpoch();
                now.recording.failure =
                    Sentence(QStringLiteral("Cannot read the recording"), path, file.Failure());
            }
            now.recording.isRunning = isRunning;
        }
        recordings.push_back(now.recording);
        listed[path] = std::move(now);
    }
    listed_ = std::move(listed);
    std::ranges::stable_sort(recordings, std::ranges::greater{}, &StoredRecording::firstUtcMs);
    return recordings;
}

TrendDataPtr TrendStore::Load(const QString &path, QString *failure)
{
    auto data = std::make_shared<TrendData>();
    TrendFile file(path, timings_.storeBusyMs);
    if (file.Open(false) && file.ReadAll(*data, timings_))
        return data;
    if (failure != nullptr)
        *failure = Sentence(QStringLiteral("Cannot read the recording"), path, file.Failure());
    return nullptr;
}

QString TrendStore::Keep(const QString &path, const QString &title, const QString &notes)
{
    TrendFile file(path, timings_.storeBusyMs);
    if (!file.Open(false) || !file.Keep(title, notes))
        return Sentence(QStringLiteral("Cannot keep the recording"), path, file.Failure());
    Q_EMIT ListChanged();
    return {};
}

QString TrendStore::Remove(const QString &path)
{
    if (TrendFile::IsBeingWritten(path))
        return Sentence(QStringLiteral("Cannot delete the recording"), path,
                        QStringLiteral("it is being recorded just now"));
    if (!TrendFile::Remove(path))
        return Sentence(QStringLiteral("Cannot delete the recording"), path,
                        QStringLiteral("it must not be deleted here"));
    Q_EMIT ListChanged();
    return {};
}

bool TrendStore::Flush(int milliseconds)
{
    // Shared with the call, which may come when nobody waits for it any more.
    const auto done = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(writer_, [done] { done->release(); });
    return done->tryAcquire(1, milliseconds);
}

} // namespace quorvik
