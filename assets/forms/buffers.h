// Sound in memory: two runs of float samples at 44100 Hz, nominally -1 to 1, and where a time lies in them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "morvane/base/numbers.h"

namespace assets::sound {

inline constexpr int sample_rate = 44100;
inline constexpr float sample_time = 1.0F / 44100.0F;
inline constexpr float tau = 6.28318530718F;

// Controls (envelopes, cutoffs) are computed once for this many frames.
inline constexpr int control_frames = 16;

struct stereo {
    std::vector<float> left;
    std::vector<float> right;

    explicit stereo(int frames)
        : left(static_cast<std::size_t>(frames)), right(static_cast<std::size_t>(frames)) {}

    int frames() const { return static_cast<int>(left.size()); }
    void clear() {
        std::fill(left.begin(), left.end(), 0.0F);
        std::fill(right.begin(), right.end(), 0.0F);
    }
};

// The frame nearest to a time.
constexpr int frame_of(double seconds) {
    return trunc_to_int(seconds * sample_rate + 0.5);
}

// A part of a buffer: `count` frames from `start` on, cut to what the buffer holds.
struct stretch {
    int start;
    int count;
};
inline stretch cut(const stereo& buffer, int start, int count) {
    const int from = std::clamp(start, 0, buffer.frames());
    const int to = std::clamp(start + std::max(count, 0), from, buffer.frames());
    return {from, to - from};
}

inline float from_decibels(float decibels) {
    return std::pow(10.0F, decibels * 0.05F);
}

// Gains of equal power; `pan` is -1 (left) to 1 (right).
struct pan_gains {
    float left;
    float right;
};
inline pan_gains panned(float pan) {
    const float angle = (std::clamp(pan, -1.0F, 1.0F) + 1.0F) * (tau / 8.0F);
    return {std::cos(angle), std::sin(angle)};
}

} // namespace assets::sound
