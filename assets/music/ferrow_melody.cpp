// The motif of "Ashwing" comes back in "ferrow": a leap of a fourth, steps down to where it began. Bells, the
// lead, the pieces of the break, the stabs.
#include <cstddef>

#include "assets/music/effects.h"
#include "assets/music/ferrow.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

// At its own pace, two bars.
constexpr std::string_view motif =
    "C5! - - F5 - - Eb5 - - - Db5 - C5 - - - | Ab4 - - - - - Bb4 - C5! - - - - . . .";
constexpr std::string_view answer =
    "C5! - - F5 - - Ab5 - - - G5 - F5 - - - | Eb5 - - - - - Db5 - Eb5! - - - ~F5 - . .";
constexpr std::string_view motif_low =
    "Db5! - - F5 - - Eb5 - - - Db5 - C5 - - - | Db5 - - - - - C5 - Bb4! - - - Db5 - ~F5 -";
constexpr std::string_view turn_to_c =
    "Db5! - - Gb5 - - F5 - - - Db5 - Bb4 - - - | C5! - - E5 - - G5 - - - Bb5 - ~G5 - E5 -";
// One beat later and a fourth or fifth away: the feedback's canon.
constexpr std::string_view after_motif =
    ". . . . G5 - - C6 - - Bb5 - - - Ab5 - | G5 - - - - . . . G5! - - C6 - - Bb5 -";
constexpr std::string_view after_d =
    ". . . . F5 - - Ab5 - - G5 - - - F5 - | Eb5 - - - - . . . F5! - - Ab5 - - C6 -";
constexpr std::string_view after_g =
    ". . . . F5 - - Bb5 - - Ab5 - - - Gb5 - | F5 - - - - . . . Gb5! - - Bb5 - - Ab5 -";
constexpr std::string_view after_c =
    ". . . . G5 - - C6 - - Bb5 - - - Ab5 - | G5 - - - - . . . E5! - - G5 - - Bb5 -";
// Where it stood at its height in the first track.
constexpr std::string_view height_first =
    "C5! - - F5 - - Eb5 - - - Db5 - C5 - - - | Ab4 - - - - - Bb4 - C5! - - - Db5 - ~Eb5 -";
constexpr std::string_view height_second =
    "C5! - - Ab5 - - G5 - - - Eb5 - C5 - - - | Bb4 - - - - - Eb5 - G5! - - - F5 - ~Eb5 -";
constexpr std::string_view height_third =
    "F5! - - C5 - - Db5 - - - Eb5 - F5 - - - | Ab5! - - - - - G5 - F5 - - - ~C5 - . .";
constexpr std::string_view height_last =
    "F5! - - Bb5 - - Ab5 - - - Gb5 - F5 - - - | E5! - G5 - E5! - Bb5 - G5! - Bb5 - ~C6 - - -";

constexpr auto bell_lines = std::to_array<line_at>({
    {scene_slow, 2, ". . . . . . . . C6 - - F6 - - Eb6 -", 0, 0.5F},
    // alone with the picture
    {picture_alone, 0, "Db5! - - - - - F5 - - - - - Eb5 - - - | - - - - Db5 - - - C5 - - - - - - -", 12,
     0.8F},
    {picture_alone, 2, "C5! - - - - - Gb5 - - - - - F5 - - - | - - - - Db5 - - - C5! - - - - - - -", 12,
     0.8F},
    {clip_open, 4, ". . . . . . . . Db6 - F6 - Ab6, - - - | . . . . . . . . Db6 - F6 - Bb6, - - -", 0, 0.5F},
    {clip_open, 6, ". . . . . . . . C6 - F6 - G6, - - - | . . . . . . . . C6 - F6 - Ab6, - - -", 0, 0.5F},
    {beat_greets, 1, ". . . . . . . . C5! - - F5 - - Eb5 - | - - Db5 - C5 - - - . . G5 - Eb5! - - -", 12,
     0.9F},
    {beat_greets, 3, "Eb5! - - Ab5 - - G5 - - - Eb5 - Db5 - - - | Db5! - - Ab5 - - F5 - - - Db5 - - - - -",
     12, 0.9F},
    {smear_whole, 0, height_first, 14, 0.5F},
    {smear_whole, 2, height_second, 14, 0.5F},
    {smear_whole, 4, height_third, 14, 0.5F},
    {smear_whole, 6, height_last, 14, 0.5F},
});

