#pragma once

#include <cstdint>

namespace quorvik
{

/** A raw value for a parameter. */
struct ParamValue {
    int param = 0;
    std::int32_t rawValue = 0;

    bool operator==(const ParamValue &) const = default;
};

} // namespace quorvik
