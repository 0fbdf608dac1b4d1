#include "assets/music/ferrow.h"

namespace assets::sound {
namespace {

// Capital letters stand in F, small ones a tone higher.
constexpr auto chords = std::to_array<chord>({
    {'F', 29, {53, 56, 60, 67}}, // F minor ninth: F3 Ab3 C4 G4
    {'D', 37, {53, 56, 60, 67}}, // D flat major seventh with the sharp fourth: F3 Ab3 C4 G4
    {'A', 32, {55, 58, 60, 67}}, // A flat major ninth: G3 Bb3 C4 G4
    {'B', 34, {53, 56, 61, 68}}, // B flat minor seventh: F3 Ab3 Db4 Ab4
    {'E', 39, {55, 58, 61, 65}}, // E flat ninth: G3 Bb3 Db4 F4
    {'G', 30, {53, 58, 61, 65}}, // G flat major seventh: F3 Bb3 Db4 F4
    {'C', 36, {52, 58, 61, 67}}, // C seventh, flat ninth: E3 Bb3 Db4 G4
    {'P', 29, {53, 60, 65, 67}}, // F without a third: F3 C4 F4 G4
    {'Q', 29, {54, 58, 61, 66}}, // G flat above F: Gb3 Bb3 Db4 Gb4
    {'f', 31, {55, 58, 62, 69}},
    {'d', 39, {55, 58, 62, 69}},
    {'a', 34, {57, 60, 62, 69}},
    {'e', 41, {57, 60, 63, 67}},
    {'g', 32, {55, 60, 63, 67}},
    {'c', 38, {54, 60, 63, 69}},
});

constexpr std::array<std::string_view, 12> harmony = {
    "..FFFDDG", // scene_slow
    "BBDCFFGG", // picture_alone
    "FFGCCDDD", // breaking
    "AABBEEDD", // clip_open
    "AFBBGGCC", // clip_close
    "PPQPPGQC", // beat_bare
    "FFDDBBGC", // beat_full
    "FDAEBCFF", // beat_greets
    "FFDDGGCC", // smear
    "ffddggcc", // smear_lifted
    "fdaefdgc", // smear_whole
    "f.......", // last_stroke
};

} // namespace

constinit const form ferrow_form{ferrow_tempo, chords, harmony};

} // namespace assets::sound
