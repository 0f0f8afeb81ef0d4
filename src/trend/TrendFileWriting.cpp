// What a recording's file is written with.

#include "trend/TrendFile.h"
#include "trend/TrendTables.h"
#include "trend/TrendTimings.h"

#include <algorithm>
#include <utility>

namespace quorvik
{

namespace
{

using TrendTables::Written;

constexpr std::size_t RowsAtOnce = 200;

bool IsSame(const TrendChannel &left, const TrendChannel &right)
{
    return left.param == right.param && left.pace == right.pace && left.attributes == right.attributes &&
           left.name == right.name;
}

/** Binds values to a prepared statement and runs it. */
QSqlError Put(QSqlQuery &query, const QVariantList &values)
{
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    return query.exec() ? QSqlError() : query.lastError();
}

} // namespace

bool TrendFile::Write(const TrendBatch &batch, const TrendTimings &timings, bool prunes)
{
    const std::optional<TrendHead> headBefore = writtenHead_;
    const std::vector<TrendChannel> channelsBefore = writtenChannels_;
    const bool isWritten =
        Whole(QStringLiteral("BEGIN IMMEDIATE"), [&] { return WriteAll(batch, timings, prunes); });
    if (!isWritten) {
        writtenHead_ = headBefore;
        writtenChannels_ = channelsBefore;
    }
    return isWritten;
}

QSqlError TrendFile::WriteAll(const TrendBatch &batch, const TrendTimings &timings, bool prunes)
{
    if (batch.isWhole)
        for (const char *table : {"channels", "samples", "marks"})
            if (QSqlError error = Run(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
                error.isValid())
                return error;
    QSqlError error = WriteHead(batch);
    if (!error.isValid())
        error = WriteChannels(batch);
    for (const TrendPart &part : batch.parts)
        if (!error.isValid())
            error = WriteSamples(part);
    if (!error.isValid())
        error = WriteMarks(batch);
    if (!error.isValid() && (prunes || batch.isLast))
        error = Prune(batch, timings);
    return error;
}

QSqlError TrendFile::PutHead(const QString &key, const QVariant &value, bool replaces)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    query.prepare(QStringLiteral("INSERT OR %1 INTO head (key, value, checksum) VALUES (?, ?, ?)")
                      .arg(replaces ? QStringLiteral("REPLACE") : QStringLiteral("IGNORE")));
    return Put(query, {key, value, TrendTables::CheckOf({}, key + u'=' + value.toString())});
}

QSqlError TrendFile::WriteHead(const TrendBatch &batch)
{
    const TrendHead &head = batch.head;
    const bool isFirst = !writtenHead_;
    QSqlError error;
    const auto put = [&](const char *key, const QVariant &value, bool replaces = true) {
        if (!error.isValid())
            error = PutHead(QLatin1String(key), value, replaces);
    };
    if (isFirst) {
        put("kind", int(batch.kind));
        put("kept", 0, false);
        put("began_us", head.beganUs);
        put("began_utc_ms", head.beganUtcMs);
        put("offset_minutes", head.offsetMinutes);
        put("set_name", Written(head.setName));
        if (batch.triggerUs)
            put("trigger_us", *batch.triggerUs);
    }
    // What the user has given it meanwhile stays, unless the recording has got others since.
    if (isFirst || head.title != writtenHead_->title)
        put("title", Written(head.title), !head.title.isEmpty());
    if (isFirst || head.notes != writtenHead_->notes)
        put("notes", Written(head.notes), !head.notes.isEmpty());
    if (head.drive && (isFirst || head.drive != writtenHead_->drive)) {
        put("drive_model", head.drive->model);
        put("drive_amps", head.drive->driveAmps);
        put("drive_firmware", head.drive->firmware);
        put("drive_trigger_firmware", head.drive->triggerFirmware);
        put("drive_hours", head.drive->operatingHours);
        put("drive_last_param", head.drive->lastParam);
    }
    if (isFirst || batch.isLast)
        put("complete", batch.isLast ? 1 : 0);
    if (!error.isValid())
        writtenHead_ = head;
    return error;
}

QSqlError TrendFile::WriteChannels(const TrendBatch &batch)
{
    std::vector<TrendChannel> channels;
    for (const TrendPart &part : batch.parts)
        channels.push_back(part.channel);
    if (std::ranges::equal(channels, writtenChannels_, IsSame))
        return {};
    QSqlError error = Run(QStringLiteral("DELETE FROM channels"));
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    query.prepare(QStringLiteral("INSERT INTO channels (position, param, pace, attributes, name, checksum) "
                                 "VALUES (?, ?, ?, ?, ?, ?)"));
    for (std::size_t i = 0; i < channels.size() && !error.isValid(); ++i) {
        const TrendChannel &channel = channels[i];
        error = Put(
            query, {qint64(i), channel.param, int(channel.pace), channel.attributes, Written(channel.name),
                    TrendTables::CheckOf({qint64(i), channel.param, qint64(channel.pace), channel.attributes},
                                         Written(channel.name))});
    }
    if (!error.isValid())
        error = Run(QStringLiteral("DELETE FROM samples WHERE param NOT IN (SELECT param FROM channels)"));
    if (!error.isValid())
        writtenChannels_ = channels;
    return error;
}

QSqlError TrendFile::WriteSamples(const TrendPart &part)
{
    const int p = part.channel.param;
    QSqlError error =
        Run(QStringLiteral("DELETE FROM samples WHERE param = %1 AND position >= %2").arg(p).arg(part.from));
    qint64 position = std::max(part.from, part.first);
    // Numbers alone: many rows in one statement's text are several times faster than one by one.
    for (std::size_t begin = 0; begin < part.samples.size() && !error.isValid(); begin += RowsAtOnce) {
        QString rows;
        const std::size_t end = std::min(begin + RowsAtOnce, part.samples.size());
        for (std::size_t i = begin; i < end; ++i, ++position) {
            const TrendSample &sample = part.samples[i];
            const qint64 span = sample.spanUs;
            const qint64 gap = sample.isAfterGap;
            const int check = TrendTables::CheckOf({p, position, sample.timeUs, span, gap, sample.rawValue});
            rows += i == begin ? QStringLiteral("(") : QStringLiteral(",(");
            bool isFirst = true;
            for (const qint64 number :
                 {qint64(p), position, sample.timeUs, span, gap, qint64(sample.rawValue), qint64(check)}) {
                if (!std::exchange(isFirst, false))
                    rows += u',';
                rows += QString::number(number);
            }
            rows += u')';
        }
        error =
            Run(QStringLiteral("INSERT INTO samples (param, position, time_us, span_us, gap, raw, checksum) "
                               "VALUES ") +
                rows);
    }
    return error;
}

QSqlError TrendFile::WriteMarks(const TrendBatch &batch)
{
    QSqlError error;
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    query.prepare(
        QStringLiteral("INSERT INTO marks (time_us, kind, param, text, checksum) VALUES (?, ?, ?, ?, ?)"));
    for (const TrendMark &mark : batch.marks)
        if (!error.isValid())
            error =
                Put(query,
                    {mark.timeUs, int(mark.kind), mark.param, Written(mark.text),
                     TrendTables::CheckOf({mark.timeUs, qint64(mark.kind), mark.param}, Written(mark.text))});
    return error;
}

QSqlError TrendFile::Prune(const TrendBatch &batch, const TrendTimings &timings)
{
    QSqlError error;
    for (const TrendPart &part : batch.parts)
        if (!error.isValid())
            error = Run(QStringLiteral("DELETE FROM samples WHERE param = %1 AND position < %2")
                            .arg(part.channel.param)
                            .arg(part.first));
    if (!error.isValid())
        error = Run(QStringLiteral("DELETE FROM marks WHERE id NOT IN (SELECT id FROM marks ORDER BY id DESC "
                                   "LIMIT %1)")
                        .arg(timings.mostMarks));
    return error;
}

bool TrendFile::Complete()
{
    return Whole(QStringLiteral("BEGIN IMMEDIATE"), [&] { return PutHead(QStringLiteral("complete"), 1); });
}

bool TrendFile::Keep(const QString &title, const QString &notes)
{
    return Whole(QStringLiteral("BEGIN IMMEDIATE"), [&] {
        QSqlError error = PutHead(QStringLiteral("title"), Written(title));
        if (!error.isValid())
            error = PutHead(QStringLiteral("notes"), Written(notes));
        if (!error.isValid())
            error = PutHead(QStringLiteral("kept"), 1);
        return error;
    });
}

} // namespace quorvik
