#include "morvane/scene/tracks.h"

#include <cmath>

namespace {

constexpr double pi = 3.141592654;

} // namespace

double ease(double t, double a, double b) {
    const double s = a + b;
    if (s == 0) return t;
    if (s > 1) {
        a /= s;
        b /= s;
    }
    const double k = 1 / (2 - a - b);
    if (a != 0 && t < a) return k / a * t * t;
    if (t < 1 - b) return k * (2 * t - a);
    if (b == 0) return 1;
    const double d = 1 - t;
    return 1 - k / b * d * d;
}

void hermite(vector3d& out, const vector3d& p0, const vector3d& g0, const vector3d& p1, const vector3d& g1,
             double s) {
    const double s2 = s * s;
    const double s3 = s2 * s;
    const double h1 = 2 * s3 - 3 * s2 + 1;
    const double h2 = s3 - 2 * s2 + s;
    const double h3 = 3 * s2 - 2 * s3;
    const double h4 = s3 - s2;
    out.x = static_cast<float>(out.x + (h1 * p0.x + h2 * g0.x + h3 * p1.x + h4 * g1.x));
    out.y = static_cast<float>(out.y + (h1 * p0.y + h2 * g0.y + h3 * p1.y + h4 * g1.y));
    out.z = static_cast<float>(out.z + (h1 * p0.z + h2 * g0.z + h3 * p1.z + h4 * g1.z));
}

double cosine_lerp(double a, double b, double t) {
    const double f = (1 - std::cos(t * pi)) * 0.5;
    return (1 - f) * a + f * b;
}
