// How a triangle becomes spans, the same for the flat, Gouraud and affine textured fillers. Internal to the
// folder.
//
// A filler hands over three corners, each with its values in fixed point (depth_value, fixed_value), and a
// function that draws a span; everything here is inlined into it. Rows and spans are cut to the frame before
// the span is called, and the values jump to where it starts, so that the pixels are those of the whole
// triangle and the cost goes by what is inside.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "morvane/poly/raster.h"

// A corner in whole pixels with `Values` values to interpolate.
template<std::size_t Values>
struct triangle_corner {
    std::int32_t x, y;
    std::array<std::int32_t, Values> value;
};

// What a row of a triangle has inside the frame: `count` pixels, at least one, from index `first` of the
// destination and of the depth buffer on. `value` is that of the first pixel, `step` its change from pixel to
// pixel; no value of the span passes 32 bits.
template<std::size_t Values>
struct triangle_span {
    std::size_t first;
    std::size_t count;
    std::array<std::int32_t, Values> value;
    std::array<std::int32_t, Values> step;
};

// 24.8, limited to what 32 bits hold and to what is nearer than `DEPTH_EMPTY`.
constexpr std::int32_t depth_value(std::int32_t z) {
    constexpr std::int32_t limit = 8388607;
    return std::clamp(z, -limit, limit) * 256;
}

// 16.16, limited to what 32 bits hold.
constexpr std::int32_t fixed_value(std::int32_t value) {
    constexpr std::int32_t limit = 32767;
    return std::clamp(value, -limit, limit) * 65536;
}

// An edge on its way down: 16.16 x in 64 bits, and the values. A position between two corners stays between
// them, so nothing overflows: x and the difference of two take 49 bits, values 33.
template<std::size_t Values>
struct triangle_edge {
    std::int64_t x, x_step = 0;
    std::array<std::int64_t, Values> value, step{};

    // From `a` down to `b`, as it stands on row `row`, at or below `a`.
    constexpr triangle_edge(const triangle_corner<Values>& a, const triangle_corner<Values>& b,
                            std::int64_t row)
        : x(std::int64_t{a.x} * 65536) {
        for (std::size_t i = 0; i < Values; ++i)
            value[i] = a.value[i];
        const std::int64_t rows = std::int64_t{b.y} - a.y;
        if (rows == 0) return;
        x_step = (std::int64_t{b.x} - a.x) * 65536 / rows;
        for (std::size_t i = 0; i < Values; ++i)
            step[i] = (std::int64_t{b.value[i]} - a.value[i]) / rows;
        skip(row - a.y);
    }

    constexpr void skip(std::int64_t rows) {
        x += x_step * rows;
        for (std::size_t i = 0; i < Values; ++i)
            value[i] += step[i] * rows;
    }

    constexpr void next() {
        x += x_step;
        for (std::size_t i = 0; i < Values; ++i)
            value[i] += step[i];
    }
};

// Draws a row between two edges, of which either may be the left one. They come by value, which a measurement
// found a tenth faster than a choice between two places in memory.
template<std::size_t Values, typename Draw>
[[gnu::always_inline]] inline void triangle_row(triangle_edge<Values> left, triangle_edge<Values> right,
                                                std::int64_t row, std::int64_t columns, const Draw& draw) {
    if (right.x >> 16 < left.x >> 16) std::swap(left, right);
    const std::int64_t start = left.x >> 16, end = right.x >> 16;
    const std::int64_t from = std::max<std::int64_t>(start, 0), to = std::min(end, columns);
    if (from >= to) return;
    triangle_span<Values> span;
    span.first = static_cast<std::size_t>(row * columns + from);
    span.count = static_cast<std::size_t>(to - from);
    for (std::size_t i = 0; i < Values; ++i) {
        // A single pixel has no use for the step, which may pass 32 bits there.
        const std::int64_t step = end - start > 1 ? (right.value[i] - left.value[i]) / (end - start) : 0;
        span.step[i] = static_cast<std::int32_t>(step);
        span.value[i] = static_cast<std::int32_t>(left.value[i] + step * (from - start));
    }
    draw(span);
}

// Calls `draw(const triangle_span<Values>&)` for each row of the triangle that has pixels inside the frame,
// from top to bottom.
template<std::size_t Values, typename Draw>
[[gnu::always_inline]] inline void fill_triangle(triangle_corner<Values> a, triangle_corner<Values> b,
                                                 triangle_corner<Values> c, const Draw& draw) {
    if (a.y > b.y) std::swap(a, b);
    if (a.y > c.y) std::swap(a, c);
    if (b.y > c.y) std::swap(b, c);
    const std::int64_t columns = raster_width, rows = raster_height;
    const std::int64_t top = std::max<std::int64_t>(a.y, 0), bottom = std::min<std::int64_t>(c.y, rows);
    if (top >= bottom) return;
    if (std::max({a.x, b.x, c.x}) <= 0 || std::min({a.x, b.x, c.x}) >= columns) return;

    triangle_edge<Values> whole(a, c, top);
    const bool has_upper = top < b.y;
    triangle_edge<Values> part =
        has_upper ? triangle_edge<Values>(a, b, top) : triangle_edge<Values>(b, c, top);
    std::int64_t row = top, end = has_upper ? std::min<std::int64_t>(b.y, bottom) : bottom;
    for (;;) {
        for (; row < end; ++row, whole.next(), part.next())
            triangle_row(part, whole, row, columns, draw);
        if (row == bottom) return;
        part = triangle_edge<Values>(b, c, row);
        end = bottom;
    }
}
