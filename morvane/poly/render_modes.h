// The closed set of ways in which a polygon can be drawn.
#pragma once

#include <array>
#include <cstdint>

struct poly;

// Bits of a mode word. Only the words that stand in the table have a rasterizer.
enum render_mode_bits : std::uint32_t {
    mode_points = 0x001,
    mode_lines = 0x002,
    mode_flat = 0x004,
    mode_gouraud = 0x008, // together with mode_per_vertex only
    mode_textured = 0x010,
    mode_depth = 0x020,       // reads and writes the depth buffer
    mode_blended = 0x040,     // with the opacity, over what the frame holds
    mode_perspective = 0x080, // with mode_textured
    mode_smooth = 0x100,      // anti-aliased, with points or lines
    mode_lit = 0x200,         // the texture multiplied by the face colour
    mode_per_vertex = 0x400,  // lighting per vertex instead of per face
};

struct render_mode_row {
    void (*adapter)(std::uint32_t* destination, poly& polygon);
    std::uint32_t mode;
};

extern const std::array<render_mode_row, 24> render_mode_table;

// Kept for the order of the start-up: the table is constant and is there before it.
void render_mode_init();

// The row of a mode word; row 0, points, for a word that stands in no row.
std::int32_t render_mode_find(std::uint32_t mode);

// Draws `polygon`, projected, into a frame of `raster_width` by `raster_height` words. Clipping changes the
// polygon. `row` outside the table draws nothing.
void render_mode_draw(std::uint32_t* destination, poly& polygon, std::int32_t row);
