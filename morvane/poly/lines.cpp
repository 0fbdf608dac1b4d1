#include "morvane/poly/lines.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "morvane/base/numbers.h"
#include "morvane/poly/raster.h"

namespace {

struct rgb {
    std::int32_t r, g, b;
};

constexpr std::int32_t red_of(std::uint32_t pixel) {
    return static_cast<std::int32_t>(pixel >> 16 & 0xff);
}
constexpr std::int32_t green_of(std::uint32_t pixel) {
    return static_cast<std::int32_t>(pixel >> 8 & 0xff);
}
constexpr std::int32_t blue_of(std::uint32_t pixel) {
    return static_cast<std::int32_t>(pixel & 0xff);
}
constexpr std::uint32_t pack(std::int32_t r, std::int32_t g, std::int32_t b) {
    return static_cast<std::uint32_t>(r << 16 | g << 8 | b);
}

bool inside(std::int64_t x, std::int64_t y) {
    return x >= 0 && x < raster_width && y >= 0 && y < raster_height;
}

// One axis of a plain line.
struct axis {
    std::int64_t from;
    std::int64_t length; // up to 2^32 - 1
    std::int64_t sign;   // of its steps
    std::int64_t size;   // coordinates from 0 to size - 1 lie inside the frame
    std::int64_t stride; // pixels from one coordinate to the next
};

struct interval {
    std::int64_t first, last; // none if first > last
};

// How many steps along the axis lead to a coordinate inside the frame.
interval steps_inside(const axis& a) {
    if (a.sign > 0) return {-a.from, a.size - 1 - a.from};
    return {a.from - (a.size - 1), a.from};
}

constexpr std::uint64_t bits(std::int64_t value) { // of a value that isn't negative
    return static_cast<std::uint64_t>(value);
}

// The plots of a line that lie inside the frame. Plot n, from 1 to major.length, lies n - 1 steps along the
// major axis and floor(n * minor.length / major.length) along the minor one. Both only grow, so the plots are
// one interval; products of two lengths stay below 2^64.
interval plots_inside(const axis& major, const axis& minor) {
    const interval along = steps_inside(major), across = steps_inside(minor);
    interval n{std::max<std::int64_t>(1, along.first + 1), std::min(major.length, along.last + 1)};
    if (across.last < 0 || across.first > minor.length) return {1, 0};
    if (across.first > 0) { // the first plot with that many steps
        const std::uint64_t reach = bits(across.first) * bits(major.length);
        n.first = std::max(n.first, static_cast<std::int64_t>((reach - 1) / bits(minor.length) + 1));
    }
    if (across.last < minor.length) { // the last plot before one step more
        const std::uint64_t reach = bits(across.last + 1) * bits(major.length);
        n.last = std::min(n.last, static_cast<std::int64_t>((reach - 1) / bits(minor.length)));
    }
    return n;
}

void draw_plain(std::uint32_t* destination, const axis& major, const axis& minor, std::uint32_t colour) {
    const interval n = plots_inside(major, minor);
    if (n.first > n.last) return;
    const std::uint64_t length = bits(major.length), slope = bits(minor.length);
    const std::uint64_t total = bits(n.first) * slope;
    const auto steps = static_cast<std::int64_t>(total / length);
    std::uint64_t error = total % length;
    std::int64_t at = (major.from + major.sign * (n.first - 1)) * major.stride +
                      (minor.from + minor.sign * steps) * minor.stride;
    for (std::int64_t rest = n.last - n.first + 1; rest > 0; --rest) {
        destination[at] = colour;
        at += major.sign * major.stride;
        error += slope;
        if (error >= length) {
            error -= length;
            at += minor.sign * minor.stride;
        }
    }
}

void mix(std::uint32_t* destination, std::int64_t x, std::int64_t y, const rgb& colour, std::int64_t weight) {
    if (!inside(x, y)) return;
    std::uint32_t& pixel = destination[y * raster_width + x];
    const auto a = static_cast<std::int32_t>(weight);
    pixel = pack((red_of(pixel) + (a * colour.r >> 8)) >> 1, (green_of(pixel) + (a * colour.g >> 8)) >> 1,
                 (blue_of(pixel) + (a * colour.b >> 8)) >> 1);
}

// The major axis of a smooth line, 24.8, and where its minor one starts; up to 33 bits each.
struct smooth_line {
    std::int64_t from, to;
    std::int64_t minor_from, minor_to;
};

// Calls `plot(major, minor, weight)` twice for each step of the major axis that lies in 0 to size - 1.
template<typename Plot>
void walk_smooth(smooth_line line, std::int64_t size, Plot plot) {
    if (line.to < line.from) {
        std::swap(line.from, line.to);
        std::swap(line.minor_from, line.minor_to);
    }
    const std::int64_t length = line.to - line.from;
    if (length == 0) return;
    const std::int64_t step = (line.minor_to - line.minor_from) * 256 / length * 256; // 16.16
    const std::int64_t start = line.from >> 8;
    const std::int64_t first = std::max<std::int64_t>(start, 0), end = std::min(line.to >> 8, size);
    std::int64_t minor = line.minor_from * 256 + step * (first - start);
    for (std::int64_t major = first; major < end; ++major, minor += step) {
        const std::int64_t fraction = minor & 0xffff;
        plot(major, minor >> 16, fraction >> 8);
        plot(major, (minor >> 16) + 1, (0xffff - fraction) >> 8);
    }
}

} // namespace

