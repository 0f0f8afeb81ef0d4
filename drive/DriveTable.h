#pragma once

#include "drive/Parameters.h"
#include "model/ParameterTable.h"

#include <optional>
#include <vector>

namespace quorvik::drive
{

/**
 * The parameters inside the drive: working values, the copy in its permanent memory, and the rules by which
 * it takes or refuses what the wire writes.
 */
class DriveTable
{
public:
    /** @param table with its factory table read; becomes the drive's own and is set to that state. */
    explicit DriveTable(ParameterTable &table);

    int LastParam() const { return last_; }
    bool Has(int p) const { return p >= 0 && p <= last_; }
    const ParamRecord &Record(int p) const { return table_[p]; }

    std::int32_t Get(int p) const { return Has(p) ? table_.Value(p) : 0; }
    bool IsOn(int p) const { return Get(p) != 0; }
    /** The drive's own change of a value: neither access nor limits stand in its way. */
    void Put(int p, std::int32_t rawValue);
    /** The same, rounded and held within the parameter's limits. */
    void PutWithin(int p, double rawValue);
    /** Value with its decimals: 50 in tenths is 5.0. */
    double Scaled(int p) const;
    void PutScaledWithin(int p, double value);
    /** Value as a fraction of the parameter's highest one. */
    double Share(int p) const;
    void PutShare(int p, double share);
    /** The parameter that selector p points at; 0, which means none, also where it points nowhere. */
    int Selected(int p) const;

    State DriveState() const { return State(Get(Param::DriveState)); }
    bool IsStopped() const { return table_.DriveIsStopped(); }

    /** What a value's two bytes on the wire mean for parameter p. */
    std::int32_t FromWire(int p, std::uint16_t bits) const;
    /** A write by the wire. Limits of what hangs on a selector follow at once. @return whether it was taken.
     */
    bool Write(int p, std::uint16_t bits);

    void SetDriveModel(std::int32_t code); ///< 0 to 32 with a rating code up to 10
    void SaveToMemory();
    void LoadFromMemory(); ///< the clock and what is measured stay

private:
    bool IsKept(int p) const;

    ParameterTable &table_;
    int last_;
    std::vector<std::int32_t> memory_;
};

} // namespace quorvik::drive
