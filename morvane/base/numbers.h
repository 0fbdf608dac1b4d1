// From floating point to integers. Only a vector kernel converts by itself, where no value can pass the
// limits.
#pragma once

#include <cstdint>

// Truncates `value` toward zero. What lies beyond the type's range gives the nearest limit, NaN gives 0.
constexpr std::int32_t trunc_to_int(double value) {
    constexpr double lowest = -2147483648.0;
    constexpr double highest = 2147483647.0;
    if (!(value > lowest)) return value <= lowest ? INT32_MIN : 0; // the second test sorts out NaN
    if (value >= highest) return INT32_MAX;
    return static_cast<std::int32_t>(value);
}

// The same for 64 bits.
constexpr std::int64_t trunc_to_int64(double value) {
    constexpr double limit = 9223372036854775808.0;
    if (!(value > -limit)) return value <= -limit ? INT64_MIN : 0;
    if (value >= limit) return INT64_MAX;
    return static_cast<std::int64_t>(value);
}

// Truncates `value` toward zero and keeps the low 8 bits: what a byte table stores.
constexpr std::uint8_t trunc_to_byte(double value) {
    return static_cast<std::uint8_t>(static_cast<std::uint32_t>(trunc_to_int(value)) & 0xffU);
}
