#pragma once

#include <QString>
#include <optional>

class QFileDialog;

namespace quorvik
{

class Asker;

/**
 * Runs a dialog that chooses a file to save to, and asks before one that exists is replaced; a No shows the
 * dialog again. Not all desktops' own dialogs do so for the name with the suffix that is put behind it.
 * @return the chosen path with its suffix, or nothing on a cancel.
 */
std::optional<QString> RunSaveDialog(QFileDialog &dialog, Asker &asker);

} // namespace quorvik
