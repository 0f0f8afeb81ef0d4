#include "history/Journal.h"

#include "history/JournalWriter.h"

#include <QSemaphore>
#include <memory>
#include <utility>

namespace quorvik
{

Journal::Journal(const QString &path, const JournalTimings &timings)
    : path_(path)
    , timings_(timings)
    , writer_(new JournalWriter(path, timings))
{
    writer_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, writer_, &QObject::deleteLater);
    connect(writer_, &JournalWriter::Written, this, &Journal::Written);
    connect(writer_, &JournalWriter::Trouble, this, &Journal::Trouble);
    connect(writer_, &JournalWriter::Recovered, this, &Journal::Recovered);
    connect(writer_, &JournalWriter::News, this, &Journal::News);
    thread_.setObjectName(QStringLiteral("Journal"));
    thread_.start(QThread::LowPriority);
}

Journal::~Journal()
{
    QMetaObject::invokeMethod(writer_, &JournalWriter::Finish);
    Flush(timings_.closeMs);
    thread_.quit();
    thread_.wait();
}

void Journal::Begin(const QString &user)
{
    QMetaObject::invokeMethod(writer_, [writer = writer_, user] { writer->Begin(user); });
}

void Journal::Add(JournalBatch batch)
{
    QMetaObject::invokeMethod(
        writer_, [writer = writer_, batch = std::move(batch)]() mutable { writer->Write(std::move(batch)); });
}

bool Journal::Flush(int milliseconds)
{
    // Shared with the call, which may come when nobody waits for it any more.
    const auto done = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(writer_, [done] { done->release(); });
    return done->tryAcquire(1, milliseconds);
}

} // namespace quorvik
