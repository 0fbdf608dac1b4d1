// The drums: each function makes one stroke at full strength, starting at frame 0. A kit keeps a few strokes
// of each, slightly different, so that no two neighbours are the same.
#pragma once

#include <cstdint>

#include "assets/forms/buffers.h"

namespace assets::sound {

struct kick_shape {
    float low = 43.65F;   // Hz where the sweep ends: the low F
    float high = 260.0F;  // Hz where it begins
    float sweep = 0.028F; // seconds to 1/e of the way
    float body = 0.125F;  // seconds of fall
    float drive = 2.2F;   // into the soft clip
    float click = 0.35F;  // noise at the very start
    float seconds = 0.45F;
};
stereo make_kick(const kick_shape& shape);

// A long boom below everything, for the great turns.
stereo make_boom(float low_hz, float seconds);

struct snare_shape {
    float tone = 188.0F;    // Hz of the lower skin
    float snap = 0.13F;     // seconds of fall of the wires
    float bright = 1800.0F; // Hz above which the wires sound
    float seconds = 0.4F;
};
stereo make_snare(const snare_shape& shape, std::uint32_t seed);

// Several hands, not quite together, and the room after them.
stereo make_clap(std::uint32_t seed);

// Six pulses out of tune with each other, and noise, above 6 kHz. `fall_seconds` 0.03 is closed, 0.2 open.
stereo make_hat(float fall_seconds, std::uint32_t seed);

stereo make_crash(float fall_seconds, std::uint32_t seed);

stereo make_tom(float low_hz, std::uint32_t seed);

// A shaker: noise that swells and stops.
stereo make_shaker(std::uint32_t seed);

// Struck wire: two sines, one bending the other.
stereo make_wire(float hertz, float fall_seconds);

// Adds `hit` to `out` from frame `start` on, with a gain for each side.
void add_hit(stereo& out, const stereo& hit, int start, pan_gains gain);

} // namespace assets::sound
