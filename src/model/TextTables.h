#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <cstdint>
#include <span>

namespace quorvik
{

/** What the values of one type are and how they are shown. */
struct ValueType {
    enum class Form : std::uint8_t { Parameter, Number, Unit, List, Hexadecimal, Model };

    const char *kind = ""; ///< its word in the source of the factory table; empty for one that is not used
    Form form = Form::Number;
    const char *unit = "";
    std::array<const char *, 4> texts = {}; ///< of a list its values; of a unit its full name
    const char *prompt = "Enter New Value"; ///< the title of the dialog that asks for one
};

/** The types by type code, 0 to 24. */
std::span<const ValueType> ValueTypes();
/** @param typeCode 0 to 31; what lies beyond the table is a number. */
const ValueType &TypeOf(int typeCode);

inline constexpr std::int32_t LastDriveState = 8;

/**
 * The fixed text tables, each zero-based. An index outside a table raises RuntimeFailure.
 */
QString ModelText(std::int32_t code);       ///< 0 to 32, the model number by model code
QString DriveStateText(std::int32_t state); ///< 0 to LastDriveState, the meanings of parameter 422
QString FaultText(std::int32_t fault);      ///< 0 to 9
QString DayText(std::int32_t day);          ///< 0 to 7
QString AccessText(std::int32_t access);    ///< 0 to 5
QString DriveTypeText(std::int32_t type);   ///< 0 to 1

/** Rated armature current in amperes by rating code, 0 to 10. */
std::int16_t RatedAmps(std::int32_t ratingCode);

/**
 * The text of one value of a list type, or for value 0 of a unit type the unit's full name.
 * @param value 0 to 3.
 * @param typeCode 0 to 24.
 * Unset cells are empty.
 */
QString EnumText(std::int32_t value, std::int32_t typeCode);

/** How many values EnumText() has in a column, walking from 0 up to the first empty cell: 0 to 4. */
int EnumCount(std::int32_t typeCode);

/** All texts that a value of the type can show: of a list or of the drive models; empty for numbers. */
QStringList TextsOf(int typeCode);

} // namespace quorvik
