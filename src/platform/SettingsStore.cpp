#include "platform/SettingsStore.h"

#include <QStandardPaths>

namespace quorvik
{

namespace
{

QString DefaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/quorvik/Quorvik.ini");
}

QString PathOf(const QString &section, const QString &key)
{
    return section + u'/' + key;
}

} // namespace

SettingsStore::SettingsStore(const QString &file)
    : settings_(file.isEmpty() ? DefaultFile() : file, QSettings::IniFormat)
{
}

QString SettingsStore::GetSetting(const QString &section, const QString &key, const QString &fallback) const
{
    return settings_.value(PathOf(section, key), fallback).toString();
}

void SettingsStore::SaveSetting(const QString &section, const QString &key, const QString &value)
{
    settings_.setValue(PathOf(section, key), value);
    settings_.sync();
}

} // namespace quorvik
