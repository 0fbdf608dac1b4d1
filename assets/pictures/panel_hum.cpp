// The panel round the clip: a listening post in dark indigo metal with a window of pure black. Drawn as a
// height field that a lamp lights from the upper left, with lit gauges laid on.
#include <cstddef>

#include "assets/forms/drawing.h"
#include "assets/forms/noise.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

constexpr vec2 window_middle{256, 136};
constexpr vec2 window_half{176, 90};
constexpr float window_cut = 34;

float window_distance(vec2 p) {
    return sd_cut_box(p, window_middle, window_half, window_cut);
}

// What the panel is made of while it is drawn.
struct panel {
    plane height{frame_width, frame_height};
    picture paint{frame_width, frame_height};
    picture glow{frame_width, frame_height};
};

void emboss(panel& target, float amount, const plane& cover) {
    for (std::size_t i = 0; i < cover.values.size(); ++i)
        target.height.values[i] += cover.values[i] * amount;
}

void draw_plates(panel& target) {
    std::size_t i = 0;
    for_each_pixel(target.height, [&](vec2 p, float& h) {
        const float window = window_distance(p);
        const float brushed = 0.5F * fbm({p.x * 0.015F, p.y * 0.9F}, 3, 801) + 0.5F * fbm(p * 0.05F, 4, 805);
        h = 0.12F * brushed;
        // A raised collar round the window, a groove outside it, seams between the plates.
        h += 5 * smooth_step(14, 11, window) * smooth_step(-1, 5, window);
        h -= 1.6F * glow_line(window - 17, 1.2F);
        const float seams = std::min(std::fabs(p.x - 74), std::fabs(p.x - 438));
        const bool side = window > 18;
        if (side) h -= 1.4F * glow_line(seams, 1);
        h -= 3 * smooth_step(-4, 0, sd_cut_box(p, frame_middle, {254, 142}, 12));
        target.paint.values[i] =
            mix(palette::indigo * 0.85F, palette::plum * 0.5F, clamp01(0.4F + brushed * 0.6F));
        ++i;
    });
    // Ventilation slots in the upper right, screws in the corners, rivets along the collar.
    emboss(target, -3, frame_plane([](vec2 p) {
               float d = 1e3F;
               for (int k = 0; k < 5; ++k)
                   d = std::min(d, sd_box(p, {454 + static_cast<float>(k) * 10, 33}, {2.4F, 11}, 2.4F));
               return smooth_step(1, -1, d);
           }));
    for (const vec2 screw :
         {vec2{14, 40}, vec2{500, 14}, vec2{14, 272}, vec2{500, 272}, vec2{84, 260}, vec2{428, 260}}) {
        emboss(target, 2.5F, frame_plane([&](vec2 p) {
                   const float slot = std::fabs((p.x - screw.x) * 0.6F + (p.y - screw.y) * 0.8F) - 0.7F;
                   return smooth_step(1, -1.5F, sd_circle(p, screw, 3.8F)) * smooth_step(-0.6F, 0.8F, slot);
               }));
    }
    emboss(target, 2, frame_plane([](vec2 p) {
               float d = 1e3F;
               for (int k = 0; k < 12; ++k) {
                   const float x = 100 + static_cast<float>(k) * 28.4F;
                   d = std::min(d, std::min(sd_circle(p, {x, 40.5F}, 1.6F), sd_circle(p, {x, 231.5F}, 1.6F)));
               }
               return smooth_step(1, -1.5F, d);
           }));
}

// A round instrument: dark glass, a scale of ticks, a needle at `reading` (0 to 1), green light within.
void draw_gauge(panel& target, vec2 centre, float radius, float reading, rgb light) {
    const float first = 0.75F * pi;
    const float sweep = 1.5F * pi;
    const float angle = first + sweep * reading;
    std::size_t i = 0;
    for_each_pixel(target.height, [&](vec2 p, float& h) {
        const std::size_t own = i++;
        const float d = sd_circle(p, centre, radius);
        if (d > 8) return;
        h += 3.2F * smooth_step(4, 2, d) * smooth_step(-2, 0, d);
        if (d > 0) return;
        rgb& paint = target.paint.values[own];
        rgb& glow = target.glow.values[own];
        paint = palette::night * 0.5F;
        h = 0.2F;
        const vec2 q = p - centre;
        float turn = std::atan2(q.y, q.x) - first;
        if (turn < 0) turn += 2 * pi;
        const float on_scale = turn <= sweep + 0.02F ? 1.0F : 0.0F;
        glow += light * (0.25F * smooth_step(0, -radius, d));
        glow += light * (0.9F * on_scale * ticks(p, centre, radius - 5, radius - 2.5F, 48, 0.9F));
        glow += palette::bone * (0.9F * on_scale * ticks(p, centre, radius - 8, radius - 2.5F, 8, 1.2F));
        const vec2 tip = centre + vec2{std::cos(angle), std::sin(angle)} * (radius - 5);
        glow +=
            palette::magenta * (1.3F * coverage(sd_segment(p, centre - (tip - centre) * 0.2F, tip) - 0.8F));
        glow += palette::magenta * coverage(d + radius - 2.4F);
        // A reflection on the glass.
        glow +=
            palette::bone *
            (0.12F * smooth_step(2, -6, sd_circle(p, centre - vec2{radius, radius} * 0.45F, radius * 0.6F)));
    });
}