constexpr auto lead_lines = std::to_array<line_at>({
    // the clip: sung at half its pace
    {breaking, 6, "C5 - - - - - F5 - - - - - Eb5 - - - | - - - - Db5 - - - C5 - - - - - - -", 0, 0.8F},
    {clip_open, 0, "C5 - - - - - Ab5 - - - - - G5 - - - | - - - - Eb5 - - - C5 - - - - - ~Eb5 -", 0, 0.8F},
    {clip_open, 2, "Db5! - - - - - F5 - - - - - Eb5 - - - | - - - - Db5 - - - Ab4 - - - - - ~Bb4 -", 0,
     0.85F},
    {clip_open, 4, "Bb4 - - - - - Eb5 - - - - - Db5 - - - | - - - - Bb4 - - - G4 - - - Bb4 - ~C5 -", 0,
     0.85F},
    {clip_open, 6, "C5! - - - - - F5 - - - - - Eb5 - - - | - - - - F5 - - - G5 - - - - - ~Ab5 -", 0, 0.95F},
    {clip_close, 0, "Ab5! - - - - - G5 - - - - - Eb5 - - - | F5! - - - - - - - - - - - - - . .", 0, 1.0F},
    // it climbs while all climbs
    {clip_close, 4, "Db5 - - Gb5 - - F5 - - - Db5 - Gb5 - - - | Db5 - - Bb5 - - Ab5 - - - Gb5 - F5 - - -", 0,
     0.8F},
    {clip_close, 6,
     "C5! - E5 - G5 - Bb5 - C5! - E5 - G5 - Bb5 - | C5! E5 G5 C5! E5 G5 C5! E5 G5 Bb5 C6! - ~Db6 - - -", 0,
     0.9F},
    {beat_full, 0, motif, 0, 0.95F},
    {beat_full, 2, answer, 0, 0.95F},
    {beat_full, 4, motif_low, 0, 0.95F},
    {beat_full, 6, turn_to_c, 0, 1.0F},
    {beat_greets, 6, motif, 0, 1.0F},
    {smear, 0, motif, 0, 1.0F},
    {smear, 2, answer, 0, 1.0F},
    {smear, 4, turn_to_c, 0, 1.0F},
    {smear, 6, "C5! - - E5 - - G5 - - - Bb5 - G5 - E5 - | C5! - - G5 - - Bb5 - - - ~C6 - - - Bb5 -", 0, 1.0F},
    {smear_lifted, 0, motif, 2, 1.0F},
    {smear_lifted, 2, answer, 2, 1.0F},
    {smear_lifted, 4, turn_to_c, 2, 1.0F},
    {smear_lifted, 6, "C5! - - E5 - - G5 - - - Bb5 - G5 - E5 - | C5! - - G5 - - Bb5 - - - ~C6 - - - Bb5 -", 2,
     1.0F},
    {smear_whole, 0, height_first, 2, 1.0F},
    {smear_whole, 2, height_second, 2, 1.0F},
    {smear_whole, 4, height_third, 2, 1.0F},
    {smear_whole, 6, height_last, 2, 1.0F},
    {last_stroke, 0, "F5! - - - .", 2, 1.0F},
});
constexpr auto canon_lines = std::to_array<line_at>({
    {smear, 0, after_motif, 0, 0.7F},
    {smear, 2, after_d, 0, 0.7F},
    {smear, 4, after_g, 0, 0.7F},
    {smear, 6, after_c, 0, 0.7F},
    {smear_lifted, 0, after_motif, 2, 0.8F},
    {smear_lifted, 2, after_d, 2, 0.8F},
    {smear_lifted, 4, after_g, 2, 0.8F},
    {smear_lifted, 6, after_c, 2, 0.8F},
    {smear_whole, 0, height_first, 14, 0.6F},
    {smear_whole, 2, height_second, 14, 0.6F},
    {smear_whole, 4, height_third, 14, 0.6F},
    {smear_whole, 6, height_last, 14, 0.6F},
    {last_stroke, 0, "F6! - - - .", 2, 0.6F},
});

constexpr auto lead_cutoff = from_show<curve_point>({
    {177.0, 500.0F},
    {189.0, 900.0F},
    {194.9, 1500.0F},
    {198.0, 600.0F},
    {203.9, 3600.0F},
    {216.0, 900.0F},
    {228.0, 1500.0F},
    {237.0, 1200.0F},
    {252.0, 1700.0F},
    {264.0, 1900.0F},
    {275.9, 3200.0F},
});
constexpr auto lead_shake = std::to_array<curve_point>({
    {at_show(202.5), 0.0F},
    {at_show(204.0), 40.0F},
    {at_show(204.1), 0.0F},
    {at_show(264.0), 0.0F},
    {at_show(275.9), 22.0F},
});
line_sound lead_sound() {
    line_sound sound = lead_voice;
    sound.resonance = 0.34F; // harder than it was
    sound.sweep = 1.8F;
    sound.drive = 1.7F;
    sound.cutoff = lead_cutoff;
    sound.shake = lead_shake;
    return sound;
}

