#include "jet/JetSettings.h"

#include "model/Document.h"

#include <QFile>

namespace quorvik::jet
{

std::vector<Table> SettingsTables(const ParameterTable &table, const Document &document)
{
    Table settings{"Settings",
                   {{"Tag", Type::Integer},
                    {"Min"},
                    {"Max"},
                    {"Attributes"},
                    {"Preset"},
                    {"Value"},
                    {"Name", Type::Text, 40}},
                   {}};
    for (int i = 0; i <= table.LastParam; ++i) {
        const ParamRecord &record = table[i];
        settings.rows.push_back({{i, record.Min, record.Max, record.Attributes, record.Preset, record.Value,
                                  Code1252(record.Name)}});
    }
    Table properties{"Properties", {{"Notes", Type::Text, 255}}, {}};
    const QString &notes = document.Notes;
    properties.rows.push_back(
        {{notes.isNull() ? QVariant() : Code1252(notes.isEmpty() ? QStringLiteral(" ") : notes)}});
    Table slotsTable{
        "VirtualSettings", {{"Destination", Type::Integer}, {"BiasOpen"}, {"GainClosed"}, {"Status"}}, {}};
    for (const VirtualSetting &slot : document.VirtualSettings)
        slotsTable.rows.push_back({{slot.Destination, slot.BiasOpen, slot.GainClosed, slot.Status}});
    return {settings, properties, slotsTable};
}

void AddDeletedRows(Table &table, int every)
{
    std::vector<Row> rows;
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        if (i % std::size_t(every) == 0) {
            rows.push_back({table.rows[i].values, Place::Deleted});
            rows.back().values[0] = 9999;
        }
        rows.push_back(table.rows[i]);
    }
    table.rows = rows;
}

bool WriteFile(const QString &path, const std::vector<Table> &tables)
{
    const QByteArray bytes = WriteDatabase(tables);
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

} // namespace quorvik::jet