// A column of lamps, `lit` of `count` of them on, from green at the foot to magenta at the top.
void draw_ladder(panel& target, vec2 foot, int count, int lit) {
    for (int k = 0; k < count; ++k) {
        const vec2 centre{foot.x, foot.y - static_cast<float>(k) * 6.5F};
        const float t = static_cast<float>(k) / static_cast<float>(count - 1);
        const rgb light = mix(palette::phosphor, palette::magenta, smooth_step(0.5F, 0.8F, t));
        std::size_t i = 0;
        for_each_pixel(target.height, [&](vec2 p, float& h) {
            const std::size_t own = i++;
            const float d = sd_box(p, centre, {7, 2}, 1);
            if (d > 12) return;
            if (d < 1.5F) h = mix(h, -0.6F, coverage(d));
            const float strength = k < lit ? 1.1F : 0.06F;
            target.glow.values[own] +=
                light * (strength * (coverage(d) + 0.10F * std::exp(-std::max(d, 0.0F) * 0.4F)));
            if (d < 0) target.paint.values[own] = palette::night * 0.4F;
        });
    }
}

// The long display at the bottom: a running wave in phosphor on a grid.
void draw_scope(panel& target, vec2 centre, vec2 half) {
    std::size_t i = 0;
    for_each_pixel(target.height, [&](vec2 p, float& h) {
        const std::size_t own = i++;
        const float d = sd_box(p, centre, half, 4);
        if (d > 6) return;
        h += 2.4F * smooth_step(4, 2, d) * smooth_step(-1.5F, 0, d);
        if (d > 0) return;
        h = 0;
        target.paint.values[own] = palette::night * 0.4F;
        rgb& glow = target.glow.values[own];
        const vec2 q = p - centre;
        glow += palette::moss * (0.5F + 0.5F * smooth_step(half.y, 0, std::fabs(q.y)));
        glow += palette::moss * (0.6F * std::max(hatch(q.x, 12, 0.07F), hatch(q.y, 6, 0.12F)));
        // 50 cycles with a beat: the amplitude swells and dies along the strip.
        const float swell = half.y * 0.72F * (0.35F + 0.65F * std::fabs(std::sin(q.x * 0.028F + 0.6F)));
        const float wave = swell * std::sin(q.x * 0.34F);
        const float slope = swell * 0.34F * std::cos(q.x * 0.34F);
        const float off = std::fabs(q.y - wave) / std::sqrt(1 + slope * slope);
        glow += palette::phosphor * (1.2F * glow_line(off, 0.9F) + 0.25F * glow_line(off, 3));
    });
}

void draw_knob(panel& target, vec2 centre, float radius, float angle) {
    std::size_t i = 0;
    for_each_pixel(target.height, [&](vec2 p, float& h) {
        const std::size_t own = i++;
        const vec2 q = p - centre;
        const float r = length(q);
        const float d = r - radius - 0.7F * std::cos(std::atan2(q.y, q.x) * 14);
        if (d > 2) return;
        h = mix(h, 5 + 1.4F * smooth_step(radius * 0.7F, 0, r), smooth_step(1, -1.5F, d));
        target.paint.values[own] = mix(target.paint.values[own], palette::indigo * 0.55F, coverage(d));
        const vec2 tip = centre + vec2{std::cos(angle), std::sin(angle)} * (radius - 2);
        target.glow.values[own] +=
            palette::bone * coverage(sd_segment(p, centre + (tip - centre) * 0.45F, tip) - 0.9F);
    });
}

