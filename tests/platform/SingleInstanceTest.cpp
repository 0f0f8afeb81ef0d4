#include "platform/SingleInstance.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvik::testing
{

TEST(SingleInstanceTest, TheLockOfACrashDoesNotCount)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("not/there/yet/Quorvik.lock"));
    // It is left behind, with anything in it.
    const pid_t child = ::fork();
    if (child == 0) {
        SingleInstance crashed(path);
        ::_exit(crashed.Acquire() ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    QFile leftover(path);
    ASSERT_TRUE(leftover.open(QIODevice::WriteOnly) && leftover.write("no lock\n") > 0);
    leftover.close();
    EXPECT_TRUE(SingleInstance(path).Acquire());
}

} // namespace quorvik::testing
