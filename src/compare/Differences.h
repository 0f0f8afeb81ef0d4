#pragma once

#include "compare/ParameterSet.h"

#include <QStringList>
#include <array>
#include <optional>
#include <span>

namespace quorvik
{

/** What a parameter is to whoever compares sets, in the order in which they matter. */
enum class RowKind : std::uint8_t { Setting, Model, Clock, Command, Status };
inline constexpr int RowKinds = 5;
inline constexpr int MostSets = 3;

/** @param attributes of the parameter p. */
RowKind KindOf(int p, std::int32_t attributes);

/** "setting", "model" and so on. */
QString KindText(RowKind kind);

/** One side's value of a row. */
struct SetValue {
    std::optional<std::int32_t> raw; ///< nothing where it is not known
    QString text;                    ///< with its unit, by the set's own attributes; or why there is none
    bool isChanged = false;          ///< from the factory value
};

/** One parameter in two or three sets. */
struct DifferenceRow {
    int param = 0;
    QString name;
    QString block;
    RowKind kind = RowKind::Setting;
    int drivenBy = 0;  ///< the destination selector whose input sets it in one of the sets, or 0
    int sideCount = 0; ///< of the arrays below
    std::array<SetValue, MostSets> sides;
    /** How far a side is from the first one: "+5.00 %"; empty for the first, for no numbers, and where the
     * sets show them in different units. */
    std::array<QString, MostSets> differences;
    std::array<std::optional<std::int32_t>, MostSets> rawDifferences; ///< the same, to sort by
    bool differs = false;      ///< two raw values that are known are not the same
    bool isIncomplete = false; ///< a side's value is not known, so nobody can say that it is the same

    bool IsChanged() const; ///< one side's value is not the factory value
};

/**
 * The rows of all parameters that one of the sets has, by number.
 * @param sets two or three. A set without any row was not read.
 * @param blocks by number, the block that shows a parameter; may be shorter.
 */
std::vector<DifferenceRow> Compare(std::span<const ParameterSet *const> sets, const QStringList &blocks = {});

/** What makes sets hard to compare, a sentence each: other models, firmware, table lengths. Sets that were
 * not read are left out. */
QStringList Mismatches(std::span<const ParameterSet *const> sets);

/** "SVN100-000 (174 Amps)", or "not known". */
QString ModelLine(const ParameterSet &set);

/** Which rows are shown. */
struct DifferenceFilter {
    QString text = {}; ///< any part of number, name or block, capitals or not; empty for all
    std::array<bool, RowKinds> kinds = {true, true, false, false, false}; ///< by RowKind
    bool onlyDiffering = true; ///< those that are not known on one side stay, too
    bool onlyChanged = false;  ///< from the factory value, on any side
    bool onlyKnown = false;    ///< those of which every set has a value

    bool Shows(const DifferenceRow &row) const;
};

} // namespace quorvik
