// The mathematics of the tracks: search, ease and interpolation.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "morvane/math/vector3d.h"

// The keys of a track that were added so far; whatever `count` holds, never more than there are.
template<typename Key>
std::span<Key> keys_in_use(std::vector<Key>& keys, std::int16_t count) {
    return std::span(keys).first(std::min(keys.size(), static_cast<std::size_t>(std::max<int>(count, 0))));
}
template<typename Key>
std::span<const Key> keys_in_use(const std::vector<Key>& keys, std::int16_t count) {
    return std::span(keys).first(std::min(keys.size(), static_cast<std::size_t>(std::max<int>(count, 0))));
}

// The segment of a track of one or more keys in which frame `t` lies: the first i with keys i and i + 1
// around it, both included; 0 before the first key and for a track of one. Behind the last key, `behind` (the
// position track asks for the last index, all others for -1). Keys out of order give some segment or
// `behind`.
template<typename Key>
std::int32_t find_key(std::span<const Key> keys, float t, std::int32_t behind) {
    if (keys.size() == 1) return 0;
    for (std::size_t i = 0; i + 1 < keys.size(); ++i)
        if (keys[i].frame <= t && keys[i + 1].frame >= t) return static_cast<std::int32_t>(i);
    return keys.back().frame >= t ? 0 : behind;
}

// Where `t` lies between two keys, 0 to 1 and unclamped beyond; 1 for two keys on one frame, so that the
// later one counts.
template<typename Key>
double segment_position(const Key& from, const Key& to, float t) {
    const int length = to.frame - from.frame;
    return length == 0 ? 1.0 : (double{t} - from.frame) / length;
}

// Slows the way from 0 to 1 down at its ends: `a` is the share of the start, `b` that of the end, both scaled
// down where they sum to more than 1. A side of 0 is not slowed.
double ease(double t, double a, double b);

// Adds to `out` the point at `s` of the cubic from p0 with slope g0 to p1 with slope g1 (Hermite).
void hermite(vector3d& out, const vector3d& p0, const vector3d& g0, const vector3d& p1, const vector3d& g1,
             double s);

// From `a` at t = 0 to `b` at t = 1 on half a cosine wave.
double cosine_lerp(double a, double b, double t);
