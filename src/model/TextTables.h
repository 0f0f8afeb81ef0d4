#pragma once

#include <QString>
#include <cstdint>

namespace quorvik
{

/**
 * The fixed text tables, each zero-based. An index outside a table raises RuntimeFailure.
 */
const QString &ModelText(std::int32_t code);       ///< 0 to 32, the model number by model code
const QString &DriveStateText(std::int32_t state); ///< 0 to 8, the meanings of parameter 422
const QString &FaultText(std::int32_t fault);      ///< 0 to 9
const QString &DayText(std::int32_t day);          ///< 0 to 7
const QString &AccessText(std::int32_t access);    ///< 0 to 5
const QString &DriveTypeText(std::int32_t type);   ///< 0 to 1

/** Rated armature current in amperes by rating code, 0 to 10. */
std::int16_t RatedAmps(std::int32_t ratingCode);

/**
 * The text of one value of a list type, or for value 0 of a unit type the unit's full name.
 * @param value 0 to 3.
 * @param typeCode 0 to 24.
 * Unset cells are empty.
 */
const QString &EnumText(std::int32_t value, std::int32_t typeCode);

/** How many values EnumText() has in a column, walking from 0 up to the first empty cell: 0 to 4. */
int EnumCount(std::int32_t typeCode);

} // namespace quorvik
