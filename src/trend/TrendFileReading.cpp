// What is read of a recording's file. It may come from anywhere: whatever is out of range is damage.

#include "platform/TimeUnits.h"
#include "trend/TrendFile.h"
#include "trend/TrendTables.h"
#include "trend/TrendTimings.h"

#include <algorithm>
#include <limits>
#include <map>

namespace quorvik
{

namespace
{

/** Times are within a hundred years of zero, so that no difference of two is too great. */
constexpr qint64 MostUs = qint64(100) * 366 * 86'400 * 1'000'000;
constexpr qint64 MostRaw = std::numeric_limits<std::int32_t>::max();
constexpr qint64 LeastRaw = std::numeric_limits<std::int32_t>::min();
constexpr qint64 MostParam = 9999;
constexpr qint64 MostOffsetMinutes = 18 * 60;
/** An hour of the fastest line many times over. */
constexpr std::size_t MostSamples = 10'000'000;

/** Takes numbers and texts out of a row, and knows whether all were what they should be. */
class Row
{
public:
    explicit Row(const QSqlQuery &query)
        : query_(query)
    {
    }

    qint64 Number(qint64 least, qint64 most)
    {
        const QVariant value = query_.value(column_++);
        const qint64 number = value.toLongLong();
        isGood_ = isGood_ && value.typeId() == QMetaType::LongLong && number >= least && number <= most;
        return number;
    }
    QString Text()
    {
        const QVariant value = query_.value(column_++);
        isGood_ = isGood_ && value.typeId() == QMetaType::QString &&
                  value.toString().size() <= TrendTables::MostText;
        return value.toString();
    }
    /** The last of a row. */
    bool IsWhole(int check) { return Number(0, 0xffff) == check && isGood_; }

private:
    const QSqlQuery &query_;
    int column_ = 0;
    bool isGood_ = true;
};

/** Rows of the head, from which each value is taken within its range. */
class HeadRows
{
public:
    void Add(const QString &key, const QVariant &value) { rows_[key] = value; }
    bool Has(const char *key) const { return rows_.contains(QLatin1String(key)); }
    bool IsEmpty() const { return rows_.empty(); }
    bool IsGood() const { return isGood_; }

    qint64 Number(const char *key, qint64 least, qint64 most)
    {
        const QVariant value = rows_[QLatin1String(key)];
        const qint64 number = value.toLongLong();
        isGood_ = isGood_ && value.typeId() == QMetaType::LongLong && number >= least && number <= most;
        return number;
    }
    std::int32_t Raw(const char *key) { return std::int32_t(Number(key, LeastRaw, MostRaw)); }
    QString Text(const char *key)
    {
        const QVariant value = rows_[QLatin1String(key)];
        isGood_ = isGood_ && value.typeId() == QMetaType::QString &&
                  value.toString().size() <= TrendTables::MostText;
        return value.toString();
    }

private:
    std::map<QString, QVariant> rows_;
    bool isGood_ = true;
};

} // namespace

bool TrendFile::ReadHeadRows(StoredRecording &recording, std::optional<qint64> &triggerUs)
{
    HeadRows rows;
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    if (!query.exec(QStringLiteral("SELECT key, value, checksum FROM head")))
        return Fail(query.lastError());
    while (query.next()) {
        const QString key = query.value(0).toString();
        const QVariant value = query.value(1);
        if (query.value(2).toInt() != TrendTables::CheckOf({}, key + u'=' + value.toString()))
            return Damaged();
        rows.Add(key, value);
    }
    if (query.lastError().isValid())
        return Fail(query.lastError());
    if (rows.IsEmpty()) {
        // The program ended before the first sample was in it.
        wasBusy_ = wasDamaged_ = false;
        failure_ = QStringLiteral("nothing was recorded in it");
        return false;
    }
    recording.kind = RecordingKind(rows.Number("kind", 0, qint64(RecordingKind::Trip)));
    recording.isKept = rows.Number("kept", 0, 1) == 1;
    recording.isComplete = rows.Number("complete", 0, 1) == 1;
    TrendHead &head = recording.head;
    head.title = rows.Text("title");
    head.notes = rows.Text("notes");
    head.setName = rows.Text("set_name");
    head.beganUs = rows.Number("began_us", -MostUs, MostUs);
    head.beganUtcMs = rows.Number("began_utc_ms", 0, MostUs / UsPerMs);
    head.offsetMinutes = int(rows.Number("offset_minutes", -MostOffsetMinutes, MostOffsetMinutes));
    if (rows.Has("drive_model"))
        head.drive = DriveIdentity{.model = rows.Raw("drive_model"),
                                   .driveAmps = rows.Raw("drive_amps"),
                                   .firmware = rows.Raw("drive_firmware"),
                                   .triggerFirmware = rows.Raw("drive_trigger_firmware"),
                                   .operatingHours = rows.Raw("drive_hours"),
                                   .lastParam = int(rows.Number("drive_last_param", 0, MostParam))};
    if (rows.Has("trigger_us"))
        triggerUs = rows.Number("trigger_us", -MostUs, MostUs);
    return rows.IsGood() || Damaged();
}

bool TrendFile::ReadChannels(std::vector<TrendTrack> &tracks)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    if (!query.exec(QStringLiteral(
            "SELECT position, param, pace, attributes, name, checksum FROM channels ORDER BY position")))
        return Fail(query.lastError());
    while (query.next()) {
        Row row(query);
        TrendChannel channel;
        const auto expected = qint64(tracks.size());
        const qint64 position = row.Number(expected, expected);
        channel.param = int(row.Number(0, MostParam));
        channel.pace = TrendPace(row.Number(0, qint64(TrendPace::Slow)));
        channel.attributes = std::int32_t(row.Number(LeastRaw, MostRaw));
        channel.name = row.Text();
        const bool isTwice = std::ranges::any_of(
            tracks, [&](const TrendTrack &track) { return track.channel.param == channel.param; });
        if (isTwice ||
            !row.IsWhole(TrendTables::CheckOf(
                {position, channel.param, qint64(channel.pace), channel.attributes}, channel.name)))
            return Damaged();
        tracks.push_back({channel, {}});
    }
    return Fail(query.lastError());
}

