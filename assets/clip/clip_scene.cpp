#include "assets/clip/clip_scene.h"

#include <algorithm>
#include <cmath>

#include "assets/forms/noise.h"
#include "assets/forms/palette.h"
#include "morvane/base/numbers.h"

namespace assets::clip {
namespace {

constexpr float pulse_every = 3.0F; // seconds: two bars
constexpr float pulse_first = 0.5F; // into the clip
constexpr float pulse_speed = 3.4F; // units a second
constexpr float focus = 6.4F;       // units from the eye
constexpr float exposure_time = 0.0125F;

// A shell of light that runs out from the meteor.
struct pulse {
    float radius;
    float strength;
};
pulse pulse_at(int frame) {
    const float time = static_cast<float>(frame) / clip_rate - pulse_first + pulse_every;
    const float since = std::fmod(time, pulse_every);
    return {.radius = 0.9F + pulse_speed * since, .strength = std::exp(-1.1F * since)};
}

// Whether a place is seen, or lies at most `margin` pixels off.
bool on_film(const seen& s, float margin) {
    const float x = s.x - 256;
    const float y = s.y - 136;
    const float wide = 306 + margin;
    const float high = 172 + margin;
    return s.depth > 0.35F && (x * x) / (wide * wide) + (y * y) / (high * high) < 1;
}

// Indigo as it comes, magenta where it is pressed against the meteor, green in the wake.
rgb stream_colour(point p, float hue, float wake) {
    const float off = (length(p) - 1.1F) / 0.5F;
    const float pressed = (1 - wake) / (1 + off * off * off * off);
    const rgb calm = mix(palette::electric, palette::indigo * 1.6F, hue);
    const rgb warm = mix(palette::orchid, palette::magenta, 0.3F + 0.4F * hue);
    const rgb behind = mix(palette::phosphor * 0.85F, mix(palette::moss * 2, palette::electric, hue), hue);
    return mix(mix(calm, warm, clamp01(pressed)), behind, wake);
}

} // namespace

night_sky::night_sky() : clouds_(256, 64) {
    for_each_pixel(clouds_, [](vec2 p, rgb& c) {
        const float a = fbm({p.x / 32, p.y / 32}, 4, 71, 8);
        const float b = fbm({p.x / 32 + 3.3F, p.y / 32}, 4, 81, 8);
        c = palette::indigo * (0.34F * smooth_step(-0.1F, 0.75F, a)) +
            palette::plum * (0.5F * smooth_step(0.1F, 0.8F, b)) +
            palette::field * (0.9F * smooth_step(0.0F, 0.7F, a * b * 4));
    });
    for (int i = 0; i < 420; ++i) {
        const float height = (hash01(i, 1, 55) - 0.5F) * 1.5F;
        const float angle = hash01(i, 2, 55) * 2 * pi;
        const float light = 0.08F + 0.9F * std::pow(hash01(i, 3, 55), 9.0F);
        stars_.push_back({normalised({std::cos(angle), height, std::sin(angle)}),
                          mix(palette::electric, palette::bone, hash01(i, 4, 55)) * light});
    }
}

void night_sky::expose(exposure& target, const camera& from, const meteor_view& view) const {
    constexpr float far = 1000;
    for (std::int32_t y = 0; y < exposure::coarse_height; ++y) {
        for (std::int32_t x = 0; x < exposure::coarse_width; ++x) {
            const float px = (static_cast<float>(x) + 0.5F) * exposure::coarse;
            const float py = (static_cast<float>(y) + 0.5F) * exposure::coarse;
            if (view.hides(px, py, far)) continue;
            const point d = normalised(from.forward * from.focal + from.right * (px - from.middle.x) +
                                       from.down * (py - from.middle.y));
            const float around = (std::atan2(d.z, d.x) / (2 * pi) + 0.5F) * 256;
            const float up = (d.y * 0.5F + 0.5F) * 64;
            ray& cell = target.blurred(x, y);
            cell = cell + to_ray(sample(clouds_, {around, up}));
        }
    }
    for (const star& s : stars_) {
        const seen at = from.project(from.eye + s.direction * far);
        if (!on_film(at, 0) || view.hides(at.x, at.y, far)) continue;
        target.add_sharp(at.x, at.y, to_ray(s.light));
    }
}

painter::painter(const stream& flow, const meteor& body, const night_sky& sky)
    : flow_(flow), body_(body), sky_(sky), line_(stream::beads) {}

void painter::paint(int frame, const stream::snapshot& beads, std::vector<std::uint8_t>& bytes) {
    const float turn = static_cast<float>(frame) / clip_frames;
    const camera from = camera_at(turn);
    film_.clear();
    const pulse shell = pulse_at(frame);
    view_.draw(body_, from, turn, shell.strength);
    sky_.expose(film_, from, view_);
    view_.expose(film_);
    for (int t = 0; t < stream::threads; ++t) {
        const point* places = &beads[static_cast<std::size_t>(t) * stream::beads];
        find_beads(t, frame, from, places);
        draw_thread(places);
    }
    film_.develop(bytes);
}

// Where the beads of a thread are seen, and how bright.
void painter::find_beads(int thread, int frame, const camera& from, const point* places) {
    constexpr float margin = 24;
    const thread_kind& kind = flow_.kind(thread);
    const pulse shell = pulse_at(frame);
    for (int i = 0; i < stream::beads; ++i) {
        bead& b = line_[static_cast<std::size_t>(i)];
        const point p = places[i];
        b.at = from.project(p);
        b.light = {};
        if (!on_film(b.at, margin)) continue;
        const float age = flow_.age(i, frame);
        const float depth = b.at.depth;
        const float fade = smooth_step(0, 0.05F, age) * smooth_step(1, 0.85F, age) *
                           smooth_step(0.5F, 1.5F, depth) / (1 + 0.012F * depth * depth);
        const float wake = wake_at(p);
        const float off = (length(p) - shell.radius) / 0.3F;
        const float struck = shell.strength / (1 + off * off * off * off);
        const float amount =
            kind.strength * flow_.glow(thread, i, frame) * fade * exposure_time * from.focal / depth;
        const rgb colour = stream_colour(p, kind.hue, wake);
        b.light = colour * (amount * (1 + 1.2F * struck)) + palette::bone * (amount * 0.25F * struck);
        b.softness = smooth_step(0.35F, 1.6F, std::fabs(depth - focus) / depth);
    }
}

void painter::draw_thread(const point* places) {
    constexpr float rest = stream_speed / clip_rate * clip_frames / stream::releases;
    for (int i = 0; i + 1 < stream::beads; ++i) {
        bead a = line_[static_cast<std::size_t>(i)];
        bead b = line_[static_cast<std::size_t>(i + 1)];
        if (luminance(a.light) + luminance(b.light) <= 1e-5F || a.at.depth < 0.35F || b.at.depth < 0.35F)
            continue;
        // Drawn out, the light is thinner; where beads crowd, they would make a knot of it.
        const float stretched = length(places[i + 1] - places[i]) / rest;
        if (stretched > 5) continue;
        const float thin = stretched > 1 ? 1 / (0.3F + 0.7F * stretched * stretched) : stretched;
        a.light *= thin;
        b.light *= thin;
        const bead& before = line_[static_cast<std::size_t>(std::max(i - 1, 0))];
        const bead& after = line_[static_cast<std::size_t>(std::min(i + 2, stream::beads - 1))];
        draw_stretch(before, a, b, after);
    }
}

// A curve through a and b (Catmull and Rom, "A class of local interpolating splines", 1974), as points of
// light close enough to join.
void painter::draw_stretch(const bead& before, const bead& a, const bead& b, const bead& after) {
    const vec2 p0{before.at.x, before.at.y};
    const vec2 p1{a.at.x, a.at.y};
    const vec2 p2{b.at.x, b.at.y};
    const vec2 p3{after.at.x, after.at.y};
    const float pixels = length(p2 - p1);
    const float softness = 0.5F * (a.softness + b.softness);
    const float spacing = softness > 0.99F ? 4 : 1.15F;
    const int count = std::clamp(trunc_to_int(pixels / spacing) + 1, 1, 400);
    const float each = pixels / static_cast<float>(count);
    const vec2 c1 = (p2 - p0) * 0.5F;
    const vec2 c2 = p0 - p1 * 2.5F + p2 * 2 - p3 * 0.5F;
    const vec2 c3 = (p1 - p2) * 1.5F + (p3 - p0) * 0.5F;
    for (int k = 0; k < count; ++k) {
        const float t = (static_cast<float>(k) + 0.5F) / static_cast<float>(count);
        const vec2 p = p1 + (c1 + (c2 + c3 * t) * t) * t;
        if (view_.hides(p.x, p.y, mix(a.at.depth, b.at.depth, t))) continue;
        const ray light = to_ray(mix(a.light, b.light, t) * each);
        if (softness < 0.99F) film_.add_sharp(p.x, p.y, light * (1 - softness));
        if (softness > 0.01F) film_.add_blurred(p.x, p.y, light * softness);
    }
}

} // namespace assets::clip
