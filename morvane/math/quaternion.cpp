#include "morvane/math/quaternion.h"

#include <cmath>
#include <cstdio>

#include "morvane/math/matrix.h"

namespace {

constexpr double pi = 3.141592654;
constexpr float half_pi = 1.5707964F; // the arctangent of what has no divisor
constexpr double small_angle = 0.000001;

quaternion rounded(double w, double x, double y, double z) {
    return {static_cast<float>(w), static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

quaternion scaled(const quaternion& q, double by) {
    return rounded(q.w * by, q.x * by, q.y * by, q.z * by);
}

// sa a + sb b
quaternion mixed(const quaternion& a, double sa, const quaternion& b, double sb) {
    return rounded(sa * a.w + sb * b.w, sa * a.x + sb * b.x, sa * a.y + sb * b.y, sa * a.z + sb * b.z);
}

double vector_length(const quaternion& q) {
    return std::sqrt(double{q.x} * q.x + double{q.y} * q.y + double{q.z} * q.z);
}

double angle_of(double opposite, double adjacent) {
    return adjacent != 0 ? std::atan(opposite / adjacent) : half_pi;
}

} // namespace

void quaternion::identity() {
    *this = {1, 0, 0, 0};
}

void quaternion::from_axis_angle(float axis_x, float axis_y, float axis_z, float angle) {
    const double half = angle * 0.5;
    const double s = std::sin(half);
    *this = rounded(std::cos(half), axis_x * s, axis_y * s, axis_z * s);
}

void quaternion::from_axis_angle_unit(float axis_x, float axis_y, float axis_z, float angle) {
    from_axis_angle(axis_x, axis_y, axis_z, angle);
    normalize();
}

void quaternion::to_axis_angle(float* axis_x, float* axis_y, float* axis_z, float* angle) const {
    quaternion unit = *this;
    unit.normalize();
    const double half = std::acos(double{unit.w});
    const double s = std::sin(half);
    const quaternion axis = std::fabs(s) <= small_angle ? quaternion{} : scaled(unit, 1 / s);
    *angle = static_cast<float>(2 * half);
    *axis_x = axis.x;
    *axis_y = axis.y;
    *axis_z = axis.z;
}

void quaternion::normalize() {
    const double n = norm();
    if (n > 0) *this = scaled(*this, 1 / std::sqrt(n));
}

void quaternion::inverse() {
    const double n = norm();
    const double f = n == 1 ? 1.0 : 1 / n;
    *this = rounded(f * w, -f * x, -f * y, -f * z);
}

void quaternion::unit_inverse() {
    normalize();
    *this = {w, -x, -y, -z};
}

double quaternion::norm() const {
    return quaternion_dot(*this, *this);
}

quaternion quaternion::ln() const {
    const double a = angle_of(vector_length(*this), w);
    return rounded(0, a * x, a * y, a * z);
}

quaternion quaternion::exp() const {
    const double r = vector_length(*this);
    const double s = r > 0 ? std::sin(r) / r : 1.0;
    return rounded(std::cos(r), s * x, s * y, s * z);
}

void quaternion::from_matrix(const matrix& from) {
    const auto& m = from.m;
    const double trace = double{m[10]} + m[5] + m[0] + 1;
    if (trace > 0) {
        const double s = 0.5 / std::sqrt(trace);
        *this = rounded(0.25 / s, (double{m[9]} - m[6]) * s, (double{m[2]} - m[8]) * s,
                        (double{m[4]} - m[1]) * s);
        return;
    }
    const auto inverted = [](double s) { return s != 0 ? 0.5 / s : 0.0; };
    const bool y_above_x = m[5] > m[0];
    if (m[10] > (y_above_x ? m[5] : m[0])) {
        const double root = std::sqrt(m[10] - (double{m[5]} + m[0]) + 1);
        const double s = inverted(root);
        *this = rounded((double{m[4]} - m[1]) * s, (double{m[8]} + m[2]) * s, (double{m[6]} + m[9]) * s,
                        0.5 * root);
    } else if (y_above_x) {
        const double root = std::sqrt(m[5] - (double{m[10]} + m[0]) + 1);
        const double s = inverted(root);
        *this = rounded((double{m[2]} - m[8]) * s, (double{m[1]} + m[4]) * s, 0.5 * root,
                        (double{m[6]} + m[9]) * s);
    } else {
        const double root = std::sqrt(m[0] - (double{m[10]} + m[5]) + 1);
        const double s = inverted(root);
        *this = rounded((double{m[9]} - m[6]) * s, 0.5 * root, (double{m[1]} + m[4]) * s,
                        (double{m[8]} + m[2]) * s);
    }
}

void quaternion::debug() const {
    std::printf("quaternion::debug()\n");
    std::printf("wxyz(%f, %f, %f, %f)\n", double{w}, double{x}, double{y}, double{z});
}

double quaternion_dot(const quaternion& a, const quaternion& b) {
    return double{a.w} * b.w + double{a.x} * b.x + double{a.y} * b.y + double{a.z} * b.z;
}

double quaternion_dot_unit(const quaternion& a, const quaternion& b) {
    return quaternion_dot(a, b) / (a.norm() * b.norm());
}

quaternion operator*(const quaternion& p, const quaternion& q) {
    return rounded(double{p.w} * q.w - double{p.x} * q.x - double{p.y} * q.y - double{p.z} * q.z,
                   double{p.w} * q.x + double{p.x} * q.w + double{p.y} * q.z - double{p.z} * q.y,
                   double{p.w} * q.y - double{p.x} * q.z + double{p.y} * q.w + double{p.z} * q.x,
                   double{p.w} * q.z + double{p.x} * q.y - double{p.y} * q.x + double{p.z} * q.w);
}

quaternion operator+(const quaternion& a, const quaternion& b) {
    quaternion sum = mixed(a, 1, b, 1);
    sum.normalize();
    return sum;
}

quaternion operator-(const quaternion& a, const quaternion& b) {
    quaternion difference = mixed(a, 1, b, -1);
    difference.normalize();
    return difference;
}

quaternion& operator*=(quaternion& a, const quaternion& b) {
    a = a * b;
    a.normalize();
    return a;
}

quaternion& operator+=(quaternion& a, const quaternion& b) {
    return a = a + b;
}

quaternion& operator-=(quaternion& a, const quaternion& b) {
    return a = a - b;
}

void quaternion_ln_dif(const quaternion& a, const quaternion& b, quaternion& out) {
    quaternion back = a;
    back.inverse();
    const quaternion turn = back * b;
    const double r = static_cast<float>(vector_length(turn));
    const double angle = angle_of(r, quaternion_dot_unit(a, b));
    const double s = r != 0 ? angle / r : angle;
    out = rounded(0, s * turn.x, s * turn.y, s * turn.z);
}

void quaternion_slerp(const quaternion& a, const quaternion& b, float spin, float t, quaternion& out) {
    const float c = static_cast<float>(quaternion_dot(a, b));
    double sa = 1 - double{t};
    double sb = t;
    if (!(1 - std::fabs(double{c}) < small_angle)) {
        const double theta = std::acos(double{c});
        const float phi = static_cast<float>((theta + spin * pi) * t);
        sa = std::sin(theta - phi) / std::sin(theta);
        sb = std::sin(double{phi}) / std::sin(theta);
    }
    out = mixed(a, sa, b, sb);
}

void quaternion_blend(quaternion& out, const quaternion& a, const quaternion& b, float t) {
    const double towards = quaternion_dot(a, b) < 0 ? -double{t} : double{t};
    out = mixed(a, 1 - double{t}, b, towards);
}
