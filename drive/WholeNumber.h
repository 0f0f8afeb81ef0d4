#pragma once

#include <QString>
#include <optional>

namespace quorvik::drive
{

/** The whole number that a word of a command is, or nothing where it is none from low to high. */
template<class Number> std::optional<Number> WholeNumber(const QString &word, Number low, Number high)
{
    bool isWhole = false;
    const qlonglong number = word.toLongLong(&isWhole);
    if (!isWhole || number < low || number > high)
        return std::nullopt;
    return Number(number);
}

} // namespace quorvik::drive
