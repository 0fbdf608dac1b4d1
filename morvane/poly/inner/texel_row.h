// What the textured fillers do along a row, from the places of its texels to pixels. Internal to the folder.
//
// Everything here is inlined into the fillers, which are kernels: the loop over a row has no branch, and its
// loads of texels are the only thing that isn't done for many pixels at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "morvane/poly/inner/pixel_blend.h"

// What happens to a texel on its way to the frame.
struct texel_kind {
    bool tested = false;  // written where it isn't farther than the depth buffer's
    bool lit = false;     // multiplied by the colour
    bool blended = false; // over what the frame holds
};

// What all rows of a triangle share. The frame, its depths and the texture lie apart from each other.
struct texel_target {
    std::uint32_t* pixels;
    std::int32_t* depths;
    const std::uint32_t* texels;
    std::uint32_t r = 0, g = 0, b = 0; // of a lit kind; what counts are the low 16 bits of a product
    std::uint32_t weight = 256;        // of a blended kind, 0 to 256
};

// A value that moves by a step a pixel, modulo 2^32.
struct texel_step {
    std::uint32_t now, step;

    constexpr texel_step(std::int32_t from, std::int32_t by)
        : now(static_cast<std::uint32_t>(from)), step(static_cast<std::uint32_t>(by)) {}
    constexpr std::uint32_t at(std::int32_t pixel) const {
        return now + static_cast<std::uint32_t>(pixel) * step;
    }
};

// Each channel times that of the colour, shifted right by 8 and cut to 8 bits; the top byte 0.
constexpr std::uint32_t lit_texel(std::uint32_t texel, std::uint32_t r, std::uint32_t g, std::uint32_t b) {
    return ((texel >> 16 & 255) * r << 8 & 0xff0000U) | ((texel >> 8 & 255) * g & 0xff00U) |
           ((texel & 255) * b >> 8 & 255U);
}

// Draws `count` pixels from index `first` of the frame on. `index(i)` is where the texel of pixel i lies,
// below 2^31; `depth` is read by a tested kind.
template<texel_kind Kind, typename Index>
[[gnu::always_inline]] inline void draw_texels(const texel_target& target, std::size_t first,
                                               std::int32_t count, texel_step depth, const Index& index) {
    std::uint32_t* __restrict const pixels = target.pixels + first;
    std::int32_t* __restrict const depths = Kind.tested ? target.depths + first : nullptr;
    const std::uint32_t* __restrict const texels = target.texels;
    const auto [r, g, b, weight] = std::array{target.r, target.g, target.b, target.weight};
    // Frame, depths and texture don't overlap.
#if defined(__clang__) && !defined(MORVANE_PLAIN_KERNELS)
#pragma clang loop vectorize(assume_safety)
#elif !defined(__clang__)
#pragma GCC ivdep
#endif
    for (std::int32_t i = 0; i < count; ++i) {
        std::uint32_t source = texels[static_cast<std::int32_t>(index(i))];
        if constexpr (Kind.lit) source = lit_texel(source, r, g, b);
        if constexpr (Kind.blended) source = blend_pixel(pixels[i], source, weight);
        if constexpr (Kind.tested) {
            const auto here = static_cast<std::int32_t>(depth.at(i)), held = depths[i];
            const bool passes = here >= held; // the empty depth lies below all others
            depths[i] = passes ? here : held;
            source = passes ? source : pixels[i];
        }
        pixels[i] = source;
    }
}

// A stretch of texels that were fetched beforehand, one a pixel, for walks that aren't straight in the
// texture.
using texel_run = std::array<std::uint32_t, 256>;

// Draws them. `target` may be that of the whole row.
template<texel_kind Kind>
[[gnu::always_inline]] inline void draw_texel_run(texel_target target, std::size_t first, std::int32_t count,
                                                  texel_step depth, const texel_run& texels) {
    target.texels = texels.data();
    draw_texels<Kind>(
        target, first, count, depth,
        [](std::int32_t i) __attribute__((always_inline)) { return static_cast<std::uint32_t>(i); });
}
