// The eight affine texture fillers: with and without depth test, blend and the face colour as a factor.
//
// Rows, columns and depths are those of the flat fillers, to the pixel. `destination` is the first pixel of a
// frame of `raster_width` by `raster_height` words. u and v are whole texels at the vertices; in between they
// run in 16.16, and the texel of a pixel is that at (u >> 16, v >> 16). With a `texture_height` coordinates
// outside the texture wrap; with 0 the caller vouches for them. They are limited to 32,767 on either side
// before that, depths as in fillers.h, `opacity` to 0 to 256. Without texels nothing is drawn.
#pragma once

#include <cstdint>

// The texel as a whole word, its top byte included.
void fill_tex(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t u0, std::int32_t v0,
              std::int32_t x1, std::int32_t y1, std::int32_t u1, std::int32_t v1, std::int32_t x2,
              std::int32_t y2, std::int32_t u2, std::int32_t v2, const std::uint32_t* texture,
              std::int32_t texture_width, std::int32_t texture_height = 0);

void fill_tex_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t z1,
                std::int32_t u1, std::int32_t v1, std::int32_t x2, std::int32_t y2, std::int32_t z2,
                std::int32_t u2, std::int32_t v2, const std::uint32_t* texture, std::int32_t texture_width,
                std::int32_t texture_height = 0);

// The texel blended over the frame with `opacity`; the top byte is 0.
void fill_tex_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t u0,
                std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t u1, std::int32_t v1,
                std::int32_t x2, std::int32_t y2, std::int32_t u2, std::int32_t v2,
                const std::uint32_t* texture, std::int32_t texture_width, std::int32_t opacity,
                std::int32_t texture_height = 0);

void fill_tex_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                 std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t z1,
                 std::int32_t u1, std::int32_t v1, std::int32_t x2, std::int32_t y2, std::int32_t z2,
                 std::int32_t u2, std::int32_t v2, const std::uint32_t* texture, std::int32_t texture_width,
                 std::int32_t opacity, std::int32_t texture_height = 0);

// Each channel of the texel times that of the colour, shifted right by 8; the top byte is 0.
void fill_tex_lit(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t u0,
                  std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t u1, std::int32_t v1,
                  std::int32_t x2, std::int32_t y2, std::int32_t u2, std::int32_t v2, std::int32_t r,
                  std::int32_t g, std::int32_t b, const std::uint32_t* texture, std::int32_t texture_width,
                  std::int32_t texture_height = 0);

void fill_tex_lit_z(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                    std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t z1,
                    std::int32_t u1, std::int32_t v1, std::int32_t x2, std::int32_t y2, std::int32_t z2,
                    std::int32_t u2, std::int32_t v2, std::int32_t r, std::int32_t g, std::int32_t b,
                    const std::uint32_t* texture, std::int32_t texture_width,
                    std::int32_t texture_height = 0);

// The texel times the colour, blended over the frame with `opacity`.
void fill_tex_lit_a(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t u0,
                    std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t u1, std::int32_t v1,
                    std::int32_t x2, std::int32_t y2, std::int32_t u2, std::int32_t v2, std::int32_t r,
                    std::int32_t g, std::int32_t b, const std::uint32_t* texture, std::int32_t texture_width,
                    std::int32_t opacity, std::int32_t texture_height = 0);

void fill_tex_lit_az(std::uint32_t* destination, std::int32_t x0, std::int32_t y0, std::int32_t z0,
                     std::int32_t u0, std::int32_t v0, std::int32_t x1, std::int32_t y1, std::int32_t z1,
                     std::int32_t u1, std::int32_t v1, std::int32_t x2, std::int32_t y2, std::int32_t z2,
                     std::int32_t u2, std::int32_t v2, std::int32_t r, std::int32_t g, std::int32_t b,
                     const std::uint32_t* texture, std::int32_t texture_width, std::int32_t opacity,
                     std::int32_t texture_height = 0);
