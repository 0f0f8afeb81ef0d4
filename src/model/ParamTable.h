#pragma once

#include "model/ParameterNumbers.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace quorvik
{

/** Masks of the bits of ParamRecord::Attributes. Bits that no name stands for are kept, and nothing reads
 * them. */
namespace Attr
{
inline constexpr std::int32_t Decimals = 3;
inline constexpr std::int32_t ReadOnly = 8;
inline constexpr std::int32_t Icr = 16; ///< may be changed only while the drive is stopped
inline constexpr std::int32_t TypeCode = 992;
inline constexpr std::int32_t Destination =
    1024;                                  ///< Value is the number of the parameter that this one drives
inline constexpr std::int32_t Long = 2048; ///< Value is unsigned, 0 to 65535
inline constexpr std::int32_t Refresh = 4096;
inline constexpr std::int32_t RefreshAfterLoad = 0x1400;
/** What a dependant does not take over from its source: read only, ICR, destination selector. */
inline constexpr std::int32_t NotInherited = ReadOnly | Icr | Destination;
} // namespace Attr

/** States of ParamRecord::WriteFlag. */
namespace WriteState
{
inline constexpr std::uint8_t None = 0;
inline constexpr std::uint8_t Held = 1; ///< being changed: neither polled nor sent
inline constexpr std::uint8_t Queued = 2;
} // namespace WriteState

/** One parameter of the drive. Raw values are in the drive's scale, decimals implied. */
struct ParamRecord {
    std::int32_t Min = 0;
    std::int32_t Max = 0;
    std::int32_t Attributes = 0;
    std::int32_t Preset = 0; ///< factory value
    std::int32_t Value = 0;
    QString Name;
    std::uint8_t ReadFlag = 0;  ///< how many windows or purposes want the parameter polled
    std::uint8_t WriteFlag = 0; ///< one of WriteState
    bool WriteFirst = false;    ///< the queued write goes before all others
};

/** What some parameters are to the program beside their own names. */
namespace Param
{
inline constexpr int FirstSelector =
    DigitalIn1Destination; ///< its highest value is the drive's last parameter
inline constexpr int DriveCurrent = NameplateDriveI;
inline constexpr int MotorCurrent = NameplateMotorI;
inline constexpr int ClockFirst = ClockSeconds;
inline constexpr int ClockLast = ClockYear;

/** Whether p gives the drive a command, and is no setting. */
constexpr bool IsCommand(int p)
{
    return p >= SaveParameters && p <= OneShotCommand;
}

/** Whether the drive itself puts p back once it has done what it was told by it. */
constexpr bool ClearsItself(int p)
{
    return IsCommand(p) || p == ClearFault || p == MinMaxReset;
}

constexpr bool IsClock(int p)
{
    return p >= ClockFirst && p <= ClockLast;
}
} // namespace Param

/** An array of records indexed by parameter number from 0. An index outside it raises RuntimeFailure. */
class RecordArray
{
public:
    ParamRecord &operator[](int number);
    const ParamRecord &operator[](int number) const;

    /** The highest index, -1 when empty. */
    int UpperBound() const { return int(records_.size()) - 1; }

    /** Grows or shrinks to 0..upperBound with contents kept. */
    void Resize(int upperBound) { records_.resize(std::size_t(upperBound) + 1); }

private:
    [[noreturn]] void RaiseBounds(int number) const;

    std::vector<ParamRecord> records_;
};

} // namespace quorvik
