#pragma once

#include "operations/EngineSettings.h"

class QRect;
class QWidget;

namespace quorvik
{

struct AccessColors;

/** Whether the tips are wanted at start; they are where nothing is stored. */
bool ReadShowTips(const SettingsStore &settings);
void StoreShowTips(SettingsStore &settings, bool show);

/** Whether the windows that are open at the end are opened again at the next start; not where nothing is
 * stored. */
bool ReadKeepLayout(const SettingsStore &settings);
void StoreKeepLayout(SettingsStore &settings, bool keep);

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
