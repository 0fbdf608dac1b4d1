// The triangle fillers without a texture.
//
// Corners are whole pixels. A row is sampled at the start values of its edges; the last row and the last
// column of a triangle are left out, so that neighbours don't overlap. The order of the corners doesn't
// matter for what is covered. Gradients are truncating divisions, without sub-pixel correction.
//
// `destination` is a frame of `raster_width` by `raster_height` words. What lies outside it isn't drawn,
// whatever the coordinates, and the cost goes by the rows and columns inside.
//
// The names: z, depth-tested: a pixel passes if its depth is at least that in `depth_buffer`, which then
// takes it, in the blended forms too. a, blended: d + (((s - d) * opacity) >> 8) for each channel, top byte
// 0; `opacity` is limited to 0 to 256. A depth is limited to 8,388,607 units on either side, a channel of a
// Gouraud corner to 32,767; what a pixel gets of a channel is its low 8 bits.
#pragma once

#include <cstdint>

// One packed colour; the forms without a blend write the word as it is.
void fill_flat(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
               std::int32_t x2, std::int32_t y2, std::uint32_t colour);
void fill_flat_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                 std::int32_t x1, std::int32_t y1, std::int32_t z1, std::int32_t x2, std::int32_t y2,
                 std::int32_t z2, std::uint32_t colour);
void fill_flat_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                 std::int32_t y1, std::int32_t x2, std::int32_t y2, std::uint32_t colour,
                 std::int32_t opacity);
void fill_flat_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                  std::int32_t x1, std::int32_t y1, std::int32_t z1, std::int32_t x2, std::int32_t y2,
                  std::int32_t z2, std::uint32_t colour, std::int32_t opacity);

// One colour a corner. Gouraud, "Continuous shading of curved surfaces" (1971).
void fill_gouraud(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t r0,
                  std::int32_t g0, std::int32_t b0, std::int32_t x1, std::int32_t y1, std::int32_t r1,
                  std::int32_t g1, std::int32_t b1, std::int32_t x2, std::int32_t y2, std::int32_t r2,
                  std::int32_t g2, std::int32_t b2);
void fill_gouraud_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                    std::int32_t r0, std::int32_t g0, std::int32_t b0, std::int32_t x1, std::int32_t y1,
                    std::int32_t z1, std::int32_t r1, std::int32_t g1, std::int32_t b1, std::int32_t x2,
                    std::int32_t y2, std::int32_t z2, std::int32_t r2, std::int32_t g2, std::int32_t b2);
void fill_gouraud_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t r0,
                    std::int32_t g0, std::int32_t b0, std::int32_t x1, std::int32_t y1, std::int32_t r1,
                    std::int32_t g1, std::int32_t b1, std::int32_t x2, std::int32_t y2, std::int32_t r2,
                    std::int32_t g2, std::int32_t b2, std::int32_t opacity);
void fill_gouraud_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                     std::int32_t r0, std::int32_t g0, std::int32_t b0, std::int32_t x1, std::int32_t y1,
                     std::int32_t z1, std::int32_t r1, std::int32_t g1, std::int32_t b1, std::int32_t x2,
                     std::int32_t y2, std::int32_t z2, std::int32_t r2, std::int32_t g2, std::int32_t b2,
                     std::int32_t opacity);
