// The settings file's reader: bytes of any kind, a good file with bytes changed, and a good file with values
// of any kind where its own were; files of the older format likewise.

#include "Fuzzing.h"

#include "jet/JetSettings.h"
#include "model/Document.h"
#include "platform/DBEngine.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

using namespace quorvik;
using namespace quorvik::fuzzing;

namespace
{

constexpr int Rows = 12;

/** What all runs share; the files lie in memory where the system has such a place. */
struct Bench {
    Bench()
    {
        ParameterTable table;
        Document document{table};
        table.FileLastParam = table.LastParam = Rows - 1;
        table.Resize(Rows - 1);
        for (int i = 0; i < Rows; ++i)
            table.Row(i).Name = QStringLiteral("Name %1").arg(i);
        Require(SettingsFile(table, document).Save(Path()).isEmpty(), "the good file is written");
        QFile file(Path());
        Require(file.open(QIODevice::ReadOnly), "the good file is there");
        good = file.readAll();
        MakeOlder(table, document);
    }

    QString Path() const { return folder.filePath(QStringLiteral("input.Svx")); }
    QString SavedPath() const { return folder.filePath(QStringLiteral("saved.Svx")); }

    QTemporaryDir folder{QStringLiteral("/dev/shm/quorvik-fuzz")};
    QByteArray good;
    std::vector<jet::Table> olderTables;
    std::vector<QByteArray> older; ///< files of the older format, settings and others

private:
    void MakeOlder(const ParameterTable &table, const Document &document)
    {
        olderTables = jet::SettingsTables(table, document);
        older.push_back(jet::WriteDatabase(olderTables));
        std::vector<jet::Table> used = olderTables;
        used[jet::Settings].rows[3].place = jet::Place::Overflow;
        jet::AddDeletedRows(used[jet::Settings], 4);
        older.push_back(jet::WriteDatabase(used));
        const QDir others(QStringLiteral(QUORVIK_JET_FILES));
        for (const QString &name : others.entryList({QStringLiteral("*.mdb")})) {
            QFile file(others.filePath(name));
            Require(file.open(QIODevice::ReadOnly), "a kept file opens");
            older.push_back(file.readAll());
        }
    }
};

void Write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    Require(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "the input can be written");
    file.write(content);
}

QVariant AnyValue(Bytes &bytes)
{
    switch (bytes.Next() % 5) {
    case 0:
        return QVariant();
    case 1:
        return qlonglong(std::int16_t(bytes.Next16()));
    case 2: {
        const qlonglong high = bytes.Next16();
        return high * 65536 * bytes.Next16();
    }
    case 3:
        return bytes.Take(bytes.Next());
    default:
        return QString::fromUtf8(bytes.Take(bytes.Next()));
    }
}

void ChangeValues(const QString &path, Bytes &bytes)
{
    static const char *const columns[] = {
        "Settings SET Min",          "Settings SET Max",     "Settings SET Attributes",
        "Settings SET Preset",       "Settings SET Value",   "Settings SET Name",
        "Settings SET Tag",          "Properties SET Notes", "VirtualSettings SET Destination",
        "VirtualSettings SET Status"};
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("change"));
        database.setDatabaseName(path);
        Require(database.open(), "the good file opens");
        QSqlQuery query(database);
        query.exec(QStringLiteral("PRAGMA synchronous = OFF"));
        query.exec(QStringLiteral("BEGIN"));
        while (!bytes.AtEnd()) {
            const auto column = QLatin1String(columns[bytes.Next() % std::size(columns)]);
            query.prepare(QStringLiteral("UPDATE %1 = ? WHERE rowid = ?").arg(column));
            query.addBindValue(AnyValue(bytes));
            query.addBindValue(1 + bytes.Next() % Rows);
            query.exec();
        }
        query.exec(QStringLiteral("COMMIT"));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("change"));
}

