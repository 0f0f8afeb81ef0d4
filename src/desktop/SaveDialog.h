#pragma once

#include <QString>
#include <optional>

class QFileDialog;

namespace quorvik
{

class Asker;
class SettingsStore;

/**
 * Runs a dialog that chooses a file to save to, and asks before one that exists is replaced; a No shows the
 * dialog again. Not all desktops' own dialogs do so for the name with the suffix that is put behind it.
 * @return the chosen path with its suffix, or nothing on a cancel.
 */
std::optional<QString> RunSaveDialog(QFileDialog &dialog, Asker &asker);

/**
 * The same for an export: the dialog opens in the folder of the last one, and what is chosen is remembered.
 * @param suggested path or name that is proposed; a path that ends with a separator proposes a folder only,
 * as that of the open settings file, and where there was no export yet.
 */
std::optional<QString> RunExportDialog(QFileDialog &dialog, const QString &suggested, SettingsStore &settings,
                                       Asker &asker);

} // namespace quorvik
