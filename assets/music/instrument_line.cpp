// The sliding voice. One pass over the time of all its notes, so that pitch, filter and level go on from one
// to the next.
#include <array>

#include "assets/music/filters.h"
#include "assets/music/instruments.h"
#include "assets/music/oscillators.h"
#include "assets/music/random.h"

namespace assets::sound {
namespace {

constexpr int most_saws = 4;

struct side_state {
    std::array<saw_oscillator, most_saws> saws;
    std::array<float, most_saws> detune{};
    pulse_oscillator pulse;
    ladder filter;
    random_source noise;
};

// What holds for one block.
struct block_controls {
    float increment;
    float pulse_increment;
    float level_from;
    float level_to;
};

void prepare(side_state& side, const line_sound& sound, std::uint32_t seed) {
    side.noise = seeded(seed);
    for (int i = 0; i < sound.saws; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const float place =
            sound.saws > 1 ? 2.0F * static_cast<float>(i) / static_cast<float>(sound.saws - 1) - 1.0F : 0.0F;
        side.detune[at] = ratio_of_cents(sound.cents * (place + 0.15F * side.noise.bipolar()));
        side.saws[at].phase = side.noise.unipolar();
    }
}

void fill_block(side_state& side, const line_sound& sound, const block_controls& now, float* block,
                int count) {
    const float saw_gain = 1.0F / std::sqrt(static_cast<float>(sound.saws));
    const float slope = (now.level_to - now.level_from) / static_cast<float>(count);
    float level = now.level_from;
    for (int i = 0; i < count; ++i) {
        float tone = sound.noise * side.noise.bipolar();
        for (std::size_t s = 0; s < static_cast<std::size_t>(sound.saws); ++s)
            tone += side.saws[s].step(now.increment * side.detune[s]) * saw_gain;
        tone += sound.pulse * side.pulse.step(now.pulse_increment, 0.46F);
        level += slope;
        block[i] = soft_clip(side.filter.step(tone * 0.5F) * sound.drive) * level;
    }
}

} // namespace

void add_line(stereo& out, std::span<const note> notes, const line_sound& sound) {
    if (notes.empty()) return;
    std::array<side_state, 2> sides;
    prepare(sides[0], sound, 31);
    prepare(sides[1], sound, 32);
    const int side_count = sound.wide ? 2 : 1;
    std::array<float, control_frames> block{};
    std::size_t current = 0;
    float pitch = notes[0].pitch;
    float level = 0;
    float sub_phase = 0;
    const int begin = frame_of(notes.front().start);
    const int end = std::min(out.frames(), frame_of(notes.back().start + notes.back().length + 1.0));
    for (int at = begin; at < end; at += control_frames) {
        const double time = static_cast<double>(at) * sample_time;
        while (current + 1 < notes.size() &&
               notes[current + 1].start <= time + 0.5 * control_frames * sample_time)
            ++current;
        const note& played = notes[current];
        const auto t = static_cast<float>(time - played.start);
        const auto gate = static_cast<float>(played.length);
        // A slide keeps the envelopes of the note before it.
        const bool tied = played.slide && current > 0;
        const float pace = tied ? 1.0F - std::exp(-control_frames * sample_time * 3.0F / sound.glide) : 1.0F;
        pitch += (played.pitch - pitch) * pace;
        const float target =
            sound.amp.level(tied ? t + sound.amp.attack : t, gate) * played.velocity * sound.gain;
        const float opening = sound.filter.level(std::max(t, 0.0F), 10.0F) * (0.4F + 0.6F * played.velocity) *
                              (tied ? 0.6F : 1.0F);
        const float cutoff = curve_at(sound.cutoff, time) * std::exp2(sound.sweep * opening);
        const float wave = sine(static_cast<float>(time * 5.3)) * smooth(0.15F, 0.6F, t) * sound.vibrato +
                           sine(static_cast<float>(time * 6.7)) * curve_at(sound.shake, time);
        const float increment = std::min(increment_of(pitch + wave * 0.01F), 0.24F);
        const block_controls now{increment, increment * std::exp2(sound.pulse_octave), level, target};
        const int count = std::min(control_frames, end - at);
        const bool silent = level < 1e-5F && target < 1e-5F;
        for (std::size_t s = 0; s < static_cast<std::size_t>(side_count) && !silent; ++s) {
            sides[s].filter.set(cutoff, sound.resonance);
            fill_block(sides[s], sound, now, block.data(), count);
            float* to = (s == 0 ? out.left : out.right).data() + at;
            for (int i = 0; i < count; ++i)
                to[i] += block[static_cast<std::size_t>(i)];
            if (sound.wide) continue;
            float* other = out.right.data() + at;
            for (int i = 0; i < count; ++i)
                other[i] += block[static_cast<std::size_t>(i)];
        }
        const float slope = (target - level) / static_cast<float>(count);
        for (int i = 0; i < count && !silent && sound.sub > 0; ++i) {
            const float value = sine(sub_phase) * (level + slope * static_cast<float>(i)) * sound.sub;
            sub_phase += increment;
            if (sub_phase >= 1.0F) sub_phase -= 1.0F;
            out.left[static_cast<std::size_t>(at + i)] += value;
            out.right[static_cast<std::size_t>(at + i)] += value;
        }
        level = target;
    }
}

} // namespace assets::sound
