#include "platform/SingleInstance.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvik::testing
{

TEST(SingleInstanceTest, LetsOneRunUntilItGoesOrCrashes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("not/there/yet/Quorvik.lock"));
    SingleInstance second(path);
    {
        SingleInstance first(path);
        EXPECT_TRUE(first.Acquire());
        EXPECT_FALSE(second.Acquire());
    }
    // The lock of a crash is left behind, with anything in it, and does not count.
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
    EXPECT_TRUE(second.Acquire());
}

} // namespace quorvik::testing
