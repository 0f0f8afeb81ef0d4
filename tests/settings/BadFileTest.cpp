#include "SetFixture.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <functional>
#include <sys/stat.h>

namespace quorvik::testing
{

namespace
{

/** Changes a saved file behind the program's back, by SQL statements with | between them. */
void Alter(const QString &path, const QString &statements)
{
    const QString name = QStringLiteral("alter");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(path);
        ASSERT_TRUE(database.open());
        for (const QString &statement : statements.split(u'|')) {
            QSqlQuery query(database);
            ASSERT_TRUE(query.exec(statement)) << query.lastError().text().toStdString();
        }
    }
    QSqlDatabase::removeDatabase(name);
}

void Patch(const QString &path, qint64 offset, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(offset);
    file.write(bytes);
}

/** A statement that leaves exactly so many rows. */
QString RowCount(int rows)
{
    return QStringLiteral(
               "DELETE FROM Settings|INSERT INTO Settings WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
               "SELECT i + 1 FROM n WHERE i < %1) SELECT 0,0,0,0,0,0,'' FROM n")
        .arg(rows);
}

} // namespace

using BadFileTest = SetTest;

TEST_F(BadFileTest, IsRefusedAsAWhole)
{
    QString path = Path("bad");
    const struct {
        const char *sentence;
        QString statements;
        std::function<void()> spoil = [] {};
    } cases[] = {
        {"Could not find file", {}, [&] { QFile::remove(path); }},
        {"not a settings file", {}, [&] { QFile::resize(path, 0); }},
        {"not a settings file", {}, [&] { Patch(path, 0, "\x89PNG\r\n\x1a\n"); }},
        {"malformed", {}, [&] { QFile::resize(path, QFileInfo(path).size() / 2); }},
        {"malformed", {}, [&] { Patch(path, 4096, QByteArray(12000, '\xff')); }},
        {"is not a file",
         {},
         [&] { EXPECT_TRUE(QFile::remove(path) && ::mkfifo(qPrintable(path), 0600) == 0); }},
        {"not a settings file", QStringLiteral("PRAGMA application_id = 7")},
        {"newer version", QStringLiteral("PRAGMA user_version = 2")},
        {"is damaged", QStringLiteral("PRAGMA user_version = 0")},
        {"is damaged", {}, [&] { Patch(path, 18, QByteArray("\2\2", 2)); }},
        {"is damaged", {}, [&] { QFile::resize(path, 17 * 1024 * 1024); }},
        {"table \"Settings\" is missing", QStringLiteral("DROP TABLE Settings")},
        {"no properties", QStringLiteral("DELETE FROM Properties")},
        {"column \"Tag\"", QStringLiteral("ALTER TABLE Settings DROP COLUMN Tag")},
        {"row 7 holds", QStringLiteral("UPDATE Settings SET Max = 2147483648 WHERE rowid = 8")},
        {"row 0 holds", QStringLiteral("UPDATE Settings SET Value = 1.5 WHERE rowid = 1")},
        {"row 0 holds", QStringLiteral("UPDATE Settings SET Attributes = NULL")},
        {"column \"Name\"", QStringLiteral("UPDATE Settings SET Name = printf('%41s', 'x')")},
        {"column \"Name\"", QStringLiteral("UPDATE Settings SET Name = x'4142'")},
        {"column \"Notes\"", QStringLiteral("UPDATE Properties SET Notes = printf('%256s', 'x')")},
        {"more than 32768 rows", RowCount(32769)},
        {"more than tables",
         QStringLiteral(
             "DROP TABLE Properties|CREATE VIEW Properties AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
             "SELECT i FROM n) SELECT '' AS Notes FROM n")},
        {"more than tables", QStringLiteral("CREATE TRIGGER t AFTER INSERT ON Settings BEGIN SELECT 1; END")},
        {"is missing",
         QStringLiteral(
             "DROP TABLE Properties|CREATE TABLE Properties (x, Notes AS (hex(zeroblob(100000000))))|INSERT "
             "INTO Properties (x) VALUES (1)")},
    };
    for (const auto &[sentence, statements, spoil] : cases) {
        SCOPED_TRACE(sentence + (' ' + statements.toStdString()));
        path += u'x';
        table.Row(0).Name = document.Notes = QStringLiteral("from the file");
        ASSERT_EQ(file.Save(path), QString());
        spoil();
        if (!statements.isEmpty())
            Alter(path, statements);

        table.Row(0).Name = document.Notes = QStringLiteral("before");
        document.FileModified = true;
        const QString failure = file.LoadSettings(path);
        EXPECT_TRUE(failure.contains(QLatin1String(sentence)) && failure.endsWith(u'.'))
            << failure.toStdString();
        EXPECT_EQ(table.Row(0).Name, QStringLiteral("before"));
        EXPECT_EQ(document.Notes, QStringLiteral("before"));
        EXPECT_EQ(document.FileName, QStringLiteral("unnamed"));
        EXPECT_TRUE(document.FileModified);
        EXPECT_EQ(file.LoadPresets(path), failure);
        EXPECT_EQ(table.FileLastParam, 433);
    }
}

using OddFileTest = SetTest;

TEST_F(OddFileTest, WhatIsNeverReadHasNoEffect)
{
    ASSERT_EQ(file.Save(Path("odd.Svx")), QString());
    Alter(Path("odd.Svx"), QStringLiteral("UPDATE Settings SET Tag = 'rubbish'|CREATE TABLE Extra (x)"));
    EXPECT_EQ(file.LoadSettings(Path("odd.Svx")), QString());
    Alter(Path("odd.Svx"), RowCount(32768));
    EXPECT_EQ(file.LoadSettings(Path("odd.Svx")), QString());
    EXPECT_EQ(table.LastParam, 32767) << "the most rows possible";
}

TEST_F(OddFileTest, VirtualOperatorThatCannotBeReadIsEmptied)
{
    for (const char *statement :
         {"DROP TABLE VirtualSettings", "DELETE FROM VirtualSettings WHERE rowid = 12",
          "UPDATE VirtualSettings SET Destination = 40000 WHERE rowid = 12",
          "ALTER TABLE VirtualSettings DROP COLUMN Status"}) {
        SCOPED_TRACE(statement);
        document.VirtualSettings[0] = {217, 1, 2, 3};
        ASSERT_EQ(file.Save(Path("odd.Svx")), QString());
        Alter(Path("odd.Svx"), QString::fromUtf8(statement));
        EXPECT_EQ(file.LoadSettings(Path("odd.Svx")), QString());
        EXPECT_EQ(document.VirtualSettings[0], VirtualSetting());
    }
}

TEST_F(OddFileTest, ReadingLeavesTheFolderAlone)
{
    ASSERT_EQ(file.Save(Path("a.Svx")), QString());
    EXPECT_FALSE(file.LoadSettings(Path("none.Svx")).isEmpty());
    EXPECT_EQ(file.LoadSettings(Path("a.Svx")), QString());
    EXPECT_EQ(Entries(), QStringList(QStringLiteral("a.Svx")));
    EXPECT_TRUE(QSqlDatabase::connectionNames().isEmpty()) << "no connection outlives its operation";
}

} // namespace quorvik::testing
