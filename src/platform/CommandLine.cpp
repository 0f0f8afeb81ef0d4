#include "platform/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

namespace quorvik
{

CommandLine ReadCommandLine(const QStringList &arguments)
{
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Tells how the program is started, and ends."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Tells the version, and ends."));
    QCommandLineParser parser;
    // What Qt itself takes, such as -platform, is no row of letters.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral("Configures and commissions Sarvex DC motor drives."));
    parser.addOptions({help, version});
    parser.addPositionalArgument(QStringLiteral("file"),
                                 QStringLiteral("Settings file (*.Svx) to open; the program stays off line."),
                                 QStringLiteral("[file]"));
    CommandLine line;
    if (!parser.parse(arguments))
        line.failure = parser.errorText();
    if (parser.isSet(help))
        line.answer = parser.helpText();
    else if (parser.isSet(version))
        line.answer =
            QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion() + u'\n';
    line.file = parser.positionalArguments().join(u' ');
    return line;
}

QString SettingsPathOf(const QString &commandLine)
{
    QString path = commandLine.trimmed();
    if (path.startsWith(u'"')) {
        path.remove(0, 1);
        if (path.endsWith(u'"'))
            path.chop(1);
    }
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

} // namespace quorvik
