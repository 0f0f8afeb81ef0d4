#pragma once

#include <QProcess>
#include <optional>

namespace quorvik
{

/** The simulated drive as a program of its own, asked for what it holds. */
class DriveProcess
{
public:
    /** Starts it on a link path. @return whether its line is ready. */
    bool Start(const QString &program, const QString &link, const QString &presets);
    ~DriveProcess();

    /** One command line to the drive; it has taken effect when the next Print() has answered. */
    void Send(const QString &line) { process_.write(line.toUtf8() + '\n'); }
    /** What the drive itself prints for a parameter, or nothing where it gave no answer. */
    std::optional<QString> Print(int parameter);

private:
    QString ReadLine();

    QProcess process_;
};

} // namespace quorvik
