#include "platform/DBEngine.h"
#include "platform/AtomicFile.h"
#include "platform/RuntimeFailure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

TableDef MakeTable()
{
    TableDef table = Database::CreateTableDef(QStringLiteral("T"));
    table.Append(TableDef::CreateField(QStringLiteral("Short"), FieldType::dbInteger));
    table.Append(TableDef::CreateField(QStringLiteral("Long"), FieldType::dbLong));
    Field text = TableDef::CreateField(QStringLiteral("Text"), FieldType::dbText, 4);
    text.required = false;
    table.Append(text);
    return table;
}

} // namespace

class DBEngineTest : public ::testing::Test
{
protected:
    /** Appends one row. @return what Update() said. */
    QString Append(const QVariant &shortValue, const QVariant &longValue, const QVariant &text)
    {
        rows.AddNew();
        rows.SetValue(QStringLiteral("Short"), shortValue);
        rows.SetValue(QStringLiteral("Long"), longValue);
        rows.SetValue(QStringLiteral("Text"), text);
        return rows.Update();
    }

    void Create()
    {
        ASSERT_EQ(DBEngine::CreateDatabase(path, database), QString());
        ASSERT_EQ(database.AppendTableDef(MakeTable()), QString());
        ASSERT_EQ(database.OpenForAppend(MakeTable(), rows), QString());
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a.db"));
    Database database;
    Recordset rows;
};

TEST_F(DBEngineTest, RowsComeBackInTheOrderTheyWentIn)
{
    Create();
    EXPECT_EQ(Append(-32768, 2147483647, QStringLiteral("äöüß")), QString());
    EXPECT_EQ(Append(32767, -2147483647 - 1, QVariant()), QString());
    ASSERT_EQ(database.Close(), QString());

    Database reader;
    Recordset read;
    ASSERT_EQ(DBEngine::OpenDatabase(path, reader), QString());
    ASSERT_EQ(reader.OpenSnapshot(MakeTable(), {QStringLiteral("Long"), QStringLiteral("Text")}, read),
              QString());
    EXPECT_EQ(read.RecordCount(), 2);
    EXPECT_EQ(read.Value(QStringLiteral("Long")).toInt(), 2147483647);
    EXPECT_EQ(read.Value(QStringLiteral("Text")).toString(), QStringLiteral("äöüß"));
    read.MoveNext();
    EXPECT_TRUE(read.Value(QStringLiteral("Text")).isNull());
    EXPECT_THROW(read.Value(QStringLiteral("Short")), RuntimeFailure) << "not asked for";
    read.MoveNext();
    EXPECT_TRUE(read.AtEnd());
    EXPECT_THROW(read.Value(QStringLiteral("Long")), RuntimeFailure);
}

TEST_F(DBEngineTest, ValuesThatDoNotFitAreNotWritten)
{
    Create();
    const std::vector<std::tuple<QVariant, QVariant, QVariant, const char *>> table = {
        {32768, 0, QVariant(), "Short"},
        {-32769, 0, QVariant(), "Short"},
        {QVariant(), 0, QVariant(), "Short"},
        {0, 2147483648LL, QVariant(), "Long"},
        {0, 1.0, QVariant(), "Long"},
        {0, QStringLiteral("1"), QVariant(), "Long"},
        {0, 0, QStringLiteral("12345"), "Text"},
        {0, 0, 5, "Text"},
    };
    for (const auto &[shortValue, longValue, text, column] : table) {
        const QString failure = Append(shortValue, longValue, text);
        EXPECT_TRUE(failure.contains(QString::fromUtf8(column))) << failure.toStdString();
    }
    EXPECT_THROW(rows.SetValue(QStringLiteral("None"), 1), RuntimeFailure);
}

TEST_F(DBEngineTest, WhatWasNotClosedNeverWas)
{
    {
        Database unfinished;
        ASSERT_EQ(DBEngine::CreateDatabase(path, unfinished), QString());
        ASSERT_EQ(unfinished.AppendTableDef(MakeTable()), QString());
    }
    Database reader;
    Recordset read;
    QString failure = DBEngine::OpenDatabase(path, reader);
    if (failure.isEmpty())
        failure = reader.OpenSnapshot(MakeTable(), {}, read);
    EXPECT_FALSE(failure.isEmpty());
    EXPECT_EQ(QSqlDatabase::connectionNames().size(), 1) << "only the reader's";
}

class AtomicFileTest : public ::testing::Test
{
protected:
    void Write(const QString &file, const QByteArray &bytes)
    {
        QFile opened(file);
        ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
        opened.write(bytes);
    }
    QByteArray Read(const QString &file)
    {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray("unreadable");
    }
    QStringList Entries() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
    QString target = folder.filePath(QStringLiteral("t"));
};

TEST_F(AtomicFileTest, TargetChangesAtTheCommitOnly)
{
    Write(target, "old");
    {
        AtomicFile dropped(target);
        ASSERT_EQ(dropped.Create(), QString());
        Write(dropped.SiblingPath(), "new");
        EXPECT_EQ(Read(target), "old");
    }
    EXPECT_EQ(Read(target), "old");
    EXPECT_EQ(Entries(), QStringList(QStringLiteral("t")));

    AtomicFile file(target);
    ASSERT_EQ(file.Create(), QString());
    Write(file.SiblingPath(), "new");
    EXPECT_EQ(file.Commit(), QString());
    EXPECT_EQ(Read(target), "new");
    EXPECT_EQ(Entries(), QStringList(QStringLiteral("t")));
}

TEST_F(AtomicFileTest, TargetThatBecameAFolderStaysOne)
{
    AtomicFile file(target);
    ASSERT_EQ(file.Create(), QString());
    ASSERT_TRUE(QDir().mkpath(target));
    EXPECT_TRUE(file.Commit().contains(target));
    EXPECT_TRUE(QFileInfo(target).isDir());
}

TEST_F(AtomicFileTest, DevicesAreNeverReplaced)
{
    AtomicFile file(QStringLiteral("/dev/null"));
    EXPECT_TRUE(file.Create().contains(QStringLiteral("something other than a file")));
}

} // namespace quorvik::testing
