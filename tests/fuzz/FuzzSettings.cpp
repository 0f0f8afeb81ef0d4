// The settings file's reader: bytes of any kind, a good file with bytes changed, and a good file with values
// of any kind where its own were.

#include "Fuzzing.h"

#include "model/Model.h"
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
        Model model;
        model.FileLastParam = model.LastParam = Rows - 1;
        model.ParamTable.Resize(Rows - 1);
        for (int i = 0; i < Rows; ++i)
            model.ParamTable[i].Name = QStringLiteral("Name %1").arg(i);
        Require(SettingsFile(model).Save(Path()).isEmpty(), "the good file is written");
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

    Model model;
    model.Notes = QStringLiteral("before");
    model.FileModified = true;
    model.ParamTable.Resize(3);
    model.ParamTable[0].Name = QStringLiteral("before");
    SettingsFile file(model);
    const QString failure = file.LoadSettings(path);
    if (!failure.isEmpty()) {
        Require(failure.endsWith(u'.') && failure.size() < 600, "a refusal is a sentence");
        Require(model.Notes == QStringLiteral("before") && model.FileModified &&
                    model.ParamTable[0].Name == QStringLiteral("before"),
                "a refused file changes nothing");
        return 0;
    }
    Require(model.ParamTable.UpperBound() < 32768, "the table has a bound");
    Require(model.Notes.size() <= 255, "notes have a bound");
    for (int i = 0; i <= model.ParamTable.UpperBound(); ++i)
        Require(model.ParamTable[i].Name.size() <= 40, "names have a bound");

    // What was taken can be saved, and reads back as the same.
    Require(file.Save(path).isEmpty(), "what was read can be saved");
    Model again;
    Require(SettingsFile(again).LoadSettings(path).isEmpty(), "what was saved can be read");
    Require(again.Notes == model.Notes && again.VirtualSettings == model.VirtualSettings,
            "notes and slots come back");
    for (int i = 0; i <= model.LastParam; ++i)
        Require(again.ParamTable[i].Value == model.ParamTable[i].Value &&
                    again.ParamTable[i].Name == model.ParamTable[i].Name,
                "records come back");
    return 0;
}
