// Ways of playing that the tracks share: a kit's strokes, held and broken chords, stabs, risers and falls,
// and what is done to the finished dry sound.
#pragma once

#include <cstdint>
#include <span>

#include "assets/music/drums.h"
#include "assets/music/instruments.h"
#include "assets/music/laying.h"
#include "assets/music/random.h"

namespace assets::sound {

pan_gains scaled(pan_gains gains, float factor);

// Where a stroke sounds: odd steps come a little late, and no hand is a machine.
int played_frame(const stroke& hit, random_source& hand);

// Strokes with the variants of a kit in turn, each a little stronger or weaker than written.
void add_strokes(stereo& out, std::span<const stroke> strokes, std::span<const stereo> kit, float gain,
                 float pan, std::uint32_t seed);

// The frames of a kick's strokes and of single ones, in order.
std::vector<int> kick_frames(std::span<const stroke> strokes, std::span<const double> single);

// Single hits at times of their own, with the variants of a kit in turn.
struct timed_hit {
    double time;
    float gain;
    float pan;
};
void add_hits(stereo& out, std::span<const timed_hit> hits, std::span<const stereo> kit);

struct timed_boom {
    double time;
    float gain;
    float hertz;
    float seconds;
};
void add_booms(stereo& out, std::span<const timed_boom> booms);

// The voices that both tracks know: the lead and the pad. Each track gives them its own cutoff.
inline constexpr line_sound lead_voice = {
    .gain = 0.4F,
    .saws = 3,
    .cents = 15.0F,
    .pulse = 0.35F,
    .pulse_octave = -1.0F,
    .resonance = 0.3F,
    .sweep = 1.7F,
    .drive = 1.5F,
    .glide = 0.07F,
    .vibrato = 14.0F,
    .noise = 0.02F,
    .wide = true,
    .amp = {.attack = 0.008F, .decay = 0.6F, .sustain = 0.7F, .release = 0.14F},
    .filter = {.attack = 0.012F, .decay = 0.4F, .sustain = 0.35F, .release = 0.2F},
};
inline constexpr poly_sound pad_voice = {
    .gain = 0.11F,
    .saws = 4,
    .cents = 16.0F,
    .pulse = 0.15F,
    .q = 0.75F,
    .drift = 0.25F,
    .amp = {.attack = 0.18F, .decay = 1, .sustain = 1, .release = 0.7F},
};

// The chords of some bars, held.
struct chord_row {
    int in;
    int first_bar;
    int bars;
    float level;
};
void add_pad(stereo& out, const form& track, std::span<const chord_row> rows, const poly_sound& sound,
             std::uint32_t seed);
void add_choir(stereo& out, const form& track, std::span<const chord_row> rows, std::uint32_t seed);

// Long low tones that hum and wander; below 40 they are narrow.
struct hum {
    double start;
    double length;
    float pitch;
    float level;
};
void add_drone(stereo& out, std::span<const hum> hums, std::span<const curve_point> cutoff,
               const envelope& amp, std::uint32_t seed);

// Broken chords as notes: the books tell which note of the bar's chord, from its lowest up, an octave above
// where it is written; beyond its four notes they go on an octave higher. Left and right in turn.
std::vector<note> broken_chords(const form& track, const voice_part& part);

// A short chord with its octave above and its root below. `bright` 1 is plain, 2 shining.
void add_stab(stereo& out, double time, const chord& harmony, float level, float bright);

// Stabs as a drum is written, bar by bar.
struct stab_bar {
    int in;
    int bar;
    std::string_view hits;
};
void add_stabs(stereo& out, const form& track, std::span<const stab_bar> bars, float level);

// Noise that climbs from 300 Hz to `hertz`, and noise that falls from 9 kHz.
struct riser {
    double from;
    double to;
    float gain;
    float hertz;
};
void add_risers(stereo& out, std::span<const riser> risers, std::uint32_t seed);
struct faller {
    double start;
    double length;
    float gain;
};
void add_fallers(stereo& out, std::span<const faller> fallers, std::uint32_t seed);

// Slices of the dry sound that are heard again in place of what followed; `slice` in steps.
struct repeat {
    int in;
    int bar;
    double step;
    double slice;
    int times;
};
void add_repeats(stereo& sound, const form& track, std::span<const repeat> repeats);

// Opens and closes a sound in the rhythm of a drum's bars: each step is as loud as its digit for two thirds
// of its time. Bars that the part doesn't name stay as they are.
void add_gates(stereo& sound, const form& track, const voice_part& part);

// Silence from a step of a bar until a time.
struct breath {
    int in;
    int bar;
    double step;
    double until; // seconds
};
void add_breaths(stereo& sound, const form& track, std::span<const breath> breaths);

} // namespace assets::sound
