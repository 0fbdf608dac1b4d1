// The driver's small kit: indices of displaced pixels, and a table that mixes two colours.
//
// All of it reads tables that are filled at start-up. The phases may hold any value; table indices wrap.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

inline constexpr std::size_t warp_entries = 2048;

extern std::array<std::int32_t, warp_entries> warp_cos;   // cos of 4 turns, amplitude 10
extern std::array<std::int32_t, warp_entries> warp_sin_a; // sin of 8 turns, amplitude 8
extern std::array<std::int32_t, warp_entries> warp_sin_b; // sin of 2 turns, amplitude 12

// Moved by one a frame in the third movement.
extern std::int32_t warp_phase_a, warp_phase_b, warp_phase_c;

// Fills the three tables, truncated toward zero.
void warp_tables_init();

// One step of the phases: a and c forward, b back. They wrap at the limits of their type.
void warp_step();

// The index in a frame of 512 by 288 of the pixel that appears at (x, y); always inside the frame. Needs
// `frame_tables_init`.
std::int32_t warp_index(std::int32_t x, std::int32_t y);

// The same in a surface of 256 by 256.
std::int32_t warp_index_256(std::int32_t x, std::int32_t y);

// Entry [j][i] is i * a + j * b, truncated; for 0.875 and 0.125 a mix of two channel values.
extern std::array<std::array<std::uint32_t, 256>, 256> mix_table;
void mix_table_init(float a, float b);

// Each of the red, green and blue bytes looked up as mix_table[byte of q][byte of p], packed as 0x00RRGGBB;
// of an entry the low 8 bits count. The top bytes of `p` and `q` are ignored.
std::uint32_t mix_colours(std::uint32_t p, std::uint32_t q);
