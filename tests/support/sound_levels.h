// Measures of sound for tests.
#pragma once

#include <cmath>
#include <numbers>

#include "assets/forms/buffers.h"

inline constexpr double pi = std::numbers::pi;

inline double decibels(double power) {
    return 10.0 * std::log10(power + 1e-12);
}

// Mean power of both sides from one time to another.
inline double power(const assets::sound::stereo& sound, double from, double to) {
    using namespace assets::sound;
    const stretch where = cut(sound, frame_of(from), frame_of(to) - frame_of(from));
    double sum = 0;
    for (int i = where.start; i < where.start + where.count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        sum += static_cast<double>(sound.left[at]) * sound.left[at];
        sum += static_cast<double>(sound.right[at]) * sound.right[at];
    }
    return where.count > 0 ? sum / (2.0 * where.count) : 0.0;
}

inline assets::sound::stereo tone(double hertz, double seconds, float gain, float right_gain) {
    using namespace assets::sound;
    stereo sound(frame_of(seconds));
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        const auto value =
            static_cast<float>(std::sin(2 * pi * hertz * static_cast<double>(i) / sample_rate));
        sound.left[i] = value * gain;
        sound.right[i] = value * right_gain;
    }
    return sound;
}
