// The motif of "Ashwing" and what becomes of it: bells, the lead, the stabs.
#include <cstddef>

#include "assets/music/ashwing.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

// The motif: a leap of a fourth, steps down to the third, and back up to where it began. Then its answer.
constexpr std::string_view motif =
    "C5! - - F5 - - Eb5 - - - Db5 - C5 - - - | Ab4 - - - - - Bb4 - C5! - - - - . . .";
constexpr std::string_view answer =
    "C5! - - F5 - - Ab5 - - - G5 - F5 - - - | Eb5 - - - - - Db5 - Eb5! - - - - . . .";
constexpr std::string_view motif_low =
    "Db5! - - F5 - - Eb5 - - - Db5 - C5 - - - | Db5 - - - - - C5 - Bb4! - - - - . C5, -";
constexpr std::string_view turn_to_c =
    "Db5! - - Gb5 - - F5 - - - Db5 - Bb4 - - - | C5 - - - - - Db5 - C5 - - E5! - - G5 -";

constexpr std::string_view drop_first =
    "C5! - - F5 - - Eb5 - - - Db5 - C5 - - - | Ab4 - - - - - Bb4 - C5! - - - Db5 - ~Eb5 -";
constexpr std::string_view drop_second =
    "C5! - - Ab5 - - G5 - - - Eb5 - C5 - - - | Bb4 - - - - - Eb5 - G5! - - - F5 - ~Eb5 -";
// Upside down: the leap falls, the steps climb.
constexpr std::string_view drop_turned =
    "F5! - - C5 - - Db5 - - - Eb5 - F5 - - - | Ab5! - - - - - G5 - F5 - - - ~C5 - . .";
constexpr std::string_view drop_last =
    "F5! - - Bb4 - - C5 - - - Db5 - F5 - - - | E5! - - - - - F5 - G5 - - Bb5! - - ~E5 -";

// The motif at half its pace.
constexpr std::string_view slow_first =
    "F5! - - - - - Bb5 - - - - - Ab5 - - - | - - - - Gb5 - - - F5 - - - - - - -";
constexpr std::string_view slow_second =
    "Db5! - - - - - - - - - - - Eb5 - - - | F5 - - - - - - - - - - - Eb5, - Db5, -";
constexpr std::string_view slow_third =
    "Eb5! - - - - - Ab5 - - - - - G5 - - - | - - - - F5 - - - Eb5 - - - - - - -";
constexpr std::string_view slow_last =
    "Bb4! - - - - - - - - - - - C5 - - - | E5! - - - - - - - G5 - - - Bb5 - - -";

constexpr auto bell_lines = std::to_array<line_at>({
    // the motif's head behind the wires, before anybody knows it
    {meteor, 2, "C5 - - F5 - - Eb5 - - - - - . . . .", 12, 0.6F},
    {meteor, 6, "Db5 - - Gb5 - - F5 - - - - - . . . . | Db5 - - Gb5 - - F5 - - - Db5 - C5! - - -", 12, 0.7F},
    {name, 0, motif, 0, 1.0F},
    {name, 2, answer, 0, 1.0F},
    {name, 4, motif_low, 12, 0.55F},
    {name, 6, turn_to_c, 12, 0.55F},
    // between the flashes
    {flashes, 1, ". . . . C5! - - F5 - - Eb5 - - - Db5 -", 12, 0.9F},
    {flashes, 3, "C5! - - F5 - - Ab5 - - - G5 - F5 - - -", 0, 0.9F},
    {flashes, 5, "Db5! - - F5 - - Eb5 - - - Db5 - C5 - - -", 0, 0.9F},
    // broken to pieces
    {shaking, 0, ". . . . . . C5 - - F5 - - . . . . | . . . Eb5 - - Db5 . C5, C5, C5, . . . . .", 0, 0.8F},
    {shaking, 2, ". . Db5 - - Gb5 - - . . . . F5 . F5, . | . . . . . . . . . . Gb5 - F5 - . .", 0, 0.8F},
    {shaking, 4, ". . . . . . C6 - - . . . F5 - - . | Eb5 . . Eb5, . . Db5 - . . C5 - - - . .", 0, 0.8F},
    {shaking, 6, "Gb5 . Gb5, . F5 - . . Db5 . Db5, . Bb4 - . . | C5 - . Db5 . . C5 - . E5 - . G5 - Bb5 -", 0,
     0.9F},
    {turning, 0, slow_first, 0, 0.9F},
    {turning, 2, slow_second, 0, 0.9F},
    {turning, 4, slow_third, 0, 0.9F},
    {turning, 6, slow_last, 0, 0.9F},
    {height, 5, ". . Db5 - - - Eb5 - F5! - - - - . . .", 0, 0.8F},
    {height, 6, "F5 - - Bb5 - - Ab5 - - - Gb5 - F5! - - - | C5 - - F5 - - Eb5 - - - Db5 - C5! - - -", 0,
     0.75F},
});

