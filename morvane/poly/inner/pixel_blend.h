// The blend of the rasterizers. Internal to the folder.
#pragma once

#include <algorithm>
#include <cstdint>

// An opacity as the blend takes it, 0 to 256.
constexpr std::uint32_t blend_weight(std::int32_t opacity) {
    return static_cast<std::uint32_t>(std::clamp(opacity, 0, 256));
}

// d + (((s - d) * weight) >> 8) for each colour channel, top byte 0. Written as the floor of
// (d * (256 - weight) + s * weight) / 256, which is the same: both products of a channel together stay below
// 65,536, so that red and blue go through one multiplication.
constexpr std::uint32_t blend_pixel(std::uint32_t d, std::uint32_t s, std::uint32_t weight) {
    constexpr std::uint32_t red_blue = 0x00ff00ff, green = 0x0000ff00;
    const std::uint32_t rest = 256 - weight;
    const std::uint32_t rb = ((d & red_blue) * rest + (s & red_blue) * weight) >> 8 & red_blue;
    const std::uint32_t g = ((d & green) >> 8) * rest + ((s & green) >> 8) * weight;
    return rb | (g & green);
}
