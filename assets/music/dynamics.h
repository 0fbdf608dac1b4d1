// Levels over time: ducking, compression, limiting.
#pragma once

#include <span>
#include <vector>

#include "assets/forms/buffers.h"

namespace assets::sound {

// How deep everything steps aside for the kick: 1 at each of `hits` (frames), back to 0 over
// `release_seconds`; `frames` values.
std::vector<float> duck_curve(std::span<const int> hits, int frames, float release_seconds);

// Multiplies by 1 - depth * curve.
void duck(stereo& sound, std::span<const float> curve, float depth);

// Root-mean-square compressor over both sides together with a soft knee of 6 dB.
struct compressor_shape {
    float threshold = -16.0F; // dB
    float ratio = 2.0F;
    float attack = 0.02F; // seconds
    float release = 0.15F;
    float makeup = 2.0F; // dB
};
void compress(stereo& sound, const compressor_shape& shape);

// Brings the peaks, those between the samples as well (seen at four times the rate), down to `ceiling`. It
// looks 4 ms ahead, so that the gain is there before the peak; no sample passes the ceiling.
void limit(stereo& sound, float ceiling, float release_seconds);

} // namespace assets::sound
