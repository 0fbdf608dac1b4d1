#include "assets/forms/canvas.h"

#include <algorithm>
#include <cmath>

#include "assets/forms/noise.h"
#include "morvane/base/numbers.h"

namespace assets {
namespace {

float lerp_of(float a, float b, float t) {
    return mix(a, b, t);
}
rgb lerp_of(rgb a, rgb b, float t) {
    return mix(a, b, t);
}

template<class value_type>
value_type sample_of(const raster<value_type>& image, vec2 point) {
    const float fx = std::floor(point.x - 0.5F);
    const float fy = std::floor(point.y - 0.5F);
    const std::int32_t x = trunc_to_int(fx);
    const std::int32_t y = trunc_to_int(fy);
    const float tx = point.x - 0.5F - fx;
    const float ty = point.y - 0.5F - fy;
    return lerp_of(lerp_of(image.clamped(x, y), image.clamped(x + 1, y), tx),
                   lerp_of(image.clamped(x, y + 1), image.clamped(x + 1, y + 1), tx), ty);
}

// One box pass of 2 * radius + 1 taps along a line of `count` values that lie `step` apart.
template<class value_type>
void box_line(const value_type* from, value_type* to, std::int32_t count, std::size_t step,
              std::int32_t radius) {
    const float scale = 1 / static_cast<float>(2 * radius + 1);
    value_type sum{};
    auto at = [step](std::int32_t i) { return static_cast<std::size_t>(i) * step; };
    for (std::int32_t i = 0; i < std::min(radius, count); ++i)
        sum += from[at(i)];
    for (std::int32_t i = 0; i < count; ++i) {
        if (i + radius < count) sum += from[at(i + radius)];
        to[at(i)] = sum * scale;
        if (i - radius >= 0) sum += from[at(i - radius)] * -1.0F;
    }
}

template<class value_type>
raster<value_type> blurred_of(const raster<value_type>& source, float sigma) {
    raster<value_type> result = source;
    raster<value_type> other = source;
    // Three boxes of radius r have the variance r * (r + 1).
    const std::int32_t radius = trunc_to_int(std::sqrt(sigma * sigma + 0.25F));
    if (radius < 1) return result;
    const auto row = static_cast<std::size_t>(source.width);
    for (int pass = 0; pass < 3; ++pass) {
        for (std::size_t y = 0; y < static_cast<std::size_t>(source.height); ++y)
            box_line(&result.values[y * row], &other.values[y * row], source.width, 1, radius);
        for (std::size_t x = 0; x < row; ++x)
            box_line(&other.values[x], &result.values[x], source.height, row, radius);
    }
    // Running sums leave dust of either sign where there was nothing.
    for (value_type& v : result.values) {
        if constexpr (std::is_same_v<value_type, float>) {
            if (v < 1e-6F) v = 0;
        } else {
            v = {v.r < 1e-6F ? 0 : v.r, v.g < 1e-6F ? 0 : v.g, v.b < 1e-6F ? 0 : v.b};
        }
    }
    return result;
}

// Light above the knee is bent so that it approaches 1.
float shoulder(float v) {
    constexpr float knee = 0.72F;
    return v <= knee ? v : knee + (1 - knee) * (1 - std::exp(-(v - knee) / (1 - knee)));
}

float gamma_encoded(float v) {
    return v <= 0.0031308F ? 12.92F * v : 1.055F * std::pow(v, 1 / 2.4F) - 0.055F;
}

} // namespace

float sample(const plane& image, vec2 point) {
    return sample_of(image, point);
}
rgb sample(const picture& image, vec2 point) {
    return sample_of(image, point);
}

plane blurred(const plane& source, float sigma) {
    return blurred_of(source, sigma);
}
picture blurred(const picture& source, float sigma) {
    return blurred_of(source, sigma);
}

void add_light(picture& target, const plane& amount, rgb colour) {
    for (std::size_t i = 0; i < target.values.size(); ++i)
        target.values[i] += colour * amount.values[i];
}

void cover(picture& target, const plane& coverage, rgb colour) {
    for (std::size_t i = 0; i < target.values.size(); ++i)
        target.values[i] = mix(target.values[i], colour, coverage.values[i]);
}

plane coverage_of(const plane& distances) {
    plane result = distances;
    for (float& v : result.values)
        v = coverage(v);
    return result;
}

std::vector<std::uint8_t> to_bytes(const picture& source, const development& how) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(source.values.size() * 3);
    const vec2 centre{static_cast<float>(source.width) * 0.5F, static_cast<float>(source.height) * 0.5F};
    std::size_t i = 0;
    for (std::int32_t y = 0; y < source.height; ++y) {
        for (std::int32_t x = 0; x < source.width; ++x, ++i) {
            const vec2 p{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F};
            const float far = length((p - centre) * (1 / length(centre)));
            const float k = how.exposure * (1 - how.vignette * far * far * far);
            const float grain = (hash01(x, y, how.seed) + hash01(x, y, how.seed + 1) - 1) * how.grain;
            const float rounding = hash01(x, y, how.seed + 2);
            const rgb& c = source.values[i];
            for (const float light : {c.r, c.g, c.b}) {
                const float v = gamma_encoded(shoulder(std::max(light * k - how.toe, 0.0F)));
                // No grain in black and little in white; the dither never lifts a channel without light.
                const float noisy = v * 255 + grain * std::min(1.0F, v * 6) * (1.2F - v);
                const float lowest = how.opaque ? 1.0F : 0.0F;
                const float rounded = v * 255 < 0.25F ? 0 : std::floor(noisy + rounding);
                bytes.push_back(trunc_to_byte(std::clamp(rounded, lowest, 255.0F)));
            }
        }
    }
    return bytes;
}

std::vector<std::uint8_t> to_bytes(const plane& source, std::uint32_t seed) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(source.values.size());
    std::size_t i = 0;
    for (std::int32_t y = 0; y < source.height; ++y) {
        for (std::int32_t x = 0; x < source.width; ++x, ++i) {
            const float v = clamp01(source.values[i]) * 255;
            bytes.push_back(trunc_to_byte(std::min(std::floor(v + hash01(x, y, seed) * 0.999F), 255.0F)));
        }
    }
    return bytes;
}

} // namespace assets
