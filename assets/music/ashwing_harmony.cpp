// What fills the middle of "Ashwing": pads, the choir, the wires' broken chords, the cube's pulses.
#include <cstddef>

#include "assets/music/ashwing.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

constexpr auto pad_cutoff = std::to_array<curve_point>({
    {7.5, 500.0F},    {8.25, 1500.0F},  {9.0, 500.0F},    {28.5, 500.0F},   {42.7, 1500.0F},
    {43.08, 700.0F},  {57.0, 1900.0F},  {57.35, 400.0F},  {70.0, 1100.0F},  {72.0, 350.0F},
    {85.6, 4200.0F},  {86.04, 2300.0F}, {100.3, 3000.0F}, {100.36, 600.0F}, {114.69, 700.0F},
    {115.6, 500.0F},  {118.6, 3000.0F}, {122.0, 1100.0F}, {128.9, 2000.0F}, {128.99, 2600.0F},
    {137.6, 3200.0F}, {143.3, 500.0F},  {147.0, 200.0F},
});

constexpr auto pad_rows = std::to_array<chord_row>({
    {meteor, 4, 4, 0.45F},
    {name, 0, 8, 0.75F},
    {flashes, 6, 2, 0.6F},
    {shaking, 0, 8, 0.6F},
    {rising, 0, 7, 0.9F},
    {drop, 0, 8, 0.9F},
    {cube, 4, 4, 0.55F},
    {turning, 0, 8, 1.0F},
    {height, 0, 8, 0.95F},
    {tail, 0, 1, 0.45F},
});

void add_wobbling_card(stereo& out) {
    // The card blurs from 7.5 to 9: a cluster that sways with it.
    const poly_sound sound = {.gain = 0.16F,
                              .saws = 3,
                              .cents = 14.0F,
                              .shake = 65.0F,
                              .amp = {.attack = 0.9F, .decay = 1, .sustain = 1, .release = 1.4F},
                              .cutoff = pad_cutoff};
    std::uint32_t seed = 71;
    for (const float pitch : {56.0F, 60.0F, 61.0F, 67.0F})
        add_poly(out, {.start = 7.2, .length = 1.8, .pitch = pitch, .velocity = 0.8F}, sound, seed++);
}

constexpr auto wire_book = std::to_array<bar_text>({
    {'a', "0 2 1 3 2 4 3 5 4 3 2 4 1 3 2 1"},
    {'b', "0! 2 4 0 2 4 0 2 4! 0 2 4 5 4 2 0"},
    {'c', "0 . . 2 . . 4 . . . 3, . . 1 . ."},
    {'d', "4 . 2 . 0 . 3 1 . 4 . 2 0 . 3 ."},
    {'e', "5! 3 2 5 3 2 5 3 6! 4 2 6 4 2 7 6"},
    {'f', "0 1 2 3 4 5 6 7 6 5 4 3 2 1 0 3"},
    {'g', "4! 4, . 4 . . 2, 2 . 2 . . 5 5, 5, 5"},
    {'h', "0 . 3 . . 0 . 3 . . 0 . 5! . 4, ."},
});
constexpr auto wire_rows = std::to_array<bar_row>({
    {meteor, "ccdcddad"},
    {name, "hdhdhahb"},
    {flashes, "...d.def"},
    {shaking, "ggchgghe"},
    {rising, "cdabbefe"},
    {drop, "abebabfe"},
    {cube, "..h.h.d."},
    {turning, "cdcddabf"},
    {height, "ebefaddc"},
    {tail, "c......."},
});
constexpr auto wire_cutoff = std::to_array<curve_point>({
    {14.2, 350.0F},
    {28.5, 1300.0F},
    {43.0, 1500.0F},
    {57.35, 2200.0F},
    {57.36, 900.0F},
    {72.0, 1400.0F},
    {72.01, 500.0F},
    {85.6, 5200.0F},
    {86.04, 2600.0F},
    {100.3, 3200.0F},
    {100.36, 900.0F},
    {114.6, 1700.0F},
    {114.69, 600.0F},
    {128.9, 2600.0F},
    {128.99, 2900.0F},
    {137.6, 3000.0F},
    {143.3, 900.0F},
    {147.0, 400.0F},
});

