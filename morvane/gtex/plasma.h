// The two-table plasma: three windows that slide over a map of rings and a map of waves, summed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "morvane/gtex/gtex.h"

inline constexpr std::int32_t plasma_map_columns = 1024;
inline constexpr std::int32_t plasma_map_rows = 576;
inline constexpr std::size_t plasma_map_size = std::size_t{plasma_map_columns} * plasma_map_rows; // bytes

// Fills the two maps, row by row: `plasma_a` with rings around its centre, `plasma_b` with a warped wave
// field, each entry 1 to 127. Each span holds `plasma_map_size` bytes; a shorter one leaves both as they are.
void plasma_tables_init(std::span<std::uint8_t> plasma_a, std::span<std::uint8_t> plasma_b);

// Draws one frame: per pixel the sum of `plasma_a` in one window and `plasma_b` in two, shifted right by
// `shift` (limited to 0 to 31) and cut at 255, in all four bytes of the pixel. The windows move on Lissajous
// paths with `time`, in seconds. They are made for a 512x288 `dst`: each row of another width starts 512
// bytes behind the end of the one before, and what lies beyond the maps' last entry isn't drawn. Nothing
// happens if a map is shorter than `plasma_map_size`.
void gtex_plasma(gtex dst, std::span<const std::uint8_t> plasma_a, std::span<const std::uint8_t> plasma_b,
                 float time, std::int32_t shift);
