// The ground of "Ashwing": the drone of its ends and the bass.
#include <cstddef>

#include "assets/music/ashwing.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

// Semitones above the chord's root.
constexpr auto bass_book = std::to_array<bar_text>({
    {'a', "0! . . 0 . . 0 . 0, . . 0 . . 12 ."},
    {'b', ". . 0 0, . 0, 0! . . 0, 0 . . 0 12 0,"},
    {'c', "0! - . 0 . 0, 12 . . 0 . 0, . 7 ~10 ~12"},
    {'e', ". 0, 0! 0, . 0, 0! 0, . 0, 0! 12, . 0, 0! ~10"},
    {'f', ". 0, 0! 0, . 0, 12! 0, . 0, 0! 0, . 12 ~10 ~7"},
    {'h', "0! . . 0 . . 12, . . 0 . . 0 . ~-2 ~0"},
    {'l', "0! - - - - - - - - - - - - - - ."},
    {'m', "0! - - - - - - - - - - . 12, - ~10 ~7"},
    {'s', "0! . . 0 . . . 12, . . 0 . . 0, 0, ."},
    {'t', "0! - ~1 ~0 . . 0 . . . 0 0, . ~12 ~1 ~0"},
    {'u', "0 . 0 . 0 . 0 . 0 . 0 . 0 . 12 ."},
    {'v', "0 0, 0 0, 0 0, 0 0, 0 0, 12 0, . . . ."},
    {'k', "0! . 12 . . 0 . 0 . 12, . 0 . . 10 ~12"},
    {'x', "0! . 12 . . 0 . 0 . 7 . . . . . ."},
    {'n', "0! . 12 . . 0 . 0 . 7 . ~12 . 13 ~12 ."},
});
constexpr auto bass_rows = std::to_array<bar_row>({
    {meteor, "aahaaach"},
    {name, "eefeeefc"},
    {flashes, "l.a.hcec"},
    {shaking, "sltlstls"},
    {rising, "lmlmuuuv"},
    {drop, "efeceffc"},
    {cube, "knkcknkx"},
    {turning, "lmlmahac"},
    {height, "efecelm."},
});

// Hz at which the bass's ladder rests.
constexpr auto bass_cutoff = std::to_array<curve_point>({
    {14.2, 130.0F},  {28.5, 330.0F},   {43.0, 420.0F},  {43.08, 300.0F},  {57.35, 480.0F},
    {57.36, 700.0F}, {72.0, 350.0F},   {72.01, 160.0F}, {84.7, 1200.0F},  {86.04, 420.0F},
    {100.3, 620.0F}, {100.36, 300.0F}, {107.5, 900.0F}, {114.29, 420.0F}, {114.69, 180.0F},
    {128.9, 520.0F}, {128.99, 480.0F}, {137.6, 560.0F}, {137.7, 300.0F},  {143.3, 120.0F},
});
constexpr auto bass_shake = std::to_array<curve_point>({
    {57.3, 0.0F},
    {57.36, 22.0F},
    {70.0, 14.0F},
    {72.0, 0.0F},
});

constexpr line_sound bass_sound = {
    .gain = 0.55F,
    .saws = 2,
    .cents = 7.0F,
    .pulse = 0.45F,
    .pulse_octave = 0,
    .sub = 0.75F,
    .resonance = 0.42F,
    .sweep = 2.4F,
    .drive = 2.4F,
    .glide = 0.06F,
    .amp = {.attack = 0.003F, .decay = 0.5F, .sustain = 0.75F, .release = 0.04F},
    .filter = {.attack = 0.002F, .decay = 0.24F, .sustain = 0.08F, .release = 0.1F},
    .cutoff = bass_cutoff,
    .shake = bass_shake,
};

std::vector<note> bass_notes() {
    std::vector<note> notes = notes_over_roots(ashwing_form, {bass_book, bass_rows});
    for (note& played : notes)
        played.length *= 0.88; // air between the notes
    return notes;
}

} // namespace

void ashwing_bass(stereo& out) {
    add_line(out, bass_notes(), bass_sound);
}

void ashwing_drone(stereo& out) {
    // Opens while the card stands, closes before the beat; comes back below the turning and at the end.
    static constexpr auto cutoff = std::to_array<curve_point>({
        {0.0, 70.0F},
        {2.0, 140.0F},
        {6.0, 420.0F},
        {8.2, 700.0F},
        {9.0, 480.0F},
        {13.0, 110.0F},
        {57.35, 260.0F},
        {64.4, 900.0F},
        {72.0, 200.0F},
        {114.69, 200.0F},
        {122.0, 600.0F},
        {128.9, 200.0F},
        {137.67, 600.0F},
        {147.0, 90.0F},
    });
    constexpr auto hums = std::to_array<hum>({
        {0.0, 13.0, 29, 1.0F},
        {0.0, 13.0, 36, 0.7F},
        {0.3, 12.7, 41, 0.6F},
        {6.0, 7.0, 42, 0.35F},
        {57.4, 14.0, 41, 0.5F},
        {57.4, 14.0, 42, 0.4F},
        {114.7, 13.6, 41, 0.5F},
        {114.7, 13.6, 48, 0.4F},
        {137.7, 8.3, 29, 0.8F},
        {137.7, 8.3, 36, 0.7F},
        {137.7, 8.3, 41, 0.5F},
    });
    add_drone(out, hums, cutoff, {.attack = 2.2F, .decay = 1.0F, .sustain = 1.0F, .release = 0.9F}, 61);
}

} // namespace assets::sound
