#include "support/SimulatedDrive.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/prctl.h>

namespace quorvik
{

namespace
{

constexpr int WaitMs = 10000;

constexpr char EndOfAnswer[] = "done";

} // namespace

SimulatedDrive::SimulatedDrive(const QStringList &arguments)
    : arguments_(arguments)
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // A test that crashes leaves no drive behind.
    process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    Start();
}

SimulatedDrive::~SimulatedDrive()
{
    if (!IsRunning())
        return;
    process_.write("quit\n");
    if (!process_.waitForFinished(WaitMs))
        Kill();
}

void SimulatedDrive::Start()
{
    process_.start(QStringLiteral(QUORVIK_DRIVE_PROGRAM),
                   arguments_ + QStringList{QStringLiteral("--link"), LinkPath(), QStringLiteral("--presets"),
                                            QStringLiteral(QUORVIK_PRESETS_FILE)});
    if (!process_.waitForStarted(WaitMs)) {
        ADD_FAILURE() << "The simulated drive did not start: " << qPrintable(process_.errorString());
        return;
    }
    EXPECT_EQ(ReadLine(), QStringLiteral("ready ") + LinkPath());
}

QString SimulatedDrive::ReadLine()
{
    QElapsedTimer waiting;
    waiting.start();
    while (!process_.canReadLine()) {
        const int left = WaitMs - int(waiting.elapsed());
        if (left <= 0 || !process_.waitForReadyRead(left)) {
            ADD_FAILURE() << "The simulated drive gave no answer.";
            return {};
        }
    }
    return QString::fromUtf8(process_.readLine()).trimmed();
}

QStringList SimulatedDrive::Ask(const QString &line)
{
    process_.write(line.toUtf8() + "\necho " + EndOfAnswer + '\n');
    QStringList answer;
    for (QString read = ReadLine(); read != QLatin1String(EndOfAnswer); read = ReadLine()) {
        if (read.isEmpty())
            return answer;
        answer << read;
    }
    return answer;
}

void SimulatedDrive::Send(const QString &line)
{
    const QStringList answer = Ask(line);
    EXPECT_TRUE(answer.isEmpty()) << qPrintable(line) << ": " << qPrintable(answer.value(0));
}

std::map<int, std::int32_t> SimulatedDrive::Table()
{
    std::map<int, std::int32_t> table;
    static const QRegularExpression row(QStringLiteral("^(\\d+) (-?\\d+)$"));
    for (const QString &line : Ask(QStringLiteral("print")))
        if (const QRegularExpressionMatch match = row.match(line); match.hasMatch())
            table[match.captured(1).toInt()] = match.captured(2).toInt();
    return table;
}

std::int32_t SimulatedDrive::Value(int p)
{
    const QString answer = Ask(QStringLiteral("get %1").arg(p)).value(0);
    bool isValue = false;
    const std::int32_t value = answer.section(u' ', 1, 1).toInt(&isValue);
    EXPECT_TRUE(isValue) << qPrintable(answer);
    return value;
}

void SimulatedDrive::Set(int p, std::int32_t rawValue)
{
    Send(QStringLiteral("set %1 %2").arg(p).arg(rawValue));
}

std::int64_t SimulatedDrive::Stat(const QString &name)
{
    for (const QString &line : Ask(QStringLiteral("stats")))
        if (line.section(u' ', 0, 0) == name)
            return line.section(u' ', 1, 1).toLongLong();
    return -1;
}

void SimulatedDrive::Kill()
{
    process_.kill();
    process_.waitForFinished(WaitMs);
}

void SimulatedDrive::Restart()
{
    if (IsRunning())
        Kill();
    process_.readAll();
    Start();
}

} // namespace quorvik
