#include "operations/EntryRules.h"

#include "model/Conversions.h"
#include "model/ParameterTable.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>

namespace quorvik
{

int ParamOfChoice(const QString &item)
{
    return int(CLng(item.left(item.indexOf(u' '))));
}

EntryRules::EntryRules(ParameterTable &table, Asker &asker)
    : table_(table)
    , asker_(asker)
{
}

void EntryRules::EditParameter(int accessClass, int p)
{
    if (accessClass != Access::ReadWrite && accessClass != Access::IcrReadWrite)
        return;
    // What the dialog does for the entry, as taking another input off the destination, belongs to it.
    const Intent intent(table_, Origin::EditDialog);
    table_.EditParamNumber = ToInt16(p);
    // On line the acknowledgement of the write refreshes what hangs on the parameter.
    if (const std::optional<std::int32_t> rawValue = asker_.EditValue(p, table_.Value(p)))
        table_.SetParamValue(p, *rawValue, true, !table_.PortOpen());
}

bool EntryRules::ValidateEntry(const QString &text, const QString &label, int p)
{
    if (!IsNumeric(text)) {
        ShowNumberMessage(label);
        return false;
    }
    const ParamRecord &record = table_[p];
    const std::int32_t raw = EntryToRawOf(p, text);
    if (table_.IsInRange(QString::number(raw), p))
        return true;
    ShowRangeMessage(label, record.Min, record.Max, record.Attributes, false);
    return false;
}

TypedEntry EntryRules::ReadEntry(int p, const QString &typed) const
{
    const std::optional<QString> number = PointForComma(typed);
    if (!number) {
        const QString entry = typed.trimmed();
        return {.refusal = QStringLiteral("\"%1\" may be %2 or %3: use a point or no comma.")
                               .arg(entry, QString(entry).replace(u',', u'.'), QString(entry).remove(u','))};
    }
    if (!IsNumeric(*number))
        return {.refusal = QStringLiteral("Must be a numeric value. Please Re-enter.")};
    try {
        return {.rawValue = EntryToRawOf(p, *number)};
    } catch (const RuntimeFailure &failure) {
        return {.refusal = failure.Sentence()};
    }
}

TypedEntry EntryRules::CheckEntry(int p, const QString &typed) const
{
    const ParamRecord &record = table_[p];
    TypedEntry entry = ReadEntry(p, typed);
    if (!entry.refusal.isEmpty() || table_.AttrBit(Attr::Destination, p))
        return entry;
    if (entry.rawValue < record.Min || entry.rawValue > record.Max)
        entry.refusal = QStringLiteral("Please enter a value between ") +
                        ValueText(record.Min, record.Attributes) + QStringLiteral(" and ") +
                        ValueText(record.Max, record.Attributes);
    return entry;
}

std::optional<QString> EntryRules::SteppedEntry(int p, const QString &typed, int units) const
{
    const ParamRecord &record = table_[p];
    const TypedEntry entry = ReadEntry(p, typed);
    if (!entry.refusal.isEmpty())
        return std::nullopt;
    const std::int64_t stepped = std::int64_t(entry.rawValue) + units;
    const auto rawValue = std::max<std::int64_t>(record.Min, std::min<std::int64_t>(record.Max, stepped));
    return NumberText(std::int32_t(rawValue), record.Attributes);
}

std::int32_t EntryRules::EntryToRawOf(int p, const QString &text) const
{
    try {
        return EntryToRaw(text, table_[p].Attributes);
    } catch (const RuntimeFailure &failure) {
        throw failure.About(table_.FullName(p));
    }
}

void EntryRules::ShowNumberMessage(const QString &label)
{
    asker_.MsgBox(QStringLiteral("Please enter a numerical value for the ") + label + u'.', MsgButtons::Ok,
                  MsgIcon::Exclamation, AppTitle() + QStringLiteral(" Mentor"));
}

void EntryRules::ShowRangeMessage(const QString &label, std::int32_t rawMin, std::int32_t rawMax,
                                  std::int32_t attributes, bool plain)
{
    const QString table =
        plain ? QString() : QStringLiteral(" for model ") + ModelText(table_.Value(Param::DriveModel));
    const QString text = QStringLiteral("The valid ") + label + QStringLiteral(" range") + table +
                         QStringLiteral(" is:\r\n  Min: ") + ValueText(rawMin, attributes) +
                         QStringLiteral("\r\n  Max: ") + ValueText(rawMax, attributes);
    asker_.MsgBox(text, MsgButtons::Ok, MsgIcon::Exclamation, AppTitle() + QStringLiteral(" Mentor"));
}

void EntryRules::ShowStopModeMessage()
{
    asker_.MsgBox(QStringLiteral("Drive must be in Stop mode to perform this command."), MsgButtons::Ok,
                  MsgIcon::Exclamation, AppTitle());
}

int EntryRules::FindDestinationConflict(int p, int target) const
{
    if (target == 0)
        return 0;
    for (int i = 1; i <= table_.LastParam; ++i)
        if (table_.AttrBit(Attr::Destination, i) && table_.Value(i) == target && i != p)
            return i;
    return 0;
}

bool EntryRules::ConfirmOverwrite(int other, int target)
{
    const QString text = table_[other].Name + QStringLiteral(" is already set to (") +
                         QString::number(target) + QStringLiteral(") ") + table_[target].Name +
                         QStringLiteral(".\r\nOverwrite this input?");
    return asker_.MsgBox(text, MsgButtons::YesNo, MsgIcon::None,
                         QStringLiteral("Overwrite Destination Conflict?")) == MsgAnswer::Yes;
}

bool EntryRules::ResolveDestinationConflict(int p, int target)
{
    const int other = FindDestinationConflict(p, target);
    if (other == 0)
        return true;
    if (!ConfirmOverwrite(other, target))
        return false;
    table_.SetParamValue(other, 0, true, true);
    return true;
}

ParamChoices EntryRules::FillParamCombo(int p) const
{
    ParamChoices choices;
    const bool isDestination = table_.AttrBit(Attr::Destination, p);
    for (int i = 0; i <= table_.LastParam; ++i) {
        // A destination must be writable, a source need not be.
        if (i == p || (isDestination && table_.AttrBit(Attr::ReadOnly, i)))
            continue;
        if (i == table_.Value(p))
            choices.selected = int(choices.items.size());
        choices.items.append(QString::number(i) + u' ' + table_[i].Name);
    }
    return choices;
}

} // namespace quorvik
