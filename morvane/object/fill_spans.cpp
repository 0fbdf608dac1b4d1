#include "morvane/object/fill_spans.h"

#include <algorithm>
#include <utility>

#include "morvane/gtex/gtex.h"
#include "morvane/gtex/pixel.h"
#include "morvane/object/inner/scan.h"

namespace {

// The pixels of a span that lie inside the frame; none if `first` = `end`.
struct pixel_run {
    std::uint32_t* first;
    std::uint32_t* end;
};

pixel_run span_in_frame(std::uint32_t* dst, std::int64_t x0, std::int64_t x1, std::int32_t y) {
    if (y < first_row || y >= frame_rows) return {dst, dst};
    if (x0 > x1) std::swap(x0, x1);
    if (x0 == x1) ++x1; // at least one pixel
    const std::int64_t from = std::max(x0, first_column);
    const std::int64_t to = std::min<std::int64_t>(x1, frame_columns);
    if (from >= to) return {dst, dst};
    std::uint32_t* const line = dst + std::int64_t{y} * frame_columns;
    return {line + from, line + to};
}

} // namespace

void fill_span(std::uint32_t* dst, std::int32_t x0, std::int32_t x1, std::int32_t y, std::uint32_t colour) {
    const pixel_run run = span_in_frame(dst, x0, x1, y);
    std::fill(run.first, run.end, colour);
}

void fill_span_half(std::uint32_t* dst, std::int32_t x0, std::int32_t x1, std::int32_t y,
                    std::uint32_t colour) {
    constexpr std::uint32_t no_low_bits = 0x00fefefe, low_bits = 0x00010101;
    const std::uint32_t half_colour = (colour & no_low_bits) >> 1;
    const std::uint32_t colour_bits = colour & low_bits;
    const pixel_run run = span_in_frame(dst, x0, x1, y);
    for (std::uint32_t* pixel = run.first; pixel != run.end; ++pixel) // a carry needs both low bits
        *pixel = half_colour + ((*pixel & no_low_bits) >> 1) + (*pixel & colour_bits);
}

void edge_reset(edge_table& table) {
    table.min_x.fill(edge_none);
    table.max_x.fill(-edge_none);
}

void edge_scan(edge_table& table, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
    if (y0 > y1) {
        std::swap(x0, x1);
        std::swap(y0, y1);
    }
    if (y0 == y1) return;
    constexpr std::int64_t one = 128; // 25.7
    const std::int64_t step = (std::int64_t{x1} - x0) * one / (std::int64_t{y1} - y0);
    const std::int32_t row = std::max(y0, 0), end = std::min(y1, edge_rows);
    if (row >= end) return;
    std::int64_t x = x0 * one + step * (std::int64_t{row} - y0);
    for (std::int32_t y = row; y < end; ++y, x += step) {
        const auto column = static_cast<std::int32_t>(x >> 7); // between x0 and x1
        const auto at = static_cast<std::size_t>(y);
        table.min_x[at] = std::min(table.min_x[at], column);
        table.max_x[at] = std::max(table.max_x[at], column);
    }
}

void fill_quad(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
               std::int32_t x2, std::int32_t y2, std::int32_t x3, std::int32_t y3, std::uint32_t colour,
               std::int32_t mode) {
    edge_table table;
    edge_reset(table);
    edge_scan(table, x0, y0, x1, y1);
    edge_scan(table, x1, y1, x2, y2);
    edge_scan(table, x2, y2, x3, y3);
    edge_scan(table, x3, y3, x0, y0);
    const std::int32_t top = std::max(std::min({y0, y1, y2, y3}), 0);
    const std::int32_t bottom = std::min(std::max({y0, y1, y2, y3}), frame_rows + 1); // row 288 is the last
    const auto span = mode == quad_half ? fill_span_half : fill_span;
    for (std::int32_t y = top; y < bottom; ++y) {
        const auto at = static_cast<std::size_t>(y);
        if (table.min_x[at] <= table.max_x[at]) span(dst, table.min_x[at], table.max_x[at], y, colour);
    }
}

void plot_add(std::uint32_t* dst, std::int32_t x, std::int32_t y, std::uint32_t colour) {
    if (!in_frame(x, y)) return;
    std::uint32_t& pixel = dst[y * frame_columns + x];
    pixel = add_bytes_saturating(pixel, colour);
}
