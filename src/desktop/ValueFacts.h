#pragma once

#include "model/ParamTable.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace quorvik
{

struct Desk;

/** What is known of a parameter beside the entry that is asked for: its value now, from the factory and in
 * the open settings file, and what may be entered. */
class ValueFacts
{
public:
    /** Reads the open settings file, where there is one; one that cannot be read is left out. */
    ValueFacts(const Desk &desk, int p);

    QString Block() const; ///< where the parameter stands; empty for nowhere
    /** "now 5.0 Sec (read 0.3 s ago), factory 5.0, in the file 7.5". */
    QString Values() const;
    /** The range, and whether it can be changed now. */
    QString Limits() const;

    std::int32_t FactoryValue() const;
    /** Nothing where no file tells one, and where the parameter is of another kind there. */
    std::optional<std::int32_t> FileValue() const;
    /** The options of a list that a drive of this model has. */
    bool HasOption(int option) const;

private:
    const ParamRecord &Record() const;
    bool IsOfSameKind(const ParamRecord &record) const;
    QString Text(std::int32_t rawValue, std::int32_t attributes, bool withUnit) const;

    const Desk &desk_;
    int param_;
    std::optional<ParamRecord> inFile_;
};

} // namespace quorvik
