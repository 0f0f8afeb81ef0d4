#pragma once

#include "platform/Asker.h"

#include <QStringList>
#include <optional>

namespace quorvik
{

class ParameterTable;

/** The items of a "Select Parameter" list: "number name" each, and which one is to be selected (-1 for none).
 */
struct ParamChoices {
    QStringList items;
    int selected = -1;
};

/** An entry as it was typed: its raw value, or the sentence that tells why it is none. */
struct TypedEntry {
    std::int32_t rawValue = 0;
    QString refusal = {};
};

/** The number before the first blank of such an item; raises RuntimeFailure where there is none. */
int ParamOfChoice(const QString &item);

/**
 * The checks that every way of changing a parameter by hand passes: is it a number, is it in range, does the
 * destination already belong to another input, is the drive stopped.
 */
class EntryRules
{
public:
    EntryRules(ParameterTable &table, Asker &asker);

    /** A click on a value box, or Enter in it. Acts on access classes 0 and 1 only. */
    void EditParameter(int accessClass, int p);

    /** Whether text is an acceptable entry for p; tells the user why not. */
    bool ValidateEntry(const QString &text, const QString &label, int p);

    /** An entry of the edit dialog for p, checked all but for a destination in use; tells nobody. */
    TypedEntry CheckEntry(int p, const QString &typed) const;
    /** The entry so many units of its last place further, within the limits; nothing where it is no number.
     */
    std::optional<QString> SteppedEntry(int p, const QString &typed, int units) const;

    /** The raw value of an entry for p; a failure names the parameter. */
    std::int32_t EntryToRawOf(int p, const QString &text) const;

    void ShowNumberMessage(const QString &label);
    /** @param plain leaves the drive model out of the sentence. Limits are raw. */
    void ShowRangeMessage(const QString &label, std::int32_t rawMin, std::int32_t rawMax,
                          std::int32_t attributes, bool plain);
    void ShowStopModeMessage();

    /** Another destination selector already at target, or 0. */
    int FindDestinationConflict(int p, int target) const;
    /** Asks whether such a selector, other, may lose its link to target. */
    bool ConfirmOverwrite(int other, int target);
    /** Asks whether to overwrite such a selector, and clears it on Yes. @return whether the caller may go on.
     */
    bool ResolveDestinationConflict(int p, int target);

    /** The parameters that p, a selector, can be pointed at. */
    ParamChoices FillParamCombo(int p) const;

private:
    TypedEntry ReadEntry(int p, const QString &typed) const;

    ParameterTable &table_;
    Asker &asker_;
};

} // namespace quorvik
