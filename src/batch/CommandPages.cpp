#include "batch/CommandPages.h"

#include "batch/BatchRun.h"
#include "batch/Verb.h"
#include "platform/Ports.h"

#include <QRegularExpression>

namespace quorvik
{

namespace
{

QList<OptionText> OwnOptions(const Verb &verb)
{
    QCommandLineParser parser;
    if (verb.addOptions)
        verb.addOptions(parser);
    return OptionsOf(parser);
}

QList<OptionText> CommonOptions()
{
    QCommandLineParser parser;
    AddCommonOptions(parser);
    return OptionsOf(parser);
}

QString NamesOf(const QList<OptionText> &options, bool (*isWanted)(const OptionText &), QChar between)
{
    QStringList names;
    for (const OptionText &option : options)
        if (isWanted(option))
            names += option.names;
    return names.join(between);
}

bool TakesFile(const OptionText &option)
{
    return option.value == QLatin1String("file") || option.value == QLatin1String("folder");
}

bool TakesPort(const OptionText &option)
{
    return option.value == QLatin1String("port");
}

bool TakesOther(const OptionText &option)
{
    return !option.value.isEmpty() && !TakesFile(option) && !TakesPort(option);
}

/** Whether what a verb works on is files: parameters and what is written to them are none. */
bool NamesFiles(const Verb &verb)
{
    static const QRegularExpression files(QStringLiteral("\\b(FILE|FOLDER|OLD|NEW|A|B)\\b"));
    return QString::fromLatin1(verb.arguments).contains(files);
}

/** A branch of the completion's "case"; nothing for no words. */
QString Branch(const QString &words, const QString &action)
{
    return words.isEmpty() ? QString() : QStringLiteral("        %1) %2; return ;;\n").arg(words, action);
}

/** Text as the man page's language takes it, also at the start of a line. */
QString Manual(QString text)
{
    text.replace(u'\\', QStringLiteral("\\e")).replace(u'-', QStringLiteral("\\-"));
    if (text.startsWith(u'.') || text.startsWith(u'\''))
        text.prepend(QStringLiteral("\\&"));
    return text + u'\n';
}

QString ManualOptions(const QList<OptionText> &options)
{
    QString page;
    for (const OptionText &option : options) {
        QString line = QStringLiteral(".TP\n\\fB") + option.names.join(QStringLiteral("\\fR, \\fB")) +
                       QStringLiteral("\\fR");
        if (!option.value.isEmpty())
            line += QStringLiteral(" \\fI") + option.value + QStringLiteral("\\fR");
        page += line.replace(u'-', QStringLiteral("\\-")) + u'\n' + Manual(option.description);
    }
    return page;
}

} // namespace

QList<OptionText> OptionsOf(const QCommandLineParser &parser)
{
    // The parser keeps its options to itself, but for its help.
    static const QRegularExpression first(
        QStringLiteral("^  ((?:--?[A-Za-z0-9][A-Za-z0-9-]*(?:, )?)+)(?: <([^>]*)>)?(?:  +(.*))?$"));
    QList<OptionText> options;
    const QString help = parser.helpText();
    bool isInside = false;
    for (const QString &line : help.split(u'\n')) {
        if (!line.startsWith(u' ')) {
            isInside = line.startsWith(QLatin1String("Options:"));
            continue;
        }
        if (!isInside)
            continue;
        if (const auto match = first.match(line); match.hasMatch())
            options.append({match.captured(1).split(QStringLiteral(", ")), match.captured(2),
                            match.captured(3).trimmed()});
        else if (!options.isEmpty())
            options.last().description = (options.last().description + u' ' + line.trimmed()).trimmed();
    }
    return options;
}

QString BashCompletion()
{
    const auto any = [](const OptionText &) { return true; };
    const QList<OptionText> common = CommonOptions();
    QStringList verbs;
    QString branches;
    for (const Verb &verb : Verbs()) {
        const QList<OptionText> own = OwnOptions(verb);
        const QString name = QString::fromLatin1(verb.name);
        verbs << name;
        branches += QStringLiteral("    %1)\n").arg(name);
        if (!own.isEmpty()) {
            branches += QStringLiteral("        options+=' %1'\n").arg(NamesOf(own, any, u' '));
            branches += QStringLiteral("        case $prev in\n") +
                        Branch(NamesOf(own, TakesFile, u'|'), QStringLiteral("_quorvik_batch_files")) +
                        Branch(NamesOf(own, TakesOther, u'|'), QStringLiteral(":")) +
                        QStringLiteral("        esac\n");
        }
        if (NamesFiles(verb))
            branches += QStringLiteral("        files=yes\n");
        branches += QStringLiteral("        ;;\n");
    }
    QStringList ports;
    for (int n = Ports::First; n <= Ports::Last; ++n)
        ports << QStringLiteral("Com%1").arg(n);
    return QStringLiteral("# bash completion for quorvik-batch, made by the program itself\n"
                          "\n"
                          "_quorvik_batch_files()\n"
                          "{\n"
                          "    compopt -o filenames\n"
                          "    mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")\n"
                          "}\n"
                          "\n"
                          "_quorvik_batch()\n"
                          "{\n"
                          "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}\n"
                          "    local options='%1' files=\n"
                          "    COMPREPLY=()\n"
                          "    if ((COMP_CWORD == 1)); then\n"
                          "        mapfile -t COMPREPLY < <(compgen -W '%2 --help --version' -- \"$cur\")\n"
                          "        return\n"
                          "    fi\n"
                          "    case $prev in\n")
               .arg(NamesOf(common, any, u' '), verbs.join(u' ')) +
           Branch(NamesOf(common, TakesPort, u'|'),
                  QStringLiteral("mapfile -t COMPREPLY < <(compgen -W '%1' -- \"$cur\"; compgen -f -- "
                                 "\"$cur\")")
                      .arg(ports.join(u' '))) +
           Branch(NamesOf(common, TakesOther, u'|'), QStringLiteral(":")) +
           QStringLiteral("    esac\n"
                          "    case ${COMP_WORDS[1]} in\n") +
           branches +
           QStringLiteral("    *) return ;;\n"
                          "    esac\n"
                          "    if [[ $cur == -* ]]; then\n"
                          "        mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$cur\")\n"
                          "    elif [[ $files ]]; then\n"
                          "        _quorvik_batch_files\n"
                          "    fi\n"
                          "}\n"
                          "\n"
                          "complete -F _quorvik_batch quorvik-batch\n");
}

QString ManualSections()
{
    QString page = QStringLiteral(".SH VERBS\n");
    for (const Verb &verb : Verbs()) {
        page +=
            QStringLiteral(".SS ") +
            Manual((QString::fromLatin1(verb.name) + u' ' + QString::fromLatin1(verb.arguments)).trimmed());
        page += Manual(QString::fromUtf8(verb.summary)) + ManualOptions(OwnOptions(verb));
    }
    return page + QStringLiteral(".SH OPTIONS\nThese go with every verb.\n") + ManualOptions(CommonOptions());
}

} // namespace quorvik
