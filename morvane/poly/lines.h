// Dots and lines. `destination` is a frame of `raster_width` by `raster_height` words; what lies outside it
// is not drawn, whatever the coordinates. A packed colour is written as it is; the smooth forms take channels
// from 0 to 255 and clear the top byte.
#pragma once

#include <cstdint>

// A dot spread over the four pixels around (x, y) by their shares. For each channel:
// new = min(old / 2 + trunc(c * share) / 2, 255). So a dot halves what lay below, even with a share of 0. A
// pixel one beyond the end of a row is the first of the next.
void plot_aa(std::uint32_t* destination, float x, float y, std::int32_t r, std::int32_t g, std::int32_t b);

// An integer line with an error term, max(|dx|, |dy|) pixels long. The minor axis steps before the plot and
// the major one behind it: the start need not be plotted, and the last pixel lies one step short of the end
// along the major axis. Equal ends plot one pixel, to the right of the start. Bresenham, "Algorithm for
// computer control of a digital plotter" (1965).
void line_plain(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                std::int32_t y1, std::uint32_t colour);

// A line of two pixels at each step of the major axis, weighted by their distance from it; the end is left
// out. For each channel: new = (old + ((weight * c) >> 8)) >> 1. Coordinates are cut to 24.8 fixed point.
void line_aa(std::uint32_t* destination, float x0, float y0, float x1, float y1, std::int32_t r,
             std::int32_t g, std::int32_t b);

// The same two, cut to the clip window of the outcodes first (Cohen and Sutherland): the ends that lie
// outside are moved onto the window, in integers, truncated, and in floats. The pixels of a line that is cut
// can so differ by one from those of the whole line.
void line_clipped(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                  std::int32_t y1, std::uint32_t colour);
void line_aa_clipped(std::uint32_t* destination, float x0, float y0, float x1, float y1, std::int32_t r,
                     std::int32_t g, std::int32_t b);
