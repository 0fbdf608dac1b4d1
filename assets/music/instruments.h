// The instruments. Each adds what it plays to `out`; what lies beyond the buffer's end is dropped. Levels
// are about 1 for one plain note before `gain`.
#pragma once

#include <cstdint>
#include <span>

#include "assets/forms/buffers.h"
#include "assets/music/envelopes.h"
#include "assets/music/score.h"

namespace assets::sound {

// One voice that slides: bass and lead. Saws and a pulse through a ladder.
struct line_sound {
    float gain = 0.5F;
    int saws = 1; // a side, at most 4, spread over `cents` both ways
    float cents = 0;
    float pulse = 0.3F;     // level of the pulse beside the saws
    float pulse_octave = 0; // where it sounds, in octaves from the note
    float sub = 0;          // a clean sine below the filter
    float resonance = 0.3F;
    float sweep = 2.0F;  // octaves that `filter` opens the ladder
    float drive = 1.5F;  // into the soft clip behind it
    float glide = 0.05F; // seconds of a slide
    float vibrato = 0;   // cents
    float noise = 0;     // breath
    bool wide = false;   // two sides; a narrow one is computed once
    envelope amp = {};
    envelope filter = {};
    std::span<const curve_point> cutoff = {}; // Hz over the track's time
    std::span<const curve_point> shake = {};  // further vibrato over time, cents
};
void add_line(stereo& out, std::span<const note> notes, const line_sound& sound);

// One note of many at a time: pads, plucks, stabs. Saws and a pulse through a state-variable filter.
struct poly_sound {
    float gain = 0.2F;
    int saws = 3; // a side, at most 4
    float cents = 12.0F;
    float pulse = 0;
    float q = 0.8F;
    float sweep = 0;    // octaves
    float track = 0.3F; // how far the cutoff follows the pitch, 0 to 1
    float width = 1.0F; // 0 narrow
    float drift = 0;    // octaves that the cutoff wanders slowly
    float shake = 0;    // cents of pitch wobble, following sin(4 t) as the picture's blur does
    envelope amp = {};
    envelope filter = {};
    std::span<const curve_point> cutoff = {};
};
void add_poly(stereo& out, const note& played, const poly_sound& sound, std::uint32_t seed);

// Two sines, one bending the other (Chowning, "The synthesis of complex audio spectra by means of frequency
// modulation", 1973). `ratio` 3.5 is glass, 1.41 a gong.
struct bell_sound {
    float gain = 0.3F;
    float ratio = 3.5F;
    float bend = 1.6F;    // depth at the start, radians
    float seconds = 1.6F; // of fall
    float shimmer = 4.0F; // cents between the sides
};
void add_bell(stereo& out, const note& played, const bell_sound& sound);

// A choir that opens from "oo" to "ah": saws through three formants.
struct choir_sound {
    float gain = 0.2F;
    float opening = 1.5F; // seconds from one vowel to the other
    envelope amp{.attack = 0.5F, .decay = 1.0F, .sustain = 1.0F, .release = 1.0F};
};
void add_choir(stereo& out, const note& played, const choir_sound& sound, std::uint32_t seed);

// A plucked string: a wave that runs round a delay and loses its high partials on the way (Karplus and
// Strong, "Digital synthesis of plucked-string and drum timbres", 1983; tuned as in Jaffe and Smith,
// "Extensions of the Karplus-Strong plucked-string algorithm", 1983). For pitches below 110.
struct string_sound {
    float gain = 0.5F;
    float seconds = 3.0F; // of the lowest partials to -60 dB while the note lasts
    float dull = 0.35F;   // share of the sample before in each round, 0 to 0.5
    float bright = 0.6F;  // of the pick
    float place = 0.18F;  // of the pick along the string
    float shimmer = 3.0F; // cents between the sides
};
void add_string(stereo& out, const note& played, const string_sound& sound, std::uint32_t seed);

// Noise through a band that moves: wind, risers, falls. `bow` above 1 keeps the change for the end, below 1
// for the beginning.
struct sweep_sound {
    double start;
    double length;
    float from_hertz;
    float to_hertz;
    float from_gain;
    float to_gain;
    float bow = 1.0F;
    float q = 1.2F;
    float fade = 0.02F; // seconds at both ends
};
void add_sweep(stereo& out, const sweep_sound& sweep, std::uint32_t seed);

// A tone that slides from one pitch to another, with a wobble of `wobble` semitones at `rate` Hz.
struct slide_sound {
    double start;
    double length;
    float from_pitch;
    float to_pitch;
    float from_gain;
    float to_gain;
    float bow = 1.0F;
    float wobble = 0;
    float rate = 6.0F;
    float edge = 0; // share of saw in the tone, 0 to 1
};
void add_slide(stereo& out, const slide_sound& slide);

} // namespace assets::sound
