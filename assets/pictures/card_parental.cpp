// The advisory card: a censor's certificate, engraved like a banknote, with an eye that will not close.
// Below it a strip of the ground stays dark: there the closing movement writes its own words in light.
#include "assets/forms/drawing.h"
#include "assets/forms/noise.h"
#include "assets/pictures/pictures.h"

namespace assets {
namespace {

constexpr vec2 card_middle{256, 133};
constexpr vec2 card_half{244, 121};
constexpr vec2 eye = seal_middle;
constexpr float column = 268;  // left edge of the text
constexpr float measure = 214; // and its width

rgb ground_at(vec2 p) {
    const float far = length((p - eye) * (1 / 300.0F));
    rgb c = mix(palette::orchid * 0.7F, palette::indigo * 1.15F, smooth_step(0.12F, 0.6F, far));
    c = mix(c, palette::indigo * 0.5F, smooth_step(0.5F, 1.25F, far));
    // Security waves: two families of engraved lines that swell with a slow noise.
    const float swell = fbm(p * (1 / 110.0F), 3, 71);
    const float wave = p.y + 9 * std::sin(p.x * 0.035F) + 26 * swell;
    const float cross = p.y - 7 * std::sin(p.x * 0.047F + 2) - 20 * swell;
    c = mix(c, palette::magenta * 0.7F, 0.32F * hatch(wave, 4.5F, 0.24F + 0.12F * swell));
    return mix(c, palette::night, 0.38F * hatch(cross, 6, 0.2F));
}

// The seal's rings from the outside in: engraved rosettes, a dark band for the ring of words, ticks.
void draw_seal(picture& card) {
    for_each_pixel(card, [](vec2 p, rgb& c) {
        const float r = length(p - eye);
        if (r > 120) return;
        c = mix(c, palette::magenta, 0.9F * rosette(p, eye, 107, 6.5F, 36, 4, 0.8F));
        c = mix(c, palette::night * 1.2F, coverage(std::fabs(r - 91) - 9.5F) * 0.94F);
        c = mix(c, palette::bone, coverage(std::fabs(r - 100.5F) - 0.7F));
        c = mix(c, palette::bone, coverage(std::fabs(r - 81.5F) - 0.7F));
        const float disc = coverage(r - 81);
        c = mix(c, mix(palette::bone * 1.1F, palette::magenta * 0.95F, smooth_step(24, 82, r)), disc);
        c = mix(c, palette::plum, disc * 0.85F * rosette(p, eye, 64, 13, 12, 10, 0.7F));
        c = mix(c, palette::indigo, disc * 0.75F * rosette(p, eye, 46, 8, 18, 8, 0.6F));
        c = mix(c, palette::indigo * 0.6F, ticks(p, eye, 76, 80, 120, 1));
    });
}

// Fibres of the iris: bright crests that run to the pupil, dark toward the rim.
rgb iris_at(vec2 q, float r) {
    const float angle = std::atan2(q.y, q.x);
    const float fibre = ridges({angle * 16 / pi, r * 0.10F}, 3, 5, 32);
    rgb c = mix(palette::electric, palette::orchid * 1.25F, smooth_step(13, 30, r));
    c = mix(c, palette::night, 0.45F * smooth_step(0.6F, 0.2F, fibre));
    c = mix(c, palette::bone, smooth_step(0.55F, 0.95F, fibre) * 0.8F);
    c = mix(c, palette::phosphor, 0.9F * smooth_step(22, 14, r) * fibre);
    return mix(c, palette::night, smooth_step(28, 34.5F, r));
}

// The ball of the eye at `q` from its middle, `lid` pixels inside the lids (below 0).
rgb eyeball_at(vec2 q, float lid) {
    const float r = length(q);
    // The white is engraved: lines that follow the lids and thicken into the shade.
    const float shade =
        clamp01(0.1F + 0.0105F * std::max(std::fabs(q.x) - 8, 0.0F) + 0.45F * smooth_step(-13, -3, lid));
    rgb c = mix(palette::bone * 1.15F, palette::plum,
                0.8F * hatch(lid + 0.02F * std::fabs(q.x), 2.7F, shade * 0.62F));
    c = mix(c, palette::magenta * 0.6F, 0.35F * shade);
    c = mix(c, iris_at(q, r), coverage(r - 34.5F));
    c = mix(c, palette::night * 0.25F, coverage(r - 13));
    // The upper lid throws a shadow on the ball.
    c *= mix(0.4F, 1.0F, smooth_step(-1, -12, lid + std::max(q.y, 0.0F)));
    // What it sees: a falling light and its trail.
    float along = 0;
    const float tail = sd_segment(q, {-12, -13}, {7, 2}, &along) - 4.5F * (1 - along) * (1 - along);
    c = mix(c, palette::bone * 1.2F, coverage(tail) * (1 - along));
    return mix(c, palette::bone * 1.6F, coverage(length(q - vec2{-12, -13}) - 5.4F));
}

void draw_eye(picture& card) {
    for_each_pixel(card, [](vec2 p, rgb& c) {
        const vec2 q = p - eye;
        if (length(q) > 81) return;
        const float lid = sd_lens(p, eye, 74, 38);
        const float above = q.y < 0 ? 1.0F : 0.45F;
        // The lid's folds, and lashes that grow out of it, longer above.
        if (q.y < 4)
            c = mix(c, palette::plum * 0.6F,
                    0.9F * coverage(std::fabs(lid - 11 - 0.03F * std::fabs(q.x)) - 0.9F));
        const float angle = std::atan2(q.y * 1.6F, q.x - q.y * 0.1F);
        const float lash = std::fabs(std::fmod(angle * 22 / pi + 44.5F, 1.0F) - 0.5F);
        const float reach = 16 * above * (1 - 0.35F * std::fabs(q.x) / 74);
        if (lid > 0 && lid < reach)
            c = mix(c, palette::night, clamp01((0.30F - lash) * 6 * (1 - lid / reach)));
        if (lid < 1) c = mix(c, eyeball_at(q, lid), coverage(lid));
        c = mix(c, palette::night, coverage(std::fabs(lid) - (q.y < 0 ? 2.6F : 1.2F)));
    });
}

void draw_frame(picture& card) {
    for_each_pixel(card, [](vec2 p, rgb& c) {
        const float edge = sd_cut_box(p, card_middle, card_half, 16);
        c = mix(c, palette::night * 0.55F + c * 0.04F, coverage(-edge));
        c = mix(c, palette::bone, coverage(std::fabs(edge) - 0.9F));
        c = mix(c, palette::magenta, 0.85F * coverage(std::fabs(edge + 4) - 0.5F));
    });
}

setting small_print(std::string_view text, float y) {
    return set_justified(text, {column, y}, measure,
                         {.size = 8, .stem = 0.2F, .thin = 0.15F, .stretch = 0.8F, .tracking = 0.1F});
}

void draw_words(picture& card) {
    const setting ring =
        set_ring("PASSED FOR THE SLEEPLESS BY THE MORVANE BOARD OF OPTICAL CONDUCT *", eye, 86.5F, -pi / 2,
                 {.size = 9, .stem = 0.2F, .thin = 0.14F, .stretch = 0.78F, .tracking = 0.26F});
    cover(card, coverage_of(frame_distances(ring, 3)), palette::bone);

    setting head = set_justified("UNSAFE", {column, 50}, measure,
                                 {.size = 44, .stem = 0.23F, .thin = 0.1F, .stretch = 0.74F});
    append(head, set_justified("FOR STILL EYES", {column, 104}, measure,
                               {.size = 18, .stem = 0.21F, .thin = 0.1F, .stretch = 0.92F}));
    plane distances = frame_distances(head);
    slice(distances, {column, 70}, {1, -0.03F}, 2);
    const plane shadow = blurred(coverage_of(distances), 3);
    for (std::size_t i = 0; i < card.values.size(); ++i)
        card.values[i] = mix(card.values[i], palette::night, 0.8F * clamp01(shadow.values[i] * 1.7F));
    paint_neon(card, distances,
               {.top = palette::bone * 1.2F,
                .bottom = mix(palette::bone, palette::magenta, 0.45F),
                .top_y = 50,
                .bottom_y = 124,
                .bevel = 1.6F,
                .near_glow = 0.1F,
                .far_glow = 0.08F});

    setting body = small_print("CONTAINS FALLING ROCK, LOOSE LIGHT,", 145);
    append(body, small_print("STRONG MAGENTA AND ONE CUBE", 159));
    append(body, small_print("OF UNKNOWN INTENT. PARENTS: PLEASE", 173));
    append(body, small_print("HOLD ON TO YOUR CHILDREN. THEY STEER.", 187));
    cover(card, coverage_of(frame_distances(body, 3)), palette::bone * 1.15F);

    const type_style fine{.size = 8, .stem = 0.2F, .thin = 0.15F, .stretch = 0.85F, .tracking = 0.24F};
    setting notes = set_line("CERTIFICATE", {column, 30}, fine);
    append(notes, set_line("276/46", {column + measure, 30}, fine, align::right));
    append(notes, set_line("VALID UNTIL", {column, 213}, fine));
    append(notes, set_line("YOU BLINK", {column, 227}, fine));
    cover(card, coverage_of(frame_distances(notes, 3)), palette::phosphor);
}

// Hairlines in the column, and the censor's signature: one stroke of a pen, thick on the way down.
void draw_rules(picture& card) {
    const plane ink = frame_plane([](vec2 p) {
        float d = 1e3F;
        for (const float y : {43.0F, 133.0F, 204.0F})
            d = std::min(d, sd_box(p, {column + measure * 0.5F, y}, {measure * 0.5F, 0.5F}));
        if (p.x < 360 || p.y < 205) return coverage(d);
        vec2 before{378, 234};
        for (int i = 1; i <= 90; ++i) {
            const float t = static_cast<float>(i) / 90;
            const vec2 now{378 + 94 * t + 9 * std::sin(t * 26),
                           222 + 14 * std::cos(t * 26 + 0.5F) * (1 - 0.75F * t) - 6 * t};
            d = std::min(d, sd_segment(p, before, now) - (now.y > before.y ? 1.0F : 0.4F));
            before = now;
        }
        return coverage(d);
    });
    cover(card, ink, palette::bone);
}

} // namespace

file_bytes parental_card() {
    picture card = black_frame();
    for_each_pixel(card, [](vec2 p, rgb& c) { c = ground_at(p); });
    draw_seal(card);
    draw_eye(card);
    draw_frame(card);
    draw_words(card);
    draw_rules(card);
    return png_file(
        frame_width, frame_height,
        to_bytes(card, {.exposure = 1.3F, .grain = 5, .vignette = 0.3F, .opaque = true, .seed = 21}));
}

} // namespace assets
