#include "SetFixture.h"

#include "platform/JetReader.h"

namespace quorvik::testing
{

namespace
{

QString RealFile(const char *name)
{
    return QStringLiteral(QUORVIK_JET_FILES "/") + QLatin1String(name) + QStringLiteral(".mdb");
}

/** A row of a table as one line. */
QString RowText(const JetTable &table, int row)
{
    QStringList texts;
    for (std::size_t column = 0; column < table.columns.size(); ++column) {
        const QVariant &value = table.values[std::size_t(row) * table.columns.size() + column];
        texts.append(value.isNull() ? QStringLiteral("-") : value.toString());
    }
    return texts.join(u' ');
}

void Flip(const QString &path, qint64 offset)
{
    QFile opened(path);
    ASSERT_TRUE(opened.open(QIODevice::ReadWrite) && opened.seek(offset));
    const QByteArray byte = opened.read(1);
    ASSERT_TRUE(opened.seek(offset) && opened.write(QByteArray(1, char(byte[0] ^ 1))) == 1);
}

} // namespace

using OlderFileTest = SetTest;

TEST_F(OlderFileTest, RealFilesOfTheFormatAreReadAsTheirMakersSay)
{
    struct Row {
        int number;
        const char *text;
    };
    const struct {
        const char *file;
        std::size_t tables;
        int rows; ///< of the first table
        std::vector<Row> some;
    } cases[] = {
        {"testV1997",
         4,
         2,
         {{0, "a b 0 0 0 0 29932 0 false"}, {1, "abcdefg hijklmnop 2 222 333333333 444.555 27293 3.5 true"}}},
        {"delTestV1997", 1, 2, {{0, "z y"}, {1, "v u"}}},
        {"delColTestV1997", 1, 2, {{0, "0 2 foo foo2"}, {1, "3 5 bar bar2"}}},
        {"overflowTestV1997",
         1,
         7,
         {{2, "- row3col3 - - - - - row3col9 -"},
          {4, "- row5col2 - - - - - - -"},
          {6, "row7col1 - - - - row7col7 - - -"}}},
        {"compIndexTestV1997", 1, 512, {{0, "19 abc def"}}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.file);
        std::vector<JetTable> tables;
        ASSERT_EQ(ReadJetFile(RealFile(each.file), tables), QString());
        ASSERT_EQ(tables.size(), each.tables);
        ASSERT_EQ(tables[0].rowCount, each.rows);
        for (const Row &row : each.some)
            EXPECT_EQ(RowText(tables[0], row.number), QLatin1String(row.text));
        // None of them is a settings file.
        EXPECT_TRUE(
            file.LoadSettings(RealFile(each.file)).contains(QStringLiteral("table \"Settings\" is missing")));
        EXPECT_EQ(document.FileName, QStringLiteral("unnamed"));
    }
}

TEST_F(OlderFileTest, WhatCannotBeReadIsRefusedWithItsReason)
{
    constexpr int version = 0x14;
    constexpr int codePage = 0x3C;
    constexpr int pageKey = 0x3E;
    constexpr int password = 0x42;
    const struct {
        const char *sentence;
        std::function<void(const QString &)> spoil;
    } cases[] = {
        {"later version", [&](const QString &path) { Flip(path, version); }},
        {"another code page", [&](const QString &path) { Flip(path, codePage); }},
        {"is encrypted", [&](const QString &path) { Flip(path, pageKey); }},
        {"by a password", [&](const QString &path) { Flip(path, password); }},
        {"is damaged", [](const QString &path) { QFile::resize(path, 4096); }},
        {"is damaged", [](const QString &path) { QFile::resize(path, 17 * 1024 * 1024); }},
        // The last data page, without which the rows are too few.
        {"is damaged", [](const QString &path) { QFile::resize(path, QFileInfo(path).size() - 2048); }},
    };
    QString path = Path("bad.Svx");
    for (const auto &[sentence, spoil] : cases) {
        SCOPED_TRACE(sentence);
        path += u'x';
        ASSERT_TRUE(QFile::copy(RealFile("delTestV1997"), path));
        spoil(path);
        const QString failure = file.LoadSettings(path);
        EXPECT_TRUE(failure.contains(QLatin1String(sentence)) && failure.endsWith(u'.'))
            << failure.toStdString();
    }
}

TEST_F(OlderFileTest, AReaderThatDoesNotEndOrTalksRubbishIsNotBelieved)
{
    const struct {
        const char *script;
        const char *reason;
        int waitMs = 10000;
    } cases[] = {
        {"exec sleep 60", "is damaged", 200},
        {"while :; do echo '{\"table\":\"a\",\"columns\":[]}'; done", "is damaged"},
        {"exec cat", "is damaged"},
        {"echo '{}'; kill -SEGV $$", "is damaged"},
        {"echo '{\"table\":\"a\",\"columns\":[]}'", "is damaged"},
        {"echo '[1]'; echo '{}'", "is damaged"},
        {"echo '{}'; exit 6", "does not let"},
        {nullptr, "cannot be started"},
    };
    const QString program = Path("reader");
    for (const auto &[script, reason, waitMs] : cases) {
        SCOPED_TRACE(script ? script : "no program");
        QFile::remove(program);
        if (script) {
            QFile written(program);
            ASSERT_TRUE(written.open(QIODevice::WriteOnly));
            written.write(QByteArray("#!/bin/sh\n") + script + '\n');
            written.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        }
        std::vector<JetTable> tables;
        const QString failure = ReadJetFile(RealFile("delTestV1997"), tables, {program, waitMs, 100000});
        EXPECT_TRUE(failure.contains(QLatin1String(reason))) << failure.toStdString();
    }
}

} // namespace quorvik::testing
