// A frame of the clip while light falls on it, and its way to bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "assets/clip/clip.h"
#include "assets/clip/clip_space.h"
#include "assets/forms/canvas.h"

namespace assets::clip {

// Light with room for vector instructions.
struct alignas(16) ray {
    float r = 0, g = 0, b = 0, unused = 0;
};

constexpr ray operator+(const ray& a, const ray& b) {
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.unused + b.unused};
}
constexpr ray operator*(const ray& a, float k) {
    return {a.r * k, a.g * k, a.b * k, a.unused * k};
}
constexpr ray to_ray(rgb c) {
    return {c.r, c.g, c.b};
}
constexpr rgb to_rgb(const ray& c) {
    return {c.r, c.g, c.b};
}

// How much of the light at a pixel position gets through: the corners, which the panel hides, are black.
constexpr float in_sight(float x, float y) {
    const float u = (x - 256) / 256;
    const float v = (y - 136) / 144;
    return smooth_step(1.45F, 0.55F, u * u + v * v);
}

// Two films: one in the clip's size for what is sharp, one of an eighth of it for what isn't, which is
// blurred before both are added.
class exposure {
  public:
    static constexpr std::int32_t coarse = 8; // pixels of the sharp film across one of the blurred
    static constexpr std::int32_t coarse_width = clip_width / coarse;
    static constexpr std::int32_t coarse_height = clip_height / coarse;

    exposure();

    void clear();

    // Spreads `light` over the four pixels around a point; nothing outside the film is touched.
    void add_sharp(float x, float y, const ray& light);
    // The same on the blurred film; the light is what falls on one sharp pixel.
    void add_blurred(float x, float y, const ray& light);

    ray& sharp(std::int32_t x, std::int32_t y) { return sharp_[index(x, y, clip_width)]; }
    ray& blurred(std::int32_t x, std::int32_t y) { return blurred_[index(x, y, coarse_width)]; }

    // R, G, B for each pixel, mirrored left to right.
    void develop(std::vector<std::uint8_t>& bytes);

  private:
    static constexpr std::size_t index(std::int32_t x, std::int32_t y, std::int32_t width) {
        return static_cast<std::size_t>(y * width + x);
    }
    void gather_bloom();
    void blur_coarse();
    void spread_row(std::int32_t y);

    std::vector<ray> sharp_;
    std::vector<ray> blurred_;
    std::vector<ray> other_; // of the blur
    std::vector<ray> row_;   // the blurred film at one row of the sharp one
};

} // namespace assets::clip
