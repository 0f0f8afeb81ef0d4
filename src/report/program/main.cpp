// Prints a commissioning report: quorvik-report --out FILE --paper a4|letter --presets FILE < REPORT
// Started by the other programs, which tell the report on its standard input.

#include "report/CommissioningReport.h"
#include "report/PdfProgram.h"
#include "report/pages/ReportPages.h"

#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "platform/RuntimeFailure.h"
#include "settings/SettingsFile.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <cstdio>

namespace
{

using namespace quorvik;

int Complain(const QString &sentence)
{
    std::fprintf(stderr, "%s\n", qPrintable(sentence));
    return 1;
}

int Print(const QString &path, const QString &paper, const QString &presets)
{
    if (paper != QLatin1String("a4") && paper != QLatin1String("letter"))
        return Complain(QStringLiteral("--paper takes a4 or letter."));
    ParameterTable table;
    if (const QString failure = LoadFactoryTable(presets, table); !failure.isEmpty())
        return Complain(failure);
    table.ResetToDefaults();
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return Complain(QStringLiteral("There is no report to print."));
    const QByteArray text = input.read(MostReportBytes + 1);
    if (text.size() > MostReportBytes)
        return Complain(QStringLiteral("The report is too long to be printed."));
    QString failure;
    const CommissioningReport report = ReportFromJson(text, failure);
    if (!failure.isEmpty())
        return Complain(failure);
    ReportPages pages(report, table, paper == QLatin1String("a4") ? QPageSize::A4 : QPageSize::Letter);
    failure = pages.WritePdf(path);
    return failure.isEmpty() ? 0 : Complain(failure);
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Whoever started it reads one sentence, and nothing of what a library has to say of the surroundings.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("quorvik-report"));
    QApplication::setApplicationVersion(QStringLiteral(QUORVIK_VERSION));
    SetFailureReporter([](const RuntimeFailure &told) { Complain(QString::fromUtf8(told.what())); });
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Prints a commissioning report that is told on its "
                                                    "standard input."));
    parser.addHelpOption();
    parser.addVersionOption();
    const auto option = [&parser](const char *name, const char *description, const char *value) {
        parser.addOption(
            {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
    };
    option("out", "The PDF file.", "file");
    option("paper", "a4 or letter.", "paper");
    option("presets", "The factory table.", "file");
    parser.process(application);
    int code = 1;
    Guarded([&] {
        code = Print(parser.value(QStringLiteral("out")), parser.value(QStringLiteral("paper")),
                     parser.value(QStringLiteral("presets")));
    });
    return code;
}
