#include "settings/SettingsFile.h"

#include "model/Model.h"
#include "settings/SettingsTables.h"

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
void TakeRow(const ParamRecord &row, int number, bool online, ParamRecord &record)
{
    if (online && number == Param::MotorCurrent) {
        record.Value = row.Value;
        return;
    }
    if (online && (number == Param::DriveModel || (record.Attributes & Attr::ReadOnly) > 0))
        return;
    record.Min = row.Min;
    record.Max = row.Max;
    record.Attributes = row.Attributes;
    record.Preset = row.Preset;
    // A command that was under way when the set was saved must not be given again by it.
    record.Value = Param::IsCommand(number) ? 0 : row.Value;
    record.Name = row.Name;
}

} // namespace

SettingsFile::SettingsFile(Model &model)
    : model_(model)
{
}

QString SettingsFile::LoadPresets(const QString &path)
{
    Database database;
    Recordset rows;
    QString notes;
    if (QString failure = ReadWhole(path, database, rows, notes); !failure.isEmpty())
        return failure;
    // Without the parameters that the logic itself knows nothing could run.
    if (rows.RecordCount() <= LastNeededParam)
        return QStringLiteral("\"%1\" holds %2 parameters; at least %3 are needed.")
            .arg(path)
            .arg(rows.RecordCount())
            .arg(LastNeededParam + 1);
    model_.PresetTable.Resize(rows.RecordCount() - 1);
    for (int i = 0; !rows.AtEnd(); rows.MoveNext(), ++i)
        model_.PresetTable[i] = RecordOf(rows);
    if (!notes.isNull())
        model_.Notes = notes;
    model_.ClearVirtualSettings();
    model_.FileLastParam = std::int16_t(model_.PresetTable.UpperBound());
    model_.FileName = QStringLiteral("unnamed");
    model_.UpdateTitle();
    return {};
}

QString SettingsFile::LoadSettings(const QString &path)
{
    Database database;
    Recordset rows;
    QString notes;
    if (QString failure = ReadWhole(path, database, rows, notes); !failure.isEmpty())
        return failure;

    const int last = rows.RecordCount() - 1;
    if (last > model_.ParamTable.UpperBound())
        model_.ParamTable.Resize(last);
    for (int i = 0; !rows.AtEnd(); rows.MoveNext(), ++i)
        TakeRow(RecordOf(rows), i, model_.PortOpen(), model_.ParamTable[i]);
    if (last > model_.FileLastParam)
        GrowPresets();
    if (!notes.isNull())
        model_.Notes = notes;

    // A file made before the virtual operator existed still opens.
    if (!ReadVirtualSettings(database, model_.VirtualSettings).isEmpty())
        model_.ClearVirtualSettings();
    Q_EMIT model_.VirtualSettingsLoaded();
    model_.HalfRead = false;
    model_.FileName = path;
    model_.MarkFile(false);
    return {};
}

void SettingsFile::GrowPresets()
{
    const int first = model_.PresetTable.UpperBound() + 1;
    model_.PresetTable.Resize(model_.ParamTable.UpperBound());
    for (int i = first; i <= model_.PresetTable.UpperBound(); ++i) {
        const ParamRecord &record = model_.ParamTable[i];
        ParamRecord &preset = model_.PresetTable[i];
        preset.Min = record.Min;
        preset.Max = record.Max;
        preset.Attributes = record.Attributes;
        preset.Preset = record.Preset;
        preset.Value = record.Preset;
        preset.Name = record.Name;
    }
    model_.FileLastParam = std::int16_t(model_.ParamTable.UpperBound());
    model_.LastParam = model_.FileLastParam;
}

QString SettingsFile::Save(const QString &path)
{
    const QString notes = model_.Notes.isEmpty() ? QStringLiteral(" ") : model_.Notes;
    QString failure =
        WriteSettingsDatabase(path, model_.ParamTable, model_.LastParam, notes, [this](Database &database) {
            return WriteVirtualSettings(database, model_.VirtualSettings);
        });
    // The blank that stands for no notes stays in the set that was saved.
    if (failure.isEmpty())
        model_.Notes = notes;
    return failure;
}

} // namespace quorvik
