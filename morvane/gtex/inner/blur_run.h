// The kernel of the horizontal blurs: box means over a flat run of pixels, at a cost that doesn't depend on
// the length of the box. Internal to the folder and its tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// out[i] = the truncated mean of each colour channel over in[i - n] to in[i], top byte 0, for i from 0 to
// count - 1; n is 0 to 512. All n + count words that are read exist. `out` doesn't overlap them.
using blur_kernel = void (*)(std::uint32_t* out, const std::uint32_t* in, std::size_t count, std::int32_t n);

// One running sum, pixel by pixel. Works everywhere and is what the others are compared with.
void blur_run_plain(std::uint32_t* out, const std::uint32_t* in, std::size_t count, std::int32_t n);

// All versions that this processor can run, the plain one first, the fastest last.
std::span<const blur_kernel> blur_run_versions();

// Divides a channel's sum over `taps` pixels by multiplication. The factor is a hair above 1 / taps: enough
// to lift a product that rounding has put below a whole number, too little to lift 255 minus a 513th part to
// the next one. Truncated, sum * factor is the quotient for every sum and up to 513 taps.
constexpr float box_factor(std::int32_t taps) {
    return static_cast<float>((1.0 + 1.0 / (1 << 20)) / taps);
}

// That quotient. The product is 0 to 255, so that the conversion needs no limits and the compiler can make
// vector code of it: the one bare conversion of the blurs, beside its twin on vectors in blur_lanes.cpp.
constexpr std::uint32_t box_mean(std::int32_t sum, float factor) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<float>(sum) * factor));
}
