#include "morvane/math/matrix.h"

#include <cmath>
#include <cstddef>
#include <cstdio>

namespace {

// Row r of the upper three by three applied to p.
double row_times(const std::array<float, 16>& m, std::size_t r, const vector3d& p) {
    return double{p.x} * m[r] + double{p.y} * m[r + 4] + double{p.z} * m[r + 8];
}

} // namespace

void matrix::set_identity() {
    *this = matrix{};
}

void matrix::clear() {
    m.fill(0);
}

vector3d matrix::transform(const vector3d& p) const {
    return {static_cast<float>(row_times(m, 0, p) + m[12]), static_cast<float>(row_times(m, 1, p) + m[13]),
            static_cast<float>(row_times(m, 2, p) + m[14])};
}

void matrix::set_translation(const vector3d& p) {
    m[12] = static_cast<float>(row_times(m, 0, p));
    m[13] = static_cast<float>(row_times(m, 1, p));
    m[14] = static_cast<float>(row_times(m, 2, p));
}

void matrix::set_rotation(float ax, float ay, float az) {
    const auto cosine = [](float a) { return static_cast<float>(std::cos(double{a})); };
    const auto sine = [](float a) { return static_cast<float>(std::sin(double{a})); };
    matrix rx, ry, rz;
    rx.m[5] = rx.m[10] = cosine(ax);
    rx.m[6] = -sine(ax);
    rx.m[9] = sine(ax);
    ry.m[0] = ry.m[10] = cosine(ay);
    ry.m[2] = -sine(ay);
    ry.m[8] = sine(ay);
    rz.m[0] = rz.m[5] = cosine(az);
    rz.m[1] = -sine(az);
    rz.m[4] = sine(az);
    *this = (rz * rx) * ry;
}

void matrix::from_quaternion(float w, float x, float y, float z) {
    const double x2 = double{x} + x;
    const double y2 = double{y} + y;
    const double z2 = double{z} + z;
    *this = matrix{};
    m[0] = static_cast<float>(1 - (z * z2 + y * y2));
    m[1] = static_cast<float>(y2 * x - w * z2);
    m[2] = static_cast<float>(w * y2 + z2 * x);
    m[4] = static_cast<float>(w * z2 + y2 * x);
    m[5] = static_cast<float>(1 - (z * z2 + x * x2));
    m[6] = static_cast<float>(z2 * y - x2 * w);
    m[8] = static_cast<float>(z2 * x - w * y2);
    m[9] = static_cast<float>(x2 * w + z2 * y);
    m[10] = static_cast<float>(1 - (y * y2 + x * x2));
}

void matrix::debug() const {
    std::printf("matrix::debug()\n");
    for (std::size_t i = 0; i < 4; ++i)
        std::printf("[%5.3f\t%5.3f\t%5.3f\t%5.3f]\n", double{m[i]}, double{m[i + 4]}, double{m[i + 8]},
                    double{m[i + 12]});
}

matrix operator+(const matrix& a, const matrix& b) {
    matrix sum = a;
    return sum += b;
}

matrix operator-(const matrix& a, const matrix& b) {
    matrix difference = a;
    return difference -= b;
}

matrix& operator+=(matrix& a, const matrix& b) {
    for (std::size_t i = 0; i < a.m.size(); ++i)
        a.m[i] += b.m[i];
    return a;
}

matrix& operator-=(matrix& a, const matrix& b) {
    for (std::size_t i = 0; i < a.m.size(); ++i)
        a.m[i] -= b.m[i];
    return a;
}

matrix operator*(const matrix& a, const matrix& b) {
    matrix out;
    for (std::size_t c = 0; c < 12; c += 4)
        for (std::size_t r = 0; r < 3; ++r)
            out.m[c + r] = static_cast<float>(double{a.m[r]} * b.m[c] + double{a.m[r + 4]} * b.m[c + 1] +
                                              double{a.m[r + 8]} * b.m[c + 2]);
    return out;
}
