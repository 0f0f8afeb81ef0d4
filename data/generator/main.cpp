// Builds the factory table from its source, and prints it as a page.

#include "PresetsSource.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QTextStream>

namespace
{

QString ReadText(const QString &path, QString &text)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: %2").arg(path, file.errorString());
    text = QString::fromUtf8(file.readAll());
    return {};
}

QString WriteText(const QString &path, const QString &text)
{
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return QStringLiteral("%1: %2").arg(path, file.errorString());
    return {};
}

QString CheckPage(const QString &path, const QString &page)
{
    QString present;
    QString failure = ReadText(path, present);
    if (failure.isEmpty() && present != page)
        failure = QStringLiteral("%1 is not current; build the target parameters_page.").arg(path);
    return failure;
}

QString Run(const QCommandLineParser &parser)
{
    if (parser.positionalArguments().size() != 1)
        return QStringLiteral("One source file is needed.");
    QString csv;
    quorvik::RecordArray records;
    QString failure = ReadText(parser.positionalArguments().first(), csv);
    if (failure.isEmpty())
        failure = quorvik::ParsePresets(csv, records);
    if (failure.isEmpty() && parser.isSet(QStringLiteral("presets")))
        failure = quorvik::WritePresets(records, parser.value(QStringLiteral("presets")));
    if (failure.isEmpty() && parser.isSet(QStringLiteral("page")))
        failure = WriteText(parser.value(QStringLiteral("page")), quorvik::ParametersPage(records));
    if (failure.isEmpty() && parser.isSet(QStringLiteral("check")))
        failure = CheckPage(parser.value(QStringLiteral("check")), quorvik::ParametersPage(records));
    return failure;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("source"), QStringLiteral("The factory table in words."));
    parser.addOptions({
        {QStringLiteral("presets"), QStringLiteral("Write the factory table."), QStringLiteral("file")},
        {QStringLiteral("page"), QStringLiteral("Print the table as a page."), QStringLiteral("file")},
        {QStringLiteral("check"), QStringLiteral("Fail when a printed page is not current."),
         QStringLiteral("file")},
    });
    parser.process(application);
    const QString failure = Run(parser);
    if (failure.isEmpty())
        return 0;
    QTextStream(stderr) << failure << '\n';
    return 1;
}
