#include "assets/clip/clip_meteor.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "assets/forms/palette.h"
#include "assets/meshes/meshes.h"
#include "morvane/base/numbers.h"

namespace assets::clip {
namespace {

point to_point(vec3 v, double scale) {
    return {static_cast<float>(v.x * scale), static_cast<float>(v.y * scale),
            static_cast<float>(v.z * scale)};
}

// Turned about the y axis of the body, then about a slanting axis: whole turns of both in a loop.
point tumbled(point p, float turn) {
    const vec2 spun = rotated({p.x, p.z}, turn * 2 * pi);
    const vec2 slant = rotated({spun.x, p.y}, 0.5F);
    const vec2 rolled = rotated({slant.y, spun.y}, -turn * 2 * pi);
    return {slant.x, rolled.x, rolled.y};
}

// The light of the stream on a face: magenta where it meets the stream, green from the wake, and a rim where
// the face turns away from the eye.
rgb face_light(point normal, point to_eye) {
    const float ahead = std::max(-normal.x, 0.0F);
    const float behind = std::max(normal.x, 0.0F);
    const float facing = std::max(dot(normal, to_eye), 0.0F);
    const float rim = std::pow(1 - facing, 3.0F);
    const float shade = 0.35F + 0.65F * std::max(normal.y, -0.2F);
    return palette::night * (0.1F + 0.4F * shade) + palette::orchid * (0.05F * ahead * ahead * ahead) +
           palette::moss * (0.10F * behind * behind) +
           mix(palette::electric, palette::magenta, clamp01(0.5F - 0.5F * normal.x)) * (0.42F * rim);
}

} // namespace

meteor::meteor() {
    const mesh model = meteor_model();
    double largest = 0;
    for (const mesh_vertex& v : model.vertices)
        largest = std::max(largest, assets::length(v.position));
    for (const mesh_face& f : model.faces) {
        auto at = [&](std::size_t i) { return to_point(model.vertices[i].position, 1 / largest); };
        plate p{at(f.a), at(f.b), at(f.c), {}};
        p.normal = normalised(cross(p.b - p.a, p.middle - p.b));
        plates_.push_back(p);
    }
}

meteor_view::meteor_view()
    : inverse_depth_(std::size_t{width} * height), light_(std::size_t{width} * height) {}

void meteor_view::draw(const meteor& body, const camera& from, float turn, float pulse) {
    for (std::int32_t y = top_; y < bottom_; ++y)
        std::fill_n(inverse_depth_.begin() + y * width + left_, right_ - left_, 0.0F);
    left_ = width;
    top_ = height;
    right_ = bottom_ = 0;
    for (const meteor::plate& p : body.plates()) {
        const std::array<point, 3> places{tumbled(p.a, turn), tumbled(p.b, turn), tumbled(p.middle, turn)};
        const point normal = tumbled(p.normal, turn);
        const point to_eye = normalised(from.eye - places[2]);
        if (dot(normal, from.eye - places[0]) <= 0) continue;
        std::array<corner, 3> corners;
        for (std::size_t i = 0; i < 3; ++i) {
            const seen s = from.project(places[i]);
            if (s.depth < 0.3F) return;
            corners[i] = {s.x * fine, s.y * fine, 1 / s.depth};
        }
        const rgb border = mix(palette::orchid, palette::bone, 0.4F * pulse) * (0.10F + 0.45F * pulse);
        fill(corners, face_light(normal, to_eye), border, 1.1F * fine);
    }
}

// A triangle whose side from corner 0 to corner 1 is the border.
void meteor_view::fill(const std::array<corner, 3>& corners, rgb face, rgb border, float border_width) {
    const auto [a, b, c] = corners;
    const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (std::fabs(area) < 1e-3F) return;
    const float side = std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
    const float height_over_border = std::fabs(area) / std::max(side, 0.01F); // of corner c, in samples
    auto low = [](float v, std::int32_t most) { return std::clamp(trunc_to_int(std::floor(v)), 0, most); };
    const std::int32_t x0 = low(std::min({a.x, b.x, c.x}), width);
    const std::int32_t x1 = low(std::max({a.x, b.x, c.x}) + 1, width);
    const std::int32_t y0 = low(std::min({a.y, b.y, c.y}), height);
    const std::int32_t y1 = low(std::max({a.y, b.y, c.y}) + 1, height);
    left_ = std::min(left_, x0);
    right_ = std::max(right_, x1);
    top_ = std::min(top_, y0);
    bottom_ = std::max(bottom_, y1);
    for (std::int32_t y = y0; y < y1; ++y) {
        for (std::int32_t x = x0; x < x1; ++x) {
            const float px = static_cast<float>(x) + 0.5F;
            const float py = static_cast<float>(y) + 0.5F;
            const float wc = ((b.x - a.x) * (py - a.y) - (b.y - a.y) * (px - a.x)) / area;
            const float wa = ((c.x - b.x) * (py - b.y) - (c.y - b.y) * (px - b.x)) / area;
            const float wb = 1 - wa - wc;
            if (wa < 0 || wb < 0 || wc < 0) continue;
            const float near = wa * a.inverse_depth + wb * b.inverse_depth + wc * c.inverse_depth;
            const auto i = static_cast<std::size_t>(y * width + x);
            if (near <= inverse_depth_[i]) continue;
            inverse_depth_[i] = near;
            const float line = wc * height_over_border / border_width;
            const rgb light = face + border * (std::exp(-line * line) + 0.12F * std::exp(-0.3F * line));
            light_[i] = light;
        }
    }
}

bool meteor_view::hides(float x, float y, float depth) const {
    const std::int32_t column = trunc_to_int(x * fine);
    const std::int32_t row = trunc_to_int(y * fine);
    if (column < left_ || column >= right_ || row < top_ || row >= bottom_) return false;
    return inverse_depth_[static_cast<std::size_t>(row * width + column)] * depth > 1;
}

void meteor_view::expose(exposure& target) const {
    for (std::int32_t y = top_ / fine; y < (bottom_ + fine - 1) / fine; ++y) {
        for (std::int32_t x = left_ / fine; x < (right_ + fine - 1) / fine; ++x) {
            rgb sum{};
            float covered = 0;
            for (std::int32_t k = 0; k < fine * fine; ++k) {
                const auto i = static_cast<std::size_t>((y * fine + k / fine) * width + x * fine + k % fine);
                if (inverse_depth_[i] <= 0) continue;
                covered += 1.0F / (fine * fine);
                sum += light_[i] * (1.0F / (fine * fine));
            }
            ray& pixel = target.sharp(x, y);
            pixel = to_ray(to_rgb(pixel) * (1 - covered) + sum);
        }
    }
}

} // namespace assets::clip
