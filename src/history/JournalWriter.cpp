#include "history/JournalWriter.h"

#include "history/JournalPruning.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlQuery>
#include <QVariant>
#include <utility>

namespace quorvik
{

namespace
{

/** A file is set aside at most so often in one attempt: what fails in a new file too is no damage. */
constexpr int MostFiles = 2;

QVariant Nullable(const std::optional<std::int32_t> &raw)
{
    return raw ? QVariant(*raw) : QVariant();
}

/** What is written for a text, which may be null only here. */
QString Text(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

/** Binds values to a prepared statement and runs it. */
QSqlError Insert(QSqlQuery &query, const QVariantList &values)
{
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values[i]);
    return query.exec() ? QSqlError() : query.lastError();
}

QSqlQuery Prepared(const QSqlDatabase &database, const QString &table, const QString &columns)
{
    QStringList marks;
    for (qsizetype i = 0; i <= columns.count(u','); ++i)
        marks += QStringLiteral("?");
    QSqlQuery query(database);
    query.prepare(
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)").arg(table, columns, marks.join(QLatin1Char(','))));
    return query;
}

std::size_t LinesOf(const JournalBatch &batch)
{
    return batch.actions.size() + batch.rows.size() + batch.results.size() + batch.notes.size() +
           batch.drives.size();
}

/** Why the journal cannot be written, for the strip. */
QString Sentence(JournalFault fault, const QString &path, const QString &failure)
{
    const QString why = [&] {
        switch (fault) {
        case JournalFault::Busy:
            return QStringLiteral("another program holds it");
        case JournalFault::Full:
            return QStringLiteral("the disk is full");
        case JournalFault::ReadOnly:
            return QStringLiteral("its file cannot be made or written to");
        case JournalFault::Broken:
            return QStringLiteral("the disk does not take it");
        default:
            return failure;
        }
    }();
    return QStringLiteral("The history is not kept at present: %1 (%2).")
        .arg(why, QDir::toNativeSeparators(path));
}

} // namespace

void GivenNumbers::Add(int number)
{
    if (number < 0)
        return;
    if (std::size_t(number) >= has_.size())
        has_.resize(std::size_t(number) + 1);
    has_[std::size_t(number)] = true;
}

JournalWriter::JournalWriter(const QString &path, const JournalTimings &timings)
    : path_(path)
    , timings_(timings)
    , file_(path, JournalFile::Access::Write, timings.busyMs)
    , retry_(this) // goes with the writer to its thread
    , began_(JournalTime::Now())
{
    retry_.setSingleShot(true);
    retry_.setInterval(timings.retryMs);
    connect(&retry_, &QTimer::timeout, this, &JournalWriter::WriteWaiting);
}

void JournalWriter::Begin(const QString &user)
{
    user_ = user;
    const bool isReady = Try([this] {
        const JournalFault fault = Prepare();
        return fault == JournalFault::None && !file_.IsSound() ? JournalFault::Damaged : fault;
    });
    // What is too old may as well go at the next start.
    if (isReady)
        Prune(file_, timings_, run_);
}

void JournalWriter::Write(JournalBatch batch)
{
    waiting_.push_back(std::move(batch));
    if (retry_.isActive())
        LetGoOfTooMany();
    else
        WriteWaiting();
}

void JournalWriter::WriteWaiting()
{
    if (!Try([this] { return WriteAll(); }))
        LetGoOfTooMany();
}

void JournalWriter::Finish()
{
    // A program that never did anything leaves no run behind.
    if (!waiting_.empty())
        WriteWaiting();
}

template<typename Work> bool JournalWriter::Try(Work work)
{
    retry_.stop();
    JournalFault fault = work();
    for (int i = 1; i < MostFiles && fault != JournalFault::None && BeginAnew(fault); ++i)
        fault = work();
    if (fault == JournalFault::None)
        Recover();
    else
        Fail(fault);
    return fault == JournalFault::None;
}

bool JournalWriter::BeginAnew(JournalFault fault)
{
    const bool isDamaged =
        fault == JournalFault::Damaged || (fault == JournalFault::Odd && file_.IsOpen() && !file_.IsSound());
    const QString failure = file_.FailureText();
    QString aside;
    if (!isDamaged || !file_.SetAside(aside))
        return false;
    if (!aside.isEmpty())
        news_ =
            QStringLiteral("The history could not be used (%1) and was begun anew. The old one lies in %2.")
                .arg(failure, QDir::toNativeSeparators(aside));
    return true;
}

JournalFault JournalWriter::Prepare()
{
    if (file_.WasReplaced())
        file_.Close();
    if (!file_.IsOpen()) {
        if (const JournalFault fault = file_.Open(); fault != JournalFault::None)
            return fault;
        if (!HasRun())
            run_ = 0;
    }
    if (run_ != 0)
        return JournalFault::None;
    contents_ = {};
    return FaultOf(BeginRun());
}

bool JournalWriter::HasRun()
{
    QSqlQuery query(file_.Database());
    return query.exec(QStringLiteral("SELECT 1 FROM runs WHERE id = %1 AND began = %2")
                          .arg(run_)
                          .arg(began_.utcMs)) &&
           query.next();
}

QSqlError JournalWriter::BeginRun()
{
    return file_.Whole([this] {
        QSqlQuery query = Prepared(file_.Database(), QStringLiteral("runs"),
                                   QStringLiteral("began, offset, user, version"));
        QSqlError error =
            Insert(query, {began_.utcMs, began_.offsetMinutes, user_.isEmpty() ? QVariant() : QVariant(user_),
                           Text(QCoreApplication::applicationVersion())});
        if (!error.isValid())
            run_ = query.lastInsertId().toLongLong();
        return error;
    });
}

JournalFault JournalWriter::WriteAll()
{
    // Somebody may give its name to another file while this one is written: then it may never be looked at.
    for (int i = 0; i < MostFiles; ++i) {
        if (const JournalFault fault = Prepare(); fault != JournalFault::None || waiting_.empty())
            return fault;
        Contents contents = contents_;
        int strays = 0;
        const QSqlError error = file_.Whole([&] {
            for (const JournalBatch &batch : waiting_)
                if (QSqlError failure = WriteBatch(batch, contents, strays); failure.isValid())
                    return failure;
            return QSqlError();
        });
        if (error.isValid())
            return FaultOf(error);
        contents_ = std::move(contents);
        if (i + 1 == MostFiles || !file_.WasReplaced()) {
            lost_ += strays;
            break;
        }
    }
    waiting_.clear();
    Q_EMIT Written();
    return JournalFault::None;
}

QSqlError JournalWriter::WriteBatch(const JournalBatch &batch, Contents &contents, int &strays)
{
    const QSqlDatabase database = file_.Database();
    QSqlError error;
    // What is written gives its values; what belongs to nothing in this file gives none.
    const auto writeAll = [&](const auto &list, const QString &table, const QString &columns,
                              const auto &valuesOf) {
        if (list.empty() || error.isValid())
            return;
        QSqlQuery query = Prepared(database, table, QStringLiteral("run, ") + columns);
        for (const auto &item : list) {
            const QVariantList values = valuesOf(item);
            if (values.isEmpty())
                continue;
            if (error = Insert(query, QVariantList{run_} + values); error.isValid())
                return;
        }
    };
    writeAll(batch.drives, QStringLiteral("drives"),
             QStringLiteral("link, time, offset, model, amps, firmware, trigger_firmware, hours, last_param"),
             [](const JournalDrive &drive) -> QVariantList {
                 const DriveIdentity &identity = drive.identity;
                 return {
                     drive.link,         drive.time.utcMs,  drive.time.offsetMinutes, identity.model,
                     identity.driveAmps, identity.firmware, identity.triggerFirmware, identity.operatingHours,
                     identity.lastParam};
             });
    writeAll(batch.actions, QStringLiteral("actions"),
             QStringLiteral("number, time, offset, origin, title, set_name, link"),
             [&](const JournalAction &action) -> QVariantList {
                 contents.actions.Add(action.number);
                 return {action.number,      action.time.utcMs,  action.time.offsetMinutes,
                         int(action.origin), Text(action.title), Text(action.setName),
                         action.link};
             });
    writeAll(batch.rows, QStringLiteral("entries"),
             QStringLiteral("action, sequence, time, offset, param, name, raw_before, raw_after, "
                            "text_before, text_after, result"),
             [&](const JournalRow &row) -> QVariantList {
                 if (!contents.actions.Has(row.action)) {
                     ++strays;
                     return {};
                 }
                 contents.rows.Add(row.sequence);
                 return {row.action,
                         row.sequence,
                         row.time.utcMs,
                         row.time.offsetMinutes,
                         row.param,
                         Text(row.name),
                         Nullable(row.rawBefore),
                         row.rawAfter,
                         Text(row.textBefore),
                         Text(row.textAfter),
                         int(row.result)};
             });
    writeAll(batch.results, QStringLiteral("results"),
             QStringLiteral("sequence, time, offset, result, raw, text"),
             [&](const JournalResult &result) -> QVariantList {
                 if (!contents.rows.Has(result.sequence))
                     return {};
                 return {result.sequence,    result.time.utcMs,    result.time.offsetMinutes,
                         int(result.result), Nullable(result.raw), Text(result.text)};
             });
    writeAll(batch.notes, QStringLiteral("notes"), QStringLiteral("action, text"),
             [&](const JournalNote &note) -> QVariantList {
                 if (!contents.actions.Has(note.action))
                     return {};
                 return {note.action, Text(note.text)};
             });
    return error;
}

void JournalWriter::LetGoOfTooMany()
{
    std::size_t lines = 0;
    for (const JournalBatch &batch : waiting_)
        lines += LinesOf(batch);
    while (lines > std::size_t(timings_.mostWaiting)) {
        lines -= LinesOf(waiting_.front());
        lost_ += int(waiting_.front().rows.size());
        waiting_.pop_front();
    }
}

void JournalWriter::Fail(JournalFault fault)
{
    if (told_.insert(fault).second)
        Q_EMIT Trouble(Sentence(fault, path_, file_.FailureText()));
    // What a sound file does not take it never will.
    if (fault == JournalFault::Odd)
        while (!waiting_.empty()) {
            lost_ += int(waiting_.front().rows.size());
            waiting_.pop_front();
        }
    if (fault != JournalFault::Busy)
        file_.Close();
    retry_.start();
}

void JournalWriter::Recover()
{
    if (!std::exchange(told_, {}).empty())
        Q_EMIT Recovered();
    QString news = std::exchange(news_, {});
    if (const int lost = std::exchange(lost_, 0); lost > 0)
        news += QStringLiteral("%1%2 of the changes meanwhile could not be kept in the history.")
                    .arg(news.isEmpty() ? QString() : QStringLiteral(" "))
                    .arg(lost);
    if (!news.isEmpty())
        Q_EMIT News(news);
}

} // namespace quorvik
