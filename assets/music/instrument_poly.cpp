// The note by itself: pads, plucks and stabs, the bell and the choir.
#include <array>

#include "assets/music/filters.h"
#include "assets/music/instruments.h"
#include "assets/music/oscillators.h"
#include "assets/music/random.h"

namespace assets::sound {
namespace {

constexpr int most_saws = 4;

// Detuned saws of one side.
struct saw_choir {
    std::array<saw_oscillator, most_saws> saws;
    std::array<float, most_saws> detune{};
    int count = 0;

    void prepare(int wanted, float cents, float lean, random_source& random) {
        count = std::clamp(wanted, 0, most_saws);
        for (int i = 0; i < count; ++i) {
            const auto at = static_cast<std::size_t>(i);
            const float place =
                count > 1 ? 2.0F * static_cast<float>(i) / static_cast<float>(count - 1) - 1.0F : lean;
            detune[at] = ratio_of_cents(cents * (place + 0.25F * lean + 0.1F * random.bipolar()));
            saws[at].phase = random.unipolar();
        }
    }
    float step(float increment) {
        float sum = 0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
            sum += saws[i].step(increment * detune[i]);
        return sum;
    }
};

float seconds_of(int frames) {
    return static_cast<float>(frames) * sample_time;
}

} // namespace

void add_poly(stereo& out, const note& played, const poly_sound& sound, std::uint32_t seed) {
    const auto gate = static_cast<float>(played.length);
    const int start = frame_of(played.start);
    const stretch where = cut(out, start, frame_of(gate + sound.amp.release));
    random_source random = seeded(seed);
    std::array<saw_choir, 2> saws;
    std::array<pulse_oscillator, 2> pulses;
    std::array<state_variable, 2> filters;
    saws[0].prepare(sound.saws, sound.cents, -sound.width, random);
    saws[1].prepare(sound.saws, sound.cents, sound.width, random);
    pulses[1].phase = 0.25F * sound.width;
    const float drift_phase = random.unipolar();
    const pan_gains pan = panned(played.pan);
    const float saw_gain = sound.saws > 0 ? 1.0F / std::sqrt(static_cast<float>(sound.saws)) : 0.0F;
    const float gain = sound.gain * played.velocity;
    const float follow = std::exp2((played.pitch - 60.0F) / 12.0F * sound.track);
    float level = 0;
    for (int at = 0; at < where.count; at += control_frames) {
        const float t = seconds_of(at);
        const double time = played.start + static_cast<double>(t);
        const int count = std::min(control_frames, where.count - at);
        const float target = sound.amp.level(seconds_of(at + count), gate) * gain;
        const float octaves = sound.sweep * sound.filter.level(t, gate) +
                              sound.drift * sine(static_cast<float>(time * 0.13) + drift_phase);
        const float cutoff = curve_at(sound.cutoff, time) * follow * std::exp2(octaves);
        const float wobble = sound.shake * sine(static_cast<float>(time * (4.0 / 6.28318530718)));
        const float increment = std::min(increment_of(played.pitch + wobble * 0.01F), 0.24F);
        const float slope = (target - level) / static_cast<float>(count);
        for (std::size_t side = 0; side < 2; ++side) {
            filters[side].set(cutoff, sound.q);
            float* to = (side == 0 ? out.left : out.right).data() + where.start + at;
            const float side_gain = side == 0 ? pan.left : pan.right;
            float now = level;
            for (int i = 0; i < count; ++i) {
                float tone = saws[side].step(increment) * saw_gain;
                if (sound.pulse > 0) tone += sound.pulse * pulses[side].step(increment, 0.4F);
                now += slope;
                to[i] += filters[side].low_pass(tone) * now * side_gain;
            }
        }
        level = target;
    }
}

void add_bell(stereo& out, const note& played, const bell_sound& sound) {
    const float seconds = sound.seconds * 4.0F;
    const int start = frame_of(played.start);
    const stretch where = cut(out, start, frame_of(seconds));
    const pan_gains pan = panned(played.pan);
    const float gain = sound.gain * played.velocity;
    for (std::size_t side = 0; side < 2; ++side) {
        const float cents = side == 0 ? -0.5F * sound.shimmer : 0.5F * sound.shimmer;
        const float carrier_step = increment_of(played.pitch + cents * 0.01F);
        const float bender_step = carrier_step * sound.ratio;
        float carrier = 0;
        float bender = 0;
        float* to = (side == 0 ? out.left : out.right).data() + where.start;
        const float side_gain = (side == 0 ? pan.left : pan.right) * gain;
        for (int at = 0; at < where.count; at += control_frames) {
            const float t = seconds_of(at);
            // Struck harder it is brighter; the bend dies sooner than the tone.
            const float bend = sound.bend * played.velocity * fall(t, sound.seconds * 0.35F) / tau;
            const float body =
                fall(t, sound.seconds) * (1.0F - smooth(seconds * 0.7F, seconds, t)) * side_gain;
            const int count = std::min(control_frames, where.count - at);
            for (int i = 0; i < count; ++i) {
                const float onset = std::min(static_cast<float>(at + i) * (1.0F / 60.0F), 1.0F);
                const float tone = sine(carrier + bend * sine(bender)) + 0.22F * sine(carrier * 2.0F + 0.1F);
                to[at + i] += tone * body * onset;
                carrier += carrier_step;
                bender += bender_step;
                if (carrier >= 1.0F) carrier -= 1.0F;
                if (bender >= 1.0F) bender -= 1.0F;
            }
        }
    }
}

void add_choir(stereo& out, const note& played, const choir_sound& sound, std::uint32_t seed) {
    struct formant {
        float closed; // Hz of "oo"
        float open;   // Hz of "ah"
        float gain;
        float q;
    };
    constexpr std::array<formant, 3> formants = {
        {{330.0F, 720.0F, 1.0F, 5.0F}, {760.0F, 1150.0F, 0.7F, 7.0F}, {2300.0F, 2650.0F, 0.3F, 9.0F}}};
    const auto gate = static_cast<float>(played.length);
    const stretch where = cut(out, frame_of(played.start), frame_of(gate + sound.amp.release));
    random_source random = seeded(seed);
    const pan_gains pan = panned(played.pan);
    for (std::size_t side = 0; side < 2; ++side) {
        saw_choir saws;
        saws.prepare(3, 14.0F, side == 0 ? -1.0F : 1.0F, random);
        std::array<state_variable, 3> filters;
        random_source breath = seeded(seed + 77U + static_cast<std::uint32_t>(side));
        float* to = (side == 0 ? out.left : out.right).data() + where.start;
        const float gain = sound.gain * played.velocity * (side == 0 ? pan.left : pan.right);
        float level = 0;
        for (int at = 0; at < where.count; at += control_frames) {
            const float t = seconds_of(at);
            const int count = std::min(control_frames, where.count - at);
            const float vowel =
                smooth(0, sound.opening, t) * (1.0F - 0.5F * smooth(gate - 0.5F, gate + 0.5F, t));
            for (std::size_t f = 0; f < 3; ++f)
                filters[f].set(formants[f].closed + (formants[f].open - formants[f].closed) * vowel,
                               formants[f].q);
            const float target = sound.amp.level(seconds_of(at + count), gate) * gain;
            const float slope = (target - level) / static_cast<float>(count);
            const float vibrato =
                11.0F * smooth(0.3F, 1.2F, t) * sine(t * (4.9F + 0.4F * static_cast<float>(side)));
            const float increment = increment_of(played.pitch + vibrato * 0.01F);
            for (int i = 0; i < count; ++i) {
                const float tone = saws.step(increment) + 0.08F * breath.bipolar();
                float voice = 0;
                for (std::size_t f = 0; f < 3; ++f)
                    voice += filters[f].band_pass(tone) * formants[f].gain;
                level += slope;
                to[at + i] += voice * level;
            }
            level = target;
        }
    }
}

} // namespace assets::sound
