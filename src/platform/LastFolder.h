#pragma once

#include <QString>

namespace quorvik
{

class SettingsStore;

/** What a file dialog is opened for; each remembers its own folder. */
enum class FolderUse { Sets, Exports };

/**
 * The folder in which a file dialog opens. For settings files that of the open one, else the one that a
 * dialog was last used in; for exports the other way round. Where there is neither, or it is there no more,
 * the user's documents, or home where that folder is missing.
 * @param openFile path of the open settings file, or its folder with the closing separator; a bare name for
 * none.
 */
QString FolderFor(FolderUse use, const SettingsStore &settings, const QString &openFile);

/** Keeps the folder of a file that was chosen in a dialog, over runs of the program. */
void KeepFolder(FolderUse use, SettingsStore &settings, const QString &chosenFile);

} // namespace quorvik
