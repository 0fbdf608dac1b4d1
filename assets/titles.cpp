// The three titles of the first movement: MORVANE, PRESENTS, LORRIM. White cores that hold against magenta
// wires, placed off the middle, where the meteor turns.
#include "assets/drawing.h"
#include "assets/pictures.h"

namespace assets {
namespace {

constexpr float toe = 0.0016F;

file_bytes finished(const picture& image, std::uint32_t seed) {
    return png_file(frame_width, frame_height, to_bytes(image, {.toe = toe, .seed = seed}));
}

// A line of light that is thickest at `from_x` and runs out toward `to_x`.
void add_ray(picture& image, float y, float from_x, float to_x, float thickness, rgb colour) {
    for_each_pixel(image, [&](vec2 p, rgb& c) {
        const float t = (p.x - from_x) / (to_x - from_x);
        if (t < 0 || t > 1) return;
        const float d = std::fabs(p.y - y) / (thickness * (1 - t) + 0.25F);
        c += colour * ((1 - t) * std::exp(-d * d));
    });
}

void add_small_line(picture& image, const setting& text, rgb colour) {
    paint_neon(image, frame_distances(text, 6),
               {.top = colour,
                .bottom = colour,
                .body = 0.95F,
                .glow = colour,
                .near_glow = 0.25F,
                .far_glow = 0.12F,
                .near_sigma = 2,
                .far_sigma = 7});
}

} // namespace

file_bytes title_morvane() {
    picture image = black_frame();
    const type_style style{.size = 58, .stem = 0.2F, .thin = 0.075F, .tracking = 0.13F};
    const float top = 190;
    plane letters = frame_distances(set_justified("MORVANE", {44, top}, 424, style));
    // The waist cuts through the whole word, rising, and a ray leaves by each end of the cut.
    slice(letters, {256, top + 25}, {1, -0.03F}, 2.6F);
    paint_neon(image, letters,
               {.top = palette::bone,
                .bottom = palette::magenta,
                .top_y = top + 10,
                .bottom_y = top + 66,
                .body = 1.1F,
                .bevel = 3,
                .rim = palette::bone,
                .rim_light = 0.55F,
                .near_glow = 0.5F,
                .far_glow = 0.42F,
                .near_sigma = 4,
                .far_sigma = 18});
    add_ray(image, top + 31, 44, -40, 2.2F, palette::magenta * 1.2F);
    add_ray(image, top + 19, 468, 552, 2.2F, palette::magenta * 1.2F);
    add_small_line(image,
                   set_line("DEMOSYSTEM * SIX MOVEMENTS", {256, top + 72},
                            {.size = 8, .stem = 0.21F, .thin = 0.16F, .tracking = 0.5F}, align::centre),
                   palette::phosphor);
    return finished(image, 11);
}

file_bytes title_presents() {
    picture image = black_frame();
    const type_style style{.size = 38, .stem = 0.17F, .thin = 0.08F, .tracking = 0.4F};
    const float top = 40;
    plane letters = frame_distances(set_justified("PRESENTS", {84, top}, 344, style));
    slice(letters, {256, top + 16}, {1, 0.03F}, 2);
    paint_neon(image, letters,
               {.top = palette::bone,
                .bottom = palette::phosphor,
                .top_y = top + 8,
                .bottom_y = top + 46,
                .body = 1.1F,
                .bevel = 2.5F,
                .rim = palette::bone,
                .rim_light = 0.5F,
                .glow = palette::phosphor,
                .near_glow = 0.3F,
                .far_glow = 0.2F,
                .near_sigma = 3.5F,
                .far_sigma = 16});
    add_ray(image, top + 11, 84, -20, 1.8F, palette::phosphor);
    add_ray(image, top + 21, 428, 532, 1.8F, palette::phosphor);
    add_small_line(image,
                   set_line("A STUDY IN FALLING LIGHT", {256, top + 54},
                            {.size = 8, .stem = 0.21F, .thin = 0.16F, .tracking = 0.5F}, align::centre),
                   palette::bone);
    return finished(image, 12);
}

file_bytes title_lorrim() {
    picture image = black_frame();
    const type_style style{.size = 64, .stem = 0.21F, .thin = 0.075F, .tracking = 0.14F};
    const float top = 184;
    plane letters = frame_distances(set_line("LORRIM", {472, top}, style, align::right));
    slice(letters, {256, top + 27}, {1, -0.03F}, 2.8F);
    paint_neon(image, letters,
               {.top = palette::bone,
                .bottom = palette::electric,
                .top_y = top + 12,
                .bottom_y = top + 84,
                .body = 1.15F,
                .bevel = 3,
                .rim = palette::magenta,
                .rim_light = 0.7F,
                .glow = palette::electric,
                .near_glow = 0.5F,
                .far_glow = 0.42F,
                .near_sigma = 4,
                .far_sigma = 18});
    add_ray(image, top + 20, 472, 560, 2.2F, palette::magenta * 1.2F);
    add_small_line(image,
                   set_line("WITH ITS GUEST", {472, top - 16},
                            {.size = 8, .stem = 0.21F, .thin = 0.16F, .tracking = 0.5F}, align::right),
                   palette::bone);
    return finished(image, 13);
}

} // namespace assets
