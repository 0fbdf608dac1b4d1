// What fills the middle of "ferrow": pads, chopped pads, the choir, plucked strings.
#include <cstddef>

#include "assets/music/ferrow.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

constexpr auto pad_rows = std::to_array<chord_row>({
    {scene_slow, 3, 5, 0.55F},
    {picture_alone, 0, 4, 0.5F},
    {breaking, 5, 3, 0.8F},
    {clip_open, 0, 8, 0.9F},
    {clip_close, 0, 8, 0.9F},
    {beat_greets, 0, 5, 0.8F},
});
// From here on the pads are chopped.
constexpr auto gated_rows = std::to_array<chord_row>({
    {beat_full, 0, 8, 0.8F},
    {beat_greets, 6, 2, 0.8F},
    {smear, 0, 8, 0.9F},
    {smear_lifted, 0, 8, 1.0F},
    {smear_whole, 0, 8, 1.0F},
});
constexpr auto gate_book = std::to_array<bar_text>({
    {'a', "..9.59..9.59..9."},
    {'b', "..9..9.9..9.9.59"},
    {'c', ".599.599.599.599"},
    {'d', "9.9.9.9.99999999"},
});
constexpr auto gate_rows = std::to_array<bar_row>({
    {beat_full, "aababaab"},
    {beat_greets, "......ab"},
    {smear, "aabaabab"},
    {smear_lifted, "babababc"},
    {smear_whole, "cbcbcbdd"},
});

constexpr auto pad_cutoff = from_show<curve_point>({
    {147.7, 300.0F},
    {154.0, 900.0F},
    {156.0, 400.0F},
    {162.9, 700.0F},
    {175.0, 300.0F},
    {177.0, 900.0F},
    {189.0, 1500.0F},
    {194.9, 1900.0F},
    {195.0, 500.0F},
    {203.9, 4600.0F},
    {216.0, 1200.0F},
    {228.0, 2000.0F},
    {230.0, 1100.0F},
    {236.9, 2600.0F},
    {237.0, 1500.0F},
    {252.0, 2600.0F},
    {264.0, 3200.0F},
    {275.9, 6000.0F},
});
// Which note of the chord, from its lowest up.
constexpr auto string_book = std::to_array<bar_text>({
    {'a', "0! . . . 2 . . 3 . . . . 1, . . ."},
    {'b', "1 . . 3 . . 2 . . . . . 0, . 5 ."},
    {'c', "0! . 2 . 3 . 5 . 4, . 3 . 2 . 1 ."},
    {'d', "0! . . 3 . . 2 . 5! . . 3 . . 1, ."},
    {'e', "0! 2 3 5 . 3, 2 . 4! 3 2 0 . 2, 3 5"},
    {'f', "0! 2, 3 2, 5 2, 3 2, 6! 2, 3 2, 7 5 3 2"},
    {'g', "0! . . . . . . . . . . . . . . ."},
});
constexpr auto string_rows = std::to_array<bar_row>({
    {scene_slow, "...gabab"},
    {picture_alone, "g.g....."},
    {breaking, "....g.dc"},
    {clip_open, "dcdccece"},
    {clip_close, "ccddcfff"},
    {beat_greets, ".cdcdc.."},
    {smear, "....cece"},
    {smear_lifted, "cecefefe"},
    {smear_whole, "fefefef."},
});

// The motif on the strings, an octave below where it was sung: half its pace, and its answer.
constexpr auto string_lines = std::to_array<line_at>({
    {scene_slow, 4, "C4! - - - - - F4 - - - - - Eb4 - - - | - - - - Db4 - - - C4 - - - - - - -", 0, 0.9F},
    {scene_slow, 6, "C4! - - - - - F4 - - - - - Ab4 - - - | - - - - Gb4 - - - F4! - - - - - - -", 0, 0.9F},
});

} // namespace

void ferrow_pad(stereo& out) {
    poly_sound sound = pad_voice;
    sound.cutoff = pad_cutoff;
    add_pad(out, ferrow_form, pad_rows, sound, 381);
}

void ferrow_gated(stereo& out) {
    poly_sound sound = pad_voice;
    sound.cutoff = pad_cutoff;
    sound.pulse = 0.3F;
    sound.q = 1.1F;
    sound.amp.attack = 0.02F;
    sound.amp.release = 0.1F;
    add_pad(out, ferrow_form, gated_rows, sound, 441);
    add_gates(out, ferrow_form, {gate_book, gate_rows});
}

void ferrow_choir(stereo& out) {
    constexpr auto rows = std::to_array<chord_row>({
        {picture_alone, 2, 2, 0.6F},
        {clip_open, 0, 8, 0.55F},
        {clip_close, 0, 2, 0.7F},
        {clip_close, 4, 4, 0.6F},
        {beat_greets, 1, 4, 1.0F},
        {smear_lifted, 0, 8, 0.6F},
        {smear_whole, 0, 8, 0.8F},
    });
    add_choir(out, ferrow_form, rows, 501);
}

void ferrow_strings(stereo& out) {
    std::uint32_t seed = 561;
    for (note& played : broken_chords(ferrow_form, {string_book, string_rows})) {
        played.length = played.start < at_show(204) ? 0.9 : 0.3;
        add_string(out, played, {.seconds = 2.4F}, seed++);
    }
    for (const note& played : notes_of(ferrow_form, string_lines))
        add_string(out, played, {.gain = 0.7F, .seconds = 3.6F, .dull = 0.3F}, seed++);
}

} // namespace assets::sound
