#pragma once

#include "operations/EngineSettings.h"

class QRect;
class QSize;
class QWidget;
class QMargins;

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
 * The place of the main window where none is stored: of a screen larger than 1024 by 768 it takes 85 % of the
 * room each way, in its middle.
 * @param available the part of the screen that windows may take.
 * @param frame what the desktop puts around and above the window.
 * @return corner of the frame and size of what it holds; empty on a smaller screen, which has its own place.
 */
QRect FirstPlace(QSize screen, const QRect &available, const QMargins &frame);

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
