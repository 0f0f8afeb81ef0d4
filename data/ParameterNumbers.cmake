# Writes the header that gives each parameter's number its name, from the source of the factory table. It is written while
# the build is configured, so that nothing which only reads the sources has to build first.
set(source ${CMAKE_CURRENT_LIST_DIR}/presets.csv)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})

set(numbers "")
set(names "")
file(STRINGS ${source} lines)
list(POP_FRONT lines)
foreach(line IN LISTS lines)
    string(REGEX MATCH "^([0-9]+),([^,]+)," matched "${line}")
    set(number ${CMAKE_MATCH_1})
    set(name "${CMAKE_MATCH_2}")
    # "Analog In 1 0% Calibration" is AnalogIn1ZeroCalibration.
    string(REPLACE "100%" "Full" identifier "${name}")
    string(REPLACE "0%" "Zero" identifier "${identifier}")
    string(REPLACE "+" "Plus" identifier "${identifier}")
    string(REGEX MATCHALL "[A-Za-z0-9]+" words "${identifier}")
    set(identifier "")
    foreach(word IN LISTS words)
        string(SUBSTRING ${word} 0 1 first)
        string(SUBSTRING ${word} 1 -1 rest)
        string(TOUPPER ${first} first)
        string(APPEND identifier ${first}${rest})
    endforeach()
    string(APPEND numbers "inline constexpr int ${identifier} = ${number};\n")
    string(APPEND names "    \"${name}\",\n")
endforeach()

file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/model/ParameterNumbers.h @ONLY CONTENT
"// Written by data/ParameterNumbers.cmake from data/presets.csv.
#pragma once

namespace quorvik
{

/** The numbers of the drive's parameters; what a parameter has several of follows each other. */
namespace Param
{
@numbers@} // namespace Param

/** The parameters' names in the factory table, by number. */
inline constexpr const char *FactoryNames[] = {
@names@};

} // namespace quorvik
")
