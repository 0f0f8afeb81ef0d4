// Makes the help's pages and its Qt Help project from the topics. Fails on a missing topic, picture or link
// target.

#include "generator/PageWriter.h"
#include "generator/ProjectWriter.h"
#include "generator/Topics.h"
#include "generator/WordWriter.h"

#include "model/ParameterTable.h"
#include "settings/SettingsFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    using namespace quorvik;
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("source"), QStringLiteral("folder of the topics"));
    parser.addPositionalArgument(QStringLiteral("presets"), QStringLiteral("the factory table"));
    parser.addPositionalArgument(QStringLiteral("pictures"),
                                 QStringLiteral("folder of the windows' pictures"));
    parser.addPositionalArgument(QStringLiteral("required"),
                                 QStringLiteral("file that names the topics asked for"));
    parser.addPositionalArgument(QStringLiteral("out"), QStringLiteral("folder for the pages"));
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 5)
        parser.showHelp(2);

    QStringList problems;
    ParameterTable table;
    const QString failure = LoadFactoryTable(arguments[1], table);
    if (!failure.isEmpty())
        problems.append(failure);
    table.ResetToDefaults();

    help::Topics topics;
    topics.Read(arguments[0], problems);
    topics.Check(help::ReadText(arguments[3], problems).split(u'\n', Qt::SkipEmptyParts), problems);
    help::PageWriter pages(table, topics, arguments[2], arguments[4]);
    pages.SetChanges(help::ReadText(arguments[0] + QStringLiteral("/../CHANGELOG.md"), problems));
    pages.WriteAll(problems);
    help::WriteWords(topics, arguments[4], problems);
    help::WriteProject(topics, pages.Files(), arguments[4], problems);

    QTextStream errors(stderr);
    for (const QString &problem : problems)
        errors << "help: " << problem << '\n';
    return problems.isEmpty() ? 0 : 1;
}
