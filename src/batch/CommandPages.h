#pragma once

#include <QList>
#include <QString>

class QCommandLineParser;

namespace quorvik
{

/** One option of a command, as its help tells it. */
struct OptionText {
    QStringList names; ///< "-p", "--port"
    QString value;     ///< what it takes: "port", "file"; empty for a switch
    QString description;
};

/** The options that a parser knows. */
QList<OptionText> OptionsOf(const QCommandLineParser &parser);

/** The completion for bash, made from the table of verbs. */
QString BashCompletion();

/** The sections of the man page that tell verbs and options, made from the table of verbs. */
QString ManualSections();

} // namespace quorvik
