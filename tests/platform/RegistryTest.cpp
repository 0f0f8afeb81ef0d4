#include "platform/cRegistry.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik::testing
{

class RegistryTest : public ::testing::Test
{
protected:
    void Associate(const QString &program = QStringLiteral("/opt/quorvik/quorvik"))
    {
        cRegistry(folder.path(), {folder.filePath(QStringLiteral("system"))})
            .CreateEXEAssociation(program, QStringLiteral("Quorvik"), QStringLiteral("Svx Parameter Files"),
                                  QStringLiteral("Svx"));
    }

    QString Read(const QString &name) const
    {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QTemporaryDir folder;
    const QString entry = QStringLiteral("applications/quorvik.desktop");
    const QString type = QStringLiteral("mime/packages/quorvik.xml");
};

TEST_F(RegistryTest, TheFileTypeMatchesTheExtensionInAnyCaseOfLetters)
{
    Associate();
    const QString xml = Read(type);
    EXPECT_TRUE(xml.contains(QStringLiteral("Svx Parameter Files"))) << qPrintable(xml);
    const QRegularExpression glob(QStringLiteral("pattern=\"([^\"]*)\""));
    const auto pattern = QRegularExpression::fromWildcard(glob.match(xml).captured(1), Qt::CaseSensitive);
    for (const char *name : {"a.Svx", "a.svx", "A.SVX", "b.sVx"})
        EXPECT_TRUE(pattern.match(QString::fromLatin1(name)).hasMatch()) << name;
    EXPECT_FALSE(pattern.match(QStringLiteral("a.svg")).hasMatch());
}

TEST_F(RegistryTest, TheProgramsPathSurvivesTheEntrysQuoting)
{
    const std::pair<const char *, const char *> cases[] = {
        {"/home/u/my tools/quorvik", "Exec=\"/home/u/my tools/quorvik\" %f\n"},
        {"/home/100%/quorvik", "Exec=\"/home/100%%/quorvik\" %f\n"},
        {"/home/$u/quorvik", "Exec=\"/home/\\\\$u/quorvik\" %f\n"},
    };
    for (const auto &[path, exec] : cases) {
        Associate(QLatin1String(path));
        EXPECT_TRUE(Read(entry).contains(QLatin1String(exec))) << qPrintable(Read(entry));
    }
}

TEST_F(RegistryTest, WhatIsStoredAlreadyIsLeftAlone)
{
    Associate();
    const QDateTime longAgo = QDateTime(QDate(2001, 2, 3), QTime(4, 5));
    for (const QString &name : {entry, type}) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }
    Associate();
    EXPECT_EQ(QFileInfo(folder.filePath(entry)).lastModified(), longAgo);

    Associate(QStringLiteral("/usr/bin/quorvik"));
    EXPECT_NE(QFileInfo(folder.filePath(entry)).lastModified(), longAgo);
    EXPECT_EQ(QFileInfo(folder.filePath(type)).lastModified(), longAgo);
}

TEST_F(RegistryTest, WhatTheSystemHasIsNotWrittenForTheUser)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("system/applications")));
    QFile installed(folder.filePath(QStringLiteral("system/") + entry));
    ASSERT_TRUE(installed.open(QIODevice::WriteOnly));
    Associate();
    EXPECT_EQ(Read(entry), QString());
    EXPECT_NE(Read(type), QString()) << "each for itself";
}

TEST_F(RegistryTest, AFolderThatCannotBeWrittenStopsNothing)
{
    QFile inTheWay(folder.filePath(QStringLiteral("mime")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    Associate();
    EXPECT_FALSE(Read(entry).isEmpty());
}

} // namespace quorvik::testing