constexpr auto lead_lines = std::to_array<line_at>({
    {name, 4, motif_low, 0, 0.85F},
    {name, 6, turn_to_c, 0, 0.9F},
    {flashes, 6, "Db5! - - Gb5 - - F5 - - - Db5 - Bb4 - - - | C5! - . C5 - . E5! - . E5 - . G5! - ~Bb5 -", 0,
     0.8F},
    // the head climbs: twice slowly, then twice as often
    {rising, 0, "Bb4 - - Eb5 - - Db5 - - - - - - - . . | . . . . . . . . Bb4, - Db5, - F5 - - -", -12, 0.7F},
    {rising, 2, "Db5 - - Gb5 - - F5 - - - - - - - . . | . . . . . . . . Db5, - F5, - Ab5 - - -", -12, 0.8F},
    {rising, 4, "Eb5! - - Ab5 - - G5 - - Eb5 - - Bb5 - - - | Eb5! - - Bb5 - - Ab5 - - G5 - - Bb5 - G5 -", 0,
     0.75F},
    {rising, 6,
     "C5! - Bb5 - C5! - Ab5 - C5! - G5 - C5! - F5 - | E5! G5 C5 E5! G5 C5 E5! G5 Bb5! - ~C6 - . . . .", 0,
     0.85F},
    {drop, 0, drop_first, 0, 1.0F},
    {drop, 2, drop_second, 0, 1.0F},
    {drop, 4, drop_turned, 0, 1.0F},
    {drop, 6, drop_last, 0, 1.0F},
    {height, 0, drop_first, 0, 1.0F},
    {height, 2, drop_second, 0, 1.0F},
    {height, 4, "F5! - - C5 - - Db5 - - - Eb5 - F5! - - -", 0, 0.95F},
});
// An octave above, where the motif stands at its full height; below it a third voice.
constexpr auto high_lines = std::to_array<line_at>({
    {drop, 4, drop_turned, 12, 0.5F},
    {drop, 6, drop_last, 12, 0.5F},
    {height, 0, drop_first, 12, 0.6F},
    {height, 2, drop_second, 12, 0.6F},
    {height, 4, "F5! - - C5 - - Db5 - - - Eb5 - F5! - - -", 12, 0.6F},
});
constexpr auto low_lines = std::to_array<line_at>({
    {drop, 0, drop_first, -12, 0.7F},
    {drop, 2, drop_second, -12, 0.7F},
    {drop, 4, drop_first, -12, 0.6F},
    {drop, 6, drop_last, -12, 0.7F},
    {height, 0, drop_first, -12, 0.7F},
    {height, 2, drop_second, -12, 0.7F},
});

constexpr auto lead_cutoff = std::to_array<curve_point>({
    {28.5, 500.0F},
    {43.0, 1100.0F},
    {57.35, 1500.0F},
    {72.0, 350.0F},
    {85.6, 2600.0F},
    {86.04, 1300.0F},
    {100.3, 1900.0F},
    {114.69, 700.0F},
    {128.99, 1500.0F},
    {137.67, 2200.0F},
});
// The first title settles out of heavy wobble, and so does what is sung to it.
constexpr auto lead_shake = std::to_array<curve_point>({
    {28.5, 30.0F},
    {37.0, 12.0F},
    {41.0, 0.0F},
    {42.7, 18.0F},
    {43.2, 0.0F},
    {72.0, 25.0F},
    {77.0, 0.0F},
    {82.6, 0.0F},
    {84.7, 35.0F},
    {84.9, 0.0F},
});

line_sound lead_sound() {
    line_sound sound = lead_voice;
    sound.cutoff = lead_cutoff;
    sound.shake = lead_shake;
    return sound;
}

