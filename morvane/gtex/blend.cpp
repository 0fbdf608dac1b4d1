// The kernels of the show's blends. Each is one pass over flat arrays; where two channels are done in one
// multiplication, blue and red stand in bits 0 to 15 and 16 to 31 and green is handled apart.
#include "morvane/gtex/blend.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "morvane/base/kernel.h"
#include "morvane/gtex/pixel.h"

namespace {

using word = std::uint32_t;
using half [[gnu::may_alias]] = std::uint16_t;

// The pixels that all surfaces of a call hold.
template<typename... Surfaces>
std::size_t bound(const Surfaces&... surfaces) {
    return static_cast<std::size_t>(std::max(0, std::min({surfaces.count...})));
}

MORVANE_KERNEL void crossfade_words(word* dst, const word* src, std::size_t count, word level) {
    const word rest = 255 - level;
    for (std::size_t i = 0; i < count; ++i) {
        const word rb = (src[i] & red_blue) * level + (dst[i] & red_blue) * rest;
        const word g = (src[i] & green_only) * level + (dst[i] & green_only) * rest;
        dst[i] = ((rb >> 8) & red_blue) + ((g >> 8) & green_only);
    }
}

MORVANE_KERNEL void add_bytes(std::uint8_t* dst, const std::uint8_t* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto sum = static_cast<std::uint8_t>(dst[i] + src[i]);
        dst[i] = sum < dst[i] ? 255 : sum; // a sum below its term has wrapped
    }
}

// In half words of two channels each: blue and green, red and top.
MORVANE_KERNEL void multiply_halves(half* dst, const half* src, std::size_t count) {
    constexpr half kept[2] = {0xffff, 0x00ff};
    for (std::size_t i = 0; i < count; i += 2) {
        for (std::size_t k = 0; k < 2; ++k) {
            const auto low =
                static_cast<half>(static_cast<half>((dst[i + k] & 255) * (src[i + k] & 255)) >> 8);
            const auto high = static_cast<half>((dst[i + k] >> 8) * (src[i + k] >> 8));
            dst[i + k] = static_cast<half>((low | (high & 0xff00)) & kept[k]);
        }
    }
}

// Sixteen pixels as 64 bytes, for the operators that the compiler doesn't make vector code of by itself: they
// work on single bytes but treat each fourth one apart.
using bytes64 = std::uint8_t __attribute__((vector_size(64)));
using words16 = word __attribute__((vector_size(64)));

// All in bytes: `level` is the nearest byte to the true one, and what that lies `beyond` it is added at the
// end with saturation. The two terms before never pass 255 together. `count` is a multiple of 16.
MORVANE_KERNEL void solarise_words(word* dst, const word* src, std::size_t count, std::uint8_t level,
                                   std::uint8_t beyond) {
    const auto room = static_cast<std::uint8_t>(255 - beyond);
    for (std::size_t i = 0; i < count; i += 16) {
        bytes64 d;
        bytes64 s;
        std::memcpy(&d, dst + i, sizeof d);
        std::memcpy(&s, src + i, sizeof s);
        const bytes64 below = (s > level ? s : level) - s;
        const bytes64 above = (d > level ? d : level) - level;
        const bytes64 sum = below + above;
        const bytes64 all = (sum < room ? sum : room) + beyond;
        const words16 kept = ((words16)all & colours) | ((words16)d & top_byte);
        std::memcpy(dst + i, &kept, sizeof kept);
    }
}

MORVANE_KERNEL void negate_words(word* dst, const word* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = ~((src[i] >> 8) | (src[i] << 24));
}

// t + ((f - t) >> passes), written so that no field goes below 0: (t * 2^passes - t + f) >> passes. Passes of
// halving toward t compose to this one shift, and after eight of them nothing changes any more.
MORVANE_KERNEL void trail_words(word* trail, word* frame, std::size_t count, word passes) {
    for (std::size_t i = 0; i < count; ++i) {
        const word t_rb = trail[i] & red_blue;
        const word t_g = trail[i] & green_only;
        const word rb = ((t_rb << passes) - t_rb + (frame[i] & red_blue)) >> passes;
        const word g = ((t_g << passes) - t_g + (frame[i] & green_only)) >> passes;
        const word mixed = (rb & red_blue) | (g & green_only) | (frame[i] & top_byte);
        frame[i] = mixed;
        trail[i] = mixed;
    }
}

// b + (((a - b) * w) >> 8), written so that no field ends below 0: (b * 256 + (a - b) * w) >> 8.
MORVANE_KERNEL void alpha_mix_words(word* dst, const word* a, const word* b, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const word weight = a[i] >> 24;
        const word b_rb = b[i] & red_blue;
        const word b_g = b[i] & green_only;
        const word rb = (b_rb << 8) + ((a[i] & red_blue) - b_rb) * weight;
        const word g = (b_g << 8) + ((a[i] & green_only) - b_g) * weight;
        dst[i] = ((rb >> 8) & red_blue) | ((g >> 8) & green_only);
    }
}

MORVANE_KERNEL void copy_mask_words(word* dst, const word* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        dst[i] = (dst[i] & colours) | (src[i] & top_byte);
}

