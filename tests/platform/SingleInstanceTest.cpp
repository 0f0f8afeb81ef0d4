#include "platform/SingleInstance.h"

#include <QFile>
#include <QProcess>
#include <QSysInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik
{

namespace
{

/** A lock file as a process with that number leaves it behind. */
void LeaveLock(const QString &path, qint64 process)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::number(process) + "\nplatform_tests\n" + QSysInfo::machineHostName().toUtf8() +
               "\n" + QSysInfo::machineUniqueId() + "\n" + QSysInfo::bootUniqueId() + "\n");
}

} // namespace

TEST(SingleInstance, LetsOneRunUntilItGoes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("not/there/yet/Quorvik.lock"));
    SingleInstance second(path);
    {
        SingleInstance first(path);
        EXPECT_TRUE(first.Acquire());
        EXPECT_FALSE(second.Acquire());
    }
    EXPECT_TRUE(second.Acquire());
}

TEST(SingleInstance, ALockLeftByACrashDoesNotCount)
{
    QProcess gone;
    gone.start(QStringLiteral("true"), QStringList());
    ASSERT_TRUE(gone.waitForStarted());
    const qint64 number = gone.processId();
    ASSERT_TRUE(gone.waitForFinished());

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Quorvik.lock"));
    LeaveLock(path, number);
    EXPECT_TRUE(SingleInstance(path).Acquire());
}

} // namespace quorvik
