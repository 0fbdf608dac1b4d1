// One adapter a render mode: takes a projected polygon, cuts it to the screen and into triangles, turns what
// its rasterizer needs into integers and calls it. Internal to the folder; the way in is render_modes.h.
//
// Clipping changes the polygon. Coordinates are truncated toward zero; one that is not a number or is
// infinite gives a pixel inside the frame or none.
#pragma once

#include <cstdint>

#include "morvane/poly/poly.h"

// Plot or draw lines themselves.
void adapt_point(std::uint32_t* destination, poly& polygon);
void adapt_point_aa(std::uint32_t* destination, poly& polygon);
void adapt_line(std::uint32_t* destination, poly& polygon);
void adapt_line_aa(std::uint32_t* destination, poly& polygon);

// Fill with the face colour.
void adapt_flat(std::uint32_t* destination, poly& polygon);
void adapt_flat_z(std::uint32_t* destination, poly& polygon);
void adapt_flat_a(std::uint32_t* destination, poly& polygon);
void adapt_flat_az(std::uint32_t* destination, poly& polygon);

// Fill with the colours of the vertices.
void adapt_gouraud(std::uint32_t* destination, poly& polygon);
void adapt_gouraud_z(std::uint32_t* destination, poly& polygon);
void adapt_gouraud_a(std::uint32_t* destination, poly& polygon);
void adapt_gouraud_az(std::uint32_t* destination, poly& polygon);

// Fill with the texture, affine.
void adapt_tex(std::uint32_t* destination, poly& polygon);
void adapt_tex_z(std::uint32_t* destination, poly& polygon);
void adapt_tex_a(std::uint32_t* destination, poly& polygon);
void adapt_tex_az(std::uint32_t* destination, poly& polygon);

// The same, multiplied by the face colour.
void adapt_tex_lit(std::uint32_t* destination, poly& polygon);
void adapt_tex_lit_z(std::uint32_t* destination, poly& polygon);
void adapt_tex_lit_a(std::uint32_t* destination, poly& polygon);
void adapt_tex_lit_az(std::uint32_t* destination, poly& polygon);

// Fill with the texture in perspective.
void adapt_tex_p(std::uint32_t* destination, poly& polygon);
void adapt_tex_lit_p(std::uint32_t* destination, poly& polygon);
void adapt_tex_pa(std::uint32_t* destination, poly& polygon);
void adapt_tex_lit_pa(std::uint32_t* destination, poly& polygon);

// What the adapters share: the colour of the face in one word, and a call for each triangle of the fan with
// the three vertices.
constexpr std::uint32_t poly_packed_colour(const poly& polygon) {
    return (static_cast<std::uint32_t>(polygon.r) << 8 | static_cast<std::uint32_t>(polygon.g)) << 8 |
           static_cast<std::uint32_t>(polygon.b);
}

template<typename Draw>
void poly_each_triangle(const poly& polygon, Draw draw) {
    for (std::int32_t i = 0; i < polygon.count - 2; ++i) {
        const auto at = static_cast<std::size_t>(i);
        draw(polygon.v[0], polygon.v[at + 1], polygon.v[at + 2]);
    }
}