// The cube's two pulses: the second comes a beat later, upside down.
struct cube_line {
    int bar;
    std::string_view steps;
};
constexpr auto cube_lines = std::to_array<cube_line>({
    {0, "C4! . . F4 . . Eb4 . . . Db4 . C4 . . C4, | Ab3! . . Ab3, . . Bb3 . C4 . . C4, . C4 . ."},
    {2, "C4! . . F4 . . Ab4 . . . G4 . Eb4 . C4, . | Eb4! . . Eb4, . . Db4 . C4 . . C4, Bb3 . C4 ."},
    {4, "Db4! . . Gb4 . . F4 . . . Db4 . Bb3 . . Gb4, | F4! . . F4, . . Db4 . Bb3 . . Db4 . F4 Gb4 F4"},
    {6, "Db4! . . F4 . . Eb4 . . . Db4 . C4 . Bb3 . | G4! . . G4, . . E4 . G4 . E4! . . . . ."},
});
constexpr auto cube_answers = std::to_array<cube_line>({
    {2, ". . . . G4 . . C4 . . Db4 . . . Eb4 . | G4 . . . Eb4! . . Eb4, . . C4 . Ab3 . . ."},
    {4, ". . . . F4 . . Bb3 . . C4 . . . Db4 . | F4 . . . Bb4! . . Bb4, . . Ab4 . Gb4 . . ."},
    {6, ". . . . Bb4 . . F4 . . Ab4 . . . F4 . | Db4 . . . C4! . . C4, . . E4 . . . . ."},
});

std::vector<note> pulses_of(std::span<const cube_line> lines, int transpose, float pan) {
    std::vector<note> notes;
    for (const cube_line& line : lines)
        append(notes, ashwing_form.placed(cube, line.bar, line.steps, transpose));
    for (note& played : notes) {
        played.pan = pan;
        played.length *= 0.6;
    }
    return notes;
}

} // namespace

void ashwing_pad(stereo& out) {
    poly_sound sound = pad_voice;
    sound.cutoff = pad_cutoff;
    add_pad(out, ashwing_form, pad_rows, sound, 81);
    add_wobbling_card(out);
}

void ashwing_choir(stereo& out) {
    constexpr auto rows = std::to_array<chord_row>({
        {rising, 4, 3, 0.6F},
        {drop, 4, 4, 0.5F},
        {turning, 0, 8, 1.0F},
        {height, 0, 5, 0.8F},
        {height, 5, 2, 0.6F},
    });
    add_choir(out, ashwing_form, rows, 131);
}

void ashwing_wires(stereo& out) {
    const poly_sound sound = {.gain = 0.3F,
                              .saws = 2,
                              .cents = 9.0F,
                              .pulse = 0.5F,
                              .q = 2.4F,
                              .sweep = 1.8F,
                              .track = 0.5F,
                              .amp = {.attack = 0.002F, .decay = 0.22F, .sustain = 0.05F, .release = 0.12F},
                              .filter = {.attack = 0.001F, .decay = 0.16F, .sustain = 0, .release = 0.1F},
                              .cutoff = wire_cutoff};
    std::uint32_t seed = 171;
    for (const note& played : broken_chords(ashwing_form, {wire_book, wire_rows}))
        add_poly(out, played, sound, seed++);
}

void ashwing_cube(stereo& out) {
    static constexpr auto cutoff = std::to_array<curve_point>({
        {100.36, 700.0F},
        {107.5, 1500.0F},
        {113.0, 3200.0F},
        {114.69, 1500.0F},
    });
    const poly_sound sound = {.gain = 0.34F,
                              .saws = 0,
                              .cents = 0,
                              .pulse = 1.0F,
                              .q = 4.0F,
                              .sweep = 1.6F,
                              .track = 0.5F,
                              .width = 0.3F,
                              .amp = {.attack = 0.002F, .decay = 0.2F, .sustain = 0.4F, .release = 0.05F},
                              .filter = {.attack = 0.001F, .decay = 0.12F, .sustain = 0.1F, .release = 0.1F},
                              .cutoff = cutoff};
    std::uint32_t seed = 701;
    std::vector<note> notes = pulses_of(cube_lines, 0, -0.35F);
    append(notes, pulses_of(cube_lines, 12, -0.2F)); // the upper edge of the same face
    for (std::size_t i = notes.size() / 2; i < notes.size(); ++i)
        notes[i].velocity *= 0.5F;
    append(notes, pulses_of(cube_answers, 12, 0.55F));
    for (const note& played : notes)
        add_poly(out, played, sound, seed++);
}

} // namespace assets::sound
