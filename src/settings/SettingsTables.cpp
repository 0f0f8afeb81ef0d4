#include "settings/SettingsTables.h"

#include "model/ParamTable.h"
#include "platform/AtomicFile.h"

#include <QFileInfo>

namespace quorvik
{

namespace
{

constexpr int NameSize = 40;

QString Tag()
{
    return QStringLiteral("Tag");
}

QString Name()
{
    return QStringLiteral("Name");
}

QString Notes()
{
    return QStringLiteral("Notes");
}

struct NumberColumn {
    QString name;
    std::int32_t ParamRecord::*member;
};

const std::vector<NumberColumn> &NumberColumns()
{
    static const std::vector<NumberColumn> columns = {
        {QStringLiteral("Min"), &ParamRecord::Min},
        {QStringLiteral("Max"), &ParamRecord::Max},
        {QStringLiteral("Attributes"), &ParamRecord::Attributes},
        {QStringLiteral("Preset"), &ParamRecord::Preset},
        {QStringLiteral("Value"), &ParamRecord::Value},
    };
    return columns;
}

TableDef MakeSettingsTable()
{
    TableDef table = Database::CreateTableDef(QStringLiteral("Settings"));
    table.Append(TableDef::CreateField(Tag(), FieldType::dbInteger));
    for (const NumberColumn &column : NumberColumns())
        table.Append(TableDef::CreateField(column.name, FieldType::dbLong));
    table.Append(TableDef::CreateField(Name(), FieldType::dbText, NameSize));
    return table;
}

TableDef MakePropertiesTable()
{
    TableDef table = Database::CreateTableDef(QStringLiteral("Properties"));
    Field notes = TableDef::CreateField(Notes(), FieldType::dbText, LongestNotes);
    notes.required = false;
    table.Append(notes);
    return table;
}

TableDef MakeVirtualSettingsTable()
{
    TableDef table = Database::CreateTableDef(QStringLiteral("VirtualSettings"));
    table.Append(TableDef::CreateField(QStringLiteral("Destination"), FieldType::dbInteger));
    for (const QString &name :
         {QStringLiteral("BiasOpen"), QStringLiteral("GainClosed"), QStringLiteral("Status")})
        table.Append(TableDef::CreateField(name, FieldType::dbLong));
    return table;
}

} // namespace

const TableDef &SettingsTable()
{
    static const TableDef table = MakeSettingsTable();
    return table;
}

const TableDef &PropertiesTable()
{
    static const TableDef table = MakePropertiesTable();
    return table;
}

const TableDef &VirtualSettingsTable()
{
    static const TableDef table = MakeVirtualSettingsTable();
    return table;
}

QString WriteSettingsTable(Database &database, const RecordArray &records, int lastParam)
{
    QString failure = database.AppendTableDef(SettingsTable());
    Recordset rows;
    if (failure.isEmpty())
        failure = database.OpenForAppend(SettingsTable(), rows);
    for (int i = 0; i <= lastParam && failure.isEmpty(); ++i) {
        const ParamRecord &record = records[i];
        rows.AddNew();
        rows.SetValue(Tag(), i);
        for (const NumberColumn &column : NumberColumns())
            rows.SetValue(column.name, record.*column.member);
        rows.SetValue(Name(), record.Name);
        failure = rows.Update();
    }
    return failure;
}

QString WritePropertiesTable(Database &database, const QString &notes)
{
    QString failure = database.AppendTableDef(PropertiesTable());
    Recordset rows;
    if (failure.isEmpty())
        failure = database.OpenForAppend(PropertiesTable(), rows);
    if (!failure.isEmpty())
        return failure;
    rows.AddNew();
    rows.SetValue(Notes(), notes.isNull() ? QVariant() : QVariant(notes));
    return rows.Update();
}

QString OlderFormatRefusal(const QString &path)
{
    if (!DBEngine::IsOlderFormat(path))
        return {};
    return QStringLiteral(
               "\"%1\" is a settings file of the older format and stays as it is. Choose another name.")
        .arg(QFileInfo(path).fileName());
}

QString WriteSettingsDatabase(const QString &path, const RecordArray &records, int lastParam,
                              const QString &notes, const std::function<QString(Database &)> &addTables)
{
    if (QString refusal = OlderFormatRefusal(path); !refusal.isEmpty())
        return refusal;
    AtomicFile file(path);
    if (QString failure = file.Create(); !failure.isEmpty())
        return failure;
    Database database;
    QString failure = DBEngine::CreateDatabase(file.SiblingPath(), database);
    if (failure.isEmpty())
        failure = WriteSettingsTable(database, records, lastParam);
    if (failure.isEmpty())
        failure = WritePropertiesTable(database, notes);
    if (failure.isEmpty() && addTables)
        failure = addTables(database);
    if (failure.isEmpty())
        failure = database.Close();
    return failure.isEmpty() ? file.Commit() : failure;
}

QString OpenSettingsTable(Database &database, Recordset &rows)
{
    QStringList columns = {Name()};
    for (const NumberColumn &column : NumberColumns())
        columns.append(column.name);
    return database.OpenSnapshot(SettingsTable(), columns, rows);
}

QString ReadNotes(Database &database, QString &notes)
{
    Recordset rows;
    if (QString failure = database.OpenSnapshot(PropertiesTable(), {Notes()}, rows); !failure.isEmpty())
        return failure;
    if (rows.AtEnd())
        return QStringLiteral("The file holds no properties.");
    const QVariant &value = rows.Value(Notes());
    notes = value.isNull() ? QString() : ShowableText(value.toString(), true);
    return {};
}

ParamRecord RecordOf(const Recordset &row)
{
    ParamRecord record;
    for (const NumberColumn &column : NumberColumns())
        record.*column.member = row.Value(column.name).toInt();
    record.Name = ShowableText(row.Value(Name()).toString(), false);
    return record;
}

QString ShowableText(QString text, bool keepLines)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (keepLines && (unit == u'\n' || unit == u'\r' || unit == u'\t'))
            continue;
        const bool isPair = unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const char32_t character = isPair ? QChar::surrogateToUcs4(unit, text.at(i + 1)) : unit.unicode();
        const qsizetype units = isPair ? 2 : 1;
        switch (QChar::category(character)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            text.replace(i, units, QString(units, u' '));
            break;
        default:
            break;
        }
        i += units - 1;
    }
    return text;
}

} // namespace quorvik
