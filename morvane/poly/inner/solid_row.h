// One row of a flat or Gouraud triangle. Internal to the folder.
//
// A row is drawn in whole blocks of the frame, as many words as a wide vector has, and a mask keeps what lies
// beside the span as it was. So a short span is one block, without a loop that the processor has to guess the
// end of, and every vector lies on its own line of the cache.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "morvane/poly/inner/pixel_blend.h"
#include "morvane/poly/inner/triangle_setup.h"

inline constexpr std::uint32_t row_block = 16;

// How the pixels of a filler come about. Its values stand in this order: depth if tested, then r, g, b for a
// Gouraud shade.
struct solid_kind {
    bool tested, blended, gouraud;
    constexpr std::size_t values() const { return (tested ? 1U : 0U) + (gouraud ? 3U : 0U); }
};

// What all rows of a triangle share.
struct solid_target {
    std::uint32_t* pixels; // the frame
    std::int32_t* depths;
    std::size_t size;     // pixels of both
    std::uint32_t colour; // of a flat shade
    std::uint32_t weight; // of a blend, 0 to 256
};

// Draws `count` pixels that lie `skip` behind where `pixels` and `depths` point, in blocks from there on.
// Values wrap where the mask is closed and nowhere else.
template<solid_kind Kind, std::uint32_t Block>
[[gnu::always_inline]] inline void
draw_blocks(std::uint32_t* __restrict pixels, std::int32_t* __restrict depths, const solid_target& target,
            std::uint32_t skip, std::uint32_t count, const triangle_span<Kind.values()>& span) {
    constexpr std::size_t values = Kind.values(), colours = Kind.tested ? 1 : 0;
    std::array<std::uint32_t, values> value, step;
    for (std::size_t k = 0; k < values; ++k) {
        step[k] = static_cast<std::uint32_t>(span.step[k]);
        value[k] = static_cast<std::uint32_t>(span.value[k]) - step[k] * skip;
    }
    const std::uint32_t end = (skip + count + Block - 1) / Block * Block;
    for (std::uint32_t i = 0; i < end; ++i) {
        bool pass = i - skip < count;
        if constexpr (Kind.tested) {
            const auto here = static_cast<std::int32_t>(value[0] + i * step[0]), held = depths[i];
            pass &= here >= held; // no depth lies below DEPTH_EMPTY
            depths[i] = held ^ ((held ^ here) & -std::int32_t{pass});
        }
        std::uint32_t source = target.colour;
        if constexpr (Kind.gouraud) {
            const std::uint32_t r = value[colours] + i * step[colours];
            const std::uint32_t g = value[colours + 1] + i * step[colours + 1];
            const std::uint32_t b = value[colours + 2] + i * step[colours + 2];
            source = (r & 0xff0000) | (g >> 8 & 0xff00) | (b >> 16 & 0xff);
        }
        const std::uint32_t below = pixels[i];
        if constexpr (Kind.blended) source = blend_pixel(below, source, target.weight);
        pixels[i] = below ^ ((below ^ source) & -std::uint32_t{pass});
    }
}

// The end of a frame that is no multiple of blocks.
template<solid_kind Kind>
[[gnu::noinline, gnu::cold]] void draw_last_pixels(const solid_target& target,
                                                   const triangle_span<Kind.values()>& span) {
    draw_blocks<Kind, 1>(target.pixels + span.first, target.depths + span.first, target, 0,
                         static_cast<std::uint32_t>(span.count), span);
}

// Draws a span of a triangle.
template<solid_kind Kind>
[[gnu::always_inline]] inline void draw_solid_row(const solid_target& target,
                                                  const triangle_span<Kind.values()>& span) {
    const std::size_t skip = span.first % row_block, first = span.first - skip;
    const std::size_t blocks = (skip + span.count + row_block - 1) / row_block;
    if (first + blocks * row_block > target.size) return draw_last_pixels<Kind>(target, span);
    draw_blocks<Kind, row_block>(target.pixels + first, target.depths + first, target,
                                 static_cast<std::uint32_t>(skip), static_cast<std::uint32_t>(span.count),
                                 span);
}

// Draws a triangle; the corners carry the values of the kind.
template<solid_kind Kind>
[[gnu::always_inline]] inline void
fill_solid(std::uint32_t* destination, const triangle_corner<Kind.values()>& a,
           const triangle_corner<Kind.values()>& b, const triangle_corner<Kind.values()>& c,
           std::uint32_t colour, std::int32_t opacity) {
    const solid_target target{.pixels = destination,
                              .depths = depth_buffer,
                              .size = static_cast<std::size_t>(std::int64_t{raster_width} * raster_height),
                              .colour = colour,
                              .weight = blend_weight(opacity)};
    fill_triangle(
        a, b, c, [&target](const triangle_span<Kind.values()>& span) __attribute__((always_inline)) {
            draw_solid_row<Kind>(target, span);
        });
}
