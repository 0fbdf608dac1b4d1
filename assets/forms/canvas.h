// Pictures in linear light: what everything is drawn on before it becomes bytes.
//
// A `picture` holds colours, a `plane` one value a pixel (a coverage, a distance, a height). Rows follow each
// other with no gap, top row first. Pixel (x, y) has its centre at (x + 0.5, y + 0.5), and the formulas see
// that centre. Values are linear light: 0 is black, 1 is the brightest that a screen shows; light above 1 is
// kept until `to_bytes` rolls it off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "assets/forms/shapes.h"

namespace assets {

struct rgb {
    float r = 0, g = 0, b = 0;
};

constexpr rgb operator+(rgb a, rgb b) {
    return {a.r + b.r, a.g + b.g, a.b + b.b};
}
constexpr rgb operator-(rgb a, rgb b) {
    return {a.r - b.r, a.g - b.g, a.b - b.b};
}
constexpr rgb operator*(rgb a, float k) {
    return {a.r * k, a.g * k, a.b * k};
}
constexpr rgb operator*(rgb a, rgb b) {
    return {a.r * b.r, a.g * b.g, a.b * b.b};
}
constexpr rgb& operator+=(rgb& a, rgb b) {
    return a = a + b;
}
constexpr rgb& operator*=(rgb& a, float k) {
    return a = a * k;
}
constexpr rgb mix(rgb a, rgb b, float t) {
    return a + (b - a) * t;
}
constexpr float luminance(rgb c) {
    return 0.2126F * c.r + 0.7152F * c.g + 0.0722F * c.b;
}

template<class value_type>
struct raster {
    raster(std::int32_t columns, std::int32_t rows, value_type value = {})
        : width(columns), height(rows),
          values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), value) {}

    value_type& at(std::int32_t x, std::int32_t y) { return values[index(x, y)]; }
    const value_type& at(std::int32_t x, std::int32_t y) const { return values[index(x, y)]; }
    // The nearest pixel inside, for any x and y.
    const value_type& clamped(std::int32_t x, std::int32_t y) const {
        return at(x < 0 ? 0 : (x < width ? x : width - 1), y < 0 ? 0 : (y < height ? y : height - 1));
    }

    std::int32_t width;
    std::int32_t height;
    std::vector<value_type> values;

  private:
    std::size_t index(std::int32_t x, std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

using picture = raster<rgb>;
using plane = raster<float>;

// Calls visit(centre, value) for each pixel, row by row.
template<class value_type, class visitor>
void for_each_pixel(raster<value_type>& image, visitor visit) {
    std::size_t i = 0;
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            visit(vec2{static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F}, image.values[i++]);
        }
    }
}

// The value of `image` at a point between pixel centres, bilinear; the border goes on outside.
float sample(const plane& image, vec2 point);
rgb sample(const picture& image, vec2 point);

// A Gaussian of the standard deviation `sigma` in pixels, as three box passes each way (Wells, "Efficient
// synthesis of Gaussian filters by cascaded uniform filters", 1986). Outside the image there is nothing.
plane blurred(const plane& source, float sigma);
picture blurred(const picture& source, float sigma);

// Adds `colour` times `amount` everywhere. All images have one size.
void add_light(picture& target, const plane& amount, rgb colour);
// Covers `target` with `colour` by `coverage` (0 to 1).
void cover(picture& target, const plane& coverage, rgb colour);
// A plane of coverages (0 to 1) from a plane of signed distances in pixels.
plane coverage_of(const plane& distances);

// What becomes of the light on its way to bytes.
struct development {
    float exposure = 1;  // factor before all else
    float toe = 0;       // light taken away first, so that the tail of a glow ends in exact black
    float grain = 0;     // film grain, in steps of 255, strongest in the mid tones, none in black
    float vignette = 0;  // darkening of the corners, 0 to 1
    bool opaque = false; // lifts the darkest pixels to (1, 1, 1), so that none is the key
    std::uint32_t seed = 1;
};

// Three bytes a pixel, R, G, B, gamma-encoded (sRGB), with a rounding that dithers. A pixel without light is
// exactly black, and a channel without light exactly 0.
std::vector<std::uint8_t> to_bytes(const picture& source, const development& how);

// One byte a pixel straight from values of 0 to 1, with a rounding that dithers between 0 and 1.
std::vector<std::uint8_t> to_bytes(const plane& source, std::uint32_t seed);

} // namespace assets
