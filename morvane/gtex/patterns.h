// Pictures from formulas of the pixel's place: a radial light and four bit patterns.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

// Radial fall-off: with cx = width / 2, cy = height / 2 and d = sqrt(((x - cx) / cx)^2 + ((y - cy) / cy)^2),
// each channel of `colour` times max(0, 1 - d), truncated; top byte 0. An ellipse that touches the surface's
// edges: the centre has the full colour, the corners are black.
void gtex_radial(gtex dst, std::uint32_t colour);

// All of `dst`, at (x, y):
void gtex_pattern_blue(gtex dst, std::uint32_t mask); // (y & mask) ^ ((255 - mask) & x)
void gtex_pattern_green(gtex dst,
                        std::uint32_t mask);         // ((y & mask) << 8) ^ ((0xff00 - mask * 256) & (x << 8))
void gtex_pattern_red(gtex dst, std::uint32_t mask); // ((x ^ y) & mask) << 16
void gtex_pattern_product(gtex dst, std::uint32_t key); // (x ^ key) * (y ^ key), low 32 bits
