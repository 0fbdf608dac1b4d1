#include "assets/music/drums.h"

#include <array>

#include "assets/music/envelopes.h"
#include "assets/music/filters.h"
#include "assets/music/oscillators.h"
#include "assets/music/random.h"

namespace assets::sound {
namespace {

float seconds_at(int frame) {
    return static_cast<float>(frame) * sample_time;
}

// The last 5 ms lead to zero, so that nothing ends with a click.
void close_end(stereo& hit) {
    const int ramp = std::min(frame_of(0.005), hit.frames());
    float* left = hit.left.data() + hit.frames() - ramp;
    float* right = hit.right.data() + hit.frames() - ramp;
    for (int i = 0; i < ramp; ++i) {
        const float gain = static_cast<float>(ramp - 1 - i) / static_cast<float>(ramp);
        left[i] *= gain;
        right[i] *= gain;
    }
}

// The bank of pulses that metal is made of: no two in a simple ratio.
struct metal {
    std::array<pulse_oscillator, 6> pulses;
    std::array<float, 6> steps{};

    explicit metal(float scale) {
        constexpr std::array<float, 6> hertz = {263.0F, 400.0F, 421.0F, 474.0F, 587.0F, 845.0F};
        for (std::size_t i = 0; i < hertz.size(); ++i) {
            steps[i] = hertz[i] * scale * sample_time;
            pulses[i].phase = static_cast<float>(i) * 0.161F;
        }
    }
    float step() {
        float sum = 0;
        for (std::size_t i = 0; i < steps.size(); ++i)
            sum += pulses[i].step(steps[i], 0.5F);
        return sum * (1.0F / 6.0F);
    }
};

} // namespace

stereo make_kick(const kick_shape& shape) {
    stereo hit(frame_of(shape.seconds));
    random_source noise = seeded(11);
    state_variable click;
    click.set(3200.0F, 0.8F);
    float phase = 0;
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        const float hertz =
            shape.low + (shape.high - shape.low) * fall(t, shape.sweep) + 900.0F * fall(t, 0.0035F);
        phase += hertz * sample_time;
        const float body = sine(phase) * fall(t, shape.body) * (1.0F - fall(t, 0.0006F));
        const float tick = click.band_pass(noise.bipolar()) * fall(t, 0.004F) * shape.click;
        const float value = soft_clip((body * 1.1F + tick) * shape.drive) * smooth(shape.seconds, 0.2F, t);
        hit.left[static_cast<std::size_t>(i)] = value;
    }
    hit.right = hit.left;
    close_end(hit);
    return hit;
}

stereo make_boom(float low_hz, float seconds) {
    stereo hit(frame_of(seconds));
    float phase = 0;
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        phase += (low_hz + 70.0F * fall(t, 0.12F)) * sample_time;
        const float body = sine(phase) + 0.25F * sine(phase * 2.0F);
        hit.left[static_cast<std::size_t>(i)] = soft_clip(1.6F * body * fall(t, seconds * 0.3F)) *
                                                (1.0F - fall(t, 0.003F)) *
                                                (1.0F - smooth(seconds * 0.6F, seconds, t));
    }
    hit.right = hit.left;
    return hit;
}

stereo make_snare(const snare_shape& shape, std::uint32_t seed) {
    stereo hit(frame_of(shape.seconds));
    random_source noise = seeded(seed);
    const float tune = 1.0F + 0.012F * noise.bipolar();
    std::array<state_variable, 2> wires;
    std::array<state_variable, 2> paper;
    for (std::size_t side = 0; side < 2; ++side) {
        wires[side].set(shape.bright, 0.7F);
        paper[side].set(5200.0F, 0.6F);
    }
    float low = 0;
    float upper = 0.1F;
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        const float bend = 1.0F + 0.9F * fall(t, 0.012F);
        low += shape.tone * tune * bend * sample_time;
        upper += shape.tone * 1.78F * tune * bend * sample_time;
        const float skin = sine(low) * fall(t, 0.07F) + 0.5F * sine(upper) * fall(t, 0.045F);
        const float middle = noise.bipolar();
        for (std::size_t side = 0; side < 2; ++side) {
            const float grain = 0.72F * middle + 0.5F * noise.bipolar();
            const float wire = wires[side].high_pass(grain) * fall(t, shape.snap);
            const float crack = paper[side].band_pass(grain) * fall(t, 0.018F) * 1.4F;
            const float value =
                soft_clip(1.5F * (0.62F * skin + 0.55F * wire + crack) * (1.0F - fall(t, 0.0004F)));
            (side == 0 ? hit.left : hit.right)[static_cast<std::size_t>(i)] =
                value * (1.0F - smooth(shape.seconds * 0.6F, shape.seconds, t));
        }
    }
    close_end(hit);
    return hit;
}

stereo make_clap(std::uint32_t seed) {
    constexpr float seconds = 0.5F;
    constexpr std::array<float, 4> hands = {0.0F, 0.011F, 0.019F, 0.030F};
    stereo hit(frame_of(seconds));
    for (std::size_t side = 0; side < 2; ++side) {
        random_source noise = seeded(seed * 2 + static_cast<std::uint32_t>(side));
        state_variable palm;
        state_variable room;
        palm.set(1250.0F, 1.4F);
        room.set(2100.0F, 0.7F);
        const float shift = 0.0015F * noise.bipolar();
        float* out = (side == 0 ? hit.left : hit.right).data();
        for (int i = 0; i < hit.frames(); ++i) {
            const float t = seconds_at(i);
            float burst = 0;
            for (const float hand : hands)
                if (t >= hand + shift) burst = fall(t - hand - shift, hand < 0.03F ? 0.0045F : 0.022F);
            const float grain = noise.bipolar();
            const float tail = t < 0.03F ? 0.0F : fall(t - 0.03F, 0.085F) * 0.35F;
            out[i] = soft_clip(palm.band_pass(grain) * burst * 3.4F + room.band_pass(grain) * tail * 1.8F);
        }
    }
    close_end(hit);
    return hit;
}

