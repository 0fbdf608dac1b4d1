// The production's title: the name before the eye of the advisory card, now wide open and burning. The cube
// turns in its pupil.
#include "assets/forms/drawing.h"
#include "assets/forms/noise.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

constexpr vec2 pupil{256, 112};
constexpr float pupil_radius = 44;
constexpr float iris_radius = 104;

// Fibres from the pupil outward, two layers of them, over engraved rings.
rgb iris_at(vec2 p) {
    const vec2 q = p - pupil;
    const float r = length(q);
    const float angle = std::atan2(q.y, q.x);
    const float span =
        smooth_step(pupil_radius - 1, pupil_radius + 3, r) * smooth_step(iris_radius + 1, iris_radius - 5, r);
    const float fine = ridges({angle * 32 / pi, r * 0.035F}, 2, 951, 64);
    const float broad = ridges({angle * 10 / pi, r * 0.02F + 3}, 2, 955, 20);
    const float deep = smooth_step(iris_radius, pupil_radius, r);
    rgb c = mix(palette::electric, palette::orchid * 1.2F, smooth_step(0.75F, 0.2F, deep)) *
            (1.1F * smooth_step(0.45F, 0.95F, fine) + 0.4F * smooth_step(0.4F, 0.9F, broad));
    c += palette::phosphor * (0.9F * smooth_step(0.5F, 0.95F, fine) * smooth_step(0.5F, 1, deep));
    c += palette::magenta * (0.22F * rosette(p, pupil, 76, 22, 15, 6, 0.4F));
    // Shade under the upper lid, so that the ball is round.
    c *= 0.35F + 0.65F * smooth_step(-iris_radius, 10, q.y);
    return c * span;
}

void draw_eye(picture& image) {
    for_each_pixel(image, [](vec2 p, rgb& c) {
        const float r = length(p - pupil);
        const float lid = sd_lens(p, pupil, 262, 108);
        // Nothing of the ball above or below the lids.
        c += iris_at(p) * coverage(lid + 2);
        c += palette::magenta *
             (0.9F * glow_line(r - pupil_radius, 1.2F) + 0.18F * glow_line(r - pupil_radius, 9));
        c += palette::magenta *
             ((0.8F * glow_line(r - iris_radius, 1.0F) + 0.15F * glow_line(r - iris_radius, 10)) *
              coverage(lid));
        // The lids: lines of light that run out before the frame's edge.
        const float run = smooth_step(256, 90, std::fabs(p.x - pupil.x));
        c += palette::bone * (run * 0.9F * glow_line(lid, 1.1F)) +
             palette::orchid * (run * 0.3F * glow_line(lid, 8));
        c += palette::electric * (run * 0.5F * glow_line(lid - 12, 0.8F)) +
             palette::electric * (run * 0.25F * glow_line(lid - 20, 0.8F));
        c += palette::phosphor *
             (0.6F * ticks(p, pupil, iris_radius + 6, iris_radius + 9, 144, 0.9F) * coverage(lid + 6));
    });
}

} // namespace

file_bytes title_velkadame() {
    picture image = black_frame();
    draw_eye(image);
    const type_style style{.size = 66, .stem = 0.19F, .thin = 0.065F, .stretch = 0.7F, .tracking = 0.12F};
    const float top = 174;
    plane letters = frame_distances(set_justified("VELKADAME", {28, top}, 456, style));
    // The word stands before the eye and takes its light away.
    const plane shadow = blurred(coverage_of(letters), 5);
    for (std::size_t i = 0; i < image.values.size(); ++i)
        image.values[i] *= 1 - clamp01(shadow.values[i] * 2.2F) * 0.95F;
    slice(letters, {256, top + 27}, {1, -0.02F}, 2.6F);
    paint_neon(image, letters,
               {.top = palette::bone,
                .bottom = palette::magenta,
                .top_y = top + 16,
                .bottom_y = top + 74,
                .body = 1.2F,
                .bevel = 3,
                .rim_light = 0.5F,
                .near_glow = 0.4F,
                .far_glow = 0.25F,
                .near_sigma = 4,
                .far_sigma = 14});
    const setting line = set_justified("A FILM WITHOUT A CAMERA * 276 SECONDS OF LIGHT", {30, top + 78}, 452,
                                       {.size = 8, .stem = 0.2F, .thin = 0.16F});
    paint_neon(image, frame_distances(line, 6),
               {.top = palette::phosphor,
                .bottom = palette::phosphor,
                .glow = palette::phosphor,
                .near_glow = 0.2F,
                .far_glow = 0.1F,
                .near_sigma = 2,
                .far_sigma = 7});
    return png_file(frame_width, frame_height, to_bytes(image, {.toe = 0.0016F, .seed = 41}));
}

} // namespace assets