void draw_labels(panel& target) {
    const type_style plate{.size = 14, .stem = 0.21F, .thin = 0.1F, .tracking = 0.2F};
    const type_style tiny{.size = 6, .stem = 0.19F, .thin = 0.16F, .tracking = 0.45F};
    const plane name = frame_distances(set_line("HUM", {38, 14}, plate, align::centre), 3);
    emboss(target, -1.5F, coverage_of(name));
    add_light(target.glow, coverage_of(name), palette::bone * 0.75F);
    setting words = set_line("LISTENING POST No. 4", {92, 17}, tiny);
    append(words, set_line("50 CYCLES/SECOND", {420, 17}, tiny, align::right));
    append(words, set_line("NIGHT", {37, 112}, tiny, align::centre));
    append(words, set_line("DRIFT", {37, 180}, tiny, align::centre));
    append(words, set_line("L", {460, 205}, tiny, align::centre));
    append(words, set_line("R", {489, 205}, tiny, align::centre));
    add_light(target.glow, coverage_of(frame_distances(words, 3)), palette::magenta * 0.8F);
    // A tuning scale over the window.
    const plane scale = frame_plane([](vec2 p) {
        if (p.x < 92 || p.x > 420) return 0.0F;
        const float tall = hatch(p.x - 92, 41, 0.03F) * coverage(std::fabs(p.y - 29) - 4);
        return std::max(tall, hatch(p.x - 92, 8.2F, 0.12F) * coverage(std::fabs(p.y - 31) - 2));
    });
    add_light(target.glow, scale, palette::phosphor * 0.8F);
    const plane pointer = frame_plane([](vec2 p) { return coverage(sd_box(p, {287, 29}, {0.9F, 6})); });
    add_light(target.glow, pointer, palette::magenta * 1.4F);
}

// Lights the height field from the upper left and lays the lamps' own light over it.
picture lit(const panel& source) {
    picture image = black_frame();
    const picture halo = blurred(source.glow, 6);
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            const plane& h = source.height;
            const vec2 slope{(h.clamped(x + 1, y) - h.clamped(x - 1, y)) * 0.5F,
                             (h.clamped(x, y + 1) - h.clamped(x, y - 1)) * 0.5F};
            const float norm = 1 / std::sqrt(1 + dot(slope, slope));
            const float facing = clamp01((0.62F - 0.5F * slope.x - 0.6F * slope.y) * norm);
            const float shine = std::pow(facing, 7.0F);
            const float from_lamp = 1 - 0.0011F * length(vec2{static_cast<float>(x), static_cast<float>(y)});
            rgb& c = image.at(x, y);
            c = source.paint.at(x, y) * (0.10F + 1.7F * facing * from_lamp) +
                mix(palette::magenta, palette::bone, 0.4F) * (0.9F * shine);
            c += source.glow.at(x, y) + halo.at(x, y) * 0.5F;
            // The window throws its light on the collar's inner edge, and its outer edge lies in shadow.
            const float window =
                window_distance({static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F});
            c += palette::electric * (0.3F * glow_line(window - 3, 2.5F));
            c *= 1 - 0.5F * glow_line(window - 20, 6);
        }
    }
    return image;
}

} // namespace

file_bytes hum_panel() {
    panel parts;
    draw_plates(parts);
    draw_gauge(parts, {37, 82}, 25, 0.62F, palette::phosphor);
    draw_gauge(parts, {37, 150}, 25, 0.27F, palette::phosphor);
    draw_knob(parts, {37, 214}, 15, -2.2F);
    draw_ladder(parts, {460, 196}, 21, 15);
    draw_ladder(parts, {489, 196}, 21, 18);
    draw_knob(parts, {460, 226}, 9, -0.6F);
    draw_knob(parts, {489, 226}, 9, -1.9F);
    draw_scope(parts, {256, 260}, {160, 15});
    draw_knob(parts, {37, 258}, 9, 0.4F);
    draw_knob(parts, {475, 258}, 11, -1.2F);
    draw_labels(parts);
    std::vector<std::uint8_t> bytes =
        to_bytes(lit(parts), {.grain = 4, .vignette = 0.3F, .opaque = true, .seed = 61});
    // The window is the key: exactly black, with a hard edge.
    const plane window = frame_plane(window_distance);
    for (std::size_t i = 0; i < window.values.size(); ++i) {
        if (window.values[i] < 0) bytes[i * 3] = bytes[i * 3 + 1] = bytes[i * 3 + 2] = 0;
    }
    return png_file(frame_width, frame_height, bytes);
}

} // namespace assets
