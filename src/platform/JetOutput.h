#pragma once

#include <cstdint>

namespace quorvik
{

/**
 * What quorvik-jet, the program that reads files of the older format, and those who start it agree upon.
 *
 * It takes a file on its standard input and prints a line of JSON for each thing that it finds: for a table
 * an object with its name as "table" and its columns as "columns", a list of [name, type]; then for each of
 * its rows a list of values, in the order in which the rows were put in. A value is null, a truth value, a
 * number, a text, or {} for what has no such form. An empty object is the last line of a whole output. Types
 * are "bool", "byte", "integer" (16 bits), "long" (32 bits), "money", "single", "double", "date" (days since
 * 1899-12-30), "text" and "other".
 */
enum class JetExit : std::uint8_t {
    Done = 0,
    Damaged = 2,
    Password = 3,  ///< the file is protected by one
    Encrypted = 4, ///< its pages are
    CodePage = 5,  ///< its texts are not of code page 1252
    NoLimits = 6,  ///< the system does not let the program bind itself; the file was not touched
};

/** No more than these rows of a table, and no more tables, are printed. */
inline constexpr int JetMostRows = 32769;
inline constexpr int JetMostTables = 32;
inline constexpr int JetMostFileSize = 16 * 1024 * 1024;

} // namespace quorvik
