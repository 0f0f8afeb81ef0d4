#include "tour/DriveProcess.h"

#include <QStringList>

namespace quorvik
{

namespace
{

constexpr int waitMs = 10000;

} // namespace

bool DriveProcess::Start(const QString &program, const QString &link, const QString &presets)
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(program, {QStringLiteral("--demo"), QStringLiteral("--link"), link,
                             QStringLiteral("--presets"), presets});
    return process_.waitForStarted(waitMs) && ReadLine().startsWith(QLatin1String("ready"));
}

DriveProcess::~DriveProcess()
{
    process_.write("quit\n");
    if (!process_.waitForFinished(waitMs))
        process_.kill();
}

QString DriveProcess::ReadLine()
{
    while (!process_.canReadLine())
        if (!process_.waitForReadyRead(waitMs))
            return {};
    return QString::fromUtf8(process_.readLine()).trimmed();
}

std::optional<QString> DriveProcess::Print(int parameter)
{
    process_.write(QStringLiteral("print %1\necho done\n").arg(parameter).toUtf8());
    QStringList lines;
    for (QString line = ReadLine(); line != QLatin1String("done"); line = ReadLine()) {
        if (line.isEmpty())
            return std::nullopt;
        lines.append(line);
    }
    return lines.join(u' ');
}

} // namespace quorvik
