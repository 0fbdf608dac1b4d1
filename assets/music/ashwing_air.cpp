// The air of "Ashwing": wind over the noise picture, risers before the turns, falls after them, ripples.
#include <cstddef>

#include "assets/music/ashwing.h"
#include "assets/music/effects.h"
#include "assets/music/filters.h"
#include "assets/music/oscillators.h"
#include "assets/music/playing.h"
#include "assets/music/random.h"

namespace assets::sound {

// The noise picture's strength is sin(t) * 80 + 160 of 255; what is heard follows it, and goes out with it.
void ashwing_wind(stereo& out) {
    constexpr double end = 13.25;
    const stretch where = cut(out, 0, frame_of(end));
    for (std::size_t side = 0; side < 2; ++side) {
        random_source noise = seeded(901U + static_cast<std::uint32_t>(side));
        state_variable gust;
        state_variable hiss;
        float* to = (side == 0 ? out.left : out.right).data();
        const float turn = side == 0 ? 0.0F : 0.21F;
        float level = 0;
        for (int at = 0; at < where.count; at += control_frames) {
            const float t = static_cast<float>(at) * sample_time;
            const float strength = (sine(t / tau) * 80.0F + 160.0F) / 255.0F;
            const float card = smooth(2.0F, 6.0F, t) * (1.0F - smooth(9.0F, 13.0F, t));
            gust.set(260.0F + 700.0F * strength + 160.0F * sine(t * 0.37F + turn), 2.2F);
            hiss.set(4200.0F + 2500.0F * sine(t * 0.11F + turn), 0.7F);
            const float target =
                strength * (1.0F - 0.65F * card) * smooth(0.0F, 1.2F, t) * (1.0F - smooth(12.6F, 13.2F, t));
            const int count = std::min(control_frames, where.count - at);
            const float slope = (target - level) / static_cast<float>(count);
            for (int i = 0; i < count; ++i) {
                const float grain = noise.bipolar();
                level += slope;
                to[at + i] += (gust.band_pass(grain) * 1.2F + hiss.band_pass(grain) * 0.22F) * level;
            }
            level = target;
        }
    }
}

void ashwing_risers(stereo& out) {
    constexpr auto risers = std::to_array<riser>({
        {13.1, 14.17, 0.5F, 7000.0F},
        {25.0, 28.48, 0.35F, 6500.0F},
        {40.4, 43.05, 0.4F, 8000.0F},
        {53.8, 56.5, 0.3F, 5000.0F},
        {70.0, 71.98, 0.25F, 5000.0F},
        {78.5, 85.6, 0.55F, 9500.0F},
        {97.2, 100.33, 0.4F, 7000.0F},
        {111.0, 114.27, 0.4F, 8000.0F},
        {122.0, 128.95, 0.5F, 9000.0F},
        {139.9, 143.25, 0.14F, 3000.0F},
    });
    add_risers(out, risers, 951);
    // Tones that climb an octave and more where the picture prepares its greatest turns.
    add_slide(out, {.start = 79.1,
                    .length = 6.5,
                    .from_pitch = 48,
                    .to_pitch = 72,
                    .from_gain = 0.0F,
                    .to_gain = 0.22F,
                    .bow = 1.6F,
                    .wobble = 0.25F,
                    .rate = 7.2F,
                    .edge = 0.7F});
    add_slide(out, {.start = 125.3,
                    .length = 3.65,
                    .from_pitch = 48,
                    .to_pitch = 60,
                    .from_gain = 0.0F,
                    .to_gain = 0.16F,
                    .bow = 1.6F,
                    .wobble = 0.2F,
                    .rate = 7.2F,
                    .edge = 0.7F});
    // The inner texture changes: the air opens with it for its three seconds.
    add_sweep(out,
              {.start = 115.6,
               .length = 3.0,
               .from_hertz = 250,
               .to_hertz = 6000,
               .from_gain = 0.05F,
               .to_gain = 0.2F,
               .bow = 1.0F,
               .q = 5.0F,
               .fade = 0.4F},
              991);
}

void ashwing_shapes(stereo& out) {
    // One second of solarisation each, falling as the picture does; the last is the credit's leaving.
    constexpr auto falls = std::to_array<faller>({
        {14.2, 1.3, 0.5F},
        {28.5, 1.0, 0.25F},
        {57.35, 1.2, 0.4F},
        {86.04, 1.2, 0.6F},
        {100.36, 0.6, 0.5F},
        {114.29, 1.1, 0.45F},
        {128.99, 1.2, 0.6F},
        {137.67, 2.2, 0.3F},
    });
    add_fallers(out, falls, 1001);
    // The meteor comes up, the cube comes in.
    add_slide(out, {.start = 14.2,
                    .length = 1.0,
                    .from_pitch = 48,
                    .to_pitch = 65,
                    .from_gain = 0.2F,
                    .to_gain = 0.0F,
                    .bow = 0.5F,
                    .wobble = 0.4F,
                    .rate = 9.0F,
                    .edge = 0.4F});
    add_slide(out, {.start = 100.36,
                    .length = 0.5,
                    .from_pitch = 84,
                    .to_pitch = 41,
                    .from_gain = 0.2F,
                    .to_gain = 0.05F,
                    .bow = 0.5F,
                    .wobble = 0.0F,
                    .rate = 1.0F,
                    .edge = 0.5F});
    add_slide(out, {.start = 137.67,
                    .length = 2.6,
                    .from_pitch = 72,
                    .to_pitch = 48,
                    .from_gain = 0.1F,
                    .to_gain = 0.0F,
                    .bow = 0.8F,
                    .wobble = 0.3F,
                    .rate = 5.0F,
                    .edge = 0.5F});
    // Ripples run through the mesh: two sink, the third, turned inside out, rises.
    constexpr std::array<float, 3> lengths = {1.0F, 1.3F, 1.0F};
    constexpr std::array<float, 3> from = {79, 77, 53};
    constexpr std::array<float, 3> to = {53, 54, 78};
    for (std::size_t i = 0; i < ashwing_ripples.size(); ++i) {
        for (const float interval : {0.0F, 7.0F})
            add_slide(out, {.start = ashwing_ripples[i],
                            .length = static_cast<double>(lengths[i]),
                            .from_pitch = from[i] + interval,
                            .to_pitch = to[i] + interval,
                            .from_gain = 0.24F,
                            .to_gain = 0.04F,
                            .bow = 0.6F,
                            .wobble = 3.5F,
                            .rate = 11.0F,
                            .edge = 0.3F});
    }
}

void ashwing_edit(stereo& sound) {
    constexpr auto repeats = std::to_array<repeat>({
        {shaking, 0, 12, 1, 3},   {shaking, 1, 8, 0.5, 7}, {shaking, 1, 13, 0.25, 7},
        {shaking, 2, 10, 2, 2},   {shaking, 3, 4, 1, 3},   {shaking, 3, 10, 0.5, 5},
        {shaking, 4, 14, 0.5, 3}, {shaking, 5, 6, 1.5, 3}, {shaking, 5, 14, 0.25, 7},
        {shaking, 6, 8, 1, 3},    {shaking, 7, 0, 2, 1},   {shaking, 7, 12, 0.5, 3},
        {rising, 1, 12, 0.5, 7},  {rising, 3, 12, 0.5, 7}, {rising, 5, 12, 0.5, 7},
        {flashes, 5, 14, 0.5, 3}, {drop, 3, 14, 0.5, 3},   {cube, 3, 14, 0.5, 3},
        {height, 3, 14, 0.5, 3},
    });
    add_repeats(sound, ashwing_form, repeats);
    // Breath before the turns, and before the ripples that come off the beat.
    constexpr auto gaps = std::to_array<breath>({
        {name, 7, 14.5, ashwing_starts[flashes]},
        {shaking, 1, 15, ashwing_ripples[1]},
        {shaking, 3, 12.6, ashwing_ripples[2]},
        {shaking, 7, 14, ashwing_starts[rising]},
        {rising, 7, 12, ashwing_starts[drop]},
        {drop, 7, 15, ashwing_starts[cube]},
        {cube, 7, 11.6, ashwing_burst},
        {turning, 7, 14.5, ashwing_starts[height]},
    });
    add_breaths(sound, ashwing_form, gaps);
    // The beat is halted like a turntable before everything breaks.
    const int from = frame_of(ashwing_form.time(flashes, 7, 10));
    halt(sound, from, frame_of(ashwing_starts[shaking]) - from);
}

} // namespace assets::sound