// The motif's head broken to pieces by the break.
constexpr auto piece_lines = std::to_array<line_at>({
    {picture_alone, 5, "C5! . . F5 . . Eb5 . . . Db5 . C5 . C5, C5,", 0, 0.8F},
    {picture_alone, 6, "Db5! . . Gb5 . . F5 . F5, F5, Db5 . Bb4 . . .", 0, 0.8F},
    {picture_alone, 7, ". . Gb5! . F5, . Db5 . . Bb4 . Db5 . F5! . Gb5", 0, 0.85F},
    {breaking, 0, "C5! . . F5 . . Eb5 . Eb5, Eb5, Db5 . C5 . F5! .", 0, 0.9F},
    {breaking, 1, ". C5! . . F5 . Ab5! . . G5 . F5 . Eb5 Eb5, Eb5,", 0, 0.9F},
    {breaking, 2, "Db5! . Gb5 . F5 . Db5! . Gb5 . F5 . Db5! F5 Gb5 Bb5", 0, 0.95F},
    {breaking, 3, "C5! . E5 . G5! . Bb5 . C5! E5 G5 Bb5 C6! . Bb5 G5", 0, 1.0F},
    {breaking, 4, "E5! . . G5 . Bb5! . . . . . . . . . .", 0, 1.0F},
});

} // namespace

void ferrow_bells(stereo& out) {
    float pan = -0.3F;
    for (note played : notes_of(ferrow_form, bell_lines)) {
        played.pan = pan;
        pan = -pan;
        const bool alone = played.start < at_show(204);
        add_bell(out, played, {.bend = alone ? 1.3F : 2.0F, .seconds = alone ? 1.1F : 0.45F});
    }
}

void ferrow_lead(stereo& out) {
    add_line(out, notes_of(ferrow_form, lead_lines), lead_sound());
    line_sound thin = lead_sound();
    thin.saws = 2;
    thin.pulse = 0.2F;
    thin.vibrato = 20.0F;
    add_line(out, notes_of(ferrow_form, canon_lines), thin);
}

void ferrow_pieces(stereo& out) {
    static constexpr auto cutoff = from_show<curve_point>({
        {163.5, 700.0F},
        {174.5, 2400.0F},
    });
    const poly_sound sound = {.gain = 0.34F,
                              .saws = 1,
                              .cents = 9.0F,
                              .pulse = 0.8F,
                              .q = 3.2F,
                              .sweep = 2.0F,
                              .track = 0.5F,
                              .width = 0.4F,
                              .amp = {.attack = 0.002F, .decay = 0.16F, .sustain = 0.2F, .release = 0.05F},
                              .filter = {.attack = 0.001F, .decay = 0.1F, .sustain = 0.1F, .release = 0.1F},
                              .cutoff = cutoff};
    std::uint32_t seed = 801;
    for (const note& played : notes_of(ferrow_form, piece_lines))
        add_poly(out, played, sound, seed++);
    crush(out, 9000.0F, 40.0F);
}

void ferrow_stabs(stereo& out) {
    struct picture_chord {
        double time;
        char letter;
        float level;
        float bright;
    };
    constexpr auto turns = from_show<picture_chord>({
        {163.0, 'F', 0.9F, 1.2F},
        {175.0, 'D', 0.8F, 1.0F},
        {204.5, 'P', 1.0F, 2.4F},
        {216.0, 'F', 0.7F, 1.5F},
        {230.0, 'D', 1.0F, 1.6F},
        {235.0, 'B', 0.7F, 1.2F},
        {237.0, 'F', 1.0F, 2.0F},
        {252.0, 'f', 1.0F, 2.0F},
        {264.0, 'f', 1.0F, 2.0F},
        {276.0, 'f', 1.2F, 2.6F},
    });
    for (const picture_chord& turn : turns)
        add_stab(out, turn.time, ferrow_form.chord_of(turn.letter), turn.level, turn.bright);
    // In the gaps of the broken beats.
    constexpr auto bars = std::to_array<stab_bar>({
        {picture_alone, 5, "6.....6........."}, {picture_alone, 7, "6.....6...6....."},
        {breaking, 0, "7.....6......6.."},      {breaking, 1, "6.....6........."},
        {breaking, 2, "7.....6...6....."},      {breaking, 3, "7..6..6..6..6.66"},
        {breaking, 4, "8..8.8.........."},      {clip_close, 0, "5..............."},
        {clip_close, 6, "5...5...5...5..."},    {clip_close, 7, "5.5.5.5.6.6.6666"},
        {beat_full, 3, "..........6..6.."},     {beat_full, 7, "..6..6..6..6..6."},
        {smear, 3, "..........6..6.."},         {smear, 7, "..6..6..6..6..6."},
        {smear_lifted, 3, "..6..6....6..6.."},  {smear_lifted, 7, "..6..6..6..6..6."},
        {smear_whole, 1, "..6..6....6..6.."},   {smear_whole, 3, "..6..6....6..6.."},
        {smear_whole, 5, "..6..6..6..6..6."},   {smear_whole, 6, "6.6.6.6.6.6.6.6."},
        {smear_whole, 7, "7.7.7.7.7.7.7777"},
    });
    add_stabs(out, ferrow_form, bars, 0.6F);
}

} // namespace assets::sound
