// Points in the space of the clip, and the camera that sees them. One unit is about the meteor's radius; the
// meteor is at the origin, the stream runs along x, y points up.
#pragma once

#include <cmath>

#include "assets/forms/shapes.h"

namespace assets::clip {

struct point {
    float x = 0, y = 0, z = 0;
};

constexpr point operator+(point a, point b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr point operator-(point a, point b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr point operator*(point a, float k) {
    return {a.x * k, a.y * k, a.z * k};
}
constexpr float dot(point a, point b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr point cross(point a, point b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(point a) {
    return std::sqrt(dot(a, a));
}
inline point normalised(point a) {
    const float l = length(a);
    return l > 0 ? a * (1 / l) : point{1, 0, 0};
}

// Where a point is seen: pixels of the clip, and the distance along the line of sight, in units.
struct seen {
    float x, y, depth;
};

struct camera {
    point eye;
    point right, down, forward; // unit vectors, at right angles
    float focal;                // pixels
    vec2 middle;                // where the line of sight meets the picture, in pixels

    seen project(point p) const {
        const point d = p - eye;
        const float depth = dot(d, forward);
        const float scale = focal / (depth > 0.01F ? depth : 0.01F);
        return {middle.x + dot(d, right) * scale, middle.y + dot(d, down) * scale, depth};
    }
};

// The camera `turn` of the way round the loop (0 to 1).
camera camera_at(float turn);

} // namespace assets::clip