struct single_bell {
    double time;
    float pitch;
    float velocity;
    float pan;
};
// The card: out of the noise at 2, whole at 6, leaving from 9 on.
constexpr auto opening_bells = std::to_array<single_bell>({
    {2.0, 72, 0.5F, -0.4F},
    {3.35, 79, 0.3F, 0.5F},
    {4.0, 77, 0.55F, 0.2F},
    {5.0, 68, 0.4F, -0.5F},
    {6.0, 72, 0.9F, 0.0F},
    {6.34, 77, 0.8F, 0.3F},
    {6.68, 75, 0.75F, -0.2F},
    {7.5, 73, 0.7F, 0.4F},
    {9.0, 72, 0.6F, -0.3F},
    {9.7, 68, 0.5F, 0.5F},
    {10.6, 66, 0.45F, -0.5F},
    {11.8, 65, 0.4F, 0.2F},
    {143.3, 72, 0.9F, -0.2F},
    {143.64, 77, 0.8F, 0.3F},
    {143.97, 75, 0.7F, -0.3F},
    {144.42, 73, 0.55F, 0.4F},
    {144.64, 72, 0.6F, 0.0F},
    {144.65, 53, 0.5F, 0.0F},
});

} // namespace

void ashwing_bells(stereo& out) {
    for (const single_bell& bell : opening_bells)
        add_bell(out, {.start = bell.time, .pitch = bell.pitch, .velocity = bell.velocity, .pan = bell.pan},
                 {.seconds = bell.time > 100 ? 0.75F : 1.5F});
    float pan = -0.3F;
    for (note played : notes_of(ashwing_form, bell_lines)) {
        played.pan = pan;
        pan = -pan;
        const bool slow = played.start > ashwing_starts[turning];
        add_bell(out, played, {.bend = slow ? 1.2F : 2.0F, .seconds = slow ? 1.1F : 0.55F});
    }
}

void ashwing_lead(stereo& out) {
    add_line(out, notes_of(ashwing_form, lead_lines), lead_sound());
    line_sound thin = lead_sound();
    thin.saws = 2;
    thin.pulse = 0;
    thin.vibrato = 20.0F;
    add_line(out, notes_of(ashwing_form, high_lines), thin);
    line_sound dark = lead_sound();
    dark.pulse = 0.6F;
    dark.sweep = 1.2F;
    add_line(out, notes_of(ashwing_form, low_lines), dark);
}

void ashwing_stabs(stereo& out) {
    constexpr std::string_view flash_chords = "FFFDDDBBB";
    for (std::size_t i = 0; i < ashwing_flashes.size(); ++i) {
        const bool white = i < 3;
        add_stab(out, ashwing_flashes[i], ashwing_form.chord_of(flash_chords[i]),
                 white ? 1.0F : (i % 3 == 0 ? 0.85F : 0.75F), white ? 2.0F : 1.2F);
    }
    // Off the beat where all play; the turns of the picture have one each.
    constexpr auto bars = std::to_array<stab_bar>({
        {flashes, 6, "....6.....6..6.."}, {flashes, 7, "..6..6..6..6..6."}, {shaking, 3, "......7..7......"},
        {shaking, 7, "..........6.6.66"}, {rising, 6, "5.....5.....6..."},  {rising, 7, "6..6..6.7......."},
        {drop, 0, "..5..6....5..6.."},    {drop, 1, "..5..6....5.5..6"},    {drop, 2, "..5..6....5..6.."},
        {drop, 3, "..5..6..6.5..6.6"},    {drop, 4, "..5..6....5..6.."},    {drop, 5, "..5..6....5.5..6"},
        {drop, 6, "..5..6....5..6.."},    {drop, 7, "6..6..6..6..7.7."},    {cube, 3, "............7.7."},
        {cube, 7, "8..8..8..8......"},    {height, 0, "..5..6....5..6.."},  {height, 1, "..5..6....5.5..6"},
        {height, 2, "..5..6....5..6.."},  {height, 3, "..5..6..6.5..6.6"},  {height, 4, "..5..6....5....."},
    });
    add_stabs(out, ashwing_form, bars, 0.6F);
    for (const double burst : {86.04, ashwing_burst, 128.99})
        add_stab(out, burst, ashwing_form.chord_of(burst == ashwing_burst ? 'C' : 'F'), 1.0F, 2.0F);
}

} // namespace assets::sound
