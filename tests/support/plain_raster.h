// The rule of the triangle fillers of `poly`, pixel by pixel: for each pixel of the frame it is worked out
// anew whether the triangle covers it and with which values. What the quick ones are compared with.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "morvane/poly/raster.h"

namespace plain_raster {

// `value` holds r, g, b or u, v; whole numbers, as the fillers take them.
struct corner {
    std::int64_t x = 0, y = 0, z = 0;
    std::array<std::int64_t, 3> value{};
};

using triangle = std::array<corner, 3>;

inline std::size_t pixel_count() {
    return static_cast<std::size_t>(raster_width) * static_cast<std::size_t>(raster_height);
}

// A frame of the raster's size with its depth buffer.
struct picture {
    std::vector<std::uint32_t> colour = std::vector<std::uint32_t>(pixel_count(), 0);
    std::vector<std::int32_t> depth = std::vector<std::int32_t>(pixel_count(), DEPTH_EMPTY);

    static std::size_t index(std::int64_t x, std::int64_t y) {
        return static_cast<std::size_t>(y * raster_width + x);
    }

    // Whether the pixel passes; takes the depth if it does.
    bool pass(std::int64_t x, std::int64_t y, std::int64_t z) {
        std::int32_t& held = depth[index(x, y)];
        if (held != DEPTH_EMPTY && z < held) return false;
        held = static_cast<std::int32_t>(z);
        return true;
    }

    std::uint32_t& at(std::int64_t x, std::int64_t y) { return colour[index(x, y)]; }
};

// A value in fixed point between two ends, `at` of `length` steps on, with a truncated step.
inline std::int64_t between(std::int64_t from, std::int64_t to, std::int64_t at, std::int64_t length) {
    return length == 0 ? from : from + (to - from) / length * at;
}

// A corner in fixed point: x and values 16.16, z 24.8.
inline corner in_fixed_point(corner c) {
    constexpr std::int64_t deepest = 8388607, largest = 32767;
    c.x *= 65536;
    c.z = std::clamp(c.z, -deepest, deepest) * 256;
    for (std::int64_t& value : c.value)
        value = std::clamp(value, -largest, largest) * 65536;
    return c;
}

inline corner on_edge(const corner& a, const corner& b, std::int64_t y) {
    corner c{.x = between(a.x, b.x, y - a.y, b.y - a.y), .y = y, .z = between(a.z, b.z, y - a.y, b.y - a.y)};
    for (std::size_t i = 0; i < 3; ++i)
        c.value[i] = between(a.value[i], b.value[i], y - a.y, b.y - a.y);
    return c;
}

// Calls `pixel(x, y, z, values)` for every pixel of the frame that the triangle covers; z is 24.8, the values
// are 16.16.
template<typename Pixel>
void each_pixel(triangle t, Pixel pixel) {
    if (t[0].y > t[1].y) std::swap(t[0], t[1]);
    if (t[0].y > t[2].y) std::swap(t[0], t[2]);
    if (t[1].y > t[2].y) std::swap(t[1], t[2]);
    for (corner& c : t)
        c = in_fixed_point(c);
    const std::int64_t top = std::max<std::int64_t>(t[0].y, 0);
    for (std::int64_t y = top; y < std::min<std::int64_t>(t[2].y, raster_height); ++y) {
        corner left = y < t[1].y ? on_edge(t[0], t[1], y) : on_edge(t[1], t[2], y);
        corner right = on_edge(t[0], t[2], y);
        if (right.x >> 16 < left.x >> 16) std::swap(left, right);
        const std::int64_t first = left.x >> 16, end = right.x >> 16;
        const std::int64_t from = std::max<std::int64_t>(first, 0);
        for (std::int64_t x = from; x < std::min<std::int64_t>(end, raster_width); ++x) {
            std::array<std::int64_t, 3> values{};
            for (std::size_t i = 0; i < 3; ++i)
                values[i] = between(left.value[i], right.value[i], x - first, end - first);
            pixel(x, y, between(left.z, right.z, x - first, end - first), values);
        }
    }
}

// The low 8 bits of the whole part of a 16.16 channel.
inline std::int64_t channel(std::int64_t value) {
    return value >> 16 & 0xff;
}

inline std::uint32_t packed(std::int64_t r, std::int64_t g, std::int64_t b) {
    return static_cast<std::uint32_t>(r * 65536 + g * 256 + b);
}

// `source` over `below` with a weight from 0 to 256, channel by channel.
inline std::uint32_t blended(std::uint32_t below, std::uint32_t source, std::int64_t weight) {
    std::uint32_t result = 0;
    for (int shift : {0, 8, 16}) {
        const std::int64_t d = below >> shift & 0xff, s = source >> shift & 0xff;
        result |= static_cast<std::uint32_t>(d + ((s - d) * weight >> 8)) << shift;
    }
    return result;
}

// Where a random triangle lies: anywhere on the screen, over its edges, a few pixels large, far larger than
// the frame, anywhere in the range of the numbers.
enum class place { inside, at_the_edge, small, far_out, extreme };

inline triangle random_triangle(std::mt19937& random, place where) {
    const auto between_both = [&random](std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    };
    const std::int64_t w = raster_width, h = raster_height;
    triangle t;
    const std::int64_t x = between_both(-5, w), y = between_both(-5, h);
    for (corner& c : t) {
        switch (where) {
        case place::inside:
            c = {.x = between_both(1, w - 1), .y = between_both(0, h - 1)};
            break;
        case place::at_the_edge:
            c = {.x = between_both(-w / 2, w * 3 / 2), .y = between_both(-h, h * 2)};
            break;
        case place::small:
            c = {.x = x + between_both(0, 12), .y = y + between_both(0, 12)};
            break;
        case place::far_out:
            c = {.x = between_both(-90000, 90000), .y = between_both(-90000, 90000)};
            break;
        case place::extreme:
            c = {.x = between_both(INT32_MIN, INT32_MAX), .y = between_both(INT32_MIN, INT32_MAX)};
            break;
        }
        const bool wild = where == place::extreme;
        c.z = wild ? between_both(INT32_MIN, INT32_MAX) : between_both(-3000, -1);
        for (std::int64_t& value : c.value)
            value = wild ? between_both(INT32_MIN, INT32_MAX) : between_both(0, 255);
    }
    return t;
}

} // namespace plain_raster
