// Grey noise.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

// Draws a number v of `random_next` for each of the `dst.count` pixels, from first to last, and writes
// v % `range`, low 8 bits, to the three colour channels; top byte 0. A negative range counts as its absolute
// value, 0 as 1 (all black, the numbers are drawn all the same).
void gtex_noise(gtex dst, std::int32_t range);

// What v % range becomes in the kernel: a multiplication by a rounded reciprocal, all in 16 bits.
//
// With s the smallest shift for which range <= 2^s and multiplier = ceil(2^(15 + s) / range), the product
// multiplier * range passes 2^(15 + s) by less than 2^s, so that (v * multiplier) >> (15 + s) is the quotient
// of every v below 2^15 (Granlund and Montgomery, "Division by Invariant Integers using Multiplication",
// 1994). The kernel doubles v and takes the upper 16 bits of the product, which is the shift by 15.
struct noise_divisor {
    std::uint16_t range;      // 1 to 32768; beyond that v % range is v
    std::uint16_t multiplier; // 32768 to 65535
    std::uint16_t shift;      // s, 0 to 15

    constexpr std::uint16_t remainder(std::uint16_t v) const {
        const auto doubled = static_cast<std::uint16_t>(v << 1);
        const auto upper = static_cast<std::uint16_t>((std::uint32_t{doubled} * multiplier) >> 16);
        const auto quotient = static_cast<std::uint16_t>(upper >> shift);
        return static_cast<std::uint16_t>(v - quotient * std::uint32_t{range});
    }
};

// The divisor of |range| limited to 1 to 32768.
noise_divisor noise_divisor_of(std::int32_t range);
