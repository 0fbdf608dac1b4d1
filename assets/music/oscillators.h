// Oscillators. Phases are in turns, 0 to 1; an increment `dt` is frequency / sample rate, below 0.5.
//
// Saw and pulse are smoothed at their jumps by a polynomial (Valimaki and Huovilainen, "Antialiasing
// oscillators in subtractive synthesis", 2007), which keeps what folds back far below the tone.
#pragma once

#include <cmath>

#include "assets/forms/buffers.h"

namespace assets::sound {

// Cycles per sample of a pitch in semitones, 69 = A4 = 440 Hz.
inline float increment_of(float pitch) {
    return 440.0F * std::exp2((pitch - 69.0F) / 12.0F) * sample_time;
}
inline float ratio_of_cents(float cents) {
    return std::exp2(cents / 1200.0F);
}

// sin of `turns` whole turns, for |turns| below 2 million; the error stays below 4e-6 around 0.
inline float sine(float turns) {
    constexpr float round_off = 12582912.0F; // 1.5 * 2^23: adding it rounds to the nearest whole number
    float x = turns - ((turns + round_off) - round_off);
    if (x > 0.25F) x = 0.5F - x;
    if (x < -0.25F) x = -0.5F - x;
    const float s = x * x;
    return x *
           (6.283185307F + s * (-41.34170224F + s * (81.60524928F + s * (-76.70585975F + s * 42.05869394F))));
}

// What to take from a falling jump of height 2 at phase 0.
inline float jump_rest(float phase, float dt) {
    if (phase < dt) {
        const float x = phase / dt;
        return x + x - x * x - 1.0F;
    }
    if (phase > 1.0F - dt) {
        const float x = (phase - 1.0F) / dt;
        return x * x + x + x + 1.0F;
    }
    return 0.0F;
}

struct saw_oscillator {
    float phase = 0;

    float step(float dt) {
        const float value = 2.0F * phase - 1.0F - jump_rest(phase, dt);
        phase += dt;
        if (phase >= 1.0F) phase -= 1.0F;
        return value;
    }
};

struct pulse_oscillator {
    float phase = 0;

    // `width` is the share of the high half, 0.05 to 0.95. Its mean is taken away.
    float step(float dt, float width) {
        float behind = phase + 1.0F - width;
        if (behind >= 1.0F) behind -= 1.0F;
        const float value = (phase < width ? 1.0F : -1.0F) + jump_rest(phase, dt) - jump_rest(behind, dt);
        phase += dt;
        if (phase >= 1.0F) phase -= 1.0F;
        return value - (2.0F * width - 1.0F);
    }
};

struct sine_oscillator {
    float phase = 0;

    float step(float dt) {
        const float value = sine(phase);
        phase += dt;
        if (phase >= 1.0F) phase -= 1.0F;
        return value;
    }
};

} // namespace assets::sound