MORVANE_KERNEL void mask_from_luma_words(word* dst, const word* src, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const word sum = ((src[i] >> 16) & 255) + ((src[i] >> 8) & 255) + (src[i] & 255);
        dst[i] = (dst[i] & colours) | ((sum / 3) << 24);
    }
}

// clamp(x - level, 0, 255) for each byte: `level` is the nearest byte to the true one, and a level below 0
// adds what it lacks with saturation.
struct byte_fade {
    std::uint8_t level, lacking;
    explicit byte_fade(std::int32_t true_level)
        : level(static_cast<std::uint8_t>(std::clamp(true_level, 0, 255))),
          lacking(static_cast<std::uint8_t>(std::clamp(-true_level, 0, 255))) {}
};

// The two terms never pass 255 together. `count` is a multiple of 16.
MORVANE_KERNEL void dual_fade_words(word* dst, const word* a, const word* b, std::size_t count, byte_fade out,
                                    byte_fade in) {
    const auto room_out = static_cast<std::uint8_t>(255 - out.lacking);
    const auto room_in = static_cast<std::uint8_t>(255 - in.lacking);
    for (std::size_t i = 0; i < count; i += 16) {
        bytes64 p;
        bytes64 q;
        std::memcpy(&p, a + i, sizeof p);
        std::memcpy(&q, b + i, sizeof q);
        const bytes64 less_p = (p > out.level ? p : out.level) - out.level;
        const bytes64 less_q = (q > in.level ? q : in.level) - in.level;
        const bytes64 faded_p = (less_p < room_out ? less_p : room_out) + out.lacking;
        const bytes64 faded_q = (less_q < room_in ? less_q : room_in) + in.lacking;
        const words16 mixed = (words16)(faded_p + faded_q) & colours;
        std::memcpy(dst + i, &mixed, sizeof mixed);
    }
}

} // namespace

void gtex_crossfade(gtex dst, gtex src, std::int32_t level) {
    crossfade_words(dst.pixels, src.pixels, bound(dst, src), static_cast<word>(level) & 255);
}

void gtex_add(gtex dst, gtex src) {
    add_bytes(dst.bytes, src.bytes, bound(dst, src) * 4);
}

void gtex_solarise(gtex dst, gtex src, std::int32_t level) {
    // Past these limits every channel is 255 already.
    const std::int32_t limited = std::clamp(level, -255, 510);
    const std::int32_t inside = std::clamp(limited, 0, 255);
    const auto beyond = static_cast<std::uint8_t>(std::abs(limited - inside));
    const std::size_t count = bound(dst, src);
    const std::size_t whole = count / 16 * 16;
    solarise_words(dst.pixels, src.pixels, whole, static_cast<std::uint8_t>(inside), beyond);

    std::array<word, 16> last_dst{};
    std::array<word, 16> last_src{};
    std::copy(dst.pixels + whole, dst.pixels + count, last_dst.begin());
    std::copy(src.pixels + whole, src.pixels + count, last_src.begin());
    solarise_words(last_dst.data(), last_src.data(), 16, static_cast<std::uint8_t>(inside), beyond);
    std::copy_n(last_dst.begin(), count - whole, dst.pixels + whole);
}

void gtex_negate(gtex dst, gtex src) {
    negate_words(dst.pixels, src.pixels, bound(dst, src));
}

void gtex_trail(gtex trail, gtex frame, std::int32_t passes) {
    if (passes <= 0)
        gtex_copy(trail, frame);
    else
        trail_words(trail.pixels, frame.pixels, bound(trail, frame), static_cast<word>(std::min(passes, 8)));
}

void gtex_alpha_mix(gtex dst, gtex src) {
    alpha_mix_words(dst.pixels, src.pixels, dst.pixels, bound(dst, src));
}

void gtex_alpha_mix3(gtex dst, gtex a, gtex b) {
    alpha_mix_words(dst.pixels, a.pixels, b.pixels, bound(dst, a, b));
}

void gtex_multiply(gtex dst, gtex src) {
    multiply_halves(reinterpret_cast<half*>(dst.pixels), reinterpret_cast<const half*>(src.pixels),
                    bound(dst, src) * 2);
}

void gtex_copy_mask(gtex dst, gtex src) {
    copy_mask_words(dst.pixels, src.pixels, bound(dst, src));
}

void gtex_mask_from_luma(gtex dst, gtex src) {
    mask_from_luma_words(dst.pixels, src.pixels, bound(dst, src));
}

void gtex_dual_fade(gtex dst, gtex a, gtex b, std::int32_t level) {
    const std::int32_t limited = std::clamp(level, -255, 510); // past these both terms stand at their ends
    const byte_fade out(limited);
    const byte_fade in(255 - limited);
    const std::size_t count = bound(dst, a, b);
    const std::size_t whole = count / 16 * 16;
    dual_fade_words(dst.pixels, a.pixels, b.pixels, whole, out, in);

    std::array<word, 16> last_a{};
    std::array<word, 16> last_b{};
    std::copy(a.pixels + whole, a.pixels + count, last_a.begin());
    std::copy(b.pixels + whole, b.pixels + count, last_b.begin());
    dual_fade_words(last_a.data(), last_a.data(), last_b.data(), 16, out, in);
    std::copy_n(last_a.begin(), count - whole, dst.pixels + whole);
}