void plot_aa(std::uint32_t* destination, float x, float y, std::int32_t r, std::int32_t g, std::int32_t b) {
    if (!(x >= 0 && y >= 0)) return; // also what is not a number
    const std::int64_t ix = trunc_to_int64(x), iy = trunc_to_int64(y);
    if (ix > raster_width || iy > raster_height) return;
    const double fx = static_cast<double>(x) - static_cast<double>(ix);
    const double fy = static_cast<double>(y) - static_cast<double>(iy);
    const std::int64_t size = std::int64_t{raster_width} * raster_height;
    const auto add = [=](std::int64_t at_x, std::int64_t at_y, double share) {
        const std::int64_t index = at_y * raster_width + at_x;
        if (index >= size) return;
        std::uint32_t& pixel = destination[index];
        const auto channel = [share](std::int32_t old, std::int32_t c) {
            return std::clamp((old >> 1) + trunc_to_int(c * share) / 2, 0, 255);
        };
        pixel = pack(channel(red_of(pixel), r), channel(green_of(pixel), g), channel(blue_of(pixel), b));
    };
    add(ix, iy, (1 - fx) * (1 - fy));
    add(ix + 1, iy, fx * (1 - fy));
    add(ix + 1, iy + 1, fx * fy);
    add(ix, iy + 1, (1 - fx) * fy);
}

void line_plain(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                std::int32_t y1, std::uint32_t colour) {
    const auto along = [](std::int64_t from, std::int64_t to, std::int64_t size, std::int64_t stride) {
        return axis{from, std::abs(to - from), to < from ? -1 : 1, size, stride};
    };
    const axis x = along(x0, x1, raster_width, 1), y = along(y0, y1, raster_height, raster_width);
    if (x.length > y.length)
        draw_plain(destination, x, y, colour);
    else if (y.length > 0)
        draw_plain(destination, y, x, colour);
    else if (inside(x.from + 1, y.from))
        destination[y.from * y.stride + x.from + 1] = colour;
}

void line_aa(std::uint32_t* destination, float x0, float y0, float x1, float y1, std::int32_t r,
             std::int32_t g, std::int32_t b) {
    const auto fixed = [](double value) { return std::int64_t{trunc_to_int(value * 256)}; };
    const std::int64_t fx0 = fixed(x0), fy0 = fixed(y0), fx1 = fixed(x1), fy1 = fixed(y1);
    const rgb colour{std::clamp(r, 0, 255), std::clamp(g, 0, 255), std::clamp(b, 0, 255)};
    if (std::abs(fy1 - fy0) < std::abs(fx1 - fx0)) {
        walk_smooth({fx0, fx1, fy0, fy1}, raster_width,
                    [&](std::int64_t x, std::int64_t y, std::int64_t weight) {
                        mix(destination, x, y, colour, weight);
                    });
    } else {
        walk_smooth({fy0, fy1, fx0, fx1}, raster_height,
                    [&](std::int64_t y, std::int64_t x, std::int64_t weight) {
                        mix(destination, x, y, colour, weight);
                    });
    }
}
