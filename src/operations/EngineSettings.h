#pragma once

#include <QString>
#include <optional>

namespace quorvik
{

class SettingsStore;

/** A check mark of the Options menu. */
bool ReadOption(const SettingsStore &settings, const QString &key, bool isUsual = true);
void StoreOption(SettingsStore &settings, const QString &key, bool isChecked);
/** A number of that section; nothing where none, or nothing usable, is stored. */
std::optional<double> ReadNumberOption(const SettingsStore &settings, const QString &key);

/** Whether guards ask before risky commands; they do where nothing is stored. */
bool ReadAskBeforeRisky(const SettingsStore &settings);
void StoreAskBeforeRisky(SettingsStore &settings, bool ask);

/** Whether a drive that was lost is read by itself once it answers; not where nothing is stored. */
bool ReadReconnect(const SettingsStore &settings);
void StoreReconnect(SettingsStore &settings, bool bySelf);

/** Whether the history tells who has worked; it does where nothing is stored. */
bool ReadKeepLoginName(const SettingsStore &settings);
void StoreKeepLoginName(SettingsStore &settings, bool keep);

/** How many sets of drives are kept before something is written to them, 1 to 10000; Backups::UsualNewest
 * where nothing usable is stored. */
int ReadBackups(const SettingsStore &settings);

/** The stored number of the serial port, or 0 where none, or nothing usable, is stored. */
int ReadCommPort(const SettingsStore &settings);
void StoreCommPort(SettingsStore &settings, int number);

} // namespace quorvik
