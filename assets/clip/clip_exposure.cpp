#include "assets/clip/clip_exposure.h"

#include <algorithm>
#include <cmath>

#include "assets/forms/shapes.h"
#include "morvane/base/numbers.h"

namespace assets::clip {
namespace {

constexpr float bloom = 0.30F; // share of the light above the threshold that strays
constexpr float threshold = 0.25F;

// Adds to the four pixels of a film around a point.
void spread(std::vector<ray>& film, std::int32_t width, std::int32_t height, float x, float y,
            const ray& light) {
    const float left = x - 0.5F;
    const float top = y - 0.5F;
    if (!(left >= 0 && top >= 0 && left < static_cast<float>(width - 1) &&
          top < static_cast<float>(height - 1)))
        return;
    const std::int32_t column = trunc_to_int(left);
    const std::int32_t row = trunc_to_int(top);
    const float u = left - static_cast<float>(column);
    const float v = top - static_cast<float>(row);
    ray* const above = &film[static_cast<std::size_t>(row * width + column)];
    ray* const below = above + width;
    above[0] = above[0] + light * ((1 - u) * (1 - v));
    above[1] = above[1] + light * (u * (1 - v));
    below[0] = below[0] + light * ((1 - u) * v);
    below[1] = below[1] + light * (u * v);
}

// Light to screen values: a shoulder that approaches white, then the screen's gamma. Read by the root of the
// light, where it is nearly straight.
class tone_curve {
  public:
    tone_curve() {
        for (std::size_t i = 0; i < steps; ++i) {
            const float root = static_cast<float>(i) * (reach / steps);
            const float light = root * root;
            const float bent = light < 0.5F ? light : 1 - 0.5F * std::exp((0.5F - light) / 0.5F);
            curve_[i] = bent <= 0.0031308F ? 12.92F * bent : 1.055F * std::pow(bent, 1 / 2.4F) - 0.055F;
        }
    }
    float at(float light) const {
        const float place = std::sqrt(std::max(light, 0.0F)) * (steps / reach);
        return curve_[static_cast<std::size_t>(std::min(trunc_to_int(place), std::int32_t{steps - 1}))];
    }

  private:
    static constexpr std::size_t steps = 4096;
    static constexpr float reach = 2;
    std::array<float, steps> curve_;
};

} // namespace

exposure::exposure()
    : sharp_(std::size_t{clip_width} * clip_height), blurred_(std::size_t{coarse_width} * coarse_height),
      other_(blurred_.size()), row_(clip_width) {}

void exposure::clear() {
    std::fill(sharp_.begin(), sharp_.end(), ray{});
    std::fill(blurred_.begin(), blurred_.end(), ray{});
}

void exposure::add_sharp(float x, float y, const ray& light) {
    spread(sharp_, clip_width, clip_height, x, y, light);
}

void exposure::add_blurred(float x, float y, const ray& light) {
    constexpr float scale = 1.0F / coarse;
    spread(blurred_, coarse_width, coarse_height, x * scale, y * scale, light * (scale * scale));
}

// The brightest of the sharp film strays into the blurred one.
void exposure::gather_bloom() {
    constexpr float share = bloom / (coarse * coarse);
    for (std::int32_t y = 0; y < clip_height; ++y) {
        const ray* from = &sharp_[index(0, y, clip_width)];
        ray* to = &blurred_[index(0, y / coarse, coarse_width)];
        for (std::int32_t x = 0; x < clip_width; ++x) {
            const float most = std::max({from[x].r, from[x].g, from[x].b});
            const float over = std::max(most - threshold, 0.0F) / (most + 0.001F);
            to[x / coarse] = to[x / coarse] + from[x] * (over * share);
        }
    }
}

// Twice a binomial of five taps each way.
void exposure::blur_coarse() {
    auto line = [](const ray* from, ray* to, std::int32_t count, std::int32_t step) {
        auto at = [&](std::int32_t i) { return from[std::clamp(i, 0, count - 1) * step]; };
        for (std::int32_t i = 0; i < count; ++i)
            to[i * step] =
                (at(i - 2) + at(i + 2)) * 0.0625F + (at(i - 1) + at(i + 1)) * 0.25F + at(i) * 0.375F;
    };
    for (int pass = 0; pass < 2; ++pass) {
        for (std::int32_t y = 0; y < coarse_height; ++y)
            line(&blurred_[index(0, y, coarse_width)], &other_[index(0, y, coarse_width)], coarse_width, 1);
        for (std::int32_t x = 0; x < coarse_width; ++x)
            line(&other_[index(x, 0, 1)], &blurred_[index(x, 0, 1)], coarse_height, coarse_width);
    }
}

// One row of the blurred film in full size, bilinear.
void exposure::spread_row(std::int32_t y) {
    const float place =
        std::clamp((static_cast<float>(y) + 0.5F) / coarse - 0.5F, 0.0F, coarse_height - 1.001F);
    const std::int32_t row = trunc_to_int(place);
    const float v = place - static_cast<float>(row);
    std::array<ray, coarse_width + 1> line;
    for (std::int32_t x = 0; x < coarse_width; ++x)
        line[static_cast<std::size_t>(x)] = blurred(x, row) * (1 - v) + blurred(x, row + 1) * v;
    line[coarse_width] = line[coarse_width - 1];
    for (std::int32_t x = 0; x < clip_width; ++x) {
        const float at = std::max((static_cast<float>(x) + 0.5F) / coarse - 0.5F, 0.0F);
        const auto column = static_cast<std::size_t>(trunc_to_int(at));
        const float u = at - static_cast<float>(column);
        row_[static_cast<std::size_t>(x)] = line[column] * (1 - u) + line[column + 1] * u;
    }
}

void exposure::develop(std::vector<std::uint8_t>& bytes) {
    static const tone_curve curve;
    gather_bloom();
    blur_coarse();
    bytes.resize(std::size_t{clip_width} * clip_height * 3);
    for (std::int32_t y = 0; y < clip_height; ++y) {
        spread_row(y);
        std::uint8_t* to = &bytes[std::size_t{clip_width} * 3 * static_cast<std::size_t>(y + 1)];
        for (std::int32_t x = 0; x < clip_width; ++x) {
            const ray light = (sharp(x, y) + row_[static_cast<std::size_t>(x)]) *
                              in_sight(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
            to -= 3;
            to[0] = trunc_to_byte(curve.at(light.r) * 255 + 0.5F);
            to[1] = trunc_to_byte(curve.at(light.g) * 255 + 0.5F);
            to[2] = trunc_to_byte(curve.at(light.b) * 255 + 0.5F);
        }
    }
}

} // namespace assets::clip
