// Added pictures: the great V round the cube, the credits over the clip, the slash across the card.
#include "assets/forms/drawing.h"
#include "assets/forms/noise.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

file_bytes finished(const picture& image, std::uint32_t seed) {
    return png_file(frame_width, frame_height, to_bytes(image, {.toe = 0.0016F, .seed = seed}));
}

constexpr type_style small{.size = 8, .stem = 0.21F, .thin = 0.16F, .tracking = 0.45F};

void add_text(picture& image, const setting& text, rgb colour, float glow = 0.2F) {
    paint_neon(image, frame_distances(text, 6),
               {.top = colour,
                .bottom = colour,
                .body = 0.95F,
                .glow = colour,
                .near_glow = glow,
                .far_glow = glow * 0.5F,
                .near_sigma = 2,
                .far_sigma = 7});
}

} // namespace

file_bytes overlay_cubev() {
    picture image = black_frame();
    // The V: two beams, heavy and thin as in the alphabet, engraved with lines that fade toward the top. The
    // thin one ends on the heavy one.
    struct beam {
        vec2 top;
        float half;
    };
    const vec2 foot{256, 300};
    auto across = [&](const beam& b, vec2 p) {
        const vec2 along = normalised(foot - b.top);
        return (p.x - b.top.x) * along.y - (p.y - b.top.y) * along.x;
    };
    const beam heavy{{84, -10}, 26};
    const beam thin{{428, -10}, 11};
    for_each_pixel(image, [&](vec2 p, rgb& c) {
        const float fade = smooth_step(8, 90, p.y) * smooth_step(285, 236, p.y);
        const float beyond = coverage(heavy.half - across(heavy, p));
        for (const beam& b : {heavy, thin}) {
            const float place = across(b, p);
            const float d = std::fabs(place) - b.half;
            const float strength = fade * (b.half == thin.half ? beyond : 1.0F);
            c += palette::electric * (hatch(place, 4, 0.3F) * coverage(d) * strength * 0.6F);
            c += palette::magenta * (glow_line(d, 1.1F) * strength * 0.9F);
            c += palette::orchid * (glow_line(d, 7) * strength * 0.10F);
        }
        // An orbit of ticks round the place of the cube, open below where the words stand.
        const float open = smooth_step(222, 190, p.y);
        c += palette::phosphor * (0.7F * open * ticks(p, frame_middle, 124, 129, 90, 1));
        c += palette::phosphor * (0.7F * open * ticks(p, frame_middle, 118, 132, 10, 1.4F));
    });
    const type_style style{.size = 36, .stem = 0.2F, .thin = 0.08F, .tracking = 0.22F};
    plane letters = frame_distances(set_line("CUBE", {26, 216}, style));
    unite(letters, frame_distances(set_line("FIVE", {486, 216}, style, align::right)));
    slice(letters, {256, 232}, {1, -0.03F}, 2);
    paint_neon(image, letters,
               {.top = palette::bone,
                .bottom = palette::magenta,
                .top_y = 222,
                .bottom_y = 258,
                .body = 1.1F,
                .bevel = 2.5F,
                .rim_light = 0.4F,
                .near_glow = 0.4F,
                .far_glow = 0.3F});
    add_text(image, set_line("EVERY SIDE IS", {27, 262}, small), palette::phosphor);
    add_text(image, set_line("THE OTHER SIDE", {485, 262}, small, align::right), palette::phosphor);
    return finished(image, 31);
}

