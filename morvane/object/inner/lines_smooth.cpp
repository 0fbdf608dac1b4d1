#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "morvane/base/numbers.h"
#include "morvane/gtex/gtex.h"
#include "morvane/object/lines.h"

namespace {

// Limited to 32 bits, in 24.8 (8 fraction bits; more than 24 above them where need be).
std::int64_t to_24_8(double value) {
    const double limited = std::clamp(value, double{INT32_MIN}, double{INT32_MAX});
    const std::int32_t whole = trunc_to_int(limited);
    return std::int64_t{whole} * 256 + trunc_to_int((limited - whole) * 256);
}

// The mean of the old pixel and the colour weighted by its coverage, 0 to 255, channel by channel.
std::uint32_t mixed(std::uint32_t old, std::uint32_t colour, std::uint32_t coverage) {
    std::uint32_t pixel = 0;
    for (const int shift : {16, 8, 0}) {
        const std::uint32_t channel = (colour >> shift & 255) * coverage >> 8;
        pixel |= ((old >> shift & 255) + channel) >> 1 << shift;
    }
    return pixel;
}

void plot_mixed(std::uint32_t* dst, std::int64_t x, std::int64_t y, std::uint32_t colour,
                std::uint32_t coverage) {
    if (x < 0 || x >= frame_columns || y < 0 || y >= frame_rows) return;
    const auto index = static_cast<std::int32_t>(y * frame_columns + x);
    if (in_frame_index(index)) dst[index] = mixed(dst[index], colour, coverage);
}

// A line along its longer axis, all in 24.8.
struct smooth_line {
    std::int64_t along0, across0, along1, across1;
};

// Calls `plot(along, across, coverage)` twice for each step along the axis that lies in 0 to `end` - 1.
template<typename Plot>
void walk_smooth(smooth_line line, std::int64_t end, Plot plot) {
    if (line.along1 < line.along0) {
        std::swap(line.along0, line.along1);
        std::swap(line.across0, line.across1);
    }
    const std::int64_t length = line.along1 - line.along0;
    const std::int64_t slope = length != 0 ? (line.across1 - line.across0) * 65536 / length : 0; // 16.16
    const std::int64_t first = line.along0 >> 8;
    const std::int64_t last = std::max(first, (line.along1 >> 8) - 1);
    const std::int64_t from = std::max<std::int64_t>(first, 0);
    // 16.16, moved from the start to the whole coordinate before it and on to `from`
    std::int64_t across = line.across0 * 256 - (slope * (line.along0 & 255) >> 8) + slope * (from - first);
    for (std::int64_t along = from; along <= std::min(last, end - 1); ++along, across += slope) {
        const auto fraction = static_cast<std::uint32_t>(across >> 8 & 255);
        plot(along, across >> 16, 255 - fraction);
        plot(along, (across >> 16) + 1, fraction);
    }
}

} // namespace

void draw_line_smooth(std::uint32_t* dst, double x0, double y0, double x1, double y1, std::uint32_t colour) {
    if (std::isnan(x0) || std::isnan(y0) || std::isnan(x1) || std::isnan(y1)) return;
    const std::int64_t ax = to_24_8(x0), ay = to_24_8(y0), bx = to_24_8(x1), by = to_24_8(y1);
    if (std::abs(bx - ax) <= std::abs(by - ay))
        walk_smooth({ay, ax, by, bx}, frame_rows,
                    [=](std::int64_t y, std::int64_t x, std::uint32_t coverage) {
                        plot_mixed(dst, x, y, colour, coverage);
                    });
    else
        walk_smooth({ax, ay, bx, by}, frame_columns,
                    [=](std::int64_t x, std::int64_t y, std::uint32_t coverage) {
                        plot_mixed(dst, x, y, colour, coverage);
                    });
}

namespace {

struct clip_limits {
    std::int32_t left, right, bottom, top;
};
clip_limits window{1, frame_columns, frame_rows, 1};

struct point {
    double x, y;
};

// Which limits a point passes.
enum outcode : unsigned { above = 1, below = 2, left_of = 4, right_of = 8 };

unsigned outcode_of(const point& p) {
    unsigned code = 0;
    if (p.y < window.top)
        code = above;
    else if (p.y > window.bottom)
        code = below;
    if (p.x < window.left)
        code |= left_of;
    else if (p.x > window.right)
        code |= right_of;
    return code;
}

// Where the line leaves the window at one of the limits that `out` passes. `other` doesn't pass that limit.
point cut(const point& other, const point& out, unsigned code) {
    const double dx = out.x - other.x, dy = out.y - other.y;
    if ((code & (above | below)) != 0) {
        const double y = (code & above) != 0 ? window.top : window.bottom;
        return {other.x + (y - other.y) * dx / dy, y};
    }
    const double x = (code & left_of) != 0 ? window.left : window.right;
    return {x, other.y + (x - other.x) * dy / dx};
}

double limited(float value) {
    constexpr float most = std::numeric_limits<float>::max();
    return std::clamp(value, -most, most);
}

} // namespace

void set_clip_window(std::int32_t left, std::int32_t right, std::int32_t bottom, std::int32_t top) {
    window = {left, right, bottom, top};
}

void draw_line_clipped(std::uint32_t* dst, float x0, float y0, float x1, float y1, std::uint32_t colour) {
    if (std::isnan(x0) || std::isnan(y0) || std::isnan(x1) || std::isnan(y1)) return;
    point a{limited(x0), limited(y0)}, b{limited(x1), limited(y1)};
    // Four cuts do; more come only of rounding, or of a window that is inside out.
    for (int cuts = 0; cuts <= 8; ++cuts) {
        const unsigned code_a = outcode_of(a), code_b = outcode_of(b);
        if ((code_a & code_b) != 0) return;
        if ((code_a | code_b) == 0) return draw_line_smooth(dst, a.x, a.y, b.x, b.y, colour);
        if (code_a != 0)
            a = cut(b, a, code_a);
        else
            b = cut(a, b, code_b);
    }
}
