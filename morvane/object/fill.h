// Triangle fillers of the object engine: integer scan converters that drop what lies off the frame.
//
// `dst` is the first pixel of a 512x288 surface. Only pixels with 1 <= x < 512 and 1 <= y < 288 are written
// (`in_frame`): column 0 and row 0 stay as they are. Corners may lie anywhere, in any order; a triangle costs
// time in proportion to the rows and columns that it covers inside the frame, and its pixels are those that
// walking the whole triangle with a test for each pixel would write.
//
// Edges and texture coordinates are walked in fixed point with 16 fraction bits, a row's position being the
// sum of the steps before it and a step a division that truncates toward zero. Positions are 64 bits wide, so
// any 32-bit coordinate is sound. A row ends one pixel before its right edge, and the row of the lowest
// corner isn't drawn, so that neighbours don't overlap.
#pragma once

#include <cstdint>

// Fills with one colour word. A triangle with three equal x or three equal y draws nothing.
void fill_triangle(std::uint32_t* dst, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                   std::int32_t x2, std::int32_t y2, std::uint32_t colour);

// Fills with the texels (whole words, top byte included) of the 256x256 `texture`, which doesn't overlap
// `dst`. `tu` and `tv` are a corner's column and row in the texture; they wrap at 256. The mapping is affine,
// with one gradient a row.
void fill_triangle_textured(std::uint32_t* dst, const std::uint32_t* texture, std::int32_t x0,
                            std::int32_t y0, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                            std::int32_t y2, std::int32_t tu0, std::int32_t tv0, std::int32_t tu1,
                            std::int32_t tv1, std::int32_t tu2, std::int32_t tv2);

// `fill_triangle_textured` with light. With `shade` each colour channel of a texel is multiplied by its
// factor, truncated and limited to 0 to 255 (a factor that is no number gives 0), and the top byte is 0. With
// `add` the texel, shaded or not, is added to the pixel as `plot_add` does. With neither it is the plain
// filler.
void fill_triangle_shaded(std::uint32_t* dst, const std::uint32_t* texture, std::int32_t x0, std::int32_t y0,
                          std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                          std::int32_t tu0, std::int32_t tv0, std::int32_t tu1, std::int32_t tv1,
                          std::int32_t tu2, std::int32_t tv2, float red, float green, float blue, bool shade,
                          bool add);
