// Surfaces of the show's size, filled with noise, shared by all benchmarks of the operators.
#pragma once

#include <random>

#include "morvane/gtex/gtex.h"

struct frames {
    gtex a, b, c;
    gtex texture; // 256 by 256
    gtex sprite;  // 32 by 32
    gtex console; // 512 by 384
};

inline gtex noisy_surface(std::int32_t width, std::int32_t height, std::uint32_t seed) {
    const gtex surface = gtex_create(width, height, 0);
    std::mt19937 random(seed);
    for (std::int32_t i = 0; i < surface.count; ++i)
        surface.pixels[i] = static_cast<std::uint32_t>(random());
    return surface;
}

inline frames& bench_frames() {
    static frames all{.a = noisy_surface(frame_columns, frame_rows, 1),
                      .b = noisy_surface(frame_columns, frame_rows, 2),
                      .c = noisy_surface(frame_columns, frame_rows, 3),
                      .texture = noisy_surface(256, 256, 4),
                      .sprite = noisy_surface(32, 32, 5),
                      .console = noisy_surface(frame_columns, console_rows, 6)};
    return all;
}
