#pragma once

#include <QString>
#include <cstdint>
#include <optional>

namespace quorvik
{

/** A serial device that a server lends over the network: "tcp://host:port" or "rfc2217://host:port". */
struct PortAddress {
    enum class Protocol : std::uint8_t {
        Raw,     ///< the bytes of the line and nothing else
        Rfc2217, ///< telnet with the COM port control option: the line's settings are negotiated
    };

    Protocol protocol = Protocol::Raw;
    QString host; ///< a name or an address, an IPv6 one without its brackets
    std::uint16_t port = 0;

    /** The address of a device, or nothing where it names no network at all or is malformed. */
    static std::optional<PortAddress> Of(const QString &device);
    /** Whether a device is written as an address, right or wrong; no path is. */
    static bool IsMeant(const QString &device);
    /** Why a device that is meant as an address is none, in a sentence; empty for a good one. */
    static QString WhyNot(const QString &device);
    /** Where a device is, for a sentence: "on serial port /dev/ttyUSB0", "at tcp://host:port". */
    static QString PlaceOf(const QString &device);
    /** As it is written. */
    QString Text() const;

    bool operator==(const PortAddress &) const = default;
};

} // namespace quorvik
