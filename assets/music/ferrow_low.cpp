// The ground of "ferrow": the drone it takes over from the first track, the bass, the acid line.
#include <cstddef>

#include "assets/music/ferrow.h"
#include "assets/music/playing.h"

namespace assets::sound {
namespace {

// Semitones above the chord's root.
constexpr auto bass_book = std::to_array<bar_text>({
    {'k', "0! - - 0, - - 12 - 0! - - - 0 - ~1 ~0"}, // broken
    {'l', "0! - - - - - 0 - 0, - 12! - - - ~10 ~7"},
    {'s', "0! - - 0 - 0! - - . . . . . . . ."},
    {'c', "0! - - - - - - - - - 0 - - - - -"}, // half time
    {'d', "0! - - - - - 0 - - - 7 - - - ~12 -"},
    {'u', "0! . 0 . 0 . 0 . 0 . 0 . 0 . 0 ."}, // rolls
    {'v', "0! 0 0 0 0! 0 0 0 0! 0 0 0 0! 0 12 12"},
    {'p', ". . . . . . . . . . 0! 0, . 0, 0! 0,"}, // between the kicks
    {'a', ". 0, 0! 0, . 0, 0! 0, . 0, 0! 0, . 0, 0! 0,"},
    {'b', ". 0, 0! 0, . 0, 0! 12, . 0, 0! 0, . 12, 13! ~12"},
    {'n', ". 0, 0! 0, . 3, 0! 0, . 0, 7! 0, . 10, 0! ~12"},
    {'m', "7! - - 12 - - 10! - - - 8 - 7! - - -"}, // the motif itself, above the root's fifth
});
constexpr auto bass_rows = std::to_array<bar_row>({
    {picture_alone, ".....klk"},
    {breaking, "lklks.cc"},
    {clip_open, "cdcdcdcd"},
    {clip_close, "cd..uuvv"},
    {beat_bare, "paamabmb"},
    {beat_full, "abanabab"},
    {beat_greets, "abccccab"},
    {smear, "anabunab"},
    {smear_lifted, "anabccuv"},
    {smear_whole, "nbnbnbuv"},
});

// Hz at which the bass's ladder rests.
constexpr auto bass_cutoff = from_show<curve_point>({
    {163.5, 420.0F}, {169.5, 300.0F},  {174.7, 900.0F},  {175.4, 160.0F}, {189.0, 240.0F}, {195.0, 200.0F},
    {198.0, 220.0F}, {203.9, 1500.0F}, {204.5, 300.0F},  {213.0, 420.0F}, {215.9, 900.0F}, {216.0, 380.0F},
    {228.0, 560.0F}, {230.9, 160.0F},  {236.9, 400.0F},  {237.0, 480.0F}, {251.9, 800.0F}, {252.0, 500.0F},
    {263.9, 900.0F}, {264.0, 600.0F},  {276.0, 1100.0F},
});
// The break's bass growls: two saws that beat against each other, and a wobble besides.
constexpr auto bass_shake = from_show<curve_point>({
    {163.4, 20.0F},
    {174.9, 24.0F},
    {175.0, 0.0F},
    {204.5, 4.0F},
    {237.0, 8.0F},
    {276.0, 16.0F},
});

constexpr line_sound bass_sound = {
    .gain = 0.55F,
    .saws = 3,
    .cents = 19.0F,
    .pulse = 0.3F,
    .pulse_octave = 0,
    .sub = 0.7F,
    .resonance = 0.38F,
    .sweep = 2.2F,
    .drive = 2.6F,
    .glide = 0.05F,
    .amp = {.attack = 0.003F, .decay = 0.5F, .sustain = 0.8F, .release = 0.035F},
    .filter = {.attack = 0.002F, .decay = 0.2F, .sustain = 0.1F, .release = 0.1F},
    .cutoff = bass_cutoff,
    .shake = bass_shake,
};

constexpr auto acid_book = std::to_array<bar_text>({
    {'a', "0! 0, 12 0 . 0 ~3 0, 12! 0 . 0, 1 ~0 12, 0"},
    {'b', "0! . 0 12! 0, 0 ~10 12 . 0 0! ~1 0, 0 ~7 ~12"},
    {'c', "12! 0, 0 13 ~12 0 0, 10! ~12 0 . 7 0! 0, 15 ~12"},
    {'d', "0! 12 0 12! 3 ~0 12, 0 10! 12 ~0 1! 0 12 ~13 ~12"},
    {'e', ". . . . . . . . 0! . 0 ~12 0 . ~1 0"},
});
constexpr auto acid_rows = std::to_array<bar_row>({
    {beat_bare, ".......e"},
    {beat_full, "...e...b"},
    {beat_greets, "......ab"},
    {smear, "abacabad"},
    {smear_lifted, "abcd..be"},
    {smear_whole, "cdcdcdda"},
});
constexpr auto acid_cutoff = from_show<curve_point>({
    {204.5, 260.0F},
    {228.0, 500.0F},
    {236.9, 300.0F},
    {237.0, 320.0F},
    {240.0, 420.0F},
    {251.9, 1500.0F},
    {252.0, 600.0F},
    {263.9, 2200.0F},
    {264.0, 900.0F},
    {275.9, 4200.0F},
});
constexpr line_sound acid_sound = {
    .gain = 0.4F,
    .saws = 1,
    .pulse = 0.25F,
    .resonance = 0.84F,
    .sweep = 2.6F,
    .drive = 3.0F,
    .glide = 0.05F,
    .amp = {.attack = 0.002F, .decay = 0.3F, .sustain = 0.5F, .release = 0.03F},
    .filter = {.attack = 0.001F, .decay = 0.16F, .sustain = 0.05F, .release = 0.1F},
    .cutoff = acid_cutoff,
};

// Air between the notes.
std::vector<note> parted(std::vector<note> notes, double share) {
    for (note& played : notes)
        played.length *= share;
    return notes;
}

} // namespace

void ferrow_bass(stereo& out) {
    add_line(out, parted(notes_over_roots(ferrow_form, {bass_book, bass_rows}), 0.9), bass_sound);
}

void ferrow_acid(stereo& out) {
    std::vector<note> notes = parted(notes_over_roots(ferrow_form, {acid_book, acid_rows}), 0.75);
    for (note& played : notes)
        played.pitch += 12.0F;
    add_line(out, notes, acid_sound);
}

void ferrow_drone(stereo& out) {
    // What the first track closed with opens again; it stands alone below the picture on black.
    static constexpr auto cutoff = from_show<curve_point>({
        {147.7, 80.0F},
        {150.0, 320.0F},
        {156.0, 180.0F},
        {159.5, 520.0F},
        {163.0, 140.0F},
        {175.0, 200.0F},
        {190.0, 260.0F},
        {195.0, 200.0F},
        {203.9, 1500.0F},
        {237.0, 200.0F},
        {240.0, 420.0F},
    });
    constexpr auto hums = std::to_array<hum>({
        {at_show(147.8), 7.8, 29, 1.0F},
        {at_show(147.8), 7.8, 36, 0.7F},
        {at_show(149.0), 6.6, 41, 0.5F},
        {at_show(156.0), 6.6, 34, 0.9F},
        {at_show(156.0), 6.6, 41, 0.7F},
        {at_show(159.0), 3.6, 42, 0.5F},
        {at_show(195.0), 8.7, 29, 0.5F},
        {at_show(195.0), 8.7, 41, 0.5F},
        {at_show(195.0), 8.7, 42, 0.35F},
    });
    add_drone(out, hums, cutoff, {.attack = 1.4F, .decay = 1.0F, .sustain = 1.0F, .release = 0.3F}, 361);
}

} // namespace assets::sound
