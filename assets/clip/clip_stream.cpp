#include "assets/clip/clip_stream.h"

#include <algorithm>
#include <cmath>

#include "assets/forms/noise.h"
#include "morvane/base/numbers.h"

namespace assets::clip {
namespace {

constexpr int side = 32; // cells of the turbulence each way
constexpr float start_x = -6.5F;
constexpr float stream_reach = 3.1F; // radius of the nozzles' disc

// The turbulence drifts with the stream, whole periods in a loop.
constexpr float coarse_period = 4.2F; // units
constexpr float coarse_drifts = 6;
constexpr float fine_period = 1.9F;
constexpr float fine_drifts = 14;

float random_of(int thread, int what) {
    return hash01(thread, what, 907);
}

thread_kind kind_of(int thread) {
    constexpr int bundle_size = 5;
    const int bundle = thread / bundle_size;
    const float far = std::pow((static_cast<float>(bundle) + 0.5F) / (stream::threads / bundle_size), 0.68F);
    const float angle = static_cast<float>(bundle) * 2.39996F; // of the sunflower's spiral
    const float spread = 0.13F * std::sqrt(random_of(thread, 1));
    const float turn = random_of(thread, 2) * 2 * pi;
    const float radius = 0.08F + stream_reach * far;
    return {.nozzle = {start_x, radius * std::sin(angle) + spread * std::sin(turn),
                       radius * std::cos(angle) + spread * std::cos(turn)},
            .strength = (0.25F + 1.2F * std::pow(random_of(thread, 3), 3.0F)) * (1.1F - 0.6F * far),
            .hue = clamp01(0.5F * random_of(bundle, 4) + 0.5F * random_of(thread, 5))};
}

// Light along a thread: long swells with some short bright stretches, periodic over the loop's releases.
std::uint8_t glow_of(int thread, int release) {
    auto swell = [&](int cell, std::uint32_t seed) {
        const int cells = stream::releases / cell;
        const float t = static_cast<float>(release % cell) / static_cast<float>(cell);
        const float a = hash01(thread, release / cell, seed);
        const float b = hash01(thread, (release / cell + 1) % cells, seed);
        return mix(a, b, t * t * (3 - 2 * t));
    };
    const float slow = swell(22, 31);
    const float quick = swell(4, 32);
    return trunc_to_byte(255 * clamp01(0.10F + 0.45F * slow * slow + 0.6F * std::pow(quick, 5.0F)));
}

int rest(int value, int divisor) {
    const int r = value % divisor;
    return r < 0 ? r + divisor : r;
}

} // namespace

float wake_at(point p) {
    if (p.x < 0.1F) return 0;
    const float wide = 1.05F + 0.16F * p.x;
    const float r2 = (p.y * p.y + p.z * p.z) / (wide * wide);
    return smooth_step(0.1F, 1.7F, p.x) / (1 + r2 * r2 * r2);
}

turbulence::turbulence(std::uint32_t seed) : grid_(side * side * side) {
    constexpr int waves = 44;
    constexpr float strength = 0.30F;
    for (int w = 0; w < waves; ++w) {
        auto random = [&](int what) { return hash01(w, what, seed); };
        auto number = [&](int what) { return std::floor(random(what) * 7) - 3; }; // -3 to 3 periods
        point k{number(1), number(2), number(3)};
        if (dot(k, k) < 2) k = k + point{1, 2, -1};
        const point across =
            normalised(cross(k, {random(4) - 0.5F, random(5) - 0.5F, random(6) - 0.5F})) * strength;
        const float phase = random(7) * 2 * pi;
        std::size_t i = 0;
        for (int z = 0; z < side; ++z) {
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x, ++i) {
                    const point p{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
                    const float s = std::sin(dot(k, p) * (2 * pi / side) + phase);
                    grid_[i][0] += across.x * s;
                    grid_[i][1] += across.y * s;
                    grid_[i][2] += across.z * s;
                }
            }
        }
    }
}

