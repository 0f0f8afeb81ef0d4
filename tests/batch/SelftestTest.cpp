#include "batch/BatchFixture.h"

#include <QDir>

namespace quorvik
{

TEST_F(BatchTest, SelftestTriesAllOnADriveOfItsOwnAndLeavesNothing)
{
    const Ended good = Run({QStringLiteral("selftest"), QStringLiteral("--json"),
                            QStringLiteral("--drive-program"), QStringLiteral(QUORVIK_DRIVE_PROGRAM)});
    EXPECT_EQ(good.code, 0) << good.out.constData() << good.errors.constData();
    QStringList steps;
    for (const QJsonObject &row : good.Rows()) {
        EXPECT_TRUE(row.value(QStringLiteral("passed")).toBool());
        steps << row.value(QStringLiteral("step")).toString();
    }
    EXPECT_EQ(steps.join(u','),
              QStringLiteral("start,factory table,connect,read,write and verify,backup,restore,compare"));
    EXPECT_FALSE(QDir(DataFolder() + QStringLiteral("/backups")).exists()) << "the user's backups are others";

    const Ended bad = Run({QStringLiteral("selftest"), QStringLiteral("--json"),
                           QStringLiteral("--drive-program"), QStringLiteral("/bin/true")});
    EXPECT_EQ(bad.code, 1);
    ASSERT_EQ(bad.Rows().size(), 1);
    EXPECT_FALSE(bad.Rows().front().value(QStringLiteral("passed")).toBool(true));
}

/** The help is written by the parser, the completion is made of what is read back from it. */
TEST_F(BatchTest, CompletionOffersEveryVerbAndOption)
{
    QFile script(Path(QStringLiteral("completion")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(Run({QStringLiteral("completion"), QStringLiteral("bash")}).out);
    script.close();
    const auto offered = [&](const QStringList &words) {
        QProcess bash;
        bash.start(
            QStringLiteral("bash"),
            QStringList{QStringLiteral("-c"),
                        QStringLiteral(". \"$1\"; shift; COMP_WORDS=(quorvik-batch \"$@\"); "
                                       "COMP_CWORD=$#; _quorvik_batch; printf '%s\\n' \"${COMPREPLY[@]}\""),
                        QStringLiteral("-"), script.fileName()} +
                words);
        EXPECT_TRUE(bash.waitForFinished(WaitMs));
        EXPECT_EQ(bash.readAllStandardError(), QByteArray());
        return QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    };
    const QStringList ports = offered({QStringLiteral("info"), QStringLiteral("-p"), QStringLiteral("Com1")});
    EXPECT_TRUE(ports.contains(QStringLiteral("Com16"))) << qPrintable(ports.join(u' '));
    QStringList verbs = offered({QString()});
    EXPECT_GT(verbs.removeAll(QStringLiteral("--help")), 0);
    verbs.removeAll(QStringLiteral("--version"));
    EXPECT_FALSE(verbs.isEmpty());
    for (const QString &verb : verbs) {
        const QStringList options = offered({verb, QStringLiteral("-")});
        const QString help = QString::fromUtf8(Run({verb, QStringLiteral("--help")}).out);
        QStringList lines = help.section(QStringLiteral("Options:"), 1).split(u'\n');
        lines.removeIf([](const QString &line) { return !line.startsWith(QLatin1String("  -")); });
        EXPECT_FALSE(lines.isEmpty());
        for (const QString &line : lines)
            EXPECT_TRUE(options.contains(line.trimmed().section(u' ', 0, 0).remove(u',')))
                << qPrintable(verb + line);
    }
}

} // namespace quorvik
