// Music written as text, and what it says.
//
// A line has one token a step: a pitch ("C4", "Eb3", "F#5"; C4 is the middle C, 60) begins a note, "-" holds
// it, "." is a rest; "|" may stand between bars. A "!" after a pitch is an accent, a "," makes it soft, and a
// "~" before it slides there from the note before. Lines for a bass or an arpeggio have whole numbers in
// place of pitches. Unknown tokens count as rests.
#pragma once

#include <string_view>
#include <vector>

namespace assets::sound {

struct step_note {
    int step;       // where it begins
    int length;     // in steps, at least 1
    int pitch;      // semitones, or the plain number
    float velocity; // 0.6 soft, 0.8 plain, 1 accented
    bool slide;
};

std::vector<step_note> read_line(std::string_view text);

// The pitches of a chord, "F3 Ab3 C4", lowest first as they stand.
std::vector<int> read_chord(std::string_view text);

// A drum bar has one character a step: "1" soft to "9" loud, "." nothing; "|" and blanks don't count.
struct step_hit {
    int step;
    float velocity; // 1/9 to 1
};
std::vector<step_hit> read_hits(std::string_view text);

// A sounding note, in seconds.
struct note {
    double start = 0;
    double length = 0;
    float pitch = 60;
    float velocity = 0.8F;
    float pan = 0;
    bool slide = false;
};

} // namespace assets::sound
