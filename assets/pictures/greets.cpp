// The greetings: names as stars in an eye-shaped piece of night that lies over the beat.
#include "assets/forms/drawing.h"
#include "assets/forms/noise.h"
#include "assets/pictures/pictures.h"
#include "morvane/base/numbers.h"

namespace assets {
namespace {

struct star {
    std::string_view name;
    vec2 at;
    align how;
};

// Nobody real: names as they might stand on a chart.
constexpr star chart[] = {
    {"KESTRUVAL", {214, 52}, align::left},         {"OLD TIN MOON", {150, 74}, align::left},
    {"HALF A LIGHTHOUSE", {272, 77}, align::left}, {"THE NINTH DRAWER", {96, 100}, align::left},
    {"MOTHS OF BRELL", {322, 103}, align::left},   {"PALE ARITHMETIC", {84, 182}, align::left},
    {"SUNDAY VOLTAGE", {318, 182}, align::left},   {"QUIET BAKELITE", {140, 207}, align::left},
    {"ORRELANE", {300, 209}, align::left},         {"NO SUCH HARBOUR", {196, 234}, align::left},
};

// Which stars the chart joins.
struct pair {
    std::size_t a, b;
};
constexpr pair joined[] = {{3, 1}, {1, 0}, {0, 2}, {2, 4}, {5, 7}, {7, 9}, {9, 8}, {8, 6}};

float eye_distance(vec2 p) {
    return sd_lens(p, frame_middle, 262, 124);
}

setting names() {
    setting text;
    for (const star& s : chart)
        append(text, set_line(s.name, s.at + vec2{9, -4.5F},
                              {.size = 9, .stem = 0.19F, .thin = 0.13F, .stretch = 0.92F, .tracking = 0.22F},
                              s.how));
    return text;
}

setting heading() {
    return set_justified("WE SAW YOUR LIGHTS", {76, 134}, 360, {.size = 22, .stem = 0.2F, .thin = 0.09F});
}

// The lines of the chart, ending short of the stars.
float lines_at(vec2 p) {
    float light = 0;
    for (const pair& j : joined) {
        const vec2 way = normalised(chart[j.b].at - chart[j.a].at) * 9;
        light = std::max(light, glow_line(sd_segment(p, chart[j.a].at + way, chart[j.b].at - way), 0.8F));
    }
    return light;
}

float stars_at(vec2 p) {
    float light = 0;
    for (const star& s : chart) {
        const vec2 q = p - s.at;
        const float r = length(q);
        if (r > 16) continue;
        light += std::exp(-r * r * 0.25F) + 0.6F * std::exp(-std::fabs(q.x) * 1.6F - std::fabs(q.y) * 0.35F) +
                 0.6F * std::exp(-std::fabs(q.y) * 1.6F - std::fabs(q.x) * 0.35F);
    }
    return light;
}

} // namespace

file_bytes greets_picture() {
    picture image = black_frame();
    for_each_pixel(image, [](vec2 p, rgb& c) {
        const float d = eye_distance(p);
        c = mix(palette::night, palette::indigo * 0.8F, smooth_step(-20, -124, d));
        c += palette::plum * (0.5F * clamp01(fbm(p * 0.012F, 4, 901)));
        c += palette::electric * (0.3F * rosette(p, frame_middle, 92, 12, 16, 8, 0.6F));
        c += palette::electric * (0.35F * ticks(p, frame_middle, 108, 112, 120, 0.8F));
        c += palette::magenta * (0.9F * glow_line(d + 6, 1.2F) + 0.2F * glow_line(d + 6, 8));
        c += palette::magenta * (0.45F * lines_at(p)) + palette::bone * stars_at(p);
        const float speck = hash01(trunc_to_int(p.x * 0.5F), trunc_to_int(p.y * 0.5F), 905);
        c += palette::bone * (speck > 0.990F ? 0.09F : 0.0F);
    });
    paint_neon(image, frame_distances(heading()),
               {.top = palette::bone,
                .bottom = palette::magenta,
                .top_y = 136,
                .bottom_y = 158,
                .bevel = 1.5F,
                .near_glow = 0.35F,
                .far_glow = 0.25F});
    const plane words = coverage_of(frame_distances(names(), 3));
    const plane shadow = blurred(words, 2.5F);
    for (std::size_t i = 0; i < image.values.size(); ++i)
        image.values[i] *= 1 - 0.8F * clamp01(shadow.values[i] * 1.6F);
    cover(image, words, mix(palette::phosphor, palette::bone, 0.35F));
    return png_file(frame_width, frame_height, to_bytes(image, {.grain = 3, .seed = 81}));
}

file_bytes greets_mask() {
    plane mask = frame_plane([](vec2 p) { return 0.9F * smooth_step(4, -12, eye_distance(p)); });
    return tga_mask_file(frame_width, frame_height, to_bytes(mask, 82));
}

} // namespace assets
