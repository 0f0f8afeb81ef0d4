#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

/** Ends the run: what could be measured would be worth nothing. */
[[noreturn]] inline void Fail(const QString &sentence)
{
    std::fprintf(stderr, "%s\n", qPrintable(sentence));
    std::exit(1);
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
