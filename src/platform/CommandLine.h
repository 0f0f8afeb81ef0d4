#pragma once

#include <QString>
#include <QStringList>

namespace quorvik
{

/** What the program was started with. */
struct CommandLine {
    QString answer;  ///< to be printed in place of a run: the help or the version; else empty
    QString failure; ///< why the arguments mean nothing; else empty
    QString file;    ///< what names the settings file, for SettingsPathOf()
};

/** Reads the arguments, the program's own first. The application must exist. */
CommandLine ReadCommandLine(const QStringList &arguments);

/**
 * The whole path of the settings file that a command line names, or an empty text. The line is trimmed; a
 * leading double quote goes, and then also a closing one.
 */
QString SettingsPathOf(const QString &commandLine);

} // namespace quorvik
