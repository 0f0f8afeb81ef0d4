#pragma once

#include <QString>

namespace quorvik
{

/**
 * The settings file that a command line names, or an empty text. The line is trimmed; a leading double quote
 * goes, and then also a closing one.
 */
QString SettingsPathOf(const QString &commandLine);

} // namespace quorvik
