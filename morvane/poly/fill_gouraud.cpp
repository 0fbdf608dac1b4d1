// Like fill_flat.cpp, with the colour as three more values of a corner.
#include "morvane/base/kernel.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/inner/solid_row.h"

namespace {

constexpr solid_kind gouraud{.tested = false, .blended = false, .gouraud = true};
constexpr solid_kind gouraud_z{.tested = true, .blended = false, .gouraud = true};
constexpr solid_kind gouraud_a{.tested = false, .blended = true, .gouraud = true};
constexpr solid_kind gouraud_az{.tested = true, .blended = true, .gouraud = true};

constexpr std::uint32_t no_colour = 0;
constexpr std::int32_t opaque = 256;

constexpr triangle_corner<3> corner(std::int32_t x, std::int32_t y, std::int32_t r, std::int32_t g,
                                    std::int32_t b) {
    return {x, y, {fixed_value(r), fixed_value(g), fixed_value(b)}};
}
constexpr triangle_corner<4> corner_z(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t r,
                                      std::int32_t g, std::int32_t b) {
    return {x, y, {depth_value(z), fixed_value(r), fixed_value(g), fixed_value(b)}};
}

} // namespace

MORVANE_KERNEL void fill_gouraud(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                 std::int32_t r0, std::int32_t g0, std::int32_t b0, std::int32_t x1,
                                 std::int32_t y1, std::int32_t r1, std::int32_t g1, std::int32_t b1,
                                 std::int32_t x2, std::int32_t y2, std::int32_t r2, std::int32_t g2,
                                 std::int32_t b2) {
    fill_solid<gouraud>(destination, corner(x0, y0, r0, g0, b0), corner(x1, y1, r1, g1, b1),
                        corner(x2, y2, r2, g2, b2), no_colour, opaque);
}

MORVANE_KERNEL void fill_gouraud_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                   std::int32_t z0, std::int32_t r0, std::int32_t g0, std::int32_t b0,
                                   std::int32_t x1, std::int32_t y1, std::int32_t z1, std::int32_t r1,
                                   std::int32_t g1, std::int32_t b1, std::int32_t x2, std::int32_t y2,
                                   std::int32_t z2, std::int32_t r2, std::int32_t g2, std::int32_t b2) {
    fill_solid<gouraud_z>(destination, corner_z(x0, y0, z0, r0, g0, b0), corner_z(x1, y1, z1, r1, g1, b1),
                          corner_z(x2, y2, z2, r2, g2, b2), no_colour, opaque);
}

MORVANE_KERNEL void fill_gouraud_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                   std::int32_t r0, std::int32_t g0, std::int32_t b0, std::int32_t x1,
                                   std::int32_t y1, std::int32_t r1, std::int32_t g1, std::int32_t b1,
                                   std::int32_t x2, std::int32_t y2, std::int32_t r2, std::int32_t g2,
                                   std::int32_t b2, std::int32_t opacity) {
    fill_solid<gouraud_a>(destination, corner(x0, y0, r0, g0, b0), corner(x1, y1, r1, g1, b1),
                          corner(x2, y2, r2, g2, b2), no_colour, opacity);
}

MORVANE_KERNEL void fill_gouraud_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                    std::int32_t z0, std::int32_t r0, std::int32_t g0, std::int32_t b0,
                                    std::int32_t x1, std::int32_t y1, std::int32_t z1, std::int32_t r1,
                                    std::int32_t g1, std::int32_t b1, std::int32_t x2, std::int32_t y2,
                                    std::int32_t z2, std::int32_t r2, std::int32_t g2, std::int32_t b2,
                                    std::int32_t opacity) {
    fill_solid<gouraud_az>(destination, corner_z(x0, y0, z0, r0, g0, b0), corner_z(x1, y1, z1, r1, g1, b1),
                           corner_z(x2, y2, z2, r2, g2, b2), no_colour, opacity);
}
