#include "drive/DriveTable.h"

#include "drive/DependentLimits.h"
#include "model/Conversions.h"

#include <algorithm>
#include <cmath>

namespace quorvik::drive
{

namespace
{

double Scale(std::int32_t attributes)
{
    static constexpr double Scales[] = {1.0, 10.0, 100.0, 1000.0};
    return Scales[DecimalsOf(attributes)];
}

} // namespace

DriveTable::DriveTable(ParameterTable &table)
    : table_(table)
{
    table_.ResetToDefaults();
    last_ = table_.LastParam;
    SaveToMemory();
}

void DriveTable::Put(int p, std::int32_t rawValue)
{
    if (Has(p))
        table_.SetValue(p, rawValue, ChangeCause::Emulated);
}

void DriveTable::PutWithin(int p, double rawValue)
{
    if (!Has(p) || std::isnan(rawValue))
        return;
    const ParamRecord &record = table_[p];
    const double low = std::min(record.Min, record.Max);
    Put(p, std::int32_t(std::clamp(std::nearbyint(rawValue), low, double(record.Max))));
}

double DriveTable::Scaled(int p) const
{
    return Has(p) ? Get(p) / Scale(Record(p).Attributes) : 0;
}

void DriveTable::PutScaledWithin(int p, double value)
{
    if (Has(p))
        PutWithin(p, value * Scale(Record(p).Attributes));
}

double DriveTable::Share(int p) const
{
    return Has(p) && Record(p).Max > 0 ? double(Get(p)) / Record(p).Max : 0;
}

void DriveTable::PutShare(int p, double share)
{
    if (Has(p))
        PutWithin(p, share * Record(p).Max);
}

int DriveTable::Selected(int p) const
{
    const std::int32_t selected = Get(p);
    return selected <= last_ ? std::max(selected, 0) : 0;
}

std::int32_t DriveTable::FromWire(int p, std::uint16_t bits) const
{
    return table_.AttrBit(Attr::Long, p) ? std::int32_t(bits) : std::int32_t(std::int16_t(bits));
}

bool DriveTable::Write(int p, std::uint16_t bits)
{
    if (!Has(p) || table_.AttrBit(Attr::ReadOnly, p) || (table_.AttrBit(Attr::Icr, p) && !IsStopped()))
        return false;
    const ParamRecord &record = table_[p];
    const std::int32_t rawValue = FromWire(p, bits);
    if (rawValue < record.Min || rawValue > record.Max)
        return false;
    Put(p, rawValue);
    FollowWithLimits(table_, p);
    return true;
}

void DriveTable::SetDriveModel(std::int32_t code)
{
    Put(Param::DriveModel, code);
    if (Has(Param::DriveModel))
        FollowWithLimits(table_, Param::DriveModel);
    SaveToMemory();
}

bool DriveTable::IsKept(int p) const
{
    const bool isClock = p >= Param::ClockFirst && p <= Param::ClockLast;
    return !isClock && !table_.AttrBit(Attr::ReadOnly, p);
}

void DriveTable::SaveToMemory()
{
    memory_.resize(std::size_t(last_) + 1);
    for (int p = 0; p <= last_; ++p)
        memory_[std::size_t(p)] = table_.Value(p);
    // A command is no setting: a reload must not start the next one.
    for (const int command :
         {Param::SaveParameters, Param::LoadParameters, Param::OneShotCommand, Param::ClearFault})
        if (Has(command))
            memory_[std::size_t(command)] = 0;
}

void DriveTable::LoadFromMemory()
{
    for (int p = 0; p <= last_; ++p)
        if (IsKept(p))
            Put(p, memory_[std::size_t(p)]);
    for (int p = 0; p <= last_; ++p)
        // The model's rule would set the motor current back to the rating.
        if (p != Param::DriveModel)
            FollowWithLimits(table_, p);
}

} // namespace quorvik::drive