stereo make_hat(float fall_seconds, std::uint32_t seed) {
    stereo hit(frame_of(std::min(0.05F + fall_seconds * 4.5F, 1.2F)));
    random_source noise = seeded(seed);
    metal plate(1.52F + 0.02F * noise.bipolar());
    std::array<state_variable, 2> air;
    state_variable edge;
    edge.set(8300.0F, 1.1F);
    for (auto& filter : air)
        filter.set(7600.0F, 0.8F);
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        const float ring = edge.high_pass(plate.step()) * 1.5F;
        const float level = fall(t, fall_seconds) * (1.0F - fall(t, 0.0003F));
        const float middle = noise.bipolar();
        hit.left[static_cast<std::size_t>(i)] =
            (ring + 0.5F * air[0].high_pass(middle + 0.5F * noise.bipolar())) * level;
        hit.right[static_cast<std::size_t>(i)] =
            (ring + 0.5F * air[1].high_pass(middle + 0.5F * noise.bipolar())) * level;
    }
    close_end(hit);
    return hit;
}

stereo make_crash(float fall_seconds, std::uint32_t seed) {
    stereo hit(frame_of(fall_seconds * 4.5F));
    for (std::size_t side = 0; side < 2; ++side) {
        random_source noise = seeded(seed + static_cast<std::uint32_t>(side) * 17U);
        metal low_plate(2.31F + 0.05F * noise.bipolar());
        metal high_plate(3.7F + 0.05F * noise.bipolar());
        state_variable body;
        high_shelf dull;
        body.set(3400.0F, 0.6F);
        float* out = (side == 0 ? hit.left : hit.right).data();
        for (int i = 0; i < hit.frames(); ++i) {
            const float t = seconds_at(i);
            if (i % control_frames == 0) dull.set(6500.0F, -5.0F * (1.0F - fall(t, fall_seconds * 0.7F)));
            const float plates = 0.7F * low_plate.step() + 0.6F * high_plate.step();
            const float grain = noise.bipolar();
            const float sizzle = 0.45F * fall(t, fall_seconds) + 0.55F * fall(t, 0.07F);
            out[i] = dull.step(body.high_pass(plates + 0.55F * grain)) * sizzle * (1.0F - fall(t, 0.0008F)) *
                     (1.0F - smooth(fall_seconds * 3, fall_seconds * 4.5F, t));
        }
    }
    return hit;
}

stereo make_tom(float low_hz, std::uint32_t seed) {
    constexpr float seconds = 0.55F;
    stereo hit(frame_of(seconds));
    random_source noise = seeded(seed);
    state_variable skin;
    skin.set(900.0F, 0.8F);
    float phase = 0;
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        phase += low_hz * (1.0F + 0.75F * fall(t, 0.045F)) * sample_time;
        const float body = (sine(phase) + 0.2F * sine(phase * 1.59F)) * fall(t, 0.15F);
        const float stick = skin.band_pass(noise.bipolar()) * fall(t, 0.02F) * 0.8F;
        hit.left[static_cast<std::size_t>(i)] =
            soft_clip(1.5F * (body + stick)) * (1.0F - smooth(0.3F, seconds, t));
    }
    hit.right = hit.left;
    return hit;
}

stereo make_shaker(std::uint32_t seed) {
    constexpr float seconds = 0.11F;
    stereo hit(frame_of(seconds));
    random_source noise = seeded(seed);
    state_variable beads;
    beads.set(6200.0F + 500.0F * noise.bipolar(), 1.3F);
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        const float swell = smooth(0, 0.03F, t) * fall(std::max(t - 0.03F, 0.0F), 0.02F);
        hit.left[static_cast<std::size_t>(i)] = beads.band_pass(noise.bipolar()) * swell * 1.6F;
    }
    hit.right = hit.left;
    close_end(hit);
    return hit;
}

stereo make_wire(float hertz, float fall_seconds) {
    stereo hit(frame_of(fall_seconds * 5.0F));
    float carrier = 0;
    float bender = 0;
    for (int i = 0; i < hit.frames(); ++i) {
        const float t = seconds_at(i);
        bender += hertz * 2.76F * sample_time;
        carrier += hertz * sample_time;
        const float bend = sine(bender) * 0.6F * fall(t, fall_seconds * 0.4F);
        hit.left[static_cast<std::size_t>(i)] =
            sine(carrier + bend) * fall(t, fall_seconds) * (1.0F - fall(t, 0.0005F));
    }
    hit.right = hit.left;
    close_end(hit);
    return hit;
}

void add_hit(stereo& out, const stereo& hit, int start, pan_gains gain) {
    if (start < 0) return;
    const stretch where = cut(out, start, hit.frames());
    float* left = out.left.data() + where.start;
    float* right = out.right.data() + where.start;
    const float* from_left = hit.left.data();
    const float* from_right = hit.right.data();
    for (int i = 0; i < where.count; ++i)
        left[i] += from_left[i] * gain.left;
    for (int i = 0; i < where.count; ++i)
        right[i] += from_right[i] * gain.right;
}

} // namespace assets::sound
