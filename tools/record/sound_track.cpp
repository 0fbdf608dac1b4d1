#include "tools/record/sound_track.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double fade_seconds = 0.015;

} // namespace

sound_track::sound_track(std::span<const placed_track> tracks, std::int32_t rate, double from)
    : rate_(rate), fade_(std::llround(fade_seconds * rate)), position_(std::llround(from * rate)) {
    for (const placed_track& each : tracks)
        stretches_.push_back({each.path, std::llround(each.start * rate), std::llround(each.end * rate)});
}

std::vector<std::string> sound_track::trouble(std::span<const placed_track> tracks, double from, double to) {
    std::vector<std::string> lines;
    for (const placed_track& each : tracks) {
        if (each.end <= from || each.start >= to) continue;
        track_decoder decoder;
        const std::string problem = decoder.open(each.path, 44100);
        if (!problem.empty()) lines.push_back(each.path + ": " + problem);
    }
    return lines;
}

void sound_track::read(std::span<float> left, std::span<float> right) {
    std::ranges::fill(left, 0.0F);
    std::ranges::fill(right, 0.0F);
    for (stretch& each : stretches_)
        if (!each.silent) read_stretch(each, left, right);
    position_ += static_cast<std::int64_t>(left.size());
}

// Fills the part of both spans in which `part` sounds.
void sound_track::read_stretch(stretch& part, std::span<float> left, std::span<float> right) {
    const auto length = static_cast<std::int64_t>(left.size());
    const std::int64_t first = std::clamp(part.start - position_, std::int64_t{0}, length);
    const std::int64_t last = std::clamp(part.end + fade_ - position_, first, length);
    if (first == last) return;
    const auto at = static_cast<std::size_t>(first), count = static_cast<std::size_t>(last - first);
    left = left.subspan(at, count);
    right = right.subspan(at, count);
    play(part, position_ + first - part.start, left, right);
    fade(part, position_ + first, left);
    fade(part, position_ + first, right);
}

// The samples of the track from `offset` on. Those before it are decoded and left out, which is quick and
// exact where a jump into the file isn't.
void sound_track::play(stretch& part, std::int64_t offset, std::span<float> left, std::span<float> right) {
    if (playing_ != &part) {
        playing_ = &part;
        decoded_ = 0;
        decoder_.open(part.path, rate_);
    }
    std::array<float, 4096> left_out;
    bool fresh = false; // opened anew, and nothing has come since
    while (!left.empty() && !part.silent) {
        const auto skip = static_cast<std::size_t>(
            std::clamp(offset - decoded_, std::int64_t{0}, std::int64_t{left_out.size()}));
        const std::span<float> unused = std::span(left_out).first(skip);
        const std::size_t count = skip > 0 ? decoder_.read(unused, unused) : decoder_.read(left, right);
        decoded_ += static_cast<std::int64_t>(count);
        if (skip == 0) {
            offset += static_cast<std::int64_t>(count);
            left = left.subspan(count);
            right = right.subspan(count);
        }
        if (count == 0) {
            part.silent = fresh;
            decoder_.open(part.path, rate_);
        }
        fresh = count == 0;
    }
}

// Lets `samples`, the first of which is sample `at` of the show, go out behind the end of `part`.
void sound_track::fade(const stretch& part, std::int64_t at, std::span<float> samples) const {
    for (float& sample : samples) {
        const std::int64_t behind = std::max(at++ - part.end, std::int64_t{0});
        const float left = 1 - static_cast<float>(behind) / static_cast<float>(fade_);
        sample *= left * left * (3 - 2 * left); // level at both ends
    }
}
