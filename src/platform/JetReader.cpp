#include "platform/JetReader.h"

#include "platform/ChildProgram.h"
#include "platform/JetOutput.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <cmath>

namespace quorvik
{

namespace
{

QString Damaged()
{
    return QStringLiteral("is damaged");
}

QString ReasonOf(JetExit exit)
{
    switch (exit) {
    case JetExit::Done:
        return {};
    case JetExit::Password:
        return QStringLiteral("is protected by a password and is not read");
    case JetExit::Encrypted:
        return QStringLiteral("is encrypted and is not read");
    case JetExit::CodePage:
        return QStringLiteral("holds texts of another code page than 1252 and is not read");
    case JetExit::NoLimits:
        return QStringLiteral("is not read, as the system does not let its reading be limited");
    case JetExit::Damaged:
        break;
    }
    return Damaged();
}

QVariant ValueOf(const QJsonValue &value)
{
    // Beyond it, not each whole number is one of these.
    constexpr double greatest = 9007199254740992.0;
    if (value.isNull())
        return {};
    if (value.isString())
        return value.toString();
    if (!value.isDouble())
        return value.toVariant();
    const double number = value.toDouble();
    if (std::abs(number) <= greatest && std::trunc(number) == number)
        return qlonglong(number);
    return number;
}

/** Collects the lines of a whole output. */
class Parser
{
public:
    explicit Parser(std::vector<JetTable> &tables)
        : tables_(tables)
    {
    }

    bool Take(const QByteArray &line)
    {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (isWhole_)
            return false;
        if (document.isArray())
            return TakeRow(document.array());
        return document.isObject() && TakeHead(document.object());
    }

    bool IsWhole() const { return isWhole_; }

private:
    bool TakeHead(const QJsonObject &head)
    {
        isWhole_ = head.isEmpty();
        if (isWhole_)
            return true;
        JetTable table;
        table.name = head[QLatin1String("table")].toString();
        for (const QJsonValue column : head[QLatin1String("columns")].toArray())
            table.columns.push_back({column[0].toString(), column[1].toString()});
        tables_.push_back(std::move(table));
        return tables_.size() <= std::size_t(JetMostTables);
    }

    bool TakeRow(const QJsonArray &row)
    {
        if (tables_.empty() || std::size_t(row.size()) != tables_.back().columns.size() ||
            tables_.back().rowCount == JetMostRows)
            return false;
        for (const QJsonValue value : row)
            tables_.back().values.push_back(ValueOf(value));
        ++tables_.back().rowCount;
        return true;
    }

    std::vector<JetTable> &tables_;
    bool isWhole_ = false;
};

void Start(QProcess &process, const QString &path, const QString &program)
{
    // Nothing of the user's settings may change how a file is read. An empty environment would be his.
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(path);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setProgram(program);
    process.start(QIODevice::ReadOnly);
}

} // namespace

QString ReadJetFile(const QString &path, std::vector<JetTable> &tables, const JetLimits &limits)
{
    const QString program =
        limits.program.isEmpty() ? ProgramBeside(QStringLiteral("quorvik-jet")) : limits.program;
    const QDeadlineTimer deadline(limits.waitMs);
    QProcess process;
    Start(process, path, program);
    if (!process.waitForStarted(limits.waitMs))
        return QStringLiteral("is not read, as \"%1\" cannot be started").arg(program);
    Parser parser(tables);
    qint64 taken = 0;
    bool isGood = true;
    const auto take = [&](bool isAtEnd) {
        while (isGood && (process.canReadLine() || (isAtEnd && process.bytesAvailable() > 0))) {
            const QByteArray line = process.readLine();
            taken += line.size();
            isGood = taken <= limits.outputBytes && parser.Take(line);
        }
        isGood = isGood && taken + process.bytesAvailable() <= limits.outputBytes;
    };
    while (isGood && process.state() != QProcess::NotRunning && !deadline.hasExpired()) {
        process.waitForReadyRead(int(deadline.remainingTime()));
        take(false);
    }
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(-1);
        return Damaged();
    }
    take(true);
    if (process.exitStatus() != QProcess::NormalExit)
        return Damaged();
    const QString reason = ReasonOf(JetExit(process.exitCode()));
    return reason.isEmpty() && !(isGood && parser.IsWhole()) ? Damaged() : reason;
}

} // namespace quorvik
