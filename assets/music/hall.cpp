// The reverberation. It works in blocks shorter than its shortest delay, so that all lines can be read before
// any is written, and its loops run over flat arrays.
#include <array>
#include <vector>

#include "assets/music/effects.h"
#include "assets/music/filters.h"
#include "assets/music/oscillators.h"

namespace assets::sound {
namespace {

constexpr int line_count = 8;
constexpr int block_frames = 64;
constexpr int ring_size = 4096;
constexpr int ring_mask = ring_size - 1;
constexpr float wander = 9.0F; // samples that the lines' lengths move by

using block = std::array<float, block_frames>;

// Schroeder's allpass, one sample at a time.
struct allpass {
    std::vector<float> ring;
    std::size_t at = 0;

    explicit allpass(int length) : ring(static_cast<std::size_t>(length)) {}
    float step(float x) {
        constexpr float g = 0.62F;
        const float delayed = ring[at];
        const float kept = x + g * delayed;
        ring[at] = kept;
        at = at + 1 == ring.size() ? 0 : at + 1;
        return delayed - g * kept;
    }
};

struct line {
    std::vector<float> ring = std::vector<float>(ring_size);
    float length = 0; // samples
    float loss = 0;   // of one round
    float distance = 0;
    one_pole damping;
};

// Reads a block of the line, whose length moves on towards `target`.
void read_line_block(line& from, int write_at, float target, block& to) {
    const float slope = (target - from.distance) / static_cast<float>(block_frames);
    const float* ring = from.ring.data();
    for (int i = 0; i < block_frames; ++i) {
        from.distance += slope;
        const int whole = trunc_to_int(static_cast<double>(from.distance));
        const float part = from.distance - static_cast<float>(whole);
        const int place = write_at + i - whole;
        const float a = ring[place & ring_mask];
        const float b = ring[(place - 1) & ring_mask];
        to[static_cast<std::size_t>(i)] = a + (b - a) * part;
    }
    for (float& sample : to)
        sample = from.damping.step(sample) * from.loss;
}

// Sums and differences in three rounds: the Hadamard matrix of order 8, scaled so that it keeps the energy.
void mix_lines(std::array<block, line_count>& lines) {
    for (std::size_t half = 1; half < line_count; half *= 2) {
        for (std::size_t i = 0; i < line_count; ++i) {
            if ((i & half) != 0) continue;
            for (std::size_t k = 0; k < block_frames; ++k) {
                const float a = lines[i][k];
                const float b = lines[i + half][k];
                lines[i][k] = a + b;
                lines[i + half][k] = a - b;
            }
        }
    }
}

} // namespace

void hall(stereo& send, const hall_shape& shape) {
    constexpr std::array<float, line_count> lengths = {1433, 1601, 1867, 2053, 2251, 2399, 2617, 2797};
    constexpr std::array<std::array<int, 4>, 2> diffusers = {{{142, 379, 107, 277}, {151, 353, 113, 293}}};
    constexpr float energy_kept = 0.35355339F; // 1 / sqrt(8)
    const float size = std::clamp(shape.size, 0.1F, 1.3F);
    std::array<line, line_count> lines;
    for (std::size_t i = 0; i < line_count; ++i) {
        lines[i].length = lengths[i] * size;
        lines[i].distance = lines[i].length;
        lines[i].loss = std::pow(10.0F, -3.0F * lines[i].length * sample_time / shape.seconds);
        lines[i].damping.set(shape.high_hertz);
    }
    std::array<std::vector<allpass>, 2> spread;
    std::array<state_variable, 2> floor_filter;
    for (std::size_t side = 0; side < 2; ++side) {
        for (const int length : diffusers[side])
            spread[side].emplace_back(length);
        floor_filter[side].set(shape.low_hertz, 0.7F);
    }
    const int before = frame_of(static_cast<double>(shape.before_seconds));
    // What comes in is delayed by moving it along; the wet sound may then be written in its place.
    for (std::vector<float>* side : {&send.left, &send.right}) {
        const int shift = std::min(before, send.frames());
        std::move_backward(side->begin(), side->end() - shift, side->end());
        std::fill(side->begin(), side->begin() + shift, 0.0F);
    }
    std::array<block, 2> in{};
    std::array<block, line_count> rounds{};
    for (int at = 0; at < send.frames(); at += block_frames) {
        const int count = std::min(block_frames, send.frames() - at);
        for (std::size_t side = 0; side < 2; ++side) {
            const float* samples = (side == 0 ? send.left : send.right).data() + at;
            for (int i = 0; i < count; ++i) {
                float value = floor_filter[side].high_pass(samples[i]);
                for (allpass& step : spread[side])
                    value = step.step(value);
                in[side][static_cast<std::size_t>(i)] = value;
            }
        }
        for (std::size_t i = 0; i < line_count; ++i) {
            const float turns =
                static_cast<float>(at) * sample_time * (0.31F + 0.07F * static_cast<float>(i));
            read_line_block(lines[i], at, lines[i].length + wander * sine(turns), rounds[i]);
        }
        float* left = send.left.data() + at;
        float* right = send.right.data() + at;
        for (int i = 0; i < count; ++i) {
            const auto k = static_cast<std::size_t>(i);
            left[i] = 0.5F * (rounds[0][k] + rounds[2][k] - rounds[4][k] - rounds[6][k]);
            right[i] = 0.5F * (rounds[1][k] + rounds[3][k] - rounds[5][k] - rounds[7][k]);
        }
        mix_lines(rounds);
        for (std::size_t i = 0; i < line_count; ++i) {
            float* ring = lines[i].ring.data();
            const block& fresh = in[i % 2];
            for (int k = 0; k < block_frames; ++k)
                ring[(at + k) & ring_mask] =
                    fresh[static_cast<std::size_t>(k)] + rounds[i][static_cast<std::size_t>(k)] * energy_kept;
        }
    }
}

} // namespace assets::sound
