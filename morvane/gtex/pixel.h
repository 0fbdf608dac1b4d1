// A pixel word taken apart and put together; two channels ride in one word with room for a product each.
#pragma once

#include <cstdint>

inline constexpr std::uint32_t red_blue = 0x00ff00ff; // channels in bits 0 to 7 and 16 to 23
inline constexpr std::uint32_t green_only = 0x0000ff00;
inline constexpr std::uint32_t colours = 0x00ffffff;
inline constexpr std::uint32_t top_byte = 0xff000000;

// Saturating sum of the four bytes of two words. The low seven bits of the bytes are added apart from the top
// bits, so that nothing spills; a byte that overflowed is filled up.
constexpr std::uint32_t add_bytes_saturating(std::uint32_t p, std::uint32_t q) {
    const std::uint32_t low = (p & 0x7f7f7f7f) + (q & 0x7f7f7f7f);
    const std::uint32_t sum = low ^ ((p ^ q) & 0x80808080);
    const std::uint32_t overflow = ((p & q) | ((p | q) & low)) & 0x80808080;
    return sum | ((overflow << 1) - (overflow >> 7));
}
