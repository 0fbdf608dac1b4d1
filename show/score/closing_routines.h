// What the closing movements stand on: parts and beats of the show's time, indices of displaced pixels, and a
// table that mixes two colours.
//
// The last two read tables that are filled at start-up. The phases may hold any value; table indices wrap.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// Bounds of the six parts in seconds; the last holds all later times.
inline constexpr std::array<float, 7> part_times = {0, 19.18F, 22.29F, 24.74F, 27.17F, 29.67F, 9999};

inline constexpr int beat_count = 63;

// Times of the beats in seconds: the first five as played, from there on one every 0.81 seconds.
inline constexpr std::array<float, beat_count> beat_times = [] {
    std::array<float, beat_count> times = {14.57F, 15.08F, 15.84F, 16.7F, 17.47F};
    for (int i = 5; i < beat_count; ++i)
        times[static_cast<std::size_t>(i)] = static_cast<float>(17.47 + 0.81 * (i - 4));
    return times;
}();

// Whether `t` lies in part `i`: from its bound up to, not including, the next. There are parts 0 to 5.
bool in_part(int i, float t);

// The same for the stretch from beat `i` to the next. There are stretches 0 to 61.
bool in_beat(int i, float t);

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