bool TrendFile::ReadSamples(TrendTrack &track, std::size_t &room)
{
    const int p = track.channel.param;
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT position, time_us, span_us, gap, raw, checksum FROM samples WHERE "
                                   "param = %1 ORDER BY position")
                        .arg(p)))
        return Fail(query.lastError());
    std::optional<qint64> last;
    qint64 lastUs = -MostUs;
    while (query.next()) {
        Row row(query);
        const qint64 position = row.Number(last ? *last + 1 : 0, last ? *last + 1 : MostUs);
        TrendSample sample;
        sample.timeUs = row.Number(lastUs, MostUs);
        const qint64 span = row.Number(0, MostRaw);
        const qint64 gap = row.Number(0, 1);
        sample.rawValue = std::int32_t(row.Number(LeastRaw, MostRaw));
        if (room == 0 ||
            !row.IsWhole(TrendTables::CheckOf({p, position, sample.timeUs, span, gap, sample.rawValue})))
            return Damaged();
        --room;
        sample.spanUs = std::uint32_t(span) & std::uint32_t(MostRaw);
        sample.isAfterGap = gap != 0 ? 1 : 0;
        track.samples.Append(sample);
        last = position;
        lastUs = sample.timeUs;
    }
    return Fail(query.lastError());
}

bool TrendFile::ReadMarks(std::vector<TrendMark> &marks, std::size_t room)
{
    QSqlQuery query(QSqlDatabase::database(connection_, false));
    if (!query.exec(
            QStringLiteral("SELECT time_us, kind, param, text, checksum FROM marks ORDER BY time_us, id")))
        return Fail(query.lastError());
    while (query.next()) {
        Row row(query);
        TrendMark mark;
        mark.timeUs = row.Number(-MostUs, MostUs);
        mark.kind = TrendMarkKind(row.Number(0, qint64(TrendMarkKind::LinkBack)));
        mark.param = int(row.Number(-1, MostParam));
        mark.text = row.Text();
        if (marks.size() == room ||
            !row.IsWhole(TrendTables::CheckOf({mark.timeUs, qint64(mark.kind), mark.param}, mark.text)))
            return Damaged();
        marks.push_back(mark);
    }
    return Fail(query.lastError());
}

bool TrendFile::ReadHead(StoredRecording &recording)
{
    std::optional<qint64> triggerUs;
    std::vector<TrendTrack> tracks;
    if (!ReadHeadRows(recording, triggerUs) || !ReadChannels(tracks))
        return false;
    std::optional<qint64> firstUs;
    std::optional<qint64> lastUs;
    for (const TrendTrack &track : tracks) {
        recording.channels += QStringLiteral("(%1) %2").arg(track.channel.param).arg(track.channel.name);
        for (const char *order : {"ASC", "DESC"}) {
            const QVariant value = Ask(
                QStringLiteral("SELECT time_us FROM samples WHERE param = %1 ORDER BY position %2 LIMIT 1")
                    .arg(track.channel.param)
                    .arg(QLatin1String(order)));
            if (value.isNull())
                continue;
            const qint64 timeUs = std::clamp(value.toLongLong(), -MostUs, MostUs);
            firstUs = std::min(firstUs.value_or(timeUs), timeUs);
            lastUs = std::max(lastUs.value_or(timeUs), timeUs);
        }
    }
    const qint64 first = firstUs.value_or(recording.head.beganUs);
    recording.firstUtcMs = recording.head.beganUtcMs + (first - recording.head.beganUs) / UsPerMs;
    recording.durationMs = (lastUs.value_or(first) - first) / UsPerMs;
    return true;
}

bool TrendFile::ReadAll(TrendData &data, const TrendTimings &timings)
{
    // All of one moment, while a program goes on writing it.
    QSqlError begun = Run(QStringLiteral("BEGIN"));
    if (begun.isValid())
        return Fail(begun);
    const bool isRead = [&] {
        QSqlQuery check(QSqlDatabase::database(connection_, false));
        if (!check.exec(QStringLiteral("PRAGMA integrity_check(1)")) || !check.next())
            return Fail(check.lastError());
        if (check.value(0).toString() != QLatin1String("ok"))
            return Damaged();
        check.finish();
        StoredRecording recording;
        if (!ReadHeadRows(recording, data.triggerUs) || !ReadChannels(data.tracks))
            return false;
        data.head = recording.head;
        std::size_t room = MostSamples;
        for (TrendTrack &track : data.tracks)
            if (!ReadSamples(track, room))
                return false;
        // Between two times that it lets go of them there may be more than are kept.
        return ReadMarks(data.marks, std::size_t(timings.mostMarks) * 10);
    }();
    Run(QStringLiteral("ROLLBACK"));
    return isRead;
}

} // namespace quorvik
