// The three titles of the first movement: MORVANE, PRESENTS, LORRIM. Bright cores that hold against magenta
// wires, placed off the middle, where the meteor turns.
//
// While the last two are up, the frame is fed back into itself, enlarged and shaken: everything that stands
// still gains three times its light in copies that drift outward. So these two are tall, thin and bright,
// with no glow, no small lines and wide counters, and stand close to an edge, where the copies leave the
// frame. They are white toward that edge, and the rest has green in it, which the walls lack.
#include "assets/forms/drawing.h"
#include "assets/pictures/pictures.h"

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

// Letters without glow, bright enough that a letter reaches full light where its copies are grey: `upper`
// down to the row `from`, `lower` from the row `to` on.
void paint_bare(picture& image, const plane& letters, rgb upper, float from, rgb lower, float to) {
    paint_neon(image, letters,
               {.top = upper, .bottom = lower, .top_y = from, .bottom_y = to, .near_glow = 0, .far_glow = 0});
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
    const type_style style{.size = 74, .stem = 0.12F, .thin = 0.09F, .stretch = 0.66F};
    const float top = 10;
    plane letters = frame_distances(set_justified("PRESENTS", {22, top}, 468, style));
    slice(letters, {256, top + 31}, {1, 0.03F}, 3);
    paint_bare(image, letters, palette::bone, top + 8, {0.04F, 0.8F, 0.24F}, top + 36);
    return finished(image, 12);
}

file_bytes title_lorrim() {
    picture image = black_frame();
    const type_style style{.size = 92, .stem = 0.1F, .thin = 0.068F, .stretch = 0.86F, .tracking = 0.2F};
    const float top = 186;
    plane letters = frame_distances(set_line("LORRIM", {498, top}, style, align::right));
    slice(letters, {256, top + 37}, {1, -0.03F}, 3);
    paint_bare(image, letters, {0.2F, 0.24F, 1.0F}, top + 54, palette::bone, top + 84);
    return finished(image, 13);
}

} // namespace assets
