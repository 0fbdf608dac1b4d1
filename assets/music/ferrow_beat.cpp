// The four pictures of the beat in "ferrow", a colour for each: the scene in negative is a coarse chord, the
// plasma a shimmer that runs up, the scene a plain stab, the tunnel a tone that falls into the depth.
#include <cstddef>

#include "assets/music/effects.h"
#include "assets/music/ferrow.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

struct beat_row {
    int in;
    std::string_view bars; // "." silent, "1" a stroke for each picture, "2" and "3" denser
    float level;
};
constexpr auto beat_rows = std::to_array<beat_row>({
    {beat_bare, "11212122", 1.0F},
    {beat_full, "11212122", 0.8F},
    {beat_greets, "2.....22", 0.8F},
    {smear, "12222223", 0.85F},
    {smear_lifted, "22231123", 0.9F},
    {smear_whole, "333333..", 0.9F},
});

struct beat_bar {
    int in;
    int bar;
    int density; // 1 to 3
    float level;
    const chord* harmony;
    double time(double step) const { return ferrow_form.time(in, bar, step); }
};

std::vector<beat_bar> beat_bars() {
    std::vector<beat_bar> bars;
    for (const beat_row& row : beat_rows) {
        for (int bar = 0; bar < bars_a_section; ++bar) {
            const char letter = row.bars[static_cast<std::size_t>(bar)];
            if (letter == '.') continue;
            bars.push_back({row.in, bar, letter - '0', row.level, &ferrow_form.chord_at(row.in, bar)});
        }
    }
    return bars;
}

// The steps of a bar on which each picture stands.
constexpr int plasma_step = 4;
constexpr int scene_step = 8;
constexpr int tunnel_step = 12;

// The movement of the beat begins in the middle of the plasma.
bool before_the_first_picture(double time) {
    return time < at_show(204.5) - 0.001;
}

} // namespace

void ferrow_negative(stereo& out) {
    static constexpr auto cutoff = from_show<curve_point>({
        {204.5, 900.0F},
        {228.0, 1600.0F},
        {237.0, 1300.0F},
        {276.0, 3400.0F},
    });
    const poly_sound sound = {.gain = 0.34F,
                              .saws = 2,
                              .cents = 10.0F,
                              .pulse = 0.6F,
                              .q = 1.2F,
                              .sweep = 1.5F,
                              .amp = {.attack = 0.001F, .decay = 0.3F, .sustain = 0.0F, .release = 0.05F},
                              .filter = {.attack = 0.001F, .decay = 0.2F, .sustain = 0.0F, .release = 0.1F},
                              .cutoff = cutoff};
    std::uint32_t seed = 301;
    for (const beat_bar& bar : beat_bars()) {
        if (before_the_first_picture(bar.time(0))) continue;
        for (int stroke = 0; stroke < bar.density; ++stroke) {
            for (const int interval : {12, 19, 24}) {
                add_poly(out,
                         {.start = bar.time(stroke),
                          .length = stroke == 0 ? 0.3 : 0.12,
                          .pitch = static_cast<float>(bar.harmony->root + interval),
                          .velocity = bar.level * (stroke == 0 ? 1.0F : 0.6F)},
                         sound, seed++);
            }
        }
    }
    crush(out, 5200.0F, 24.0F);
}

void ferrow_plasma(stereo& out) {
    for (const beat_bar& bar : beat_bars()) {
        const int strokes = bar.density == 1 ? 4 : 8;
        for (int stroke = 0; stroke < strokes; ++stroke) {
            // Up in one bar, down in the next.
            const auto which = static_cast<std::size_t>(bar.bar % 2 == 0 ? stroke % 4 : 3 - stroke % 4);
            const double time = bar.time(plasma_step + stroke * 4.0 / strokes);
            if (before_the_first_picture(time)) continue;
            const int octave = bar.density == 3 ? 24 + 12 * (stroke / 4) : 24;
            add_bell(out,
                     {.start = time,
                      .pitch = static_cast<float>(bar.harmony->upper[which] + octave),
                      .velocity = bar.level * (stroke % 4 == 0 ? 0.8F : 0.55F),
                      .pan = which % 2 == 0 ? -0.6F : 0.6F},
                     {.ratio = 2.0F, .bend = 2.6F, .seconds = 0.12F, .shimmer = 12.0F});
        }
    }
}

void ferrow_scene(stereo& out) {
    for (const beat_bar& bar : beat_bars()) {
        add_stab(out, bar.time(scene_step), *bar.harmony, bar.level * 0.8F, 1.0F);
        if (bar.density > 1) add_stab(out, bar.time(scene_step + 3), *bar.harmony, bar.level * 0.5F, 0.8F);
    }
}

void ferrow_tunnel(stereo& out) {
    std::uint32_t seed = 331;
    for (const beat_bar& bar : beat_bars()) {
        const double beat = 4 * ferrow_tempo.step_length(bar.in);
        const double start = bar.time(tunnel_step);
        for (const float interval : {0.0F, 7.0F, 12.0F})
            add_slide(out, {.start = start,
                            .length = beat,
                            .from_pitch = static_cast<float>(bar.harmony->root) + 43.0F + interval,
                            .to_pitch = static_cast<float>(bar.harmony->root) + 12.0F + interval,
                            .from_gain = 0.24F * bar.level,
                            .to_gain = 0.03F * bar.level,
                            .bow = 0.7F,
                            .wobble = bar.density == 3 ? 1.5F : 0.0F,
                            .rate = 10.6667F, // four turns in a beat
                            .edge = 0.5F});
        add_sweep(out,
                  {.start = start,
                   .length = beat,
                   .from_hertz = 7000,
                   .to_hertz = 400,
                   .from_gain = 0.3F * bar.level,
                   .to_gain = 0.02F,
                   .bow = 0.8F,
                   .q = 3.0F,
                   .fade = 0.004F},
                  seed++);
    }
}

} // namespace assets::sound
