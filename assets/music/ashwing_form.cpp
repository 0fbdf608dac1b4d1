#include "assets/music/ashwing.h"

namespace assets::sound {
namespace {

// F minor with the flat second; the voices move as little as they can.
constexpr auto chords = std::to_array<chord>({
    {'F', 29, {53, 56, 60, 67}}, // F minor ninth: F3 Ab3 C4 G4
    {'D', 37, {53, 56, 60, 63}}, // D flat major seventh, ninth: F3 Ab3 C4 Eb4
    {'B', 34, {53, 56, 61, 65}}, // B flat minor seventh: F3 Ab3 Db4 F4
    {'G', 30, {53, 58, 61, 65}}, // G flat major seventh: F3 Bb3 Db4 F4
    {'C', 36, {52, 58, 61, 67}}, // C seventh, flat ninth: E3 Bb3 Db4 G4
    {'S', 36, {53, 58, 60, 67}}, // C with the fourth: F3 Bb3 C4 G4
    {'A', 32, {51, 56, 60, 67}}, // A flat major seventh: Eb3 Ab3 C4 G4
    {'E', 39, {51, 55, 61, 65}}, // E flat ninth: Eb3 G3 Db4 F4
});

constexpr std::array<std::string_view, 11> harmony = {
    "FFFFFFF.", // opening
    "FFFFFFGG", // meteor
    "FFDDBBGC", // name
    "FFDDBBGC", // flashes
    "FFGGFFGC", // shaking
    "BBDDEESC", // rising
    "FDAEFDGC", // drop
    "FFAAGGBC", // cube
    "BBDDAAEC", // turning
    "FDAEFFGF", // height
    "FF......", // tail
};

} // namespace

constinit const form ashwing_form{ashwing_tempo, chords, harmony};

} // namespace assets::sound
