#include "assets/music/dynamics.h"

#include <array>
#include <cmath>

#include "assets/music/envelopes.h"

namespace assets::sound {
namespace {

constexpr float ahead_seconds = 0.004F;

// Interpolation at a quarter, a half and three quarters of the way from one sample to the next: a sine over
// its argument under a raised cosine, so that the peaks of the rebuilt wave are seen (ITU-R BS.1770 does the
// same).
constexpr int taps = 12;
constexpr int before = taps / 2 - 1; // taps in front of the sample, and one less than behind it
using tap_row = std::array<float, taps>;

std::array<tap_row, 3> make_taps() {
    std::array<tap_row, 3> rows{};
    for (std::size_t phase = 0; phase < 3; ++phase) {
        float sum = 0;
        for (std::size_t i = 0; i < taps; ++i) {
            const float x = static_cast<float>(i) - before - 0.25F * static_cast<float>(phase + 1);
            const float window = 0.5F + 0.5F * std::cos(tau * x / (taps + 1));
            rows[phase][i] = std::sin(tau * 0.5F * x) / (tau * 0.5F * x) * window;
            sum += rows[phase][i];
        }
        for (float& tap : rows[phase])
            tap /= sum;
    }
    return rows;
}

// The height of the wave from sample `i` to the next; the samples `before` it and taps - before behind it
// exist.
float peak_at(const float* x, int i, float ceiling, const std::array<tap_row, 3>& rows) {
    float peak = std::max(std::fabs(x[i]), std::fabs(x[i + 1]));
    if (peak < 0.5F * ceiling) return peak; // no wave of music rises that far between two samples
    for (const tap_row& row : rows) {
        float value = 0;
        for (int k = 0; k < taps; ++k)
            value += x[i - before + k] * row[static_cast<std::size_t>(k)];
        peak = std::max(peak, std::fabs(value));
    }
    return peak;
}

// The gain that each sample needs by itself.
std::vector<float> needed_gains(const stereo& sound, float ceiling) {
    const std::array<tap_row, 3> rows = make_taps();
    const int frames = sound.frames();
    std::vector<float> gains(static_cast<std::size_t>(frames), 1.0F);
    const float* left = sound.left.data();
    const float* right = sound.right.data();
    for (int i = 0; i < frames; ++i) {
        const bool inside = i >= before && i + taps - before < frames;
        const float peak = inside
                               ? std::max(peak_at(left, i, ceiling, rows), peak_at(right, i, ceiling, rows))
                               : std::max(std::fabs(left[i]), std::fabs(right[i]));
        if (peak > ceiling) gains[static_cast<std::size_t>(i)] = ceiling / peak;
    }
    return gains;
}

// Each value becomes the smallest of itself and the `reach` values behind it: blockwise minima from both ends
// (van Herk, "A fast algorithm for local minimum and maximum filters", 1992).
void minimum_ahead(std::vector<float>& values, std::size_t reach) {
    const std::size_t window = reach + 1;
    std::vector<float> forward(values);
    for (std::size_t i = 1; i < values.size(); ++i)
        if (i % window != 0) forward[i] = std::min(forward[i], forward[i - 1]);
    for (std::size_t i = values.size() - 1; i-- > 0;)
        if ((i + 1) % window != 0) values[i] = std::min(values[i], values[i + 1]);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = std::min(values[i], forward[std::min(i + reach, values.size() - 1)]);
}

} // namespace

std::vector<float> duck_curve(std::span<const int> hits, int frames, float release_seconds) {
    std::vector<float> curve(static_cast<std::size_t>(frames));
    const int attack = frame_of(0.003);
    const int release = frame_of(static_cast<double>(release_seconds));
    for (const int hit : hits) {
        for (int i = std::max(0, hit - attack); i < std::min(frames, hit + release); ++i) {
            const float depth =
                i < hit ? static_cast<float>(i - hit + attack) / static_cast<float>(attack)
                        : 1.0F - smooth(0, static_cast<float>(release), static_cast<float>(i - hit));
            float& value = curve[static_cast<std::size_t>(i)];
            value = std::max(value, depth);
        }
    }
    return curve;
}

void duck(stereo& sound, std::span<const float> curve, float depth) {
    const std::size_t frames = std::min(curve.size(), sound.left.size());
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        float* samples = side->data();
        for (std::size_t i = 0; i < frames; ++i)
            samples[i] *= 1.0F - depth * curve[i];
    }
}

void compress(stereo& sound, const compressor_shape& shape) {
    constexpr float knee = 6.0F;
    const float rise = 1.0F - std::exp(-control_frames * sample_time / shape.attack);
    const float sink = 1.0F - std::exp(-control_frames * sample_time / shape.release);
    float power = 0;
    float gain = from_decibels(shape.makeup);
    for (int at = 0; at < sound.frames(); at += control_frames) {
        const int count = std::min(control_frames, sound.frames() - at);
        float* left = sound.left.data() + at;
        float* right = sound.right.data() + at;
        float sum = 0;
        for (int i = 0; i < count; ++i)
            sum += left[i] * left[i] + right[i] * right[i];
        const float now = sum / static_cast<float>(2 * count);
        power += (now - power) * (now > power ? rise : sink);
        const float over = 10.0F * std::log10(power + 1e-10F) - shape.threshold;
        float bent = 0; // dB above the threshold, through the knee
        if (over > knee * 0.5F)
            bent = over;
        else if (over > -knee * 0.5F)
            bent = (over + knee * 0.5F) * (over + knee * 0.5F) / (2.0F * knee);
        const float target = from_decibels(shape.makeup - bent * (1.0F - 1.0F / shape.ratio));
        const float slope = (target - gain) / static_cast<float>(count);
        for (int i = 0; i < count; ++i) {
            gain += slope;
            left[i] *= gain;
            right[i] *= gain;
        }
        gain = target;
    }
}

void limit(stereo& sound, float ceiling, float release_seconds) {
    if (sound.left.empty()) return;
    std::vector<float> gains = needed_gains(sound, ceiling);
    const auto reach = static_cast<std::size_t>(frame_of(static_cast<double>(ahead_seconds)));
    minimum_ahead(gains, reach);
    const float back = 1.0F - std::exp(-sample_time / release_seconds);
    float held = gains.front();
    for (float& gain : gains) {
        held = std::min(gain, held + (1.0F - held) * back);
        gain = held;
    }
    // The mean of the last `reach` gains: each of them already knows of the peak that lies ahead.
    // A sound that begins loud begins with its gain.
    std::vector<float> recent(reach, gains.front());
    double sum = static_cast<double>(gains.front()) * static_cast<double>(reach);
    for (std::size_t i = 0; i < gains.size(); ++i) {
        float& oldest = recent[i % reach];
        sum += static_cast<double>(gains[i]) - static_cast<double>(oldest);
        oldest = gains[i];
        const float gain = static_cast<float>(sum / static_cast<double>(reach));
        sound.left[i] = std::clamp(sound.left[i] * gain, -ceiling, ceiling);
        sound.right[i] = std::clamp(sound.right[i] * gain, -ceiling, ceiling);
    }
}

} // namespace assets::sound
