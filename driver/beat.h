// Two tables that cut the show's time: six parts, and the beats of the first minute.
#pragma once

#include <array>

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
