// Filters and curves for single samples. Cutoffs are in Hz; they are kept below the half sample rate.
#pragma once

#include <algorithm>
#include <cmath>

#include "assets/forms/buffers.h"

namespace assets::sound {

inline float kept_in_range(float hertz) {
    return std::clamp(hertz, 10.0F, 18000.0F);
}

// tanh to within 2.5 %, exactly 1 from 3 on: a rational curve with the right slope and curvature at 0.
inline float soft_clip(float x) {
    const float v = std::clamp(x, -3.0F, 3.0F);
    return v * (27.0F + v * v) / (27.0F + 9.0F * v * v);
}

// First order: y follows x. `step` gives the low part; x minus it is the high part.
struct one_pole {
    float keep = 0;
    float low = 0;

    void set(float hertz) { keep = 1.0F - std::exp(-tau * kept_in_range(hertz) * sample_time); }
    float step(float x) {
        low += keep * (x - low);
        return low;
    }
};

// State-variable filter, second order, stable for every cutoff and moved without clicks (Zavalishin, "The
// art of VA filter design", 2012). `q` 0.5 is soft, 0.707 flat, 10 rings.
struct state_variable {
    float a1 = 0, a2 = 0, a3 = 0, k = 1;
    float s1 = 0, s2 = 0;
    float low = 0, band = 0, high = 0; // results of the last step

    void set(float hertz, float q) {
        const float g = std::tan(tau * 0.5F * kept_in_range(hertz) * sample_time);
        k = 1.0F / q;
        a1 = 1.0F / (1.0F + g * (g + k));
        a2 = g * a1;
        a3 = g * a2;
    }
    void step(float x) {
        const float v3 = x - s2;
        const float v1 = a1 * s1 + a2 * v3;
        const float v2 = s2 + a2 * s1 + a3 * v3;
        s1 = 2.0F * v1 - s1;
        s2 = 2.0F * v2 - s2;
        low = v2;
        band = v1 * k; // 1 at the cutoff, whatever q
        high = x - k * v1 - v2;
    }
    float low_pass(float x) {
        step(x);
        return low;
    }
    float high_pass(float x) {
        step(x);
        return high;
    }
    float band_pass(float x) {
        step(x);
        return band;
    }
};

// Four poles in a loop with a soft clip, run at twice the rate (after Huovilainen, "Non-linear digital
// implementation of the Moog ladder filter", 2004, with one curve instead of five). `resonance` 0 to 1.1;
// from 1 on it sings by itself.
struct ladder {
    float g = 0, feedback = 0;
    float y1 = 0, y2 = 0, y3 = 0, y4 = 0, last = 0;

    void set(float hertz, float resonance) {
        g = 1.0F - std::exp(-tau * 0.5F * kept_in_range(hertz) * sample_time);
        feedback = 4.0F * resonance;
    }
    float step(float x) {
        for (int half = 0; half < 2; ++half) {
            const float u = soft_clip(x * (1.0F + 0.5F * feedback) - feedback * 0.5F * (y4 + last));
            last = y4;
            y1 += g * (u - y1);
            y2 += g * (y1 - y2);
            y3 += g * (y2 - y3);
            y4 += g * (y3 - y4);
        }
        return 0.5F * (y4 + last);
    }
};

// Shelf of first order: lifts or lowers what lies above `hertz` by `decibels`.
struct high_shelf {
    one_pole split;
    float gain = 1;

    void set(float hertz, float decibels) {
        split.set(hertz);
        gain = from_decibels(decibels);
    }
    float step(float x) {
        const float low = split.step(x);
        return low + (x - low) * gain;
    }
};

} // namespace assets::sound
