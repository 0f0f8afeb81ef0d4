#pragma once

#include "support/SimulatedDrive.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace quorvik
{

/** Runs the real quorvik-batch in a home of its own, against a simulated drive where the test wants one. */
class BatchTest : public testing::Test
{
protected:
    static constexpr int WaitMs = 60000;

    struct Ended {
        int code = -1;
        QByteArray out = {};
        QByteArray errors = {};

        /** The rows of --json; a line that is no object with a type fails the test. */
        QList<QJsonObject> Rows() const
        {
            QList<QJsonObject> rows;
            for (const QByteArray &line : out.split('\n')) {
                if (line.isEmpty())
                    continue;
                const QJsonDocument parsed = QJsonDocument::fromJson(line);
                EXPECT_TRUE(parsed.object().contains(QStringLiteral("type"))) << line.constData();
                rows << parsed.object();
            }
            return rows;
        }
    };

    /** The drive; started at the first use. */
    SimulatedDrive &Drive(const QStringList &arguments = SimulatedDrive::Unpaced())
    {
        if (!drive_)
            drive_ = std::make_unique<SimulatedDrive>(arguments);
        return *drive_;
    }
    /** The arguments with the drive's port. */
    QStringList AtDrive(const QStringList &arguments)
    {
        return arguments + QStringList{QStringLiteral("--port"), Drive().LinkPath()};
    }

    std::unique_ptr<QProcess> Start(const QStringList &arguments)
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home_.path());
        for (const char *folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            environment.insert(QString::fromLatin1(folder), home_.filePath(QString::fromLatin1(folder)));
        process->setProcessEnvironment(environment);
        process->setWorkingDirectory(home_.path());
        process->start(QStringLiteral(QUORVIK_BATCH_PROGRAM), arguments);
        EXPECT_TRUE(process->waitForStarted(WaitMs));
        return process;
    }
    static Ended End(QProcess &process)
    {
        if (process.state() != QProcess::NotRunning && !process.waitForFinished(WaitMs)) {
            ADD_FAILURE() << "quorvik-batch did not end.";
            process.kill();
            process.waitForFinished(WaitMs);
        }
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
    Ended Run(const QStringList &arguments) { return End(*Start(arguments)); }
    Ended RunAtDrive(const QStringList &arguments) { return Run(AtDrive(arguments)); }

    /** A path in the home, which is also the program's working folder. */
    QString Path(const QString &name) const { return home_.filePath(name); }
    QString DataFolder() const { return home_.filePath(QStringLiteral("XDG_DATA_HOME/quorvik")); }

private:
    QTemporaryDir home_;
    std::unique_ptr<SimulatedDrive> drive_;
};

} // namespace quorvik
