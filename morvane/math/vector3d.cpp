#include "morvane/math/vector3d.h"

#include <cmath>
#include <cstdio>

namespace {

float rounded(double value) {
    return static_cast<float>(value);
}

} // namespace

void vector3d::set(float new_x, float new_y, float new_z) {
    x = new_x;
    y = new_y;
    z = new_z;
}

double vector3d::length() const {
    return std::sqrt(double{x} * x + double{y} * y + double{z} * z);
}

void vector3d::normalize() {
    const double by = length();
    if (by == 0) {
        set(0, 0, 0);
        return;
    }
    set(rounded(x / by), rounded(y / by), rounded(z / by));
}

void vector3d::negate() {
    set(-x, -y, -z);
}

vector3d vector3d::cross(const vector3d& b) const {
    return {rounded(double{y} * b.z - double{z} * b.y), rounded(double{z} * b.x - double{x} * b.z),
            rounded(double{x} * b.y - double{y} * b.x)};
}

void vector3d::debug() const {
    std::printf("vector3d::debug(%5.3f, %5.3f, %5.3f)\n", double{x}, double{y}, double{z});
}

vector3d operator+(const vector3d& a, const vector3d& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

vector3d operator-(const vector3d& a, const vector3d& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

vector3d operator/(const vector3d& a, float s) {
    return {a.x / s, a.y / s, a.z / s};
}

bool vector3d_facing(const vector3d& a, const vector3d& b, const vector3d& c) {
    const double s = (double{a.y} - b.y) * (double{c.x} - a.x) - (double{a.x} - b.x) * (double{c.y} - a.y);
    return !(s > 0);
}
