// The air of "ferrow": wind, risers before the turns and falls after them, and what cuts the sound.
#include <cstddef>

#include "assets/music/effects.h"
#include "assets/music/ferrow.h"
#include "assets/music/playing.h"

namespace assets::sound {

void ferrow_wind(stereo& out) {
    // Gusts, each from one time of the show to another; they cross where the picture changes.
    struct gust {
        double from;
        double to;
        float from_hertz;
        float to_hertz;
        float from_gain;
        float to_gain;
    };
    constexpr auto gusts = std::to_array<gust>({
        {147.69, 152.0, 300, 700, 0.0F, 0.3F},
        {151.0, 156.2, 700, 240, 0.28F, 0.05F},
        {155.5, 160.0, 240, 900, 0.1F, 0.4F},
        {159.0, 163.0, 900, 2600, 0.35F, 0.15F},
        {175.0, 179.0, 3000, 300, 0.35F, 0.0F},
        {176.0, 195.0, 300, 520, 0.05F, 0.12F},
        {229.5, 235.2, 500, 1600, 0.05F, 0.3F},
    });
    std::uint32_t seed = 901;
    for (const gust& one : gusts)
        add_sweep(out,
                  {.start = at_show(one.from),
                   .length = one.to - one.from,
                   .from_hertz = one.from_hertz,
                   .to_hertz = one.to_hertz,
                   .from_gain = one.from_gain,
                   .to_gain = one.to_gain,
                   .q = 2.2F,
                   .fade = 0.6F},
                  seed++);
}

void ferrow_risers(stereo& out) {
    constexpr auto risers = std::to_array<riser>({
        {at_show(160.5), at_show(162.97), 0.45F, 7000.0F},
        {at_show(171.0), at_show(174.7), 0.4F, 7000.0F},
        {at_show(192.0), at_show(194.97), 0.25F, 5000.0F},
        {at_show(195.0), at_show(203.97), 0.6F, 10000.0F},
        {at_show(213.0), at_show(215.97), 0.4F, 8000.0F},
        {at_show(226.5), at_show(229.97), 0.3F, 7000.0F},
        {at_show(234.0), at_show(236.97), 0.5F, 9000.0F},
        {at_show(248.25), at_show(251.97), 0.5F, 9000.0F},
        {at_show(260.25), at_show(263.97), 0.5F, 9500.0F},
        {at_show(269.0), at_show(275.97), 0.7F, 11000.0F},
    });
    add_risers(out, risers, 931);
    constexpr auto falls = std::to_array<faller>({
        {at_show(156.0), 1.6, 0.25F},
        {at_show(163.0), 0.5, 0.4F},
        {at_show(175.0), 1.8, 0.4F},
        {at_show(204.5), 1.0, 0.6F},
        {at_show(216.0), 0.9, 0.45F},
        {at_show(230.0), 1.2, 0.3F},
        {at_show(237.0), 1.2, 0.6F},
        {at_show(252.0), 1.0, 0.6F},
        {at_show(264.0), 1.0, 0.6F},
        {at_show(276.0), 0.44, 0.5F},
    });
    add_fallers(out, falls, 961);
    // Tones that climb to the two great turns.
    struct climb {
        double from;
        double to;
        float from_pitch;
        float to_pitch;
        float gain;
    };
    constexpr auto climbs = std::to_array<climb>({
        {198.0, 203.98, 48, 72, 0.22F},
        {249.0, 251.98, 48, 62, 0.16F},
        {270.0, 275.98, 50, 74, 0.24F},
    });
    for (const climb& one : climbs)
        add_slide(out, {.start = at_show(one.from),
                        .length = one.to - one.from,
                        .from_pitch = one.from_pitch,
                        .to_pitch = one.to_pitch,
                        .from_gain = 0.0F,
                        .to_gain = one.gain,
                        .bow = 1.6F,
                        .wobble = 0.25F,
                        .rate = 5.3333F,
                        .edge = 0.7F});
}

void ferrow_edit(stereo& sound) {
    constexpr auto repeats = std::to_array<repeat>({
        {picture_alone, 6, 12, 1, 3},
        {picture_alone, 7, 14, 0.5, 3},
        {breaking, 0, 8, 1, 3},
        {breaking, 1, 13, 0.5, 5},
        {breaking, 2, 8, 2, 3},
        {breaking, 3, 12, 0.5, 7},
        {clip_close, 1, 12, 1, 3},
        {beat_bare, 3, 14, 0.5, 3},
        {beat_full, 3, 14, 0.5, 3},
        {beat_full, 7, 14, 0.5, 3},
        {beat_greets, 7, 14, 0.5, 3},
        {smear, 3, 14, 0.5, 3},
        {smear, 7, 13, 0.5, 5},
        {smear_lifted, 3, 14, 0.5, 3},
        {smear_lifted, 7, 13, 0.5, 5},
        {smear_whole, 1, 14, 0.5, 3},
        {smear_whole, 3, 14, 0.5, 3},
        {smear_whole, 5, 14, 0.25, 7},
    });
    add_repeats(sound, ferrow_form, repeats);
    constexpr auto breaths = std::to_array<breath>({
        {picture_alone, 4, 10, at_show(163.0)}, // the scene comes back out of silence
        {breaking, 4, 8, at_show(175.0)},       // the clip as well
        {beat_bare, 0, 0, at_show(204.5)},      // black
        // and the last sixteenth before the great turns
        {beat_bare, 7, 15, at_show(216.0)},
        {beat_greets, 5, 15, at_show(237.0)},
        {smear, 7, 15, at_show(252.0)},
        {smear_lifted, 7, 15, at_show(264.0)},
        {smear_whole, 7, 15, at_show(276.0)},
    });
    add_breaths(sound, ferrow_form, breaths);
}

} // namespace assets::sound
