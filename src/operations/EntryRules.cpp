#include "operations/EntryRules.h"

#include "model/Conversions.h"
#include "model/Model.h"
#include "model/TextTables.h"
#include "platform/Arithmetic.h"
#include "platform/Numbers.h"
#include "platform/RuntimeFailure.h"

namespace quorvik
{

int ParamOfChoice(const QString &item)
{
    return int(CLng(item.left(item.indexOf(u' '))));
}

EntryRules::EntryRules(Model &model, Asker &asker)
    : model_(model)
    , asker_(asker)
{
}

void EntryRules::EditParameter(int accessClass, int p)
{
    if (accessClass != Access::ReadWrite && accessClass != Access::IcrReadWrite)
        return;
    model_.EditParamNumber = ToInt16(p);
    // On line the acknowledgement of the write refreshes what hangs on the parameter.
    if (const std::optional<std::int32_t> rawValue = asker_.EditValue(p, model_.Value(p)))
        model_.SetParamValue(p, *rawValue, true, !model_.PortOpen());
}

bool EntryRules::ValidateEntry(const QString &text, const QString &label, int p)
{
    if (!IsNumeric(text)) {
        ShowNumberMessage(label);
        return false;
    }
    const ParamRecord &record = model_.ParamTable[p];
    const std::int32_t raw = EntryToRawOf(p, text);
    if (model_.IsInRange(QString::number(raw), p))
        return true;
    ShowRangeMessage(label, record.Min, record.Max, record.Attributes, false);
    return false;
}

std::int32_t EntryRules::EntryToRawOf(int p, const QString &text) const
{
    try {
        return EntryToRaw(text, model_.ParamTable[p].Attributes);
    } catch (const RuntimeFailure &failure) {
        throw failure.About(model_.FullName(p));
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
    const QString model =
        plain ? QString() : QStringLiteral(" for model ") + ModelText(model_.Value(Param::DriveModel));
    const QString text = QStringLiteral("The valid ") + label + QStringLiteral(" range") + model +
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
    for (int i = 1; i <= model_.LastParam; ++i)
        if (model_.AttrBit(Attr::Destination, i) && model_.Value(i) == target && i != p)
            return i;
    return 0;
}

bool EntryRules::ConfirmOverwrite(int other, int target)
{
    const QString text = model_.ParamTable[other].Name + QStringLiteral(" is already set to (") +
                         QString::number(target) + QStringLiteral(") ") + model_.ParamTable[target].Name +
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
    model_.SetParamValue(other, 0, true, true);
    return true;
}

ParamChoices EntryRules::FillParamCombo(int p) const
{
    ParamChoices choices;
    const bool isDestination = model_.AttrBit(Attr::Destination, p);
    for (int i = 0; i <= model_.LastParam; ++i) {
        // A destination must be writable, a source need not be.
        if (i == p || (isDestination && model_.AttrBit(Attr::ReadOnly, i)))
            continue;
        if (i == model_.Value(p))
            choices.selected = int(choices.items.size());
        choices.items.append(QString::number(i) + u' ' + model_.ParamTable[i].Name);
    }
    return choices;
}

} // namespace quorvik
