#include "wizards/frame/WritePlan.h"

#include "model/Conversions.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

namespace
{

// A list type has no text for a value that is not in its list; the number still tells the user something.
QString ReadableText(std::int32_t rawValue, std::int32_t attributes)
{
    if (IsEnumerated(TypeCode(attributes)) && (rawValue < 0 || ValueText(rawValue, attributes).isEmpty()))
        return NumberText(rawValue, attributes);
    return ValueText(rawValue, attributes);
}

QString LinkText(const ParameterTable &table, std::int32_t target)
{
    const QString number = QString::number(target);
    const bool exists = target >= 0 && target <= table.UpperBound();
    return exists ? number + u' ' + table[target].Name : number;
}

bool IsSelector(std::int32_t attributes)
{
    constexpr int selectParameter = 0;
    return (attributes & Attr::Destination) != 0 || TypeCode(attributes) == selectParameter;
}

} // namespace

std::vector<PlannedLine> WritePlan::Lines(const ParameterTable &table) const
{
    std::vector<PlannedLine> lines;
    lines.reserve(writes.size());
    for (const PlannedWrite &write : writes) {
        const ParamRecord &record = table[write.param];
        PlannedLine line{write.param, record.Name, {}, {}};
        if (write.param != Param::SaveParameters && IsSelector(record.Attributes)) {
            line.oldText = LinkText(table, record.Value);
            line.newText = LinkText(table, write.rawValue);
        } else {
            line.oldText = ReadableText(record.Value, record.Attributes);
            line.newText = ReadableText(write.rawValue, write.attributes);
        }
        lines.push_back(line);
    }
    return lines;
}

void WritePlan::Commit(ParameterTable &table, Document &document) const
{
    for (const PlannedWrite &write : writes)
        table.SetParamValue(write.param, write.rawValue, write.modified, write.refresh);
    if (savesInDrive)
        document.DriveModified = false;
}

WriteRehearsal::WriteRehearsal(const ParameterTable &table)
    : scratch_(table)
{
}

void WriteRehearsal::Write(int p, std::int32_t rawValue, bool refresh)
{
    Add({p, rawValue, true, refresh, scratch_[p].Attributes});
}

void WriteRehearsal::WriteScaled(int p, std::int32_t rawValue, std::int32_t attributes)
{
    Add({p, rawValue, true, false, attributes});
}

void WriteRehearsal::SaveInDrive()
{
    Add({Param::SaveParameters, 1, false, false, scratch_[Param::SaveParameters].Attributes});
    plan_.savesInDrive = true;
}

void WriteRehearsal::Add(const PlannedWrite &write)
{
    scratch_.SetParamValue(write.param, write.rawValue, write.modified, write.refresh);
    plan_.writes.push_back(write);
}

std::int32_t ConvertEntry(const QString &entryName, const std::function<std::int32_t()> &conversion)
{
    try {
        return conversion();
    } catch (const RuntimeFailure &failure) {
        throw RuntimeFailure(entryName + QStringLiteral(": ") + failure.Sentence());
    }
}

} // namespace quorvik