point turbulence::at(point p) const {
    struct axis {
        std::size_t low, high;
        float part;
    };
    auto place = [](float v) -> axis {
        const float cells = v * side + 1024 * side; // never below 0
        const auto whole = static_cast<std::uint32_t>(trunc_to_int(cells));
        return {whole % side, (whole + 1) % side, cells - static_cast<float>(whole)};
    };
    const axis x = place(p.x);
    const axis y = place(p.y);
    const axis z = place(p.z);
    std::array<float, 4> sum{};
    auto add = [&](std::size_t at_z, std::size_t at_y, float weight) {
        const auto& a = grid_[(at_z * side + at_y) * side + x.low];
        const auto& b = grid_[(at_z * side + at_y) * side + x.high];
        for (std::size_t i = 0; i < 4; ++i)
            sum[i] += (a[i] + (b[i] - a[i]) * x.part) * weight;
    };
    add(z.low, y.low, (1 - z.part) * (1 - y.part));
    add(z.low, y.high, (1 - z.part) * y.part);
    add(z.high, y.low, z.part * (1 - y.part));
    add(z.high, y.high, z.part * y.part);
    return {sum[0], sum[1], sum[2]};
}

stream::stream(int frames, int rate)
    : frames_(frames), seconds_(1 / static_cast<float>(rate)), glows_(std::size_t{threads} * releases),
      places_(std::size_t{threads} * beads), last_velocities_(places_.size()) {
    kinds_.reserve(threads);
    std::size_t i = 0;
    for (int t = 0; t < threads; ++t) {
        kinds_.push_back(kind_of(t));
        for (int r = 0; r < releases; ++r)
            glows_[i++] = glow_of(t, r);
    }
}

int stream::newest(int frame) const {
    return (frame + frames_) * releases / frames_ - releases; // rounded down from -frames_ on
}

point stream::velocity(point p, float turn) const {
    const float r2 = std::max(dot(p, p), body_radius * body_radius);
    const float inside = body_radius * body_radius * body_radius / (r2 * std::sqrt(r2));
    point v = point{1 + 0.5F * inside, 0, 0} - p * (1.5F * inside * p.x / r2);
    const float wake = wake_at(p);
    v.x *= 1 - 0.5F * wake * std::exp(-0.25F * p.x);
    const point drift{turn, 0, 0};
    const float rough = 0.03F + 0.50F * wake;
    v = v + coarse_.at(p * (1 / coarse_period) - drift * coarse_drifts) * rough;
    if (wake > 0.02F) v = v + fine_.at(p * (1 / fine_period) - drift * fine_drifts) * (0.15F * wake);
    return v * stream_speed;
}

// One step by the method of Adams and Bashforth, of the second order. What would enter the body stays out.
void stream::carry(std::size_t bead, float turn) {
    point& p = places_[bead];
    const point v = velocity(p, turn);
    p = p + (v * 1.5F - last_velocities_[bead] * 0.5F) * seconds_;
    last_velocities_[bead] = v;
    const float r = length(p);
    if (r < body_radius) p = p * (body_radius / std::max(r, 0.01F));
}

void stream::advance(int first, int last, int frame, snapshot& picture) {
    const float turn = static_cast<float>(rest(frame - 1, frames_)) / static_cast<float>(frames_);
    const int youngest = newest(frame);
    const bool lets_go = youngest != newest(frame - 1);
    const float gone = static_cast<float>(frame) -
                       static_cast<float>(youngest) * static_cast<float>(frames_) / releases; // frames
    for (int t = first; t < last; ++t) {
        const std::size_t thread = static_cast<std::size_t>(t) * beads;
        for (std::size_t b = 0; b < beads; ++b)
            carry(thread + b, turn);
        if (lets_go) {
            const std::size_t fresh = thread + static_cast<std::size_t>(rest(youngest, beads));
            const point v{stream_speed, 0, 0};
            places_[fresh] = kinds_[static_cast<std::size_t>(t)].nozzle + v * (gone * seconds_);
            last_velocities_[fresh] = v;
        }
        for (int b = 0; b < beads; ++b)
            picture[thread + static_cast<std::size_t>(b)] =
                places_[thread + static_cast<std::size_t>(rest(youngest - b, beads))];
    }
}

float stream::age(int bead, int frame) const {
    const float release = static_cast<float>(newest(frame) - bead);
    const float frames = static_cast<float>(frame) - release * static_cast<float>(frames_) / releases;
    return frames * releases / (static_cast<float>(frames_) * beads);
}

float stream::glow(int thread, int bead, int frame) const {
    const int release = rest(newest(frame) - bead, releases);
    return static_cast<float>(glows_[static_cast<std::size_t>(thread * releases + release)]) / 255;
}

} // namespace assets::clip
