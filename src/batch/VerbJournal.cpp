#include "batch/BatchRun.h"
#include "batch/ParameterNames.h"
#include "batch/Verbs.h"
#include "history/HistoryTexts.h"
#include "history/JournalReader.h"

#include <QDateTime>
#include <limits>

namespace quorvik
{

namespace
{

constexpr int PageSize = 200;
constexpr int UsualRows = 1000;
constexpr int MostRows = 10'000'000;
constexpr int MillisecondsOfDay = 86'400'000;

/** What is to be shown; times in milliseconds since 1970. */
struct Wanted {
    JournalFilter filter = {};
    qint64 untilUtcMs = std::numeric_limits<qint64>::max();
    QString drive = {};
    int rows = UsualRows;
};

/** A day or a moment as ISO 8601 writes it; a day lasts until its end. */
std::optional<qint64> MomentOf(const QString &text, bool isEnd)
{
    const QDateTime moment = QDateTime::fromString(text, Qt::ISODate);
    if (!moment.isValid())
        return std::nullopt;
    return moment.toMSecsSinceEpoch() + (isEnd && !text.contains(u'T') ? MillisecondsOfDay - 1 : 0);
}

/** @return why an option means nothing; empty where all do. */
QString Read(BatchRun &run, Wanted &wanted)
{
    const QCommandLineParser &options = run.Options();
    for (const QString &key : {QStringLiteral("since"), QStringLiteral("until")}) {
        if (!options.isSet(key))
            continue;
        const bool isEnd = key == QLatin1String("until");
        const std::optional<qint64> moment = MomentOf(options.value(key), isEnd);
        if (!moment)
            return QStringLiteral("\"%1\" is no day or time such as 2026-11-22 or 2026-11-22T09:00:00.")
                .arg(options.value(key));
        (isEnd ? wanted.untilUtcMs : wanted.filter.sinceUtcMs) = *moment;
    }
    if (options.isSet(QStringLiteral("limit"))) {
        bool isNumber = false;
        wanted.rows = options.value(QStringLiteral("limit")).toInt(&isNumber);
        if (!isNumber || wanted.rows < 1 || wanted.rows > MostRows)
            return QStringLiteral("--limit takes a number from 1 to %1.").arg(MostRows);
    }
    if (options.isSet(QStringLiteral("param"))) {
        const NamedParams named = FindOneParam(options.value(QStringLiteral("param")), run.Eng().table);
        if (!named.failure.isEmpty())
            return named.failure;
        wanted.filter.param = named.params.front();
    }
    wanted.drive = options.value(QStringLiteral("drive"));
    return {};
}

/** "2026-11-23T01:34:01.250+01:00", for programs. */
QString IsoTime(const JournalTime &time)
{
    constexpr int secondsOfMinute = 60;
    return QDateTime::fromMSecsSinceEpoch(time.utcMs)
        .toOffsetFromUtc(time.offsetMinutes * secondsOfMinute)
        .toString(Qt::ISODateWithMs);
}

QVariant Maybe(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

void Print(BatchRun &run, const ShownAction &action, const ShownRow *row)
{
    const bool isText = run.Output().CurrentFormat() == BatchOutput::Format::Text;
    const JournalTime &time = row != nullptr ? row->row.time : action.action.time;
    QVariantList fields{isText ? HistoryTexts::WholeTime(time) : IsoTime(time),
                        row != nullptr ? QVariant(HistoryTexts::Parameter(row->row)) : QVariant(),
                        row != nullptr ? QVariant(HistoryTexts::Before(row->row)) : QVariant(),
                        row != nullptr ? QVariant(row->row.textAfter) : QVariant(),
                        row != nullptr ? Maybe(HistoryTexts::Result(*row)) : QVariant()};
    if (!isText)
        fields << (row != nullptr ? QVariant(row->row.param) : QVariant())
               << (row != nullptr && row->row.rawBefore ? QVariant(*row->row.rawBefore) : QVariant())
               << (row != nullptr ? QVariant(row->row.rawAfter) : QVariant())
               << HistoryTexts::Set(action.action) << HistoryTexts::WholeDrive(action)
               << Maybe(action.run.user);
    run.Output().Row(fields << HistoryTexts::Title(action));
}

/** @return false once enough was printed. */
bool PrintAction(BatchRun &run, JournalReader &reader, const ShownAction &action, const Wanted &wanted,
                 int &left)
{
    if (action.action.time.utcMs > wanted.untilUtcMs ||
        (!wanted.drive.isEmpty() &&
         !HistoryTexts::WholeDrive(action).contains(wanted.drive, Qt::CaseInsensitive)))
        return true;
    const std::vector<ShownRow> rows = reader.RowsOf(action, wanted.filter);
    if (rows.empty() && left-- > 0)
        Print(run, action, nullptr);
    for (const ShownRow &row : rows)
        if (left-- > 0)
            Print(run, action, &row);
    return left > 0 && !run.Output().IsBroken();
}

} // namespace

void AddJournalOptions(QCommandLineParser &parser)
{
    parser.addOptions(
        {{QStringLiteral("since"), QStringLiteral("From this day or time on."), QStringLiteral("time")},
         {QStringLiteral("until"), QStringLiteral("Up to this day or time."), QStringLiteral("time")},
         {QStringLiteral("limit"), QStringLiteral("So many rows at most; %1 unless told.").arg(UsualRows),
          QStringLiteral("number")},
         {QStringLiteral("param"), QStringLiteral("Changes of this parameter only."),
          QStringLiteral("parameter")},
         {QStringLiteral("drive"), QStringLiteral("With a drive only whose description holds this text."),
          QStringLiteral("text")}});
}

ExitCode RunJournal(BatchRun &run)
{
    if (!run.Arguments().isEmpty())
        return run.UsageFailure(QStringLiteral("journal takes options only."));
    Wanted wanted;
    if (const QString failure = Read(run, wanted); !failure.isEmpty())
        return run.UsageFailure(failure);
    const bool isText = run.Output().CurrentFormat() == BatchOutput::Format::Text;
    QList<OutputColumn> columns{{QStringLiteral("time"), QStringLiteral("Time"), 26},
                                {QStringLiteral("parameter"), QStringLiteral("Parameter"), 30},
                                {QStringLiteral("before"), QStringLiteral("Before"), 14, true},
                                {QStringLiteral("after"), QStringLiteral("After"), 14, true},
                                {QStringLiteral("result"), QStringLiteral("Result"), 14}};
    if (!isText)
        columns << OutputColumn{QStringLiteral("number"), QStringLiteral("No.")}
                << OutputColumn{QStringLiteral("raw_before"), QStringLiteral("Raw before")}
                << OutputColumn{QStringLiteral("raw_after"), QStringLiteral("Raw after")}
                << OutputColumn{QStringLiteral("set"), QStringLiteral("Set")}
                << OutputColumn{QStringLiteral("drive"), QStringLiteral("Drive")}
                << OutputColumn{QStringLiteral("user"), QStringLiteral("User")};
    columns << OutputColumn{QStringLiteral("title"), QStringLiteral("What was done")};
    run.Output().Begin(QStringLiteral("change"), columns);
    JournalReader reader(run.Eng().journal.Path());
    int left = wanted.rows;
    qint64 before = 0;
    for (bool goesOn = true; goesOn && !run.IsInterrupted();) {
        const std::vector<ShownAction> page = reader.Actions(wanted.filter, before, PageSize);
        for (const ShownAction &action : page)
            goesOn = goesOn && PrintAction(run, reader, action, wanted, left);
        if (page.empty())
            break;
        before = page.back().id;
    }
    if (!reader.Failure().isEmpty()) {
        run.Output().Complain(reader.Failure());
        return ExitCode::File;
    }
    return run.IsInterrupted() ? ExitCode::Interrupted : ExitCode::Done;
}

} // namespace quorvik
