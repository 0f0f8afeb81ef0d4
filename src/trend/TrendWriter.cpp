#include "trend/TrendWriter.h"

#include <QDir>
#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

/** So many recordings are held back at most while the disk takes none. */
constexpr std::size_t MostWaiting = 10;
/** Another program holds a file for a moment now and then; so often in a row it is trouble. */
constexpr int MostBusy = 3;

} // namespace

TrendWriter::TrendWriter(const QString &folder, const TrendTimings &timings)
    : folder_(folder)
    , timings_(timings)
    , retry_(this) // goes with the writer to its thread
{
    retry_.setSingleShot(true);
    retry_.setInterval(timings.storeRetryMs);
    connect(&retry_, &QTimer::timeout, this, &TrendWriter::SaveWaiting);
}

TrendWriter::~TrendWriter() = default;

void TrendWriter::WriteRunning(const TrendBatch &batch)
{
    if (batch.isEndOnly) {
        if (running_ && running_->Path() == batch.path && running_->IsOpen())
            running_->Complete();
        End(batch.path);
        PruneFolder();
        return;
    }
    if (!running_ || running_->Path() != batch.path) {
        running_ = std::make_unique<TrendFile>(batch.path, timings_.storeBusyMs);
        lock_.reset();
        sincePruned_.start();
    }
    // A file that was taken away is no longer written, though the system lets it be.
    if (running_->IsOpen() && !QFile::exists(batch.path))
        running_->Close();
    const bool isOpen = running_->IsOpen() || (batch.isWhole && Begin(batch));
    const bool prunes = sincePruned_.elapsed() >= timings_.storePruneMs;
    if (prunes)
        sincePruned_.start();
    if (!isOpen && !batch.isWhole) {
        Q_EMIT Done(batch.path, false);
        return;
    }
    if (!isOpen || !running_->Write(batch, timings_, prunes)) {
        Fail(*running_);
        running_->Close();
        Q_EMIT Done(batch.path, false);
        return;
    }
    Recover();
    if (batch.isLast)
        End(batch.path);
    Q_EMIT Done(batch.path, true);
    if (batch.isLast || batch.isWhole)
        PruneFolder();
}

bool TrendWriter::Begin(const TrendBatch &batch)
{
    QDir().mkpath(folder_);
    if (!lock_) {
        lock_ = std::make_unique<FileLock>(TrendFile::LockPath(batch.path));
        // Nobody else writes to it; a reader that looks whether somebody does has it for a moment only.
        lock_->Acquire(timings_.storeBusyMs);
    }
    return running_->Open(true);
}

void TrendWriter::End(const QString &path)
{
    if (!running_ || running_->Path() != path)
        return;
    running_.reset();
    if (std::exchange(lock_, nullptr))
        QFile::remove(TrendFile::LockPath(path));
}

void TrendWriter::Save(const TrendBatch &batch)
{
    waiting_.push_back(batch);
    if (waiting_.size() > MostWaiting)
        waiting_.pop_front();
    if (!retry_.isActive())
        SaveWaiting();
}

void TrendWriter::SaveWaiting()
{
    retry_.stop();
    bool isAny = false;
    while (!waiting_.empty()) {
        TrendFile file(waiting_.front().path, timings_.storeBusyMs);
        if (!file.Open(true) || !file.Write(waiting_.front(), timings_, false)) {
            Fail(file);
            retry_.start();
            break;
        }
        waiting_.pop_front();
        isAny = true;
    }
    if (!isAny)
        return;
    if (waiting_.empty())
        Recover();
    Q_EMIT ListChanged();
    PruneFolder();
}

void TrendWriter::Fail(TrendFile &file)
{
    const bool isMoment = file.WasBusy() && ++busy_ < MostBusy;
    if (isMoment || std::exchange(isTold_, true))
        return;
    Q_EMIT Trouble(QStringLiteral("The recording is not kept at present: %1 (%2).")
                       .arg(file.Failure(), QDir::toNativeSeparators(file.Path())));
}

void TrendWriter::Recover()
{
    busy_ = 0;
    if (std::exchange(isTold_, false))
        Q_EMIT Recovered();
}

void TrendWriter::PruneFolder()
{
    const QStringList names =
        QDir(folder_).entryList({QLatin1Char('*') + TrendFile::Suffix()}, QDir::Files, QDir::Name);
    // Fewer than these are never too many of one kind, and need not be opened.
    if (names.size() > std::min(timings_.mostRunning, timings_.mostTrips)) {
        std::vector<StoredRecording> found;
        for (const QString &name : names) {
            StoredRecording recording;
            recording.path = QDir(folder_).filePath(name);
            TrendFile file(recording.path, 0);
            if (!TrendFile::IsBeingWritten(recording.path) && file.Open(false) && file.ReadHead(recording) &&
                !recording.isKept)
                found.push_back(std::move(recording));
        }
        std::ranges::sort(found, std::ranges::greater{}, &StoredRecording::firstUtcMs);
        for (const auto &[kind, most] : {std::pair{RecordingKind::Running, timings_.mostRunning},
                                         std::pair{RecordingKind::Trip, timings_.mostTrips}}) {
            int count = 0;
            for (const StoredRecording &recording : found)
                if (recording.kind == kind && ++count > most)
                    TrendFile::Remove(recording.path);
        }
    }
    Q_EMIT ListChanged();
}

} // namespace quorvik
