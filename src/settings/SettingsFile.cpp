#include "settings/SettingsFile.h"

#include "model/ParameterTable.h"
#include "model/PathFunctions.h"
#include "settings/SettingsTables.h"

#include <tuple>

namespace quorvik
{

namespace
{

constexpr int LastNeededParam = Param::DriveState;

QString ReadVirtualSettings(Database &database, std::array<VirtualSetting, 12> &settings)
{
    QStringList columns;
    for (const Field &field : VirtualSettingsTable().Fields())
        columns.append(field.name);
    Recordset rows;
    if (QString failure = database.OpenSnapshot(VirtualSettingsTable(), columns, rows); !failure.isEmpty())
        return failure;
    for (VirtualSetting &setting : settings) {
        if (rows.AtEnd())
            return QStringLiteral("The file holds too few slots of the virtual operator.");
        setting.Destination = std::int16_t(rows.Value(columns[0]).toInt());
        setting.BiasOpen = rows.Value(columns[1]).toInt();
        setting.GainClosed = rows.Value(columns[2]).toInt();
        setting.Status = rows.Value(columns[3]).toInt();
        rows.MoveNext();
    }
    return {};
}

QString WriteVirtualSettings(Database &database, const std::array<VirtualSetting, 12> &settings)
{
    QString failure = database.AppendTableDef(VirtualSettingsTable());
    Recordset rows;
    if (failure.isEmpty())
        failure = database.OpenForAppend(VirtualSettingsTable(), rows);
    for (const VirtualSetting &setting : settings) {
        if (!failure.isEmpty())
            return failure;
        rows.AddNew();
        rows.SetValue(QStringLiteral("Destination"), int(setting.Destination));
        rows.SetValue(QStringLiteral("BiasOpen"), setting.BiasOpen);
        rows.SetValue(QStringLiteral("GainClosed"), setting.GainClosed);
        rows.SetValue(QStringLiteral("Status"), setting.Status);
        failure = rows.Update();
    }
    return failure;
}

/** All that a file holds of a set, read and checked as a whole before anything of it counts. */
QString ReadWhole(const QString &path, Database &database, Recordset &rows, QString &notes)
{
    if (QString failure = DBEngine::OpenDatabase(path, database); !failure.isEmpty())
        return failure;
    if (QString failure = OpenSettingsTable(database, rows); !failure.isEmpty())
        return failure;
    return ReadNotes(database, notes);
}

/** Takes a row of a file into the table; on line the drive's own parameters stay what the drive says. */
void TakeRow(const ParamRecord &row, int number, ParameterTable &table)
{
    const bool online = table.PortOpen();
    ParamRecord &record = table.Row(number);
    if (online && number == Param::MotorCurrent) {
        table.SetValue(number, row.Value, ChangeCause::File);
        return;
    }
    if (online && (number == Param::DriveModel || (record.Attributes & Attr::ReadOnly) > 0))
        return;
    record.Min = row.Min;
    record.Max = row.Max;
    record.Attributes = row.Attributes;
    record.Preset = row.Preset;
    // A command that was under way when the set was saved must not be given again by it.
    table.SetValue(number, Param::IsCommand(number) ? 0 : row.Value, ChangeCause::File);
    record.Name = row.Name;
}

} // namespace

bool StoredSet::IsSame(const StoredSet &other) const
{
    const auto content = [](const ParamRecord &record) {
        return std::tie(record.Min, record.Max, record.Attributes, record.Preset, record.Value, record.Name);
    };
    bool isSame = records.UpperBound() == other.records.UpperBound() && notes == other.notes &&
                  notes.isNull() == other.notes.isNull() && virtualSettings == other.virtualSettings;
    for (int i = 0; isSame && i <= records.UpperBound(); ++i)
        isSame = content(records[i]) == content(other.records[i]);
    return isSame;
}

QString ReadStoredSet(const QString &path, StoredSet &set)
{
    Database database;
    Recordset rows;
    if (QString failure = ReadWhole(path, database, rows, set.notes); !failure.isEmpty())
        return failure;
    set.records.Resize(rows.RecordCount() - 1);
    for (int i = 0; !rows.AtEnd(); rows.MoveNext(), ++i)
        set.records[i] = RecordOf(rows);
    if (!ReadVirtualSettings(database, set.virtualSettings).isEmpty())
        set.virtualSettings.fill({});
    return {};
}

QString WriteStoredSet(const QString &path, const StoredSet &set)
{
    return WriteSettingsDatabase(
        path, set.records, set.records.UpperBound(), set.notes,
        [&set](Database &database) { return WriteVirtualSettings(database, set.virtualSettings); });
}

SettingsFile::SettingsFile(ParameterTable &table, Document &document)
    : table_(table)
    , document_(document)
{
}

QString LoadFactoryTable(const QString &path, ParameterTable &table, QString *notes)
{
    Database database;
    Recordset rows;
    QString text;
    if (QString failure = ReadWhole(path, database, rows, text); !failure.isEmpty())
        return failure;
    // Without the parameters that the logic itself knows nothing could run.
    if (rows.RecordCount() <= LastNeededParam)
        return QStringLiteral("\"%1\" holds %2 parameters; at least %3 are needed.")
            .arg(path)
            .arg(rows.RecordCount())
            .arg(LastNeededParam + 1);
    table.PresetTable.Resize(rows.RecordCount() - 1);
    for (int i = 0; !rows.AtEnd(); rows.MoveNext(), ++i)
        table.PresetTable[i] = RecordOf(rows);
    table.FileLastParam = std::int16_t(table.PresetTable.UpperBound());
    if (notes && !text.isNull())
        *notes = text;
    return {};
}

QString SettingsFile::LoadPresets(const QString &path)
{
    if (QString failure = LoadFactoryTable(path, table_, &document_.Notes); !failure.isEmpty())
        return failure;
    document_.ClearVirtualSettings();
    document_.FileName = Document::Unnamed();
    document_.UpdateTitle();
    return {};
}

QString SettingsFile::LoadSettings(const QString &path)
{
    Database database;
    Recordset rows;
    QString notes;
    if (QString failure = ReadWhole(path, database, rows, notes); !failure.isEmpty())
        return failure;

    Intent intent(table_, Origin::File, QStringLiteral("Open %1").arg(FileTitle(path)));
    intent.Note(QStringLiteral("Opened %1").arg(path));
    const int last = rows.RecordCount() - 1;
    if (last > table_.UpperBound())
        table_.Resize(last);
    for (int i = 0; !rows.AtEnd(); rows.MoveNext(), ++i)
        TakeRow(RecordOf(rows), i, table_);
    if (last > table_.FileLastParam)
        GrowPresets();
    if (!notes.isNull())
        document_.Notes = notes;

    // A file made before the virtual operator existed still opens.
    if (!ReadVirtualSettings(database, document_.VirtualSettings).isEmpty())
        document_.ClearVirtualSettings();
    document_.AnnounceVirtualSettings();
    document_.HalfRead = false;
    document_.FileName = path;
    document_.MarkFile(false);
    return {};
}

void SettingsFile::GrowPresets()
{
    const int first = table_.PresetTable.UpperBound() + 1;
    table_.PresetTable.Resize(table_.UpperBound());
    for (int i = first; i <= table_.PresetTable.UpperBound(); ++i) {
        const ParamRecord &record = table_[i];
        ParamRecord &preset = table_.PresetTable[i];
        preset.Min = record.Min;
        preset.Max = record.Max;
        preset.Attributes = record.Attributes;
        preset.Preset = record.Preset;
        preset.Value = record.Preset;
        preset.Name = record.Name;
    }
    table_.FileLastParam = std::int16_t(table_.UpperBound());
    table_.LastParam = table_.FileLastParam;
}

QString SettingsFile::Save(const QString &path)
{
    const QString notes = document_.Notes.isEmpty() ? QStringLiteral(" ") : document_.Notes;
    QString failure =
        WriteSettingsDatabase(path, table_.Records(), table_.LastParam, notes, [this](Database &database) {
            return WriteVirtualSettings(database, document_.VirtualSettings);
        });
    // The blank that stands for no notes stays in the set that was saved.
    if (failure.isEmpty())
        document_.Notes = notes;
    return failure;
}

} // namespace quorvik
