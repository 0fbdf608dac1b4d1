#include "assets/forms/drawing.h"

#include <cmath>

namespace assets {

void slice(plane& distances, vec2 point, vec2 along, float width) {
    const vec2 direction = normalised(along);
    for_each_pixel(distances, [&](vec2 p, float& d) {
        const vec2 q = p - point;
        const float off = std::fabs(q.x * direction.y - q.y * direction.x);
        d = std::max(d, width * 0.5F - off);
    });
}

void unite(plane& distances, const plane& more) {
    for (std::size_t i = 0; i < distances.values.size(); ++i)
        distances.values[i] = std::min(distances.values[i], more.values[i]);
}

namespace {

// The height of bevelled shapes over their edge: rising over `width` pixels, then flat, rounded a little so
// that ridges don't show the pixels' steps.
plane bevel_height(const plane& distances, float width) {
    plane height = distances;
    for (float& v : height.values)
        v = std::clamp(-v, 0.0F, width);
    return blurred(height, 1);
}

// How much the surface at (x, y) faces a light from the upper left: about -1 to 1, 0 where it is flat.
float facing_light(const plane& height, std::int32_t x, std::int32_t y) {
    const vec2 slope{height.clamped(x + 1, y) - height.clamped(x - 1, y),
                     height.clamped(x, y + 1) - height.clamped(x, y - 1)};
    return dot(slope, vec2{0.45F, 0.89F}) * -0.5F;
}

} // namespace

void paint_neon(picture& target, const plane& distances, const neon& look) {
    const plane body = coverage_of(distances);
    if (look.near_glow > 0) add_light(target, blurred(body, look.near_sigma), look.glow * look.near_glow);
    if (look.far_glow > 0) add_light(target, blurred(body, look.far_sigma), look.glow * look.far_glow);
    const plane height = bevel_height(distances, look.bevel);
    for (std::int32_t y = 0; y < target.height; ++y) {
        for (std::int32_t x = 0; x < target.width; ++x) {
            const float d = distances.at(x, y);
            const float covered = body.at(x, y);
            rgb& c = target.at(x, y);
            if (covered > 0) {
                const float t = clamp01((static_cast<float>(y) - look.top_y) / (look.bottom_y - look.top_y));
                const float shade = 1 - 0.9F * facing_light(height, x, y);
                c = mix(c, mix(look.top, look.bottom, t) * (look.body * shade), covered);
            }
            if (look.rim_light > 0 && d < 4) c += look.rim * (look.rim_light * glow_line(d + 0.3F, 0.9F));
        }
    }
}

float ticks(vec2 p, vec2 centre, float inner, float outer, int count, float thickness) {
    const vec2 q = p - centre;
    const float r = length(q);
    const float radial = std::max(inner - r, r - outer);
    if (radial > 1) return 0;
    const float step = 2 * pi / static_cast<float>(count);
    const float turn = std::atan2(q.y, q.x) / step;
    const float across = std::fabs(turn - std::round(turn)) * step * r;
    return coverage(std::max(across - thickness * 0.5F, radial));
}

float rosette(vec2 p, vec2 centre, float base, float swing, int petals, int lines, float thickness) {
    const vec2 q = p - centre;
    const float r = length(q);
    if (std::fabs(r - base) > std::fabs(swing) + 2) return 0;
    const float angle = std::atan2(q.y, q.x) * static_cast<float>(petals);
    float light = 0;
    for (int i = 0; i < lines; ++i) {
        const float phase = angle + 2 * pi * static_cast<float>(i) / static_cast<float>(lines);
        const float slope = swing * static_cast<float>(petals) * std::sin(phase) / std::max(r, 1.0F);
        const float d = std::fabs(r - base - swing * std::cos(phase)) / std::sqrt(1 + slope * slope);
        light = std::max(light, coverage(d - thickness * 0.5F));
    }
    return light;
}

float hatch(float v, float pitch, float share) {
    const float t = v / pitch;
    const float off = std::fabs(t - std::round(t)) * pitch;
    return coverage(off - pitch * share * 0.5F);
}

} // namespace assets
