// Loudness and peaks as broadcasters measure them (ITU-R BS.1770-4), written plainly and in double.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "assets/forms/buffers.h"
#include "tests/support/sound_levels.h"

namespace loudness_detail {

struct biquad {
    double b0, b1, b2, a1, a2;
    double z1 = 0, z2 = 0;

    double step(double x) {
        const double y = b0 * x + z1;
        z1 = b1 * x - a1 * y + z2;
        z2 = b2 * x - a2 * y;
        return y;
    }
};

// The head's shelf and the high pass, from their analogue shapes.
inline biquad shelf() {
    const double k = std::tan(pi * 1681.974450955533 / assets::sound::sample_rate);
    const double q = 0.7071752369554196;
    const double high = std::pow(10.0, 3.999843853973347 / 20.0);
    const double band = std::pow(high, 0.4996667741545416);
    const double a0 = 1.0 + k / q + k * k;
    return {(high + band * k / q + k * k) / a0, 2.0 * (k * k - high) / a0, (high - band * k / q + k * k) / a0,
            2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}
inline biquad low_cut() {
    const double k = std::tan(pi * 38.13547087602444 / assets::sound::sample_rate);
    const double q = 0.5003270373238773;
    const double a0 = 1.0 + k / q + k * k;
    return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

} // namespace loudness_detail

// Integrated loudness in LUFS, with both gates.
inline double loudness(const assets::sound::stereo& sound) {
    constexpr std::size_t hop = assets::sound::sample_rate / 10; // blocks of 400 ms, four times overlapped
    std::vector<double> hops(sound.left.size() / hop, 0.0);
    for (const std::vector<float>* side : {&sound.left, &sound.right}) {
        loudness_detail::biquad head = loudness_detail::shelf();
        loudness_detail::biquad cut = loudness_detail::low_cut();
        for (std::size_t i = 0; i < hops.size() * hop; ++i) {
            const double y = cut.step(head.step(static_cast<double>((*side)[i])));
            hops[i / hop] += y * y / static_cast<double>(hop);
        }
    }
    std::vector<double> blocks;
    for (std::size_t i = 0; i + 3 < hops.size(); ++i)
        blocks.push_back(0.25 * (hops[i] + hops[i + 1] + hops[i + 2] + hops[i + 3]));
    const auto mean_above = [&](double gate) {
        double sum = 0;
        double count = 0;
        for (const double block : blocks) {
            if (-0.691 + decibels(block) <= gate) continue;
            sum += block;
            count += 1;
        }
        return -0.691 + decibels(count > 0 ? sum / count : 0.0);
    };
    return mean_above(mean_above(-70.0) - 10.0);
}

// The highest point of the wave between the samples, at four times the rate, in dB over full scale.
inline double true_peak(const assets::sound::stereo& sound) {
    constexpr int reach = 16;
    double peak = 0;
    for (const std::vector<float>* side : {&sound.left, &sound.right}) {
        const auto count = static_cast<int>(side->size());
        for (int i = 0; i < count; ++i) {
            const double here = std::fabs(static_cast<double>((*side)[static_cast<std::size_t>(i)]));
            peak = std::max(peak, here);
            if (here < 0.4) continue;
            for (const double part : {-0.5, -0.25, 0.25, 0.5}) {
                double value = 0;
                for (int k = std::max(0, i - reach); k < std::min(count, i + reach); ++k) {
                    const double x = i + part - k;
                    const double window = 0.5 + 0.5 * std::cos(pi * x / (reach + 1));
                    value += static_cast<double>((*side)[static_cast<std::size_t>(k)]) * std::sin(pi * x) /
                             (pi * x) * window;
                }
                peak = std::max(peak, std::fabs(value));
            }
        }
    }
    return 20.0 * std::log10(peak + 1e-9);
}
