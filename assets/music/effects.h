// Effects over whole buffers. The time is known in advance here, so that nothing is ever late.
#pragma once

#include <span>

#include "assets/forms/buffers.h"
#include "assets/music/envelopes.h"

namespace assets::sound {

// Two slowly moved copies a side, mixed to the dry sound. `depth_seconds` up to 0.01.
void chorus(stereo& sound, float depth_seconds, float rate_hz, float wet);

// Echoes that go left, right, left: adds what `send` (mono) gives to `out`. `delay` tells the seconds of one
// echo over the track's time (0.01 to 1); changes are slewed like a tape's speed. `feedback` below 1.
struct echo_shape {
    std::span<const curve_point> delay;
    float feedback = 0.5F;
    std::span<const curve_point> growth = {}; // what is added to the feedback over time; together at most 0.9
    float low_hertz = 320.0F;                 // what lies below dies away
    float high_hertz = 4200.0F;               // and above
};
void ping_pong(stereo& out, std::span<const float> send, const echo_shape& shape);

// A hall: four allpasses a side, then eight delay lines in a loop through a Hadamard matrix (Jot and
// Chaigne, "Digital delay networks for designing artificial reverberators", 1991; Dattorro, "Effect design",
// 1997). `send` is replaced by the wet sound.
struct hall_shape {
    float seconds = 2.8F; // to -60 dB
    float size = 1.0F;    // 0.3 a room, 1 a hall, at most 1.3
    float before_seconds = 0.02F;
    float high_hertz = 5200.0F; // damping
    float low_hertz = 170.0F;   // no mud below
};
void hall(stereo& send, const hall_shape& shape);

// Repeats the slice of `slice` frames from `start` on, `times` times in place of what was there.
void stutter(stereo& sound, int start, int slice, int times);

// Silence for `count` frames from `start` on, with a ramp of a few milliseconds at its head.
void silence(stereo& sound, int start, int count);

// Slows down from `start` on, to a halt `count` frames later, like a stopped turntable.
void halt(stereo& sound, int start, int count);

// Coarse samples: holds each for 1 / `hertz` seconds and rounds it to a multiple of 1 / `levels`.
void crush(stereo& sound, float hertz, float levels);

// Takes away what lies below `hertz` (second order).
void high_pass(stereo& sound, float hertz);

// What lies below `hertz` becomes the same on both sides.
void narrow_below(stereo& sound, float hertz);

} // namespace assets::sound
