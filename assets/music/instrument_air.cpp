// What moves without notes: wind, risers, falls and ripples.
#include <array>

#include "assets/music/filters.h"
#include "assets/music/instruments.h"
#include "assets/music/oscillators.h"
#include "assets/music/random.h"

namespace assets::sound {

void add_sweep(stereo& out, const sweep_sound& sweep, std::uint32_t seed) {
    const auto length = static_cast<float>(sweep.length);
    const stretch where = cut(out, frame_of(sweep.start), frame_of(sweep.length));
    for (std::size_t side = 0; side < 2; ++side) {
        random_source noise = seeded(seed + static_cast<std::uint32_t>(side) * 101U);
        state_variable band;
        float* to = (side == 0 ? out.left : out.right).data() + where.start;
        float level = 0;
        for (int at = 0; at < where.count; at += control_frames) {
            const int count = std::min(control_frames, where.count - at);
            const float t = static_cast<float>(at + count) * sample_time;
            const float way = std::pow(t / length, sweep.bow);
            band.set(sweep.from_hertz * std::pow(sweep.to_hertz / sweep.from_hertz, way), sweep.q);
            const float ends = std::min({1.0F, t / sweep.fade, std::max(length - t, 0.0F) / sweep.fade});
            const float target = (sweep.from_gain + (sweep.to_gain - sweep.from_gain) * way) * ends;
            const float slope = (target - level) / static_cast<float>(count);
            for (int i = 0; i < count; ++i) {
                level += slope;
                to[at + i] += band.band_pass(noise.bipolar()) * level;
            }
            level = target;
        }
    }
}

void add_slide(stereo& out, const slide_sound& slide) {
    const auto length = static_cast<float>(slide.length);
    const stretch where = cut(out, frame_of(slide.start), frame_of(slide.length));
    for (std::size_t side = 0; side < 2; ++side) {
        const float lean = side == 0 ? -0.06F : 0.06F; // semitones between the sides
        sine_oscillator round;
        saw_oscillator sharp;
        float* to = (side == 0 ? out.left : out.right).data() + where.start;
        float level = 0;
        for (int at = 0; at < where.count; at += control_frames) {
            const int count = std::min(control_frames, where.count - at);
            const float t = static_cast<float>(at + count) * sample_time;
            const float way = std::pow(t / length, slide.bow);
            const float wobble = slide.wobble * sine(t * slide.rate + (side == 0 ? 0.0F : 0.12F));
            const float pitch = slide.from_pitch + (slide.to_pitch - slide.from_pitch) * way + wobble + lean;
            const float increment = std::min(increment_of(pitch), 0.24F);
            const float ends = std::min({1.0F, t / 0.004F, std::max(length - t, 0.0F) / 0.02F});
            const float target = (slide.from_gain + (slide.to_gain - slide.from_gain) * way) * ends;
            const float slope = (target - level) / static_cast<float>(count);
            for (int i = 0; i < count; ++i) {
                level += slope;
                to[at + i] += (round.step(increment) * (1.0F - slide.edge) +
                               sharp.step(increment) * slide.edge * 0.5F) *
                              level;
            }
            level = target;
        }
    }
}

} // namespace assets::sound
