#include "find/RecentFinds.h"

#include "platform/SettingsStore.h"

namespace quorvik
{

namespace
{

const QString &Section()
{
    static const QString section = QStringLiteral("Find");
    return section;
}

const QString &RecentKey()
{
    static const QString key = QStringLiteral("Recent");
    return key;
}

/** In no name of a menu entry and of no page. */
constexpr QChar KeyMark = u'|';

} // namespace

QStringList RecentFinds::Keys() const
{
    return settings_.GetSetting(Section(), RecentKey()).split(KeyMark, Qt::SkipEmptyParts).mid(0, Most);
}

void RecentFinds::Add(const QString &key)
{
    QStringList keys = Keys();
    keys.removeAll(key);
    keys.prepend(key);
    settings_.SaveSetting(Section(), RecentKey(), keys.mid(0, Most).join(KeyMark));
}

} // namespace quorvik
