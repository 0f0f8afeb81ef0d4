#include "operations/EngineSettings.h"

#include "compare/Backups.h"
#include "platform/Numbers.h"
#include "platform/Ports.h"
#include "platform/SettingsStore.h"

namespace quorvik
{

namespace
{

constexpr int MostBackups = 10000;

const QString &Options()
{
    static const QString section = QStringLiteral("Options");
    return section;
}

const QString &AskBeforeRisky()
{
    static const QString key = QStringLiteral("Ask Before Risky Commands");
    return key;
}

const QString &ReconnectByItself()
{
    static const QString key = QStringLiteral("Reconnect by Itself");
    return key;
}

const QString &KeepLogin()
{
    static const QString key = QStringLiteral("Keep Login Name in History");
    return key;
}

} // namespace

bool ReadOption(const SettingsStore &settings, const QString &key, bool isUsual)
{
    const QString text =
        settings.GetSetting(Options(), key, isUsual ? QStringLiteral("True") : QStringLiteral("False"));
    return text.compare(QLatin1String("False"), Qt::CaseInsensitive) != 0 && text != QLatin1String("0");
}

void StoreOption(SettingsStore &settings, const QString &key, bool isChecked)
{
    settings.SaveSetting(Options(), key, isChecked ? QStringLiteral("True") : QStringLiteral("False"));
}

std::optional<double> ReadNumberOption(const SettingsStore &settings, const QString &key)
{
    return ParseNumber(settings.GetSetting(Options(), key));
}

bool ReadAskBeforeRisky(const SettingsStore &settings)
{
    return ReadOption(settings, AskBeforeRisky());
}

void StoreAskBeforeRisky(SettingsStore &settings, bool ask)
{
    StoreOption(settings, AskBeforeRisky(), ask);
}

bool ReadReconnect(const SettingsStore &settings)
{
    return ReadOption(settings, ReconnectByItself(), false);
}

void StoreReconnect(SettingsStore &settings, bool bySelf)
{
    StoreOption(settings, ReconnectByItself(), bySelf);
}

bool ReadKeepLoginName(const SettingsStore &settings)
{
    return ReadOption(settings, KeepLogin());
}

void StoreKeepLoginName(SettingsStore &settings, bool keep)
{
    StoreOption(settings, KeepLogin(), keep);
}

int ReadBackups(const SettingsStore &settings)
{
    const double stored = ReadNumberOption(settings, QStringLiteral("Backups")).value_or(0);
    return stored >= 1 && stored <= MostBackups ? int(stored) : Backups::UsualNewest;
}

int ReadCommPort(const SettingsStore &settings)
{
    const double number = ReadNumberOption(settings, QStringLiteral("CommPort")).value_or(0);
    return number >= Ports::First && number <= Ports::Last ? int(number) : 0;
}

void StoreCommPort(SettingsStore &settings, int number)
{
    settings.SaveSetting(Options(), QStringLiteral("CommPort"), QString::number(number));
}

} // namespace quorvik
