#include "assets/music/playing.h"

#include <algorithm>
#include <cstddef>

#include "assets/music/effects.h"

namespace assets::sound {

pan_gains scaled(pan_gains gains, float factor) {
    return {gains.left * factor, gains.right * factor};
}

int played_frame(const stroke& hit, random_source& hand) {
    constexpr double swing_seconds = 0.007;
    constexpr double unsteady_seconds = 0.0015;
    return std::max(0, frame_of(hit.time + (hit.step % 2 == 1 ? swing_seconds : 0.0) +
                                unsteady_seconds * static_cast<double>(hand.bipolar())));
}

void add_strokes(stereo& out, std::span<const stroke> strokes, std::span<const stereo> kit, float gain,
                 float pan, std::uint32_t seed) {
    random_source hand = seeded(seed);
    std::size_t turn = 0;
    for (const stroke& hit : strokes) {
        const float level = hit.velocity * hit.velocity * gain * (1.0F + 0.12F * hand.bipolar());
        add_hit(out, kit[turn++ % kit.size()], played_frame(hit, hand), scaled(panned(pan), level));
    }
}

std::vector<int> kick_frames(std::span<const stroke> strokes, std::span<const double> single) {
    std::vector<int> frames;
    for (const stroke& hit : strokes)
        frames.push_back(frame_of(hit.time));
    for (const double time : single)
        frames.push_back(frame_of(time));
    std::sort(frames.begin(), frames.end());
    return frames;
}

void add_hits(stereo& out, std::span<const timed_hit> hits, std::span<const stereo> kit) {
    std::size_t turn = 0;
    for (const timed_hit& hit : hits)
        add_hit(out, kit[turn++ % kit.size()], frame_of(hit.time), scaled(panned(hit.pan), hit.gain));
}

void add_booms(stereo& out, std::span<const timed_boom> booms) {
    for (const timed_boom& hit : booms)
        add_hit(out, make_boom(hit.hertz, hit.seconds), frame_of(hit.time), {hit.gain, hit.gain});
}

void add_pad(stereo& out, const form& track, std::span<const chord_row> rows, const poly_sound& sound,
             std::uint32_t seed) {
    for (const chord_row& row : rows) {
        for (const chord_span& span : track.spans(row.in, row.first_bar, row.bars)) {
            for (const int pitch : span.harmony->upper) {
                add_poly(out,
                         {.start = span.start,
                          .length = span.length - 0.05,
                          .pitch = static_cast<float>(pitch),
                          .velocity = row.level},
                         sound, seed++);
            }
        }
    }
}

void add_choir(stereo& out, const form& track, std::span<const chord_row> rows, std::uint32_t seed) {
    for (const chord_row& row : rows) {
        for (const chord_span& span : track.spans(row.in, row.first_bar, row.bars)) {
            for (std::size_t voice = 0; voice < 4; ++voice) {
                add_choir(out,
                          {.start = span.start,
                           .length = span.length - 0.1,
                           .pitch = static_cast<float>(span.harmony->upper[voice]),
                           .velocity = row.level,
                           .pan = 0.5F * (static_cast<float>(voice) - 1.5F)},
                          {.gain = 0.22F,
                           .opening = static_cast<float>(span.length) * 0.6F,
                           .amp = {.attack = 0.3F, .decay = 1, .sustain = 1, .release = 0.8F}},
                          seed++);
            }
        }
    }
}

void add_drone(stereo& out, std::span<const hum> hums, std::span<const curve_point> cutoff,
               const envelope& amp, std::uint32_t seed) {
    for (const hum& one : hums) {
        const poly_sound sound = {.gain = 0.3F,
                                  .saws = 3,
                                  .cents = 9.0F,
                                  .pulse = 0.2F,
                                  .q = 1.6F,
                                  .track = 0.0F,
                                  .width = one.pitch < 40 ? 0.2F : 1.0F,
                                  .drift = 0.6F,
                                  .amp = amp,
                                  .cutoff = cutoff};
        add_poly(out, {.start = one.start, .length = one.length, .pitch = one.pitch, .velocity = one.level},
                 sound, seed++);
    }
}

std::vector<note> broken_chords(const form& track, const voice_part& part) {
    std::vector<note> notes;
    for (const placed_bar& one : bars_of(part)) {
        const chord& harmony = track.chord_at(one.in, one.bar);
        for (note played : track.placed(one.in, one.bar, one.steps)) {
            const int index = std::max(trunc_to_int(static_cast<double>(played.pitch)), 0);
            played.pitch =
                static_cast<float>(harmony.upper[static_cast<std::size_t>(index % 4)] + 12 * (1 + index / 4));
            played.pan = index % 2 == 0 ? -0.45F : 0.45F;
            notes.push_back(played);
        }
    }
    return notes;
}

void add_stab(stereo& out, double time, const chord& harmony, float level, float bright) {
    const auto cutoff = std::to_array<curve_point>({{0.0, 700.0F * bright}});
    const poly_sound sound = {.gain = 0.3F,
                              .saws = 3,
                              .cents = 18.0F,
                              .pulse = 0.4F,
                              .q = 1.6F,
                              .sweep = 3.0F,
                              .amp = {.attack = 0.001F, .decay = 0.42F, .sustain = 0.0F, .release = 0.2F},
                              .filter = {.attack = 0.001F, .decay = 0.3F, .sustain = 0.0F, .release = 0.1F},
                              .cutoff = cutoff};
    auto seed = static_cast<std::uint32_t>(frame_of(time));
    for (const int pitch : harmony.upper) {
        add_poly(out, {.start = time, .length = 0.5, .pitch = static_cast<float>(pitch), .velocity = level},
                 sound, seed++);
        add_poly(
            out,
            {.start = time, .length = 0.5, .pitch = static_cast<float>(pitch + 12), .velocity = level * 0.5F},
            sound, seed++);
    }
    add_poly(
        out,
        {.start = time, .length = 0.45, .pitch = static_cast<float>(harmony.root + 12), .velocity = level},
        sound, seed);
}

void add_stabs(stereo& out, const form& track, std::span<const stab_bar> bars, float level) {
    for (const stab_bar& bar : bars) {
        const chord& harmony = track.chord_at(bar.in, bar.bar);
        for (const step_hit& hit : read_hits(bar.hits))
            add_stab(out, track.time(bar.in, bar.bar, hit.step), harmony, hit.velocity * level, 1.0F);
    }
}

void add_risers(stereo& out, std::span<const riser> risers, std::uint32_t seed) {
    for (const riser& one : risers)
        add_sweep(out,
                  {.start = one.from,
                   .length = one.to - one.from,
                   .from_hertz = 300,
                   .to_hertz = one.hertz,
                   .from_gain = 0.0F,
                   .to_gain = one.gain,
                   .bow = 1.8F,
                   .q = 1.6F},
                  seed++);
}

void add_fallers(stereo& out, std::span<const faller> fallers, std::uint32_t seed) {
    for (const faller& one : fallers)
        add_sweep(out,
                  {.start = one.start,
                   .length = one.length,
                   .from_hertz = 9000,
                   .to_hertz = 220,
                   .from_gain = one.gain,
                   .to_gain = 0.0F,
                   .bow = 0.6F,
                   .q = 0.9F,
                   .fade = 0.003F},
                  seed++);
}

void add_repeats(stereo& sound, const form& track, std::span<const repeat> repeats) {
    for (const repeat& one : repeats)
        stutter(sound, frame_of(track.time(one.in, one.bar, one.step)),
                frame_of(one.slice * track.tempo.step_length(one.in)), one.times);
}

void add_gates(stereo& sound, const form& track, const voice_part& part) {
    constexpr float slew = 1.0F / (0.004F * sample_rate); // open or shut in 4 ms
    constexpr float open_share = 0.67F;
    float level = 1;
    int at = 0;
    const auto run = [&](int until, float target) {
        for (; at < std::min(until, sound.frames()); ++at) {
            level += std::clamp(target - level, -slew, slew);
            sound.left[static_cast<std::size_t>(at)] *= level;
            sound.right[static_cast<std::size_t>(at)] *= level;
        }
    };
    for (const placed_bar& one : bars_of(part)) {
        std::array<float, steps_a_bar> levels{};
        for (const step_hit& hit : read_hits(one.steps))
            if (hit.step < steps_a_bar) levels[static_cast<std::size_t>(hit.step)] = hit.velocity;
        for (int step = 0; step < steps_a_bar; ++step) {
            run(frame_of(track.time(one.in, one.bar, step)), 1.0F); // up to a bar that is gated
            run(frame_of(track.time(one.in, one.bar, step + static_cast<double>(open_share))),
                levels[static_cast<std::size_t>(step)]);
            run(frame_of(track.time(one.in, one.bar, step + 1)), 0.0F);
        }
    }
    run(sound.frames(), 1.0F);
}

void add_breaths(stereo& sound, const form& track, std::span<const breath> breaths) {
    for (const breath& one : breaths) {
        const int from = frame_of(track.time(one.in, one.bar, one.step));
        silence(sound, from, frame_of(one.until) - from);
    }
}

} // namespace assets::sound