/** The tables of a good file of the older format with other values, places of rows and types of columns. */
QByteArray ChangedTables(std::vector<jet::Table> tables, Bytes &bytes)
{
    constexpr jet::Type types[] = {jet::Type::Byte,   jet::Type::Integer, jet::Type::Long,
                                   jet::Type::Double, jet::Type::Text,    jet::Type::LongBinary};
    while (!bytes.AtEnd()) {
        jet::Table &table = tables[std::size_t(bytes.Next()) % tables.size()];
        jet::Row &row = table.rows[std::size_t(bytes.Next()) % table.rows.size()];
        const std::size_t at = std::size_t(bytes.Next()) % row.values.size();
        row.values[at] = AnyValue(bytes);
        const int more = bytes.Next();
        if (more >= 0xF0)
            table.columns[at] = {table.columns[at].name, types[std::size_t(more) % std::size(types)], more};
        else if (more >= 0xC0)
            row.place = jet::Place(more % 3);
    }
    return jet::WriteDatabase(tables);
}

/** A file with bytes changed, mostly at the ends of its pages, where all that leads a reader lies. */
QByteArray ChangedPages(QByteArray content, Bytes &bytes)
{
    constexpr int pageSize = 2048;
    while (!bytes.AtEnd()) {
        const int page = bytes.Next() % int(content.size() / pageSize);
        const int where = bytes.Next16();
        const int at = where < 0x6000   ? where % 64
                       : where < 0xC000 ? pageSize - 1 - where % 256
                                        : where % pageSize;
        content[page * pageSize + at] = char(bytes.Next());
    }
    return content;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const Bench bench;
    Bytes bytes(data, size);
    const QString path = bench.Path();
    const int choice = bytes.Next();
    const bool isOlder = choice >= 0x80 && choice < 0xF0;
    const int way = isOlder ? 3 : choice % 3;
    QByteArray content = way == 0 ? bytes.Rest() : bench.good;
    while (way == 1 && !bytes.AtEnd()) {
        const int at = bytes.Next16() % int(content.size());
        content[at] = char(bytes.Next());
    }
    if (isOlder) {
        // The real files are no settings: most of the inputs are to be of those made here.
        const std::size_t files = bench.older.size();
        const auto which = std::size_t(choice) % (files + 6);
        content = which < files + 3 ? ChangedPages(bench.older[which < files ? which : which % 2], bytes)
                                    : ChangedTables(bench.olderTables, bytes);
    }
    Write(path, content);
    if (way == 2)
        ChangeValues(path, bytes);
    const bool isForeign = DBEngine::IsOlderFormat(path);
    const QString saved = isForeign ? bench.SavedPath() : path;

    ParameterTable table;
    Document document{table};
    document.Notes = QStringLiteral("before");
    document.FileModified = true;
    table.Resize(3);
    table.Row(0).Name = QStringLiteral("before");
    SettingsFile file(table, document);
    const QString failure = file.LoadSettings(path);
    if (!failure.isEmpty()) {
        Require(failure.endsWith(u'.') && failure.size() < 600, "a refusal is a sentence");
        Require(document.Notes == QStringLiteral("before") && document.FileModified &&
                    table.Row(0).Name == QStringLiteral("before"),
                "a refused file changes nothing");
        return 0;
    }
    Require(table.UpperBound() < 32768, "the table has a bound");
    Require(document.Notes.size() <= 255, "notes have a bound");
    for (int i = 0; i <= table.UpperBound(); ++i)
        Require(table.Row(i).Name.size() <= 40, "names have a bound");

    // What was taken can be saved, though never over a file of the older format, and reads back as the same.
    if (isForeign) {
        Require(!file.Save(path).isEmpty() && DBEngine::IsOlderFormat(path), "an older file stays");
        QFile::remove(saved);
    }
    Require(file.Save(saved).isEmpty(), "what was read can be saved");
    ParameterTable again;
    Document reread{again};
    Require(SettingsFile(again, reread).LoadSettings(saved).isEmpty(), "what was saved can be read");
    Require(reread.Notes == document.Notes && reread.VirtualSettings == document.VirtualSettings,
            "notes and slots come back");
    for (int i = 0; i <= table.LastParam; ++i)
        Require(again.Row(i).Value == table.Row(i).Value && again.Row(i).Name == table.Row(i).Name,
                "records come back");
    return 0;
}
