// The four perspective-correct texture fillers.
//
// 1/z, u/z and v/z run linearly over the triangle; a row divides once every 256 pixels and once for what is
// left of it, and the texture is affine between two divisions (the subdivided span of Hecker, "Perspective
// Texture Mapping", 1995/96). Pixels are sampled at their centres. There is no depth test.
//
// `destination` is the first pixel of a frame of `raster_width` by `raster_height` words; what lies outside
// it is neither drawn nor walked, pixel by pixel. x and y are pixels, z the camera-space depth, u and v
// texels. Every value may be anything: a triangle without a finite area draws nothing, and so does one
// without texels.
//
// u and v both wrap at 256, whatever the size of the texture, and a row of texels is as long as the greatest
// power of two up to `texture_width`, at most 65,536: a width that is none draws as if it were the next
// smaller one. With a `texture_height` the texels beyond the last of the width * height words are the first
// ones again; with 0 the caller vouches for 256 rows.
#pragma once

#include <cstdint>

// The texel as a whole word, its top byte included.
void fill_tex_p(std::uint32_t* destination, float x0, float y0, float z0, float u0, float v0, float x1,
                float y1, float z1, float u1, float v1, float x2, float y2, float z2, float u2, float v2,
                const std::uint32_t* texture, std::int32_t texture_width, std::int32_t texture_height = 0);

// Each channel of the texel times that of the colour, shifted right by 8; the top byte is 0.
void fill_tex_lit_p(std::uint32_t* destination, float x0, float y0, float z0, float u0, float v0, float x1,
                    float y1, float z1, float u1, float v1, float x2, float y2, float z2, float u2, float v2,
                    const std::uint32_t* texture, std::int32_t texture_width, std::int32_t r, std::int32_t g,
                    std::int32_t b, std::int32_t texture_height = 0);

// The texel blended over the frame with `opacity`.
void fill_tex_pa(std::uint32_t* destination, float x0, float y0, float z0, float u0, float v0, float x1,
                 float y1, float z1, float u1, float v1, float x2, float y2, float z2, float u2, float v2,
                 const std::uint32_t* texture, std::int32_t texture_width, std::int32_t opacity,
                 std::int32_t texture_height = 0);

// The texel times the colour, blended over the frame with `opacity`.
void fill_tex_lit_pa(std::uint32_t* destination, float x0, float y0, float z0, float u0, float v0, float x1,
                     float y1, float z1, float u1, float v1, float x2, float y2, float z2, float u2, float v2,
                     const std::uint32_t* texture, std::int32_t texture_width, std::int32_t r, std::int32_t g,
                     std::int32_t b, std::int32_t opacity, std::int32_t texture_height = 0);
