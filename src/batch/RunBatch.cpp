#include "batch/BatchRun.h"
#include "batch/CommandPages.h"
#include "batch/Verb.h"
#include "platform/Guard.h"

#include <QCoreApplication>
#include <algorithm>

namespace quorvik
{

void AddCommonOptions(QCommandLineParser &parser)
{
    parser.addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")},
         QStringLiteral("Tells what there is to say, and ends.")},
        {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Tells the version, and ends.")},
        {{QStringLiteral("p"), QStringLiteral("port")},
         QStringLiteral("Where the drive is: a port's number, a device, tcp://host:port or "
                        "rfc2217://host:port; else the port that Quorvik uses."),
         QStringLiteral("port")},
        {QStringLiteral("json"), QStringLiteral("Prints one JSON object a line.")},
        {QStringLiteral("csv"), QStringLiteral("Prints comma-separated values.")},
        {{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Prints results and failures only.")},
        {QStringLiteral("accept"),
         QStringLiteral("Answers a question beforehand; the question tells its word."),
         QStringLiteral("word")},
    });
}

namespace
{

QString OverviewText()
{
    QString text = QStringLiteral("Usage: quorvik-batch VERB [options] [arguments]\n"
                                  "Works with Sarvex DC drives and their settings files from scripts.\n\n"
                                  "Verbs:\n");
    qsizetype width = 0;
    for (const Verb &verb : Verbs())
        width = std::max(width, QString::fromLatin1(verb.name).size() + 1 +
                                    QString::fromLatin1(verb.arguments).size());
    for (const Verb &verb : Verbs())
        text += QStringLiteral("  ") +
                (QString::fromLatin1(verb.name) + u' ' + QString::fromLatin1(verb.arguments))
                    .leftJustified(width + 2) +
                QString::fromUtf8(verb.summary) + u'\n';
    text += QStringLiteral("\n\"quorvik-batch VERB --help\" tells the options of one.\n"
                           "Exit codes: 0 done, 1 differs or refused in part, 2 usage, 3 no link,\n"
                           "4 refused by a guard, 5 file, 130 interrupted.\n");
    return text;
}

void Print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

int Code(ExitCode code)
{
    return int(code);
}

} // namespace

int RunBatch(const QStringList &arguments, const EnginePlaces &places)
{
    const QString name = arguments.value(1);
    if (name == QLatin1String("--version") || name == QLatin1String("-v")) {
        Print(stdout, QStringLiteral("quorvik-batch %1\n").arg(QCoreApplication::applicationVersion()));
        return Code(ExitCode::Done);
    }
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        Print(stdout, OverviewText());
        return Code(ExitCode::Done);
    }
    // For the package's build; of no use to people.
    if (arguments.mid(1) == QStringList{QStringLiteral("completion"), QStringLiteral("bash")}) {
        Print(stdout, BashCompletion());
        return Code(ExitCode::Done);
    }
    if (arguments.mid(1) == QStringList{QStringLiteral("manual")}) {
        Print(stdout, ManualSections());
        return Code(ExitCode::Done);
    }
    const auto found =
        std::ranges::find_if(Verbs(), [&name](const Verb &verb) { return name == QLatin1String(verb.name); });
    if (found == Verbs().end()) {
        Print(stderr, name.isEmpty() ? OverviewText()
                                     : QStringLiteral("There is no verb \"%1\". \"quorvik-batch --help\" "
                                                      "lists them.\n")
                                           .arg(name));
        return Code(ExitCode::Usage);
    }
    const Verb &verb = *found;

    QCommandLineParser parser;
    AddCommonOptions(parser);
    parser.setApplicationDescription(QString::fromUtf8(verb.summary));
    parser.addPositionalArgument(QString::fromLatin1(verb.name), QString(), QString::fromLatin1(verb.name));
    if (verb.arguments[0] != '\0')
        parser.addPositionalArgument(QStringLiteral("arguments"), QString(),
                                     QString::fromLatin1(verb.arguments));
    if (verb.addOptions)
        verb.addOptions(parser);
    if (!parser.parse(arguments)) {
        Print(stderr, parser.errorText() + u'\n');
        return Code(ExitCode::Usage);
    }
    if (parser.isSet(QStringLiteral("help"))) {
        Print(stdout, parser.helpText());
        return Code(ExitCode::Done);
    }
    if (parser.isSet(QStringLiteral("json")) && parser.isSet(QStringLiteral("csv"))) {
        Print(stderr, QStringLiteral("--json and --csv exclude each other.\n"));
        return Code(ExitCode::Usage);
    }
    BatchOutput output(stdout, stderr);
    output.SetFormat(parser.isSet(QStringLiteral("json"))  ? BatchOutput::Format::Json
                     : parser.isSet(QStringLiteral("csv")) ? BatchOutput::Format::Csv
                                                           : BatchOutput::Format::Text);
    output.SetQuiet(parser.isSet(QStringLiteral("quiet")));
    SetFailureReporter([&output](const RuntimeFailure &failure) { output.Complain(failure.Sentence()); });

    ExitCode code = ExitCode::Fault;
    Guarded([&] {
        BatchRun run(places, parser, output);
        code = run.Begin();
        if (code == ExitCode::Done)
            code = verb.run(run);
        run.GoOffLine();
    });
    return Code(code);
}

} // namespace quorvik
