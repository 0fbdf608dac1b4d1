// Where the notes, chords and strokes of a track lie. A section has eight bars. A voice keeps a small book of
// bars, each under a letter, and a row of eight letters for each section in which it plays; a letter that
// the book doesn't know, "." by habit, is an empty bar.
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "assets/music/envelopes.h"
#include "assets/music/score.h"
#include "assets/music/tempo.h"

namespace assets::sound {

// A chord by its letter: the bass's pitch and four upper notes around C4.
struct chord {
    char letter;
    int root;
    std::array<int, 4> upper;
};

// A chord that sounds over whole bars; times in seconds.
struct chord_span {
    const chord* harmony;
    double start;
    double length;
};

// What all voices of a track have in common: its time and its harmony.
struct form {
    tempo_map tempo;
    std::span<const chord> chords;             // at least one
    std::span<const std::string_view> harmony; // for each section the chords of its eight bars, "." is none

    // Seconds of a step of a bar.
    double time(int in, int bar, double step) const { return tempo.time(in, bar * steps_a_bar + step); }
    // The first chord where the letter is unknown.
    const chord& chord_of(char letter) const;
    const chord& chord_at(int in, int bar) const;
    // The chords of some bars of one section; neighbours that are alike become one.
    std::vector<chord_span> spans(int in, int first_bar, int bars) const;
    // A line of pitches from a bar of a section on.
    std::vector<note> placed(int in, int bar, std::string_view line, int transpose = 0) const;
};

struct bar_text {
    char letter;
    std::string_view steps;
};
struct bar_row {
    int in; // the section
    std::string_view bars;
};
struct voice_part {
    std::span<const bar_text> book;
    std::span<const bar_row> rows;
};

// The bars that a voice plays, row by row.
struct placed_bar {
    int in;
    int bar;
    std::string_view steps;
};
std::vector<placed_bar> bars_of(const voice_part& part);

// The notes of a voice whose books tell semitones above the root of each bar's chord.
std::vector<note> notes_over_roots(const form& track, const voice_part& part);

// Lines at their places, `transpose` semitones higher, at `level` of their velocity.
struct line_at {
    int in;
    int bar;
    std::string_view line;
    int transpose;
    float level;
};
std::vector<note> notes_of(const form& track, std::span<const line_at> lines);

void append(std::vector<note>& to, const std::vector<note>& more);

// The strokes of a drum, in order of time.
struct stroke {
    double time;
    float velocity;
    int step; // of the bar
};
std::vector<stroke> strokes_of(const form& track, const voice_part& part);

// Seconds of an echo of `steps` steps over the track's time: it follows the tempo of each section.
std::vector<curve_point> echo_times(const tempo_map& tempo, float steps);

} // namespace assets::sound
