#include "driver/beat.h"

#include <span>

namespace {

bool in_stretch(std::span<const float> bounds, int i, float t) {
    if (i < 0 || static_cast<std::size_t>(i) + 1 >= bounds.size()) return false;
    const auto at = static_cast<std::size_t>(i);
    return bounds[at] <= t && t < bounds[at + 1];
}

} // namespace

bool in_part(int i, float t) {
    return in_stretch(part_times, i, t);
}

bool in_beat(int i, float t) {
    return in_stretch(beat_times, i, t);
}
