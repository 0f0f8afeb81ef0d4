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

struct BadFile {
    const char *title;
    std::function<void(const QString &path)> spoil;
    const char *sentence;
};

BadFile Altered(const char *title, const QString &statements, const char *sentence)
{
    return {title, [statements](const QString &path) { Alter(path, statements); }, sentence};
}

BadFile Altered(const char *title, const char *statements, const char *sentence)
{
    return Altered(title, QString::fromUtf8(statements), sentence);
}

const std::vector<BadFile> &BadFiles()
{
    static const std::vector<BadFile> files = {
        {"missing", [](const QString &path) { QFile::remove(path); }, "Could not find file"},
        {"empty", [](const QString &path) { QFile::resize(path, 0); }, "not a settings file"},
        {"picture", [](const QString &path) { Patch(path, 0, "\x89PNG\r\n\x1a\n"); }, "not a settings file"},
        {"header alone", [](const QString &path) { QFile::resize(path, 100); }, "malformed"},
        {"cut short", [](const QString &path) { QFile::resize(path, QFileInfo(path).size() / 2); },
         "malformed"},
        {"overwritten pages", [](const QString &path) { Patch(path, 4096, QByteArray(12000, '\xff')); },
         "malformed"},
        {"folder",
         [](const QString &path) {
             QFile::remove(path);
             QDir().mkpath(path);
         },
         "is not a file"},
        {"pipe",
         [](const QString &path) {
             QFile::remove(path);
             ::mkfifo(path.toLocal8Bit().constData(), 0600);
         },
         "is not a file"},
        Altered("somebody else's", "PRAGMA application_id = 7", "not a settings file"),
        Altered("newer version", "PRAGMA user_version = 2", "newer version"),
        Altered("no version", "PRAGMA user_version = 0", "is damaged"),
        {"needs a second file", [](const QString &path) { Patch(path, 18, QByteArray("\2\2", 2)); },
         "is damaged"},
        {"huge", [](const QString &path) { QFile::resize(path, 17 * 1024 * 1024); }, "is damaged"},
        Altered("no Settings", "DROP TABLE Settings", "table \"Settings\" is missing"),
        Altered("no Properties", "DROP TABLE Properties", "table \"Properties\" is missing"),
        Altered("no properties row", "DELETE FROM Properties", "no properties"),
        Altered("no Tag", "ALTER TABLE Settings DROP COLUMN Tag", "column \"Tag\""),
        Altered("beyond 32 bits", "UPDATE Settings SET Max = 2147483648 WHERE rowid = 8", "row 7 holds"),
        Altered("real number", "UPDATE Settings SET Value = 1.5 WHERE rowid = 1", "row 0 holds"),
        Altered("text for number", "UPDATE Settings SET Min = 'x' WHERE rowid = 434", "row 433 holds"),
        Altered("Null for number", "UPDATE Settings SET Attributes = NULL", "row 0 holds"),
        Altered("long name", "UPDATE Settings SET Name = printf('%41s', 'x')", "column \"Name\""),
        Altered("enormous name", "UPDATE Settings SET Name = printf('%9000000s', 'x') WHERE rowid = 1",
                "column \"Name\""),
        Altered("blob for name", "UPDATE Settings SET Name = x'4142'", "column \"Name\""),
        Altered("long notes", "UPDATE Properties SET Notes = printf('%256s', 'x')", "column \"Notes\""),
        Altered("too many rows", RowCount(32769), "more than 32768 rows"),
        Altered("view", "ALTER TABLE Settings RENAME TO Other|CREATE VIEW Settings AS SELECT * FROM Other",
                "more than tables"),
        Altered("endless view",
                "DROP TABLE Properties|CREATE VIEW Properties AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                "SELECT i FROM n) SELECT '' AS Notes FROM n",
                "more than tables"),
        Altered("trigger", "CREATE TRIGGER t AFTER INSERT ON Settings BEGIN SELECT 1; END",
                "more than tables"),
        Altered(
            "computed column",
            "DROP TABLE Properties|CREATE TABLE Properties (x, Notes AS (hex(zeroblob(100000000))))|INSERT "
            "INTO Properties (x) VALUES (1)",
            "is missing"),
        Altered("index", "CREATE INDEX i ON Settings (Tag)", "more than tables"),
    };
    return files;
}

} // namespace

class BadFileTest : public SetTest, public ::testing::WithParamInterface<std::size_t>
{
};

TEST_P(BadFileTest, IsRefusedAsAWhole)
{
    const BadFile &bad = BadFiles()[GetParam()];
    SCOPED_TRACE(bad.title);
    model.ParamTable[0].Name = QStringLiteral("From the file");
    ASSERT_EQ(file.Save(Path("bad.Svx")), QString());
    bad.spoil(Path("bad.Svx"));

    model.ParamTable[0].Name = QStringLiteral("Before");
    model.Notes = QStringLiteral("before");
    model.FileModified = true;
    const QString failure = file.LoadSettings(Path("bad.Svx"));
    EXPECT_TRUE(failure.contains(QString::fromUtf8(bad.sentence))) << failure.toStdString();
    EXPECT_TRUE(failure.endsWith(u'.')) << failure.toStdString();
    EXPECT_EQ(model.ParamTable[0].Name, QStringLiteral("Before"));
    EXPECT_EQ(model.Notes, QStringLiteral("before"));
    EXPECT_EQ(model.FileName, QStringLiteral("unnamed"));
    EXPECT_TRUE(model.FileModified);
    EXPECT_EQ(file.LoadPresets(Path("bad.Svx")), failure);
    EXPECT_EQ(model.FileLastParam, 433);
}

INSTANTIATE_TEST_SUITE_P(SettingsFile, BadFileTest, ::testing::Range<std::size_t>(0, BadFiles().size()));

using OddFileTest = SetTest;

TEST_F(OddFileTest, WhatIsNeverReadHasNoEffect)
{
    ASSERT_EQ(file.Save(Path("odd.Svx")), QString());
    Alter(Path("odd.Svx"), QStringLiteral("UPDATE Settings SET Tag = 'rubbish'|CREATE TABLE Extra (x)"));
    EXPECT_EQ(file.LoadSettings(Path("odd.Svx")), QString());
    Alter(Path("odd.Svx"), RowCount(32768));
    EXPECT_EQ(file.LoadSettings(Path("odd.Svx")), QString());
    EXPECT_EQ(model.LastParam, 32767) << "the most rows possible";
}

TEST_F(OddFileTest, VirtualOperatorThatCannotBeReadIsEmptied)
{
    for (const char *statement :
         {"DROP TABLE VirtualSettings", "DELETE FROM VirtualSettings WHERE rowid = 12",
          "UPDATE VirtualSettings SET Destination = 40000 WHERE rowid = 12",
          "ALTER TABLE VirtualSettings DROP COLUMN Status"}) {
        SCOPED_TRACE(statement);
        model.VirtualSettings[0] = {217, 1, 2, 3};
        ASSERT_EQ(file.Save(Path("odd.Svx")), QString());
        Alter(Path("odd.Svx"), QString::fromUtf8(statement));
        EXPECT_EQ(file.LoadSettings(Path("odd.Svx")), QString());
        EXPECT_EQ(model.VirtualSettings[0], VirtualSetting());
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
