// Operators that read windows of their sources, each surface with its own `width` as stride.
#pragma once

#include <cstdint>

#include "morvane/gtex/gtex.h"

// For each pixel (x, y) of `dst`: `a`(x + ax, y + ay) XOR `b`(x + bx, y + by), whole words. What lies outside
// a source counts as 0. `dst` may be a source whose window starts at (0, 0).
void gtex_xor_windows(gtex dst, gtex a, std::int32_t ax, std::int32_t ay, gtex b, std::int32_t bx,
                      std::int32_t by);

// For each pixel (x, y) of `dst`: red from `a`(x + ax, y + ay), green from `b`(x + bx, y + by), blue from
// `c`(x + cx, y + cy), top byte 0. Outside and aliasing as above.
void gtex_channels_windows(gtex dst, gtex a, std::int32_t ax, std::int32_t ay, gtex b, std::int32_t bx,
                           std::int32_t by, gtex c, std::int32_t cx, std::int32_t cy);

// For x0 <= x < x1 and y0 <= y < y1, as far as both surfaces reach: each channel of `src`(x, y) complemented
// as 255 - s into `dst`(x, y), top byte 0.
void gtex_negate_region(gtex dst, gtex src, std::int32_t x0, std::int32_t y0, std::int32_t x1,
                        std::int32_t y1);
