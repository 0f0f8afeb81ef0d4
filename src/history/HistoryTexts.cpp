#include "history/HistoryTexts.h"

#include "model/PathFunctions.h"
#include "platform/TimeUnits.h"

#include <QDateTime>
#include <QStringList>
#include <array>
#include <cstdlib>

namespace quorvik::HistoryTexts
{

namespace
{

QDateTime ThereAndThen(const JournalTime &time)
{
    return QDateTime::fromMSecsSinceEpoch(time.utcMs, Qt::OffsetFromUTC,
                                          time.offsetMinutes * SecondsPerMinute);
}

QChar SignOf(int minutes)
{
    return minutes < 0 ? u'-' : u'+';
}

/** "UTC+2", "UTC-3:30". */
QString Zone(int minutes)
{
    const int size = std::abs(minutes);
    QString text = QStringLiteral("UTC%1%2").arg(SignOf(minutes)).arg(size / MinutesPerHour);
    if (const int rest = size % MinutesPerHour; rest != 0)
        text += QStringLiteral(":%1").arg(rest, 2, 10, QLatin1Char('0'));
    return text;
}

QString InZone(const QString &text, const JournalTime &time, int minutesNow)
{
    return time.offsetMinutes == minutesNow ? text : text + u' ' + Zone(time.offsetMinutes);
}

} // namespace

QString Time(const JournalTime &time, int minutesNow)
{
    return InZone(ThereAndThen(time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), time, minutesNow);
}

QString WholeTime(const JournalTime &time)
{
    const int size = std::abs(time.offsetMinutes);
    return QStringLiteral("%1 %2%3:%4")
        .arg(ThereAndThen(time).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")))
        .arg(SignOf(time.offsetMinutes))
        .arg(size / MinutesPerHour, 2, 10, QLatin1Char('0'))
        .arg(size % MinutesPerHour, 2, 10, QLatin1Char('0'));
}

QString Run(const JournalRun &run, int minutesNow)
{
    QStringList parts{
        QStringLiteral("Run of ") +
        InZone(ThereAndThen(run.began).toString(QStringLiteral("yyyy-MM-dd HH:mm")), run.began, minutesNow)};
    if (!run.user.isEmpty())
        parts += run.user;
    if (!run.version.isEmpty())
        parts += QStringLiteral("Quorvik ") + run.version;
    return parts.join(QStringLiteral(", "));
}

QString Parameter(const JournalRow &row)
{
    return QStringLiteral("(%1) ").arg(row.param) + row.name;
}

QString Before(const JournalRow &row)
{
    return row.rawBefore ? row.textBefore : QStringLiteral("not known");
}

QString Result(const ShownRow &row)
{
    const QString name = NameOf(row.row.result);
    return row.rawFound ? QStringLiteral("%1, the drive has ").arg(name) + row.textFound : name;
}

QString Results(const std::vector<ShownRow> &rows)
{
    std::array<int, EntryResults> counts{};
    for (const ShownRow &row : rows)
        if (const auto number = std::size_t(row.row.result); number < counts.size())
            ++counts[number];
    QStringList parts;
    for (int number = 0; number < EntryResults; ++number) {
        const int count = counts[std::size_t(number)];
        const QString name = NameOf(EntryResult(number));
        if (count > 0 && !name.isEmpty())
            parts += count == int(rows.size()) ? name : QStringLiteral("%1 ").arg(count) + name;
    }
    return parts.join(QStringLiteral(", "));
}

QString Set(const JournalAction &action)
{
    return FileTitle(action.setName);
}

QString Drive(const ShownAction &action)
{
    if (action.action.link == 0)
        return QStringLiteral("off line");
    return action.drive
               ? QStringLiteral("%1, %2 h").arg(action.drive->ModelName()).arg(action.drive->operatingHours)
               : QStringLiteral("not known");
}

QString WholeDrive(const ShownAction &action)
{
    return action.drive ? action.drive->Text() : Drive(action);
}

QString Title(const ShownAction &action)
{
    return action.action.title.isEmpty() ? QStringLiteral("%1 values").arg(action.rowCount)
                                         : action.action.title;
}

QString OnlyRow(const ShownAction &action, const JournalRow &row)
{
    const QString name = Parameter(row);
    return action.action.title.isEmpty() ? name : name + QStringLiteral(" \u00b7 ") + action.action.title;
}

bool IsOneLine(const ShownAction &action)
{
    return action.rowCount == 1;
}

} // namespace quorvik::HistoryTexts