file_bytes overlay_cred() {
    picture image = black_frame();
    struct entry {
        std::string_view craft;
        std::string_view name;
    };
    constexpr entry entries[] = {
        {"CODE", "MORVANE"}, {"LIGHT", "MORVANE"}, {"MUSIC", "MORVANE"}, {"GEOMETRY", "LORRIM"}};
    add_text(image, set_line("VELKADAME IS THE WORK OF", {256, 70}, small, align::centre), palette::phosphor);
    const type_style style{.size = 19, .stem = 0.19F, .thin = 0.09F, .tracking = 0.24F};
    float y = 96;
    for (const entry& e : entries) {
        add_text(image, set_line(e.craft, {218, y + 11}, small, align::right), palette::phosphor);
        paint_neon(image, frame_distances(set_line(e.name, {240, y}, style)),
                   {.top = palette::bone,
                    .bottom = palette::magenta,
                    .top_y = y + 4,
                    .bottom_y = y + 26,
                    .body = 1.1F,
                    .near_glow = 0.35F,
                    .far_glow = 0.2F,
                    .near_sigma = 2.5F,
                    .far_sigma = 9});
        y += 28;
    }
    // A line between crafts and names that runs out above and below.
    for_each_pixel(image, [](vec2 p, rgb& c) {
        const float run = smooth_step(74, 40, std::fabs(p.y - 150));
        c += palette::magenta * (run * (0.9F * glow_line(p.x - 229, 0.9F) + 0.15F * glow_line(p.x - 229, 5)));
    });
    return finished(image, 32);
}

file_bytes overlay_violence() {
    picture image = black_frame();
    // The blade: a light that crosses the frame through the card's eye, flares there and throws sparks.
    const vec2 along = normalised({1, -0.34F});
    for_each_pixel(image, [&](vec2 p, rgb& c) {
        const vec2 q = p - seal_middle;
        const float t = dot(q, along);
        const float off = q.x * along.y - q.y * along.x;
        const float near = 1 / (1 + t * t * 0.0009F);
        const float d = std::fabs(off) / (0.55F + 2.6F * near);
        const float ends = smooth_step(-150, -60, t) * smooth_step(395, 120, t);
        c += palette::bone * (1.5F * ends * std::exp(-d * d));
        c += palette::phosphor * (0.35F * ends * std::exp(-d * 0.5F));
        // The flare: a star of four points, the long one along the blade.
        const float r = length(q);
        c += palette::bone * std::exp(-r * 0.16F) + palette::phosphor * (0.25F * std::exp(-r * 0.05F));
        c += palette::magenta * (0.8F * std::exp(-std::fabs(t) * 1.1F - std::fabs(off) * 0.035F));
    });
    for (int k = 0; k < 90; ++k) {
        const float speed = 30 + 200 * hash01(k, 1, 331) * hash01(k, 2, 331);
        const float angle = std::atan2(along.y, along.x) + 1.1F * (hash01(k, 3, 331) - 0.5F);
        const vec2 way{std::cos(angle), std::sin(angle)};
        const vec2 tip = seal_middle + way * speed + vec2{0, speed * speed * 0.0011F};
        const vec2 tail = tip - (way + vec2{0, speed * 0.0022F}) * (4 + speed * 0.10F);
        const rgb light = mix(palette::phosphor, palette::magenta, hash01(k, 4, 331));
        for_each_pixel(image, [&](vec2 p, rgb& c) {
            if (std::fabs(p.x - tip.x) > 30 || std::fabs(p.y - tip.y) > 30) return;
            float place = 0;
            const float d = sd_segment(p, tail, tip, &place);
            c += light * (1.4F * place * place * glow_line(d, 0.5F + 0.5F * place));
        });
    }
    // The words stand on the strip that the card leaves dark.
    const type_style style{.size = 14, .stem = 0.2F, .thin = 0.1F, .tracking = 0.3F};
    plane letters = frame_distances(set_justified("NO VIOLENCE. ONLY VELOCITY.", {14, 264}, 484, style));
    paint_neon(image, letters,
               {.top = palette::bone,
                .bottom = palette::phosphor,
                .top_y = 266,
                .bottom_y = 284,
                .body = 1.1F,
                .bevel = 1.2F,
                .glow = palette::phosphor,
                .near_glow = 0.3F,
                .far_glow = 0.15F,
                .near_sigma = 2.5F,
                .far_sigma = 8});
    return finished(image, 33);
}

} // namespace assets
