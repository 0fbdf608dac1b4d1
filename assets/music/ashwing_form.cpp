#include "assets/music/ashwing.h"

#include <cstddef>

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

const chord& chord_of(char letter) {
    for (const chord& found : chords)
        if (found.letter == letter) return found;
    return chords.front();
}

std::string_view chords_of(int in_section) {
    return harmony[static_cast<std::size_t>(in_section)];
}

std::vector<chord_span> chord_spans(int in_section, int first_bar, int bars) {
    const std::string_view letters = chords_of(in_section);
    std::vector<chord_span> spans;
    for (int bar = first_bar; bar < first_bar + bars; ++bar) {
        const char letter = letters[static_cast<std::size_t>(bar)];
        if (letter == '.') continue;
        const double length = ashwing_tempo.step_length(in_section) * steps_a_bar;
        const bool goes_on =
            bar > first_bar && !spans.empty() && letters[static_cast<std::size_t>(bar - 1)] == letter;
        if (goes_on)
            spans.back().length += length;
        else
            spans.push_back({&chord_of(letter), ashwing_time(in_section, bar, 0), length});
    }
    return spans;
}

std::vector<note> placed(int in_section, int bar, std::string_view line, int transpose) {
    const double step = ashwing_tempo.step_length(in_section);
    std::vector<note> notes;
    for (const step_note& found : read_line(line))
        notes.push_back({.start = ashwing_time(in_section, bar, found.step),
                         .length = found.length * step,
                         .pitch = static_cast<float>(found.pitch + transpose),
                         .velocity = found.velocity,
                         .pan = 0,
                         .slide = found.slide});
    return notes;
}

void append(std::vector<note>& to, const std::vector<note>& more) {
    to.insert(to.end(), more.begin(), more.end());
}

} // namespace assets::sound
