#include "history/JournalReader.h"

#include "platform/TimeUnits.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

namespace quorvik
{

namespace
{

/** So long a reading waits for a program that holds the journal. */
constexpr int BusyMs = 50;

/** What became of a row e last; where a slider went is asked for apart. */
QString LastResult()
{
    return QStringLiteral("coalesce((SELECT r.result FROM results r WHERE r.run = e.run AND r.sequence = "
                          "e.sequence AND r.result <> %1 ORDER BY r.rowid DESC LIMIT 1), e.result)")
        .arg(int(EntryResult::Moved));
}

/** A column of the last result of a kind that a row e has. */
QString OfLast(const char *column, EntryResult result)
{
    return QStringLiteral("(SELECT r.%1 FROM results r WHERE r.run = e.run AND r.sequence = e.sequence AND "
                          "r.result = %2 ORDER BY r.rowid DESC LIMIT 1)")
        .arg(QLatin1String(column))
        .arg(int(result));
}

template<typename Set> QString Numbers(const Set &set)
{
    QStringList numbers;
    for (const auto item : set)
        numbers += QString::number(int(item));
    return numbers.join(QLatin1Char(','));
}

/** A pattern for LIKE ... ESCAPE '!' that finds text anywhere. */
QString Anywhere(QString text)
{
    for (const char *special : {"!", "%", "_"})
        text.replace(QLatin1String(special), QLatin1Char('!') + QLatin1String(special));
    return QLatin1Char('%') + text + QLatin1Char('%');
}

/** Conditions of a query with the values for their marks, in order. */
struct Conditions {
    QStringList texts = {};
    QVariantList values = {};

