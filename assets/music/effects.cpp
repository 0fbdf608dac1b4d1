#include "assets/music/effects.h"

#include <array>
#include <vector>

#include "assets/music/filters.h"
#include "assets/music/oscillators.h"

namespace assets::sound {
namespace {

// A ring of samples, read at fractional distances behind the place of writing.
struct delay_ring {
    std::vector<float> samples;
    int mask;
    int at = 0;

    explicit delay_ring(int power_of_two)
        : samples(static_cast<std::size_t>(power_of_two)), mask(power_of_two - 1) {}
    float back(float distance) const {
        const int whole = trunc_to_int(static_cast<double>(distance));
        const float part = distance - static_cast<float>(whole);
        const float a = samples[static_cast<std::size_t>((at - whole) & mask)];
        const float b = samples[static_cast<std::size_t>((at - whole - 1) & mask)];
        return a + (b - a) * part;
    }
    void write(float value) {
        at = (at + 1) & mask;
        samples[static_cast<std::size_t>(at)] = value;
    }
};

} // namespace

void chorus(stereo& sound, float depth_seconds, float rate_hz, float wet) {
    constexpr float middle_seconds = 0.011F;
    const float depth = std::clamp(depth_seconds, 0.0F, 0.01F) * sample_rate;
    for (std::size_t side = 0; side < 2; ++side) {
        delay_ring ring(2048);
        float* samples = (side == 0 ? sound.left : sound.right).data();
        const float shift = side == 0 ? 0.0F : 0.25F;
        std::array<float, 2> distance = {middle_seconds * sample_rate, middle_seconds * sample_rate};
        for (int at = 0; at < sound.frames(); at += control_frames) {
            const int count = std::min(control_frames, sound.frames() - at);
            const float turns = static_cast<float>(at) * sample_time * rate_hz + shift;
            const std::array<float, 2> target = {middle_seconds * sample_rate + depth * sine(turns),
                                                 middle_seconds * 1.37F * sample_rate +
                                                     depth * sine(turns * 1.31F + 0.5F)};
            const float slope0 = (target[0] - distance[0]) / static_cast<float>(count);
            const float slope1 = (target[1] - distance[1]) / static_cast<float>(count);
            for (int i = 0; i < count; ++i) {
                distance[0] += slope0;
                distance[1] += slope1;
                ring.write(samples[at + i]);
                samples[at + i] += wet * 0.7F * (ring.back(distance[0]) - ring.back(distance[1]));
            }
        }
    }
}

void ping_pong(stereo& out, std::span<const float> send, const echo_shape& shape) {
    constexpr int ring_size = 65536; // 1.48 s
    constexpr float slew_seconds = 0.15F;
    delay_ring left(ring_size);
    delay_ring right(ring_size);
    std::array<one_pole, 2> low;
    std::array<one_pole, 2> high;
    for (std::size_t side = 0; side < 2; ++side) {
        low[side].set(shape.low_hertz);
        high[side].set(shape.high_hertz);
    }
    const float pace = 1.0F - std::exp(-control_frames * sample_time / slew_seconds);
    const int frames = std::min(out.frames(), static_cast<int>(send.size()));
    const auto wanted = [&](int at) {
        const float seconds = curve_at(shape.delay, static_cast<double>(at) * sample_time);
        return std::clamp(seconds, 0.01F, 1.0F) * sample_rate;
    };
    float distance = wanted(0);
    for (int at = 0; at < frames; at += control_frames) {
        const int count = std::min(control_frames, frames - at);
        const float slope = (wanted(at) - distance) * pace / static_cast<float>(count);
        const float feedback =
            std::min(shape.feedback + curve_at(shape.growth, static_cast<double>(at) * sample_time), 0.9F);
        for (int i = 0; i < count; ++i) {
            const auto frame = static_cast<std::size_t>(at + i);
            distance += slope;
            const float from_left = left.back(distance);
            const float from_right = right.back(distance);
            const float bright_left = high[0].step(from_left);
            const float bright_right = high[1].step(from_right);
            left.write(send[frame] + feedback * (bright_right - low[1].step(bright_right)));
            right.write(feedback * (bright_left - low[0].step(bright_left)));
            out.left[frame] += from_left;
            out.right[frame] += from_right * (1.0F / std::max(shape.feedback, 0.3F)) * 0.8F;
        }
    }
}

void stutter(stereo& sound, int start, int slice, int times) {
    if (start < 0 || slice <= 0) return;
    const stretch where = cut(sound, start, slice * (times + 1));
    if (where.count <= slice) return;
    const int ramp = std::min(slice / 4, 96);
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        float* samples = side->data() + where.start;
        for (int i = slice; i < where.count; ++i)
            samples[i] = samples[i % slice];
        for (int i = ramp; i < where.count; ++i) { // no jump where a slice meets the next
            const int place = i % slice;
            const int edge = std::min(place, slice - 1 - place);
            if (edge < ramp) samples[i] *= static_cast<float>(edge) / static_cast<float>(ramp);
        }
    }
}

void silence(stereo& sound, int start, int count) {
    constexpr float ramp_seconds = 0.006F;
    const stretch where = cut(sound, start, count);
    const int ramp = std::max(1, frame_of(static_cast<double>(ramp_seconds)));
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        float* samples = side->data() + where.start;
        for (int i = 0; i < where.count; ++i)
            samples[i] *= std::max(0.0F, 1.0F - static_cast<float>(i) / static_cast<float>(ramp));
    }
}

void halt(stereo& sound, int start, int count) {
    if (start < 0) return;
    const stretch where = cut(sound, start, count);
    if (where.count < 2) return;
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        float* samples = side->data() + where.start;
        const std::vector<float> before(samples, samples + where.count);
        double position = 0;
        for (int i = 0; i < where.count; ++i) {
            const double rest = 1.0 - static_cast<double>(i) / where.count;
            const int whole = std::min(trunc_to_int(position), where.count - 2);
            const auto part = static_cast<float>(position - whole);
            const float a = before[static_cast<std::size_t>(whole)];
            const float b = before[static_cast<std::size_t>(whole + 1)];
            samples[i] = (a + (b - a) * part) * static_cast<float>(std::sqrt(rest));
            position += rest; // the sum stays below count / 2 + 1
        }
    }
}

void crush(stereo& sound, float hertz, float levels) {
    const float pace = std::clamp(hertz * sample_time, 0.0F, 1.0F);
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        float phase = 1.0F;
        float held = 0;
        for (float& sample : *side) {
            if (phase >= 1.0F) {
                phase -= 1.0F;
                held = std::round(sample * levels) / levels;
            }
            phase += pace;
            sample = held;
        }
    }
}

void high_pass(stereo& sound, float hertz) {
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        state_variable filter;
        filter.set(hertz, 0.707F);
        for (float& sample : *side)
            sample = filter.high_pass(sample);
    }
}

void narrow_below(stereo& sound, float hertz) {
    state_variable filter;
    filter.set(hertz, 0.707F);
    for (std::size_t i = 0; i < sound.left.size(); ++i) {
        const float middle = 0.5F * (sound.left[i] + sound.right[i]);
        const float apart = filter.high_pass(0.5F * (sound.left[i] - sound.right[i]));
        sound.left[i] = middle + apart;
        sound.right[i] = middle - apart;
    }
}

} // namespace assets::sound
