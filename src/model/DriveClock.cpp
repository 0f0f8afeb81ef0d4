#include "model/DriveClock.h"

#include <QDate>
#include <QLocale>
#include <QTime>

namespace quorvik
{

namespace
{

constexpr int LastYearOfThisCentury = 29;

int FullYear(int year)
{
    if (year < 0 || year > 99)
        return year;
    return year + (year <= LastYearOfThisCentury ? 2000 : 1900);
}

/** The long form without the time zone, which the drive's clock does not have. */
QString LongTimeFormat(const QLocale &locale)
{
    QString format;
    bool quoted = false;
    for (const QChar c : locale.timeFormat(QLocale::LongFormat)) {
        if (c == u'\'')
            quoted = !quoted;
        // Some systems set a narrow blank before AM and PM, others a plain one.
        if (quoted || c != u't')
            format.append(c.isSpace() ? u' ' : c);
    }
    return format.remove(QStringLiteral("()")).trimmed();
}

} // namespace

QString DriveDateText(int year, int month, int day)
{
    const QDate date(FullYear(year), month, day);
    return date.isValid() ? QLocale().toString(date, QLocale::ShortFormat) : QStringLiteral("no date");
}

QString DriveTimeText(int hours, int minutes, int seconds)
{
    const QTime time(hours, minutes, seconds);
    const QLocale locale;
    return time.isValid() ? locale.toString(time, LongTimeFormat(locale)) : QStringLiteral("no time");
}

} // namespace quorvik
