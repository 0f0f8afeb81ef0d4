#include "report/PdfProgram.h"

#include "platform/ChildProgram.h"
#include "platform/Waiting.h"

#include <QLocale>
#include <QProcess>

namespace quorvik
{

namespace
{

constexpr int EndMs = 5000;

/** The first line that it says; nothing of it may be longer than a sentence. */
QString SentenceOf(const QByteArray &errors)
{
    constexpr qsizetype longest = 500;
    return QString::fromUtf8(errors.trimmed().split('\n').first()).left(longest).simplified();
}

void Start(QProcess &process, const PdfWish &wish, const QString &program)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // It draws on paper alone, and a script has no display.
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, {QStringLiteral("--out"), wish.path, QStringLiteral("--paper"), wish.paper,
                            QStringLiteral("--presets"), wish.presets});
}

} // namespace

QString UsualPaperName()
{
    return QLocale().measurementSystem() == QLocale::MetricSystem ? QStringLiteral("a4")
                                                                  : QStringLiteral("letter");
}

QString WritePdf(const CommissioningReport &report, const PdfWish &wish)
{
    const QByteArray text = ToJson(report);
    if (text.size() > MostReportBytes)
        return QStringLiteral("The report is too long to be printed.");
    const QString program =
        wish.program.isEmpty() ? ProgramBeside(QStringLiteral("quorvik-report")) : wish.program;
    QProcess process;
    Start(process, wish, program);
    if (!process.waitForStarted(wish.waitMs))
        return QStringLiteral("The report cannot be printed, as \"%1\" cannot be started.").arg(program);
    process.write(text);
    process.closeWriteChannel();
    const auto isUnwanted = [&wish] { return wish.isUnwanted && wish.isUnwanted(); };
    PumpWhile([&] { return process.state() != QProcess::NotRunning && !isUnwanted(); },
              QDeadlineTimer(wish.waitMs));
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(EndMs);
        return isUnwanted() ? QStringLiteral("The report was given up.")
                            : QStringLiteral("The report took too long to be printed, and was given up.");
    }
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {};
    const QString sentence = SentenceOf(process.readAllStandardError());
    return sentence.isEmpty() || process.exitStatus() != QProcess::NormalExit
               ? QStringLiteral("The report could not be printed: \"%1\" failed.").arg(program)
               : sentence;
}

} // namespace quorvik
