#include "assets/music/mixer.h"

#include "assets/music/dynamics.h"
#include "assets/music/filters.h"

namespace assets::sound {
namespace {

constexpr float duck_seconds = 0.21F;
constexpr float narrow_hertz = 130.0F; // one bass for both ears below
constexpr float subsonic_hertz = 24.0F;

void add_scaled(std::vector<float>& to, const std::vector<float>& from, float gain) {
    float* out = to.data();
    const float* in = from.data();
    for (std::size_t i = 0; i < to.size(); ++i)
        out[i] += in[i] * gain;
}

void add_scaled(stereo& to, const stereo& from, float gain) {
    add_scaled(to.left, from.left, gain);
    add_scaled(to.right, from.right, gain);
}

// A gentle shelf: the drums' metal would be harsh without it.
void colour(stereo& sound) {
    constexpr float air_hertz = 9500.0F;
    constexpr float air_decibels = -2.5F;
    for (std::vector<float>* side : {&sound.left, &sound.right}) {
        high_shelf air;
        air.set(air_hertz, air_decibels);
        for (float& sample : *side)
            sample = air.step(sample);
    }
}

// Multiplies by a gain over time.
void follow(stereo& sound, std::span<const curve_point> gains) {
    for (int at = 0; at < sound.frames(); at += control_frames) {
        const float from = curve_at(gains, static_cast<double>(at) * sample_time);
        const float to = curve_at(gains, static_cast<double>(at + control_frames) * sample_time);
        if (from == 1.0F && to == 1.0F) continue;
        const int count = std::min(control_frames, sound.frames() - at);
        for (int i = 0; i < count; ++i) {
            const float gain = from + (to - from) * static_cast<float>(i) / control_frames;
            sound.left[static_cast<std::size_t>(at + i)] *= gain;
            sound.right[static_cast<std::size_t>(at + i)] *= gain;
        }
    }
}

void master(stereo& sound, const desk& set_up) {
    high_pass(sound, subsonic_hertz);
    narrow_below(sound, narrow_hertz);
    colour(sound);
    follow(sound, set_up.drive);
    compress(sound, {.threshold = -15.0F, .ratio = 1.8F, .attack = 0.025F, .release = 0.16F, .makeup = 2.0F});
    limit(sound, set_up.ceiling, 0.08F);
    follow(sound, set_up.fade);
}

} // namespace

stereo mix_down(const desk& set_up, int frames, std::string_view only) {
    stereo whole(frames);
    stereo hall_send(frames);
    std::vector<float> echo_send(static_cast<std::size_t>(frames));
    {
        stereo dry(frames);
        const std::vector<float> curve = duck_curve(set_up.kicks, frames, duck_seconds);
        for (const stem& part : set_up.stems) {
            if (!only.empty() && only != part.name) continue;
            dry.clear();
            part.play(dry);
            if (part.high_pass > 0) high_pass(dry, part.high_pass);
            if (part.chorus > 0) chorus(dry, 0.0035F, 0.43F, part.chorus);
            if (part.duck > 0) duck(dry, curve, part.duck);
            if (part.broken && set_up.edit != nullptr) set_up.edit(dry);
            add_scaled(whole, dry, part.gain);
            if (part.hall > 0) add_scaled(hall_send, dry, part.gain * part.hall);
            if (part.echo > 0) {
                add_scaled(echo_send, dry.left, part.gain * part.echo * 0.5F);
                add_scaled(echo_send, dry.right, part.gain * part.echo * 0.5F);
            }
        }
        dry.clear();
        ping_pong(dry, echo_send, set_up.echo);
        duck(dry, curve, 0.35F);
        add_scaled(whole, dry, set_up.echo_return);
        add_scaled(hall_send, dry, set_up.echo_return * set_up.echo_to_hall);
        hall(hall_send, set_up.hall);
        duck(hall_send, curve, 0.3F);
        add_scaled(whole, hall_send, set_up.hall_return);
    }
    master(whole, set_up);
    return whole;
}

std::vector<std::string_view> names_of(std::span<const stem> stems) {
    std::vector<std::string_view> names;
    for (const stem& one : stems)
        names.push_back(one.name);
    return names;
}

} // namespace assets::sound