    void Add(const QString &text, const QVariantList &more = {})
    {
        texts += text;
        values += more;
    }
    QString Joined() const
    {
        return texts.isEmpty() ? QStringLiteral("1") : texts.join(QLatin1String(" AND "));
    }
};

/** What most changes come to. */
bool IsCommon(EntryResult result)
{
    return result < EntryResult::Differs || result == EntryResult::Moved;
}

/** What the filter says of the rows e of an action. */
Conditions RowConditions(const JournalFilter &filter)
{
    Conditions conditions;
    if (filter.param)
        conditions.Add(QStringLiteral("e.param = %1").arg(*filter.param));
    if (!filter.results.empty()) {
        const QString numbers = Numbers(filter.results);
        // The few that went wrong are found at once, without a look at what each row came to.
        if (std::ranges::none_of(filter.results, IsCommon))
            conditions.Add(
                QStringLiteral("(e.result IN (%1) OR (e.run, e.sequence) IN (SELECT run, sequence FROM "
                               "results WHERE result IN (%1)))")
                    .arg(numbers));
        conditions.Add(LastResult() + QStringLiteral(" IN (%1)").arg(numbers));
    }
    if (!filter.text.isEmpty()) {
        const QString pattern = Anywhere(filter.text);
        QString shown = QStringLiteral("e.name LIKE ? ESCAPE '!' OR e.text_before LIKE ? ESCAPE '!' OR "
                                       "e.text_after LIKE ? ESCAPE '!'");
        QVariantList values = {pattern, pattern, pattern};
        static const QRegularExpression partOfNumber(QStringLiteral("^\\(?[0-9]*\\)?$"));
        if (partOfNumber.match(filter.text).hasMatch()) {
            shown += QStringLiteral(" OR '(' || e.param || ')' LIKE ? ESCAPE '!'");
            values += pattern;
        }
        conditions.Add(u'(' + shown + u')', values);
    }
    return conditions;
}

/** The notes of an action a, in one. */
QString Notes()
{
    return QStringLiteral("(SELECT group_concat(n.text, '; ') FROM notes n WHERE n.run = a.run AND "
                          "n.action = a.number)");
}

std::optional<std::int32_t> OptionalRaw(const QVariant &value)
{
    return value.isNull() ? std::nullopt : std::optional(value.toInt());
}

bool MayBeSame(const DriveIdentity &left, qint64 leftUtcMs, const DriveIdentity &right, qint64 rightUtcMs)
{
    const double hours = double(std::abs(rightUtcMs - leftUtcMs)) / MsPerHour;
    return leftUtcMs <= rightUtcMs ? right.IsSameAs(left, hours) : left.IsSameAs(right, hours);
}

} // namespace

bool JournalFilter::IsEmpty() const
{
    return text.isEmpty() && !param && origins.empty() && results.empty() && sinceUtcMs == 0 && !drive;
}

JournalReader::JournalReader(const QString &path)
    : path_(path)
    , file_(path, JournalFile::Access::Read, BusyMs)
{
}

bool JournalReader::Open()
{
    failure_.clear();
    if (file_.WasReplaced()) {
        query_.reset();
        file_.Close();
    }
    if (file_.IsOpen())
        return true;
    if (!QFileInfo::exists(path_))
        return false;
    const JournalFault fault = file_.Open();
    if (fault != JournalFault::None && fault != JournalFault::Empty)
        failure_ = file_.FailureText();
    return fault == JournalFault::None;
}

template<typename Take>
void JournalReader::Read(const QString &statement, const QVariantList &values, Take take)
{
    // The rows of many actions are asked for one after the other.
    if (!query_ || query_->lastQuery() != statement) {
        query_.emplace(file_.Database());
        query_->setForwardOnly(true);
        query_->prepare(statement);
    }
    QSqlQuery &query = *query_;
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    if (query.exec())
        while (query.next())
            take(query);
    if (query.lastError().isValid())
        failure_ = query.lastError().databaseText();
    query.finish();
}

QString JournalReader::ConnectionsWith(const DriveIdentity &drive, qint64 driveTimeUtcMs)
{
    QStringList pairs;
    Read(QStringLiteral(
             "SELECT time, offset, model, amps, firmware, trigger_firmware, hours, last_param, run, "
             "link FROM drives"),
         {}, [&](const QSqlQuery &query) {
             const JournalSighting sighting = SightingOf(query);
             if (MayBeSame(sighting.identity, sighting.time.utcMs, drive, driveTimeUtcMs))
                 pairs += QStringLiteral("(%1,%2)").arg(sighting.run).arg(sighting.link);
         });
    return pairs.isEmpty()
               ? QStringLiteral("0")
               : QStringLiteral("(a.run, a.link) IN (VALUES %1)").arg(pairs.join(QLatin1Char(',')));
}

JournalSighting JournalReader::SightingOf(const QSqlQuery &query)
{
    return {.identity = {.model = query.value(2).toInt(),
                         .driveAmps = query.value(3).toInt(),
                         .firmware = query.value(4).toInt(),
                         .triggerFirmware = query.value(5).toInt(),
                         .operatingHours = query.value(6).toInt(),
                         .lastParam = query.value(7).toInt()},
            .time = {query.value(0).toLongLong(), query.value(1).toInt()},
            .run = query.value(8).toLongLong(),
            .link = query.value(9).toInt()};
}

std::vector<ShownAction> JournalReader::Actions(const JournalFilter &filter, qint64 beforeId, int limit)
{
    if (!Open())
        return {};
    const Conditions rows = RowConditions(filter);
    Conditions actions;
    if (beforeId > 0)
        actions.Add(QStringLiteral("a.id < %1").arg(beforeId));
    if (filter.fromId > 0)
        actions.Add(QStringLiteral("a.id >= %1").arg(filter.fromId));
    if (!filter.origins.empty())
        actions.Add(QStringLiteral("a.origin IN (%1)").arg(Numbers(filter.origins)));
    if (filter.sinceUtcMs > 0)
        actions.Add(QStringLiteral("a.time >= %1").arg(filter.sinceUtcMs));
    if (filter.drive)
        actions.Add(ConnectionsWith(filter.drive->identity, filter.drive->time.utcMs));
    const QString ofAction =
        QStringLiteral("FROM entries e WHERE e.run = a.run AND e.action = a.number AND ") + rows.Joined();
    if (!rows.texts.isEmpty()) {
        QString shown = QStringLiteral("EXISTS (SELECT 1 %1)").arg(ofAction);
        QVariantList values = rows.values;
        if (!filter.text.isEmpty() && !filter.param && filter.results.empty()) {
            const QString pattern = Anywhere(filter.text);
            shown +=
                QStringLiteral(" OR a.title LIKE ? ESCAPE '!' OR a.set_name LIKE ? ESCAPE '!' OR (a.run, "
                               "a.number) IN (SELECT run, action FROM notes WHERE text LIKE ? ESCAPE '!')");
            values += {pattern, pattern, pattern};
        }
        actions.Add(u'(' + shown + u')', values);
    }
    std::vector<ShownAction> found;
    Read(QStringLiteral(
             "SELECT a.id, a.run, u.began, u.offset, u.user, u.version, a.number, a.time, a.offset, "
             "a.origin, a.title, a.set_name, a.link, %1, (SELECT count(*) %2) FROM actions a LEFT "
             "JOIN runs u ON u.id = a.run WHERE %3 ORDER BY a.id DESC LIMIT %4")
             .arg(Notes(), ofAction, actions.Joined())
             .arg(limit),
         rows.values + actions.values, [&](const QSqlQuery &query) {
             ShownAction shown;
             shown.id = query.value(0).toLongLong();
             shown.run = {.id = query.value(1).toLongLong(),
                          .began = {query.value(2).toLongLong(), query.value(3).toInt()},
                          .user = query.value(4).toString(),
                          .version = query.value(5).toString()};
             shown.action = {.number = query.value(6).toInt(),
                             .time = {query.value(7).toLongLong(), query.value(8).toInt()},
                             .origin = Origin(query.value(9).toInt()),
                             .title = query.value(query.value(13).isNull() ? 10 : 13).toString(),
                             .setName = query.value(11).toString(),
                             .link = query.value(12).toInt()};
             shown.rowCount = query.value(14).toInt();
             found.push_back(std::move(shown));
         });
    std::map<std::pair<qint64, int>, std::optional<DriveIdentity>> drives;
    for (ShownAction &shown : found) {
        if (shown.action.link == 0)
            continue;
        const auto [known, isNew] = drives.try_emplace({shown.run.id, shown.action.link});
        if (isNew)
            known->second = DriveOf(shown.run.id, shown.action.link);
        shown.drive = known->second;
    }
    return found;
}

std::optional<DriveIdentity> JournalReader::DriveOf(qint64 run, int link)
{
    std::optional<DriveIdentity> drive;
    Read(QStringLiteral("SELECT time, offset, model, amps, firmware, trigger_firmware, hours, last_param, "
                        "run, link FROM drives WHERE run = %1 AND link = %2")
             .arg(run)
             .arg(link),
         {}, [&](const QSqlQuery &query) { drive = SightingOf(query).identity; });
    return drive;
}

ShownRow JournalReader::RowOf(const QSqlQuery &query)
{
    ShownRow shown;
    shown.id = query.value(0).toLongLong();
    shown.row = {.action = query.value(1).toInt(),
                 .sequence = query.value(2).toInt(),
                 .time = {query.value(3).toLongLong(), query.value(4).toInt()},
                 .param = query.value(5).toInt(),
                 .name = query.value(6).toString(),
                 .rawBefore = OptionalRaw(query.value(7)),
                 .rawAfter = query.value(8).toInt(),
                 .textBefore = query.value(9).toString(),
                 .textAfter = query.value(10).toString(),
                 .result = EntryResult(query.value(11).toInt())};
    if (const std::optional<std::int32_t> moved = OptionalRaw(query.value(12))) {
        shown.row.rawAfter = *moved;
        shown.row.textAfter = query.value(13).toString();
    }
    if (shown.row.result == EntryResult::Differs) {
        shown.rawFound = OptionalRaw(query.value(14));
        shown.textFound = query.value(15).toString();
    }
    shown.run = query.value(16).toLongLong();
    return shown;
}

QString JournalReader::RowColumns()
{
    return QStringLiteral("e.id, e.action, e.sequence, e.time, e.offset, e.param, e.name, e.raw_before, "
                          "e.raw_after, e.text_before, e.text_after, %1, %2, %3, %4, %5, e.run")
        .arg(LastResult(), OfLast("raw", EntryResult::Moved), OfLast("text", EntryResult::Moved),
             OfLast("raw", EntryResult::Differs), OfLast("text", EntryResult::Differs));
}

std::vector<ShownRow> JournalReader::RowsOf(const ShownAction &action, const JournalFilter &filter)
{
    if (!Open())
        return {};
    const Conditions rows = RowConditions(filter);
    std::vector<ShownRow> found;
    Read(QStringLiteral("SELECT %1 FROM entries e WHERE e.run = ? AND e.action = ? AND %2 ORDER BY e.id")
             .arg(RowColumns(), rows.Joined()),
         QVariantList{action.run.id, action.action.number} + rows.values,
         [&](const QSqlQuery &query) { found.push_back(RowOf(query)); });
    return found;
}

std::vector<JournalSighting> JournalReader::Sightings()
{
    if (!Open())
        return {};
    std::vector<JournalSighting> found;
    Read(QStringLiteral("SELECT time, offset, model, amps, firmware, trigger_firmware, hours, last_param, "
                        "run, link FROM drives ORDER BY time DESC"),
         {}, [&](const QSqlQuery &query) { found.push_back(SightingOf(query)); });
    return found;
}

std::vector<ShownRow> JournalReader::ChangesOn(const std::vector<JournalSighting> &connections,
                                               qint64 fromUtcMs, qint64 toUtcMs)
{
    if (!Open())
        return {};
    QStringList pairs;
    for (const JournalSighting &sighting : connections)
        pairs += QStringLiteral("(%1,%2)").arg(sighting.run).arg(sighting.link);
    std::vector<ShownRow> found;
    if (pairs.isEmpty())
        return found;
    Read(QStringLiteral(
             "SELECT %1 FROM entries e JOIN actions a ON a.run = e.run AND a.number = e.action WHERE "
             "e.time > %2 AND e.time <= %3 AND (a.run, a.link) IN (VALUES %4) ORDER BY e.id")
             .arg(RowColumns())
             .arg(fromUtcMs)
             .arg(toUtcMs)
             .arg(pairs.join(QLatin1Char(','))),
         {}, [&](const QSqlQuery &query) { found.push_back(RowOf(query)); });
    return found;
}

std::optional<qint64> JournalReader::CompleteSince()
{
    if (!Open())
        return {};
    std::optional<qint64> since;
    Read(QStringLiteral("SELECT CASE WHEN (SELECT min(id) FROM entries) > 1 THEN (SELECT time FROM entries "
                        "ORDER BY id LIMIT 1) ELSE (SELECT min(began) FROM runs) END"),
         {}, [&](const QSqlQuery &query) {
             if (!query.isNull(0))
                 since = query.value(0).toLongLong();
         });
    return since;
}

} // namespace quorvik
