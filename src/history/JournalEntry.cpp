#include "history/JournalEntry.h"

#include "platform/TimeUnits.h"

#include <QDateTime>

namespace quorvik
{

QString NameOf(EntryResult result)
{
    static const QString names[EntryResults] = {
        QString(),
        QStringLiteral("kept off line"),
        QStringLiteral("queued"),
        QStringLiteral("acknowledged"),
        QStringLiteral("verified"),
        QStringLiteral("differs"),
        QStringLiteral("refused"),
        QStringLiteral("given up"),
        QStringLiteral("lost"),
        QString(),
    };
    const auto number = std::size_t(result);
    return number < std::size(names) ? names[number] : QString();
}

JournalTime JournalTime::Now()
{
    const QDateTime now = QDateTime::currentDateTime();
    return {now.toMSecsSinceEpoch(), now.offsetFromUtc() / SecondsPerMinute};
}

} // namespace quorvik
