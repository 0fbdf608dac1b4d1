// Two-dimensional bump mapping.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "morvane/gtex/gtex.h"

inline constexpr std::int32_t bump_map_columns = 320;

// The light seen from its centre at (128, 128): row i, column j holds
// 255 * max(0, 1 - sqrt((i - 128)^2 + (j - 128)^2) / 128), truncated.
extern std::array<std::array<std::uint8_t, 256>, 256> bump_light;

// Fills `bump_light`; to be called once before `gtex_bump`.
void bump_table_init();

// Lights `src` by the slopes of a height map, `bump_map_columns` wide, top row first. The light's intensity
// stands in `bump_light` at row gy + ly + 128 and column gx + lx + 128, with (lx, ly) the light's position
// and (gx, gy) the map's gradient, right neighbour less left one and lower less upper one (at an edge the
// pixel itself stands in for the missing neighbour); outside the table there is no light. The intensity less
// 224 is added to each channel of `src`, limited to 0 to 255; top byte 0. Drawn are the rows and columns that
// `dst`, `src` and the map all hold. `dst` may be `src`.
void gtex_bump(gtex dst, std::span<const std::uint8_t> height, gtex src, std::int32_t lx, std::int32_t ly);
