#include "trend/forms/RecordingTexts.h"

#include "platform/TimeUnits.h"

#include <QDateTime>
#include <QFileInfo>

namespace quorvik::RecordingTexts
{

namespace
{

QString Kind(const StoredRecording &recording)
{
    if (!recording.failure.isEmpty())
        return QStringLiteral("cannot be read");
    const QString kind = [&] {
        switch (recording.kind) {
        case RecordingKind::Capture:
            return QStringLiteral("around a trigger");
        case RecordingKind::Trip:
            return QStringLiteral("before a trip");
        default:
            return QStringLiteral("recorded");
        }
    }();
    if (recording.isRunning)
        return QStringLiteral("is being recorded");
    if (!recording.isComplete)
        return kind + QStringLiteral(", cut off");
    return recording.isKept ? kind + QStringLiteral(", kept") : kind;
}

} // namespace

QStringList Heads()
{
    return {QStringLiteral("Time"),   QStringLiteral("Title"),    QStringLiteral("What"),
            QStringLiteral("Length"), QStringLiteral("Channels"), QStringLiteral("Drive")};
}

QStringList Fields(const StoredRecording &recording)
{
    const bool isKnown = recording.failure.isEmpty();
    return {When(recording),
            isKnown ? recording.head.title : QFileInfo(recording.path).fileName(),
            Kind(recording),
            isKnown ? Length(recording.durationMs) : QString(),
            recording.channels.join(QStringLiteral(", ")),
            !isKnown               ? QString()
            : recording.head.drive ? recording.head.drive->Text()
                                   : QStringLiteral("off line, or not known")};
}

QString When(const StoredRecording &recording)
{
    const QDateTime utc = QDateTime::fromMSecsSinceEpoch(recording.firstUtcMs, Qt::UTC);
    const QDateTime time = recording.failure.isEmpty()
                               ? utc.toOffsetFromUtc(int(recording.head.offsetMinutes * SecondsPerMinute))
                               : utc.toLocalTime();
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString Length(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / MsPerSecond;
    if (seconds < SecondsPerMinute)
        return QStringLiteral("%1 s").arg(double(milliseconds) / MsPerSecond, 0, 'f', 1);
    const auto two = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    const qint64 minutes = seconds / SecondsPerMinute;
    if (minutes < MinutesPerHour)
        return QStringLiteral("%1:%2 min").arg(minutes).arg(two(seconds % SecondsPerMinute));
    return QStringLiteral("%1:%2:%3 h")
        .arg(minutes / MinutesPerHour)
        .arg(two(minutes % MinutesPerHour), two(seconds % SecondsPerMinute));
}

QString State(const StoredRecording &recording)
{
    if (!recording.failure.isEmpty())
        return recording.failure;
    QStringList sentences = {QStringLiteral("Set: %1.").arg(recording.head.setName)};
    if (recording.isRunning)
        sentences += QStringLiteral("It is being recorded just now.");
    else if (!recording.isComplete)
        sentences += QStringLiteral("It was cut off: the program did not end it.");
    if (recording.isKept)
        sentences += QStringLiteral("It is kept for good.");
    else if (recording.kind == RecordingKind::Running)
        sentences += QStringLiteral("Only the newest of these stay; Keep makes one stay for good.");
    else if (recording.kind == RecordingKind::Trip)
        sentences += QStringLiteral("Only the newest of trips stay; Keep makes one stay for good.");
    return sentences.join(QLatin1Char(' '));
}

} // namespace quorvik::RecordingTexts
