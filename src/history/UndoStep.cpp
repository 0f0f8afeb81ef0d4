#include "history/UndoStep.h"

#include "model/Conversions.h"
#include "model/ShownText.h"

#include <algorithm>

namespace quorvik
{

namespace
{

/** What somebody enters at once in a window. */
constexpr std::size_t MostEntries = 4;

/** "5.0 to 7.5 Sec": the unit once where both have the same. */
QString FromTo(const ParamRecord &before, const ParamRecord &after)
{
    QString from = ShownText(before.Value, before.Attributes);
    const QString to = ShownText(after.Value, after.Attributes);
    const QString unit = UnitText(before.Attributes);
    const QString number = NumberText(before.Value, before.Attributes);
    if (!unit.isEmpty() && unit == UnitText(after.Attributes) && from.startsWith(number))
        from = number;
    return QStringLiteral("%1 to %2").arg(from, to);
}

} // namespace

TableShape TableShape::Of(const ParameterTable &table)
{
    return {.upperBound = table.UpperBound(),
            .lastParam = table.LastParam,
            .fileLastParam = table.FileLastParam,
            .editParamNumber = table.EditParamNumber,
            .writePending = table.WritePending,
            .presetsUpperBound = table.PresetTable.UpperBound()};
}

DocumentState DocumentState::Of(const Document &document)
{
    return {document.FileName, document.Notes, document.VirtualSettings, document.HalfRead};
}

bool IsSetting(int p, const ParamRecord &record)
{
    constexpr int commands[] = {Param::Run, Param::Stop, Param::Jog, Param::FaultReset};
    return (record.Attributes & Attr::ReadOnly) == 0 && !Param::ClearsItself(p) && !Param::IsClock(p) &&
           std::ranges::find(commands, p) == std::end(commands);
}

std::vector<int> UndoStep::Settings() const
{
    std::vector<int> params;
    for (const auto &[p, row] : rows)
        if (IsSetting(p, row.before) && IsSetting(p, row.after))
            params.push_back(p);
    return params;
}

bool UndoStep::HasEntries() const
{
    return std::ranges::any_of(
        rows, [](const auto &row) { return row.second.isEntered && IsSetting(row.first, row.second.after); });
}

bool UndoStep::IsLarge() const
{
    const auto entered = std::ranges::count_if(rows, [](const auto &row) { return row.second.isEntered; });
    return origin == Origin::Mentor || origin == Origin::Compare || origin == Origin::File ||
           std::size_t(entered) > MostEntries;
}

QString UndoStep::Text() const
{
    const auto entered = std::ranges::count_if(rows, [](const auto &row) { return row.second.isEntered; });
    if (!title.isEmpty())
        return entered < 2 || origin == Origin::File
                   ? title
                   : QStringLiteral("%1, %2 values").arg(title).arg(entered);
    auto row = rows.find(leading);
    if (row == rows.end())
        row = rows.begin();
    if (row == rows.end())
        return NameOf(origin);
    const QString text = QStringLiteral("(%1) %2 %3")
                             .arg(row->first)
                             .arg(row->second.after.Name, FromTo(row->second.before, row->second.after));
    return entered < 2 ? text : QStringLiteral("%1 and %2 more").arg(text).arg(entered - 1);
}

} // namespace quorvik
