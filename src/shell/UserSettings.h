#pragma once

class QRect;
class QWidget;

namespace quorvik
{

struct AccessColors;
class SettingsStore;

/** Whether the tips are wanted at start; they are where nothing is stored. */
bool ReadShowTips(const SettingsStore &settings);
void StoreShowTips(SettingsStore &settings, bool show);

/** Whether guards ask before risky commands; they do where nothing is stored. */
bool ReadAskBeforeRisky(const SettingsStore &settings);
void StoreAskBeforeRisky(SettingsStore &settings, bool ask);

/** Whether a drive that was lost is read by itself once it answers; not where nothing is stored. */
bool ReadReconnect(const SettingsStore &settings);
void StoreReconnect(SettingsStore &settings, bool bySelf);

/** Whether the windows that are open at the end are opened again at the next start; not where nothing is
 * stored. */
bool ReadKeepLayout(const SettingsStore &settings);
void StoreKeepLayout(SettingsStore &settings, bool keep);

/** Whether the history tells who has worked; it does where nothing is stored. */
bool ReadKeepLoginName(const SettingsStore &settings);
void StoreKeepLoginName(SettingsStore &settings, bool keep);

/** How many sets of drives are kept before something is written to them, 1 to 10000; Backups::UsualNewest
 * where nothing usable is stored. */
int ReadBackups(const SettingsStore &settings);

/** The stored number of the serial port, or 0 where none, or nothing usable, is stored. */
int ReadCommPort(const SettingsStore &settings);
void StoreCommPort(SettingsStore &settings, int number);

/** Colours of access classes 0 to 4, the default where none is stored. */
void ReadColors(const SettingsStore &settings, AccessColors &colors);
void StoreColors(SettingsStore &settings, const AccessColors &colors);

/**
 * Gives a window its stored place and state. Places are kept in twips, 15 to the logical pixel; one that
 * lies on no screen any more is brought back onto one.
 */
void ReadWindowPlace(const SettingsStore &settings, QWidget &window);
/** A window's corner and size, brought onto the screen that shows most of it. */
QRect OntoScreen(const QRect &place, const QWidget &window);
/** Stores place and state; of a minimised window the state is left as it was stored before. */
void StoreWindowPlace(SettingsStore &settings, const QWidget &window);

} // namespace quorvik
