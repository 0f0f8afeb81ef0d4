#pragma once

#include <QSettings>
#include <QString>

namespace quorvik
{

/**
 * The per-user settings: section, key, text value, in an INI file. Nothing is cached: what SaveSetting()
 * stores is there for the next GetSetting().
 */
class SettingsStore
{
public:
    /** @param file path of the INI file; empty for the user's own place on this platform. */
    explicit SettingsStore(const QString &file = {});

    /** The stored text, or fallback when the key is absent. */
    QString GetSetting(const QString &section, const QString &key, const QString &fallback = {}) const;
    void SaveSetting(const QString &section, const QString &key, const QString &value);

    /** Path of the INI file. */
    QString FileName() const { return settings_.fileName(); }

private:
    QSettings settings_;
};

} // namespace quorvik
