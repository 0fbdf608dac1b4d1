// Every filler is a kernel as a whole, from the corners to the pixels: a small triangle has no time for a
// call a row.
#include "morvane/base/kernel.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/inner/solid_row.h"

namespace {

constexpr solid_kind flat{.tested = false, .blended = false, .gouraud = false};
constexpr solid_kind flat_z{.tested = true, .blended = false, .gouraud = false};
constexpr solid_kind flat_a{.tested = false, .blended = true, .gouraud = false};
constexpr solid_kind flat_az{.tested = true, .blended = true, .gouraud = false};

constexpr std::int32_t opaque = 256;

constexpr triangle_corner<0> corner(std::int32_t x, std::int32_t y) {
    return {x, y, {}};
}
constexpr triangle_corner<1> corner_z(std::int32_t x, std::int32_t y, std::int32_t z) {
    return {x, y, {depth_value(z)}};
}

} // namespace

MORVANE_KERNEL void fill_flat(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                              std::int32_t y1, std::int32_t x2, std::int32_t y2, std::uint32_t colour) {
    fill_solid<flat>(destination, corner(x0, y0), corner(x1, y1), corner(x2, y2), colour, opaque);
}

MORVANE_KERNEL void fill_flat_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                                std::int32_t x1, std::int32_t y1, std::int32_t z1, std::int32_t x2,
                                std::int32_t y2, std::int32_t z2, std::uint32_t colour) {
    fill_solid<flat_z>(destination, corner_z(x0, y0, z0), corner_z(x1, y1, z1), corner_z(x2, y2, z2), colour,
                       opaque);
}

MORVANE_KERNEL void fill_flat_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                std::int32_t y1, std::int32_t x2, std::int32_t y2, std::uint32_t colour,
                                std::int32_t opacity) {
    fill_solid<flat_a>(destination, corner(x0, y0), corner(x1, y1), corner(x2, y2), colour, opacity);
}

MORVANE_KERNEL void fill_flat_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0,
                                 std::int32_t z0, std::int32_t x1, std::int32_t y1, std::int32_t z1,
                                 std::int32_t x2, std::int32_t y2, std::int32_t z2, std::uint32_t colour,
                                 std::int32_t opacity) {
    fill_solid<flat_az>(destination, corner_z(x0, y0, z0), corner_z(x1, y1, z1), corner_z(x2, y2, z2), colour,
                        opacity);
}
