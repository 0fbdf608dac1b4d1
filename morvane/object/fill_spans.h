// Rows and quads in one colour, and the additive plot.
//
// `dst` is the first pixel of a 512x288 surface of which only pixels with 1 <= x < 512 and 1 <= y < 288 are
// written. Coordinates may lie anywhere; the work is bounded by the frame.
#pragma once

#include <array>
#include <cstdint>

// Fills row `y` from x0 to x1 - 1, or the one pixel if x0 = x1. Ends in the wrong order are swapped.
void fill_span(std::uint32_t* dst, std::int32_t x0, std::int32_t x1, std::int32_t y, std::uint32_t colour);

// `fill_span` in which each of the three colour channels becomes (colour + old) >> 1, and the top byte 0.
void fill_span_half(std::uint32_t* dst, std::int32_t x0, std::int32_t x1, std::int32_t y,
                    std::uint32_t colour);

// Smallest and greatest x of the edges that crossed a row.
inline constexpr std::int32_t edge_rows = 513;
inline constexpr std::int32_t edge_none = 61440; // the smallest x of a row that no edge crossed
struct edge_table {
    std::array<std::int32_t, edge_rows> min_x;
    std::array<std::int32_t, edge_rows> max_x;
};

// Sets every row to "not crossed": 61440 and -61440.
void edge_reset(edge_table& table);

// Takes the edge between two points into the table: on each of its rows from the upper point's to the one
// above the lower point's, the x (25.7 fixed point, walked from the upper point, rounded down). Rows outside
// 0 to 512 are dropped; an edge along a row adds nothing.
void edge_scan(edge_table& table, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1);

// How a quad is filled.
inline constexpr std::int32_t quad_plain = 0; // with fill_span
inline constexpr std::int32_t quad_half = 1;  // with fill_span_half

// Fills the quad with the given corners, in order around it: edge_scan of the four edges, then one span a
// row, from the top row to the one above the lowest corner, at most 288. Any mode but 1 is mode 0. A concave
// quad is filled between the outer edges of each row.
void fill_quad(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
               std::int32_t x2, std::int32_t y2, std::int32_t x3, std::int32_t y3, std::uint32_t colour,
               std::int32_t mode);

// Adds `colour` to the pixel at (x, y) with saturation of each of the four bytes.
void plot_add(std::uint32_t* dst, std::int32_t x, std::int32_t y, std::uint32_t colour);
