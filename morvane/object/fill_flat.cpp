#include <algorithm>

#include "morvane/base/kernel.h"
#include "morvane/object/fill.h"
#include "morvane/object/inner/scan.h"

namespace {

struct corner {
    std::int64_t x, y;
};

// `count` words, one at least. Most rows of a mesh are a few pixels long, where the set-up of a
// loop of vectors costs more than the filling: blocks that overlap at the end need none.
inline void fill_words(std::uint32_t* out, std::int64_t count, std::uint32_t colour) {
    constexpr std::int64_t block = 8, half_block = 4;
    if (count >= 16 * block) {
        std::fill_n(out, count, colour);
    } else if (count >= block) {
        for (std::int64_t i = 0; i < count - block; i += block)
            std::fill_n(out + i, block, colour);
        std::fill_n(out + count - block, block, colour);
    } else if (count >= half_block) {
        std::fill_n(out, half_block, colour);
        std::fill_n(out + count - half_block, half_block, colour);
    } else {
        out[0] = out[count / 2] = out[count - 1] = colour;
    }
}

// Fills the rows from `row` to `end` - 1 between the walks `p` and `q`, which stand on `row`.
MORVANE_KERNEL void fill_rows(std::uint32_t* dst, std::int64_t row, std::int64_t end, fixed_walk p,
                              fixed_walk q, std::uint32_t colour) {
    for (; row < end; ++row) {
        const std::int64_t l = std::max(fixed_floor(std::min(p.now, q.now)), first_column);
        const std::int64_t r = std::min<std::int64_t>(fixed_floor(std::max(p.now, q.now)), frame_columns);
        if (l < r) fill_words(dst + row * frame_columns + l, r - l, colour);
        p.next();
        q.next();
    }
}

// Fills the rows that the edge from `top` to `bot` spans, up to the long edge, which stands on row
// `long_top`.
void fill_part(std::uint32_t* dst, corner top, corner bot, fixed_walk long_edge, std::int64_t long_top,
               std::uint32_t colour) {
    const std::int64_t row = std::max(top.y, first_row);
    const std::int64_t end = std::min<std::int64_t>(bot.y, frame_rows);
    if (row >= end) return;
    fixed_walk edge(top.x, bot.x, bot.y - top.y);
    edge.skip(row - top.y);
    long_edge.skip(row - long_top);
    fill_rows(dst, row, end, edge, long_edge, colour);
}

} // namespace

void fill_triangle(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                   std::int32_t x2, std::int32_t y2, std::uint32_t colour) {
    corner top{x0, y0}, mid{x1, y1}, bot{x2, y2};
    sort_by_y(top, mid, bot);
    if (top.x == mid.x && mid.x == bot.x) return;
    if (top.y == bot.y) return;
    const fixed_walk long_edge(top.x, bot.x, bot.y - top.y);
    fill_part(dst, top, mid, long_edge, top.y, colour);
    fill_part(dst, mid, bot, long_edge, top.y, colour);
}
