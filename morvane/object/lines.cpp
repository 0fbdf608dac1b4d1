#include "morvane/object/lines.h"

#include <algorithm>
#include <cstdlib>

#include "morvane/gtex/gtex.h"
#include "morvane/object/inner/scan.h"

namespace {

// One axis of a line.
struct axis {
    std::int64_t from;
    std::int64_t length; // up to 2^32 - 1
    std::int64_t sign;   // of its steps
    std::int64_t stride; // pixels from one coordinate to the next
    std::int64_t end;    // coordinates from 1 to end - 1 lie inside the frame
};

axis axis_between(std::int64_t from, std::int64_t to, std::int64_t stride, std::int64_t end) {
    return {from, std::abs(to - from), to < from ? -1 : 1, stride, end};
}

struct interval {
    std::int64_t first, last; // none if first > last
};

// How many steps along the axis lead to a coordinate inside the frame.
interval steps_inside(const axis& a) {
    if (a.sign > 0) return {1 - a.from, a.end - 1 - a.from};
    return {a.from - (a.end - 1), a.from - 1};
}

constexpr std::uint64_t bits(std::int64_t value) { // of a value that isn't negative
    return static_cast<std::uint64_t>(value);
}

// The plots of a line. Plot n, for `plots.first` <= n <= `plots.last`, lies n - `lag` steps along the major
// axis and floor((n * minor.length + bias) / major.length) steps along the minor one: what an error term
// gives that starts at `bias`, grows by minor.length before each plot and, when it reaches major.length,
// loses that and steps. Products of two lengths and the bias stay below 2^64.
struct line_walk {
    axis major, minor;
    std::int64_t lag;
    std::int64_t bias; // below major.length
    interval plots;
};

// The plots that lie inside the frame: both axes step one way only, so they are one interval.
interval plots_inside(const line_walk& line) {
    const interval along = steps_inside(line.major);
    const interval across = steps_inside(line.minor);
    interval n{std::max(line.plots.first, along.first + line.lag),
               std::min(line.plots.last, along.last + line.lag)};
    const std::uint64_t major = bits(line.major.length), minor = bits(line.minor.length);
    const std::uint64_t bias = bits(line.bias);
    if (across.last < 0 || across.first > line.minor.length) return {1, 0};
    if (across.first > 0) { // the first plot with that many steps
        const std::uint64_t reach = bits(across.first) * major - bias;
        n.first = std::max(n.first, static_cast<std::int64_t>(reach / minor + (reach % minor != 0)));
    }
    if (across.last < line.minor.length) // the last plot before one step more
        n.last =
            std::min(n.last, static_cast<std::int64_t>((bits(across.last + 1) * major - bias - 1) / minor));
    return n;
}

void draw_walk(std::uint32_t* dst, const line_walk& line, std::uint32_t colour) {
    const interval n = plots_inside(line);
    if (n.first > n.last) return;
    // The error term before the first of them, and the steps that it has made.
    std::uint64_t total = bits(n.first) * bits(line.minor.length) + bits(line.bias);
    std::uint64_t steps = 0;
    if (total >= bits(line.major.length)) {
        steps = total / bits(line.major.length);
        total %= bits(line.major.length);
    }
    // From here on it is held less the length, so that it steps when it reaches 0.
    std::int64_t error = static_cast<std::int64_t>(total) - line.major.length;
    const std::int64_t major_step = line.major.sign * line.major.stride;
    const std::int64_t minor_step = line.minor.sign * line.minor.stride;
    std::int64_t index = line.major.from * line.major.stride + (n.first - line.lag) * major_step +
                         line.minor.from * line.minor.stride + static_cast<std::int64_t>(steps) * minor_step;
    for (std::int64_t left = n.last - n.first; left >= 0; --left) {
        dst[index] = colour;
        error += line.minor.length;
        index += major_step;
        if (error >= 0) {
            error -= line.major.length;
            index += minor_step;
        }
    }
}

// Along one axis alone, both ends included.
void draw_run(std::uint32_t* dst, const axis& along, const axis& across, std::uint32_t colour) {
    if (across.from < 1 || across.from >= across.end) return;
    const interval inside = steps_inside(along);
    const std::int64_t first = std::max<std::int64_t>(inside.first, 0);
    const std::int64_t last = std::min(inside.last, along.length);
    const std::int64_t start = along.from * along.stride + across.from * across.stride;
    for (std::int64_t step = first; step <= last; ++step)
        dst[start + step * along.sign * along.stride] = colour;
}

void plot(std::uint32_t* dst, std::int32_t x, std::int32_t y, std::uint32_t colour) {
    if (in_frame(x, y)) dst[y * frame_columns + x] = colour;
}

} // namespace

void draw_line(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
               std::uint32_t colour) {
    const axis x = axis_between(x0, x1, 1, frame_columns);
    const axis y = axis_between(y0, y1, frame_columns, frame_rows);
    const bool steep = x.length <= y.length;
    const axis& major = steep ? y : x;
    if (major.length == 0) return plot(dst, x0, y0, colour);
    draw_walk(dst, {major, steep ? x : y, 1, 0, {1, major.length}}, colour);
}

void draw_line_bres(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                    std::uint32_t colour) {
    const axis x = axis_between(x0, x1, 1, frame_columns);
    const axis y = axis_between(y0, y1, frame_columns, frame_rows);
    if (y.length == 0) return draw_run(dst, x, y, colour);
    if (x.length == 0) return draw_run(dst, y, x, colour);
    const bool steep = x.length <= y.length;
    const axis& major = steep ? y : x;
    draw_walk(dst, {major, steep ? x : y, 0, major.length / 2, {0, major.length}}, colour);
}
