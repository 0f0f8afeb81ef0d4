#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <sched.h>

/** Ends the run: what could be measured would be worth nothing. */
[[noreturn]] inline void Fail(const QString &sentence)
{
    std::fprintf(stderr, "%s\n", qPrintable(sentence));
    std::exit(1);
}

/**
 * Tool and drive share a core. Waking a core that has gone to sleep takes a virtual machine 20 to 100
 * microseconds, by the hour, at each turn of the line: that would measure the machine and not the program.
 */
inline void StayOnOneCore()
{
    cpu_set_t cores;
    CPU_ZERO(&cores);
    CPU_SET(std::size_t(::sched_getcpu()), &cores);
    if (::sched_setaffinity(0, sizeof cores, &cores) != 0)
        Fail(QStringLiteral("the system does not let the program keep to one core"));
}

/** The simulated drive in a process of its own. */
class Drive
{
public:
    explicit Drive(int baud)
    {
        process_.start(QStringLiteral(QUORVIK_DRIVE_PROGRAM),
                       {QStringLiteral("--link"), Link(), QStringLiteral("--presets"),
                        QStringLiteral(QUORVIK_PRESETS_FILE), QStringLiteral("--baud"), QString::number(baud),
                        QStringLiteral("--frozen")});
        if (!process_.waitForStarted() || ReadLine().isEmpty())
            Fail(QStringLiteral("the simulated drive does not start"));
    }
    ~Drive()
    {
        process_.kill();
        process_.waitForFinished();
    }

    QString Link() const { return folder_.filePath(QStringLiteral("drive")); }

    /** Bytes that passed the line so far, both ways. */
    double BytesOnTheWire()
    {
        process_.write("stats\n");
        double total = 0;
        for (int counters = 0; counters < 2;) {
            const QList<QByteArray> words = ReadLine().trimmed().split(' ');
            if (words.size() == 2 && (words.at(0) == "bytes-in" || words.at(0) == "bytes-out")) {
                total += words.at(1).toDouble();
                ++counters;
            }
        }
        return total;
    }

private:
    QByteArray ReadLine()
    {
        while (!process_.canReadLine())
            if (!process_.waitForReadyRead())
                Fail(QStringLiteral("the simulated drive fell silent"));
        return process_.readLine();
    }

    QTemporaryDir folder_;
    QProcess process_;
};
