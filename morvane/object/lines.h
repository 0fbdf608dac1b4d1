// Lines of the object engine.
//
// `dst` is the first pixel of a 512x288 surface; nothing outside the frame is written. Ends may lie anywhere;
// a line costs time in proportion to its steps inside the frame, and its pixels are those that walking the
// whole line with a test for each pixel would write.
#pragma once

#include <cstdint>

// A digital differential analyser: the longer axis (y if both are equal) steps after each plot, the other one
// before it, whenever the error term passes the length. So the start is plotted after a first error step, and
// the end isn't plotted. A line of no length plots its one point. Writes whole colour words, inside 1 <= x <
// 512, 1 <= y < 288 (`in_frame`).
void draw_line(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
               std::uint32_t colour);

// The line with both ends, each pixel the nearest to the true line; halves go toward the end. After J. E.
// Bresenham, "Algorithm for computer control of a digital plotter", 1965. Clipped by `in_frame`.
void draw_line_bres(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                    std::uint32_t colour);

// An antialiased line between ends with sub-pixel position, kept in 24.8 fixed point; the walk along the
// longer axis (y if both are equal) has 16 fraction bits. Each step writes the two pixels beside the line:
// the one at its rounded-down position with coverage 255 - f, its neighbour to the right or below with
// coverage f, f the top 8 bits of the fraction. Each colour channel becomes (old + (coverage * channel >> 8))
// >> 1, the top byte 0. The walk goes from the smaller end of the axis up to, not including, the greater one,
// but makes at least one step, so that a line of no length plots its point.
//
// A pixel is dropped if its column lies outside the surface (a line doesn't come back in at the other side)
// or its index fails `in_frame_index`: row 0 and column 0 are written, but for the very first pixel. Ends
// beyond 32 bits are limited; an end that is no number draws nothing.
void draw_line_smooth(std::uint32_t* dst, double x0, double y0, double x1, double y1, std::uint32_t colour);

// Sets the window of `draw_line_clipped`, which is the frame (1, 512, 288, 1) until then. A line is cut at
// these coordinates; a point on them is inside. A window that is inside out lets nothing through.
// Process-wide state, with no lock.
void set_clip_window(std::int32_t left, std::int32_t right, std::int32_t bottom, std::int32_t top);

// Cuts a line to the clip window, after D. Cohen and I. Sutherland (W. M. Newman and R. F. Sproull,
// "Principles of Interactive Computer Graphics", 1973), and draws what is left with `draw_line_smooth`, which
// keeps it to the frame whatever the window. Infinite ends are limited; an end that is no number draws
// nothing.
void draw_line_clipped(std::uint32_t* dst, float x0, float y0, float x1, float y1, std::uint32_t colour);
