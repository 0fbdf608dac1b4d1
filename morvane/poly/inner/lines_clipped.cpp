// Cohen and Sutherland: while an end lies outside the clip window, it is moved to where the line meets one of
// the window's bounds.
#include <algorithm>
#include <cstdint>

#include "morvane/poly/lines.h"
#include "morvane/poly/raster.h"

namespace {

template<typename Number>
struct point {
    Number x, y;
};

std::int32_t outcode(const point<std::int32_t>& p) {
    return raster_outcode(p.x, p.y);
}
std::int32_t outcode(const point<float>& p) {
    return raster_outcode_f(p.x, p.y);
}

constexpr std::uint64_t magnitude(std::int64_t value) {
    return static_cast<std::uint64_t>(value < 0 ? -value : value);
}

// from + way * rise / run, truncated. `way` and `run` have one sign and |way| <= |run|. All three are
// differences of 32-bit numbers, so that the product of the magnitudes fits.
std::int32_t along(std::int32_t from, std::int64_t way, std::int64_t rise, std::int64_t run) {
    const auto by = static_cast<std::int64_t>(magnitude(way) * magnitude(rise) / magnitude(run));
    return static_cast<std::int32_t>(from + (rise < 0 ? -by : by));
}

std::int32_t at_bound(std::int32_t bound, std::int32_t from, std::int32_t to, std::int32_t other_from,
                      std::int32_t other_to) {
    return along(other_from, std::int64_t{bound} - from, std::int64_t{other_to} - other_from,
                 std::int64_t{to} - from);
}

// In double: a product of two floats can pass their range, and the result is rounded once.
float at_bound(std::int32_t bound, float from, float to, float other_from, float other_to) {
    const double rise = static_cast<double>(other_to) - other_from, run = static_cast<double>(to) - from;
    return static_cast<float>((bound - static_cast<double>(from)) * rise / run + other_from);
}

// Where the line from a to b meets the bound that `code` tells of; the bounds of x go before those of y.
template<typename Number>
point<Number> cut(const point<Number>& a, const point<Number>& b, std::int32_t code) {
    const raster_window& window = raster_clip_window();
    if ((code & (outcode_left | outcode_right)) != 0) {
        const std::int32_t bound = code & outcode_left ? window.left : window.right;
        return {static_cast<Number>(bound), at_bound(bound, a.x, b.x, a.y, b.y)};
    }
    const std::int32_t bound = code & outcode_top ? window.top : window.bottom;
    return {at_bound(bound, a.y, b.y, a.x, b.x), static_cast<Number>(bound)};
}

// Whether anything of the line is left. The bound of a cut lies between the two ends. Each end meets each
// bound once at most, but for the rounding of floats, which the limit sees to.
template<typename Number>
bool clip(point<Number>& a, point<Number>& b) {
    constexpr int most_cuts = 16;
    const raster_window& window = raster_clip_window();
    if (window.left > window.right || window.top > window.bottom) return false;
    for (int cuts = 0; cuts <= most_cuts; ++cuts) {
        const std::int32_t code_a = outcode(a), code_b = outcode(b);
        if (code_a == 0 && code_b == 0) return true;
        if ((code_a & code_b) != 0) return false;
        if (code_a != 0)
            a = cut(a, b, code_a);
        else
            b = cut(a, b, code_b);
    }
    return false;
}

} // namespace

void line_clipped(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                  std::int32_t y1, std::uint32_t colour) {
    point<std::int32_t> a{x0, y0}, b{x1, y1};
    if (clip(a, b)) line_plain(destination, a.x, a.y, b.x, b.y, colour);
}

void line_aa_clipped(std::uint32_t* destination, float x0, float y0, float x1, float y1, std::int32_t r,
                     std::int32_t g, std::int32_t b) {
    point<float> from{x0, y0}, to{x1, y1};
    if (clip(from, to)) line_aa(destination, from.x, from.y, to.x, to.y, r, g, b);
}
