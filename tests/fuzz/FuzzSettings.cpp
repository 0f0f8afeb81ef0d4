// The settings file's reader: bytes of any kind, a good file with bytes changed, and a good file with values
// of any kind where its own were.

#include "Fuzzing.h"

#include "model/Document.h"
#include "settings/SettingsFile.h"

#include <QCoreApplication>
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
    }

    QString Path() const { return folder.filePath(QStringLiteral("input.Svx")); }

    QTemporaryDir folder{QStringLiteral("/dev/shm/quorvik-fuzz")};
    QByteArray good;
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
    const int way = bytes.Next() % 3;
    QByteArray content = way == 0 ? bytes.Rest() : bench.good;
    while (way == 1 && !bytes.AtEnd()) {
        const int at = bytes.Next16() % int(content.size());
        content[at] = char(bytes.Next());
    }
    Write(path, content);
    if (way == 2)
        ChangeValues(path, bytes);

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

    // What was taken can be saved, and reads back as the same.
    Require(file.Save(path).isEmpty(), "what was read can be saved");
    ParameterTable again;
    Document saved{again};
    Require(SettingsFile(again, saved).LoadSettings(path).isEmpty(), "what was saved can be read");
    Require(saved.Notes == document.Notes && saved.VirtualSettings == document.VirtualSettings,
            "notes and slots come back");
    for (int i = 0; i <= table.LastParam; ++i)
        Require(again.Row(i).Value == table.Row(i).Value && again.Row(i).Name == table.Row(i).Name,
                "records come back");
    return 0;
}
