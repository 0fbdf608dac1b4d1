// What the triangle fillers share: corners in order, edges in fixed point, the part of a run that lies inside
// the frame. Internal to the folder.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "morvane/gtex/gtex.h"

// Inside the frame lie the columns and rows from 1 to the last one (`in_frame`).
inline constexpr std::int64_t first_column = 1;
inline constexpr std::int64_t first_row = 1;

// 16.16, 64 bits wide. A coordinate and the difference of two take 49 bits, and a position between two
// corners stays between them, so nothing here overflows.
constexpr std::int64_t to_fixed(std::int64_t value) {
    return value * 65536;
}
constexpr std::int64_t fixed_floor(std::int64_t value) {
    return value >> 16;
}

// The change of a value from `from` to `to` over `steps` steps, truncated toward zero; 0 for no steps.
constexpr std::int64_t fixed_slope(std::int64_t from, std::int64_t to, std::int64_t steps) {
    return steps != 0 ? to_fixed(to - from) / steps : 0;
}

// A value that is walked row by row.
struct fixed_walk {
    std::int64_t now;
    std::int64_t step;

    // From `from` to `to` over `rows` rows, as it stands on the first.
    constexpr fixed_walk(std::int64_t from, std::int64_t to, std::int64_t rows)
        : now(to_fixed(from)), step(fixed_slope(from, to, rows)) {}

    constexpr void skip(std::int64_t rows) { now += step * rows; }
    constexpr void next() { now += step; }
};

// Sorts three corners by y. A swap happens only if strictly greater, so the order among equal ones is fixed.
template<typename Corner>
constexpr void sort_by_y(Corner& top, Corner& mid, Corner& bot) {
    if (top.y > mid.y) std::swap(top, mid);
    if (top.y > bot.y) std::swap(top, bot);
    if (mid.y > bot.y) std::swap(mid, bot);
}
