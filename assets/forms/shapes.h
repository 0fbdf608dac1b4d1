// Points, and signed distances to simple shapes: below 0 inside, in the unit of the coordinates. y points
// down.
//
// The formulas are the well-known ones of Quilez, "2D distance functions"; smooth_union is his polynomial
// form.
#pragma once

#include <algorithm>
#include <cmath>

namespace assets {

inline constexpr float pi = 3.14159265F;

struct vec2 {
    float x = 0, y = 0;
};

constexpr vec2 operator+(vec2 a, vec2 b) {
    return {a.x + b.x, a.y + b.y};
}
constexpr vec2 operator-(vec2 a, vec2 b) {
    return {a.x - b.x, a.y - b.y};
}
constexpr vec2 operator*(vec2 a, float k) {
    return {a.x * k, a.y * k};
}
constexpr float dot(vec2 a, vec2 b) {
    return a.x * b.x + a.y * b.y;
}
inline float length(vec2 a) {
    return std::sqrt(dot(a, a));
}
inline vec2 normalised(vec2 a) {
    const float l = length(a);
    return l > 0 ? a * (1 / l) : vec2{1, 0};
}
// Turned clockwise on the screen by `angle` radians.
inline vec2 rotated(vec2 a, float angle) {
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    return {a.x * c - a.y * s, a.x * s + a.y * c};
}

constexpr float clamp01(float v) {
    return v < 0 ? 0.0F : (v > 1 ? 1.0F : v);
}
constexpr float mix(float a, float b, float t) {
    return a + (b - a) * t;
}
// 0 up to `from`, 1 from `to` on, smooth between them; `from` may be the larger.
constexpr float smooth_step(float from, float to, float v) {
    const float t = clamp01((v - from) / (to - from));
    return t * t * (3 - 2 * t);
}
// The share of a pixel that a shape covers whose edge lies `distance` pixels off the pixel's centre.
constexpr float coverage(float distance) {
    return clamp01(0.5F - distance);
}
// A line of light: 1 on the edge of a shape, falling off over `width`.
inline float glow_line(float distance, float width) {
    const float t = distance / width;
    return std::exp(-t * t);
}

inline float sd_circle(vec2 p, vec2 centre, float radius) {
    return length(p - centre) - radius;
}
inline float sd_box(vec2 p, vec2 centre, vec2 half, float rounding = 0) {
    const vec2 q{std::fabs(p.x - centre.x) - half.x + rounding,
                 std::fabs(p.y - centre.y) - half.y + rounding};
    const vec2 outside{std::max(q.x, 0.0F), std::max(q.y, 0.0F)};
    return length(outside) + std::min(std::max(q.x, q.y), 0.0F) - rounding;
}
// A box whose corners are cut off at 45 degrees, `cut` from each corner.
inline float sd_cut_box(vec2 p, vec2 centre, vec2 half, float cut) {
    const vec2 q{std::fabs(p.x - centre.x), std::fabs(p.y - centre.y)};
    const float corner = (q.x + q.y - half.x - half.y + cut) * 0.70710678F;
    return std::max(std::max(q.x - half.x, q.y - half.y), corner);
}
// Distance to the segment a-b; `along` (optional) receives the place on it, 0 to 1.
inline float sd_segment(vec2 p, vec2 a, vec2 b, float* along = nullptr) {
    const vec2 ab = b - a;
    const float square = dot(ab, ab);
    const float t = square > 0 ? clamp01(dot(p - a, ab) / square) : 0;
    if (along != nullptr) *along = t;
    return length(p - (a + ab * t));
}
inline float smooth_union(float a, float b, float k) {
    const float h = clamp01(0.5F + 0.5F * (b - a) / k);
    return mix(b, a, h) - k * h * (1 - h);
}
// The pointed oval of an eye: where two circles overlap. Half width w, half height h (w > h).
inline float sd_lens(vec2 p, vec2 centre, float w, float h) {
    const float offset = (w * w - h * h) / (2 * h); // of each circle's centre
    const float radius = offset + h;
    const vec2 q{p.x - centre.x, std::fabs(p.y - centre.y)};
    return length(vec2{q.x, q.y + offset}) - radius;
}

} // namespace assets
