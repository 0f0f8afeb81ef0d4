#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <span>

namespace quorvik
{

/** What tells one drive from another: values that only its maker sets, and its hour meter. */
struct DriveIdentity {
    std::int32_t model = 0;           ///< (411)
    std::int32_t driveAmps = 0;       ///< (122)
    std::int32_t firmware = 0;        ///< (409), two decimals
    std::int32_t triggerFirmware = 0; ///< (419), two decimals
    std::int32_t operatingHours = 0;  ///< (421)
    int lastParam = 0;

    /** The parameters that it is made of. */
    static std::span<const int> Params();
    /** @param value gives a raw value of the drive by parameter number. */
    static DriveIdentity Of(const std::function<std::int32_t(int)> &value, int lastParam);
    /**
     * Whether it may be the drive that other was so many hours ago: all is the same, and the hour meter has
     * gone on by no more than the time that passed.
     */
    bool IsSameAs(const DriveIdentity &other, double hoursSince) const;
    /** "SVN100-000"; of a code that no list has, the code. */
    QString ModelName() const;
    /** "SVN100-000 (174 Amps), firmware 1.00". */
    QString Text() const;

    bool operator==(const DriveIdentity &) const = default;
};

} // namespace quorvik
