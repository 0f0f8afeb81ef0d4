#include "platform/PortLock.h"
#include "platform/Ports.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvik::testing
{

TEST(PortLockTest, OnlyAProcessKnownToBeGoneIsGone)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    const QString here = QSysInfo::machineHostName();
    const std::tuple<pid_t, QString, bool> cases[] = {
        {child, here, true}, {::getpid(), here, false}, {1, here, false}, {child, here + u'x', false}};
    const QString name = QStringLiteral("quorvik-test-%1").arg(::getpid());
    QFile lock(QStringLiteral("/tmp/LCK..") + name);
    for (const auto &[process, host, isGone] : cases) {
        ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
        lock.write(QStringLiteral("%1\nterminal\n%2\n").arg(process).arg(host).toUtf8());
        lock.close();
        const std::optional<PortHolder> holder = HolderOfPort(QStringLiteral("/dev/") + name);
        ASSERT_TRUE(holder.has_value());
        EXPECT_EQ(holder->process, process);
        EXPECT_EQ(holder->program, QStringLiteral("terminal"));
        EXPECT_EQ(holder->isGone, isGone) << process;
    }
    ASSERT_TRUE(lock.resize(0));
    EXPECT_FALSE(HolderOfPort(QStringLiteral("/dev/") + name).has_value()) << "an empty lock names nobody";
    lock.remove();
}

TEST(PortsTest, TheSimulatedDriveIsPluggedInWhileItsLinkIsThere)
{
    const QTemporaryDir cache;
    const QByteArray before = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.path()));
    const QString link = Ports::SimulatedDriveLink();
    SettingsStore settings(cache.filePath(QStringLiteral("settings.ini")));
    const Ports ports(settings);
    EXPECT_EQ(ports.PluggedIn(link), QStringLiteral("Nothing is plugged in there."));
    ASSERT_TRUE(QDir(cache.path()).mkpath(QStringLiteral("quorvik")));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/null"), link));
    EXPECT_EQ(ports.PluggedIn(link), QStringLiteral("Simulated drive"));
    qputenv("XDG_CACHE_HOME", before);
}

} // namespace quorvik::testing
