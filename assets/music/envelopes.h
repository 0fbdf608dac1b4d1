// How a value moves in time. All are functions of the time since the start, so that nothing is carried along.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>

namespace assets::sound {

// Seconds and a level: rises in a straight line for `attack`, falls towards `sustain` (two thirds of the way
// in a third of `decay`), and from `gate` on towards 0 over `release`, which it has reached at its end.
struct envelope {
    float attack = 0.002F;
    float decay = 0.2F;
    float sustain = 0;
    float release = 0.05F;

    float held(float t) const {
        if (t < attack) return t / attack;
        return sustain + (1.0F - sustain) * std::exp(-3.0F * (t - attack) / decay);
    }
    float level(float t, float gate) const {
        if (t < 0) return 0;
        if (t < gate) return held(t);
        const float rest = 1.0F - (t - gate) / release;
        return rest <= 0 ? 0 : held(gate) * rest * rest;
    }
};

// Falls from 1 to 1/e in `seconds`.
inline float fall(float t, float seconds) {
    return std::exp(-t / seconds);
}

// 0 below `from`, 1 above `to`, smooth between.
inline float smooth(float from, float to, float t) {
    const float x = std::clamp((t - from) / (to - from), 0.0F, 1.0F);
    return x * x * (3.0F - 2.0F * x);
}

// A line through points in order of time; level before the first and after the last.
struct curve_point {
    double time;
    float value;
};
inline float curve_at(std::span<const curve_point> points, double time) {
    if (points.empty()) return 0;
    if (time <= points.front().time) return points.front().value;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const curve_point& a = points[i - 1];
        const curve_point& b = points[i];
        if (time < b.time)
            return a.value + (b.value - a.value) * static_cast<float>((time - a.time) / (b.time - a.time));
    }
    return points.back().value;
}

} // namespace assets::sound
