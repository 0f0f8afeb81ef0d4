#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdint>
#include <map>

namespace quorvik
{

/**
 * The sarvex-drive program, started on a link path of its own in a temporary folder and ended with the
 * object.
 *
 * All routines wait without entering the test's event loop, for at most ten seconds, and report what does not
 * come as a test failure.
 */
class SimulatedDrive
{
public:
    /**
     * Starts the program and waits until its link is ready.
     * @param arguments beside the link and the factory table; unpaced, and with the live model standing
     * still, unless told otherwise here.
     */
    explicit SimulatedDrive(const QStringList &arguments = Unpaced());
    ~SimulatedDrive();

    /** Unpaced, and the machine behind it lives. */
    static QStringList Live() { return {QStringLiteral("--baud"), QStringLiteral("0")}; }
    /** Nothing moves but what the wire writes. */
    static QStringList Unpaced() { return Live() << QStringLiteral("--frozen"); }

    /** The device path for the tool's serial port; stays the same over Restart(). */
    QString LinkPath() const { return folder_.filePath(QStringLiteral("drive")); }
    bool IsRunning() const { return process_.state() == QProcess::Running; }

    /** One command line to the program, such as "fault bad-bcc,count=1"; returns once it has taken effect. */
    void Send(const QString &line);
    /** What the program printed in answer to a command. */
    QStringList Ask(const QString &line);

    std::map<int, std::int32_t> Table(); ///< all values by parameter number
    std::int32_t Value(int p);
    void Set(int p, std::int32_t rawValue); ///< the drive's own change, past all limits and access
    /** One counter of the "stats" command, such as "reads", "writes", "refusals"; -1 when it has none such.
     */
    std::int64_t Stat(const QString &name);

    void Kill();    ///< as if the drive were torn off: no last words, the link path dangles
    void Restart(); ///< Kill() where it still runs, and start again with the same arguments

private:
    void Start();
    QString ReadLine();

    QTemporaryDir folder_;
    QStringList arguments_;
    QProcess process_;
};

} // namespace quorvik
