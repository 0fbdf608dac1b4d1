// The smear and the glow of filters.h.
#include <algorithm>
#include <array>
#include <cstddef>

#include "morvane/base/kernel.h"
#include "morvane/gtex/filters.h"

namespace {

using word = std::uint32_t;

int channel(word pixel, int shift) {
    return static_cast<int>((pixel >> shift) & 255);
}

// One glowing pixel of the four around it.
inline word glow_of(word p, word q, word r, word s, int level) {
    word sum = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int mean = (channel(p, shift) + channel(q, shift) + channel(r, shift) + channel(s, shift)) >> 2;
        sum |= static_cast<word>(std::clamp(mean + level, 0, 255)) << shift;
    }
    return sum;
}

MORVANE_KERNEL void glow_words(word* __restrict dst, const word* __restrict src, std::size_t count,
                               int level) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = glow_of((src + i)[-1], src[i], src[i + 1], src[i + 2], level);
}

} // namespace

void gtex_smear(gtex dst) {
    if (dst.count <= 0) return;
    const std::int64_t first = std::int64_t{dst.width} + 1;
    const std::int64_t last = std::int64_t{dst.count} - dst.width - 2;
    if (first > last) return;
    const std::ptrdiff_t row = std::ptrdiff_t{dst.width} * 4;
    const std::uint8_t* const left_of_first = dst.bytes + row;
    std::array<word, 3> previous{dst.bytes[0], dst.bytes[1], dst.bytes[2]};
    std::array<word, 3> left{left_of_first[0], left_of_first[1], left_of_first[2]};
    for (std::int64_t i = first; i <= last; ++i) {
        const std::uint8_t* const pixel = dst.bytes + i * 4;
        for (std::size_t c = 0; c < 3; ++c) {
            const std::uint8_t* const p = pixel + c;
            const word others = static_cast<word>(p[4] + p[-row] + p[row]);
            previous[c] = (((left[c] + others) >> 2) + previous[c]) >> 1;
        }
        left = previous; // what has just been written, without a way through memory
        dst.pixels[i] = previous[2] << 16 | previous[1] << 8 | previous[0];
    }
}

void gtex_glow(gtex dst, std::int32_t level) {
    if (dst.count <= 0 || dst.count > gtex_scratch.count) return;
    gtex_copy(gtex_scratch, dst);
    const word* const src = gtex_scratch.pixels;
    const int limited = std::clamp(level, -255, 255);
    const std::int32_t last = dst.count - 1;
    const auto at_edge = [&](std::int32_t i) {
        dst.pixels[i] = glow_of(src[std::max(i - 1, 0)], src[i], src[std::min(i + 1, last)],
                                src[std::min(i + 2, last)], limited);
    };
    for (const std::int32_t i : {0, std::max(last - 1, 0), last})
        at_edge(i);
    if (last >= 3) glow_words(dst.pixels + 1, src + 1, static_cast<std::size_t>(last - 2), limited);
}
