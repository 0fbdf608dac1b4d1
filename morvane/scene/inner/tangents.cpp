#include "morvane/scene/inner/tangents.h"

#include <cmath>
#include <cstddef>

#include "morvane/math/vector3d.h"

namespace {

// Values between the components of points, in double: a tangent is rounded once, when it is stored.
struct slope {
    double x, y, z;
};

slope operator-(const position_key& to, const position_key& from) {
    return {double{to.value.x} - from.value.x, double{to.value.y} - from.value.y,
            double{to.value.z} - from.value.z};
}
slope operator+(slope a, slope b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
slope operator*(slope a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
vector3d stored(slope a) {
    return {static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z)};
}

// Scale factors from the spacing of three neighbouring keys.
struct spacing {
    double before, after;
};

spacing spacing_of(const position_key& p, const position_key& q, const position_key& r) {
    const int d1 = q.frame - p.frame;
    const int d2 = r.frame - q.frame;
    const float sum = static_cast<float>(d1 + d2);
    if (sum == 0) return {1, 1};
    return {2.0 * d2 / sum, 2.0 * d1 / sum};
}

// The share that the whole way `across` has in the slope beside an end key; `near` of its `far` frames are
// those of the end segment.
double end_weight(int near, int far) {
    return far == 0 ? 0.5 : 0.75 - near / (2.0 * far);
}

// The slope of the key beside an end: `segment` leads from or to the end, `across` over both segments.
slope end_slope(slope segment, slope across, double weight) {
    return (segment + across * -0.5) * 1.5 + across * weight;
}

void first_pass(std::span<position_key> k) {
    const slope across = k[2] - k[0];
    const double weight = end_weight(k[1].frame - k[0].frame, k[2].frame - k[0].frame);
    const double scale = (1 - double{k[0].tension}) * spacing_of(k[0], k[1], k[2]).after;
    k[0].tangent = {};
    k[1].tangent = stored(end_slope(k[1] - k[0], across, weight) * scale);
}

void last_pass(std::span<position_key> k) {
    const position_key& p = k[k.size() - 3];
    position_key& q = k[k.size() - 2];
    position_key& r = k[k.size() - 1];
    const slope across = r - p;
    const double weight = end_weight(r.frame - q.frame, r.frame - p.frame);
    const double scale = (1 - double{r.tension}) * spacing_of(p, q, r).before;
    q.tangent = stored(end_slope(r - q, across, weight) * scale);
    r.tangent = {};
}

// Keys i and i + 1, both by the settings of key i.
void middle_pass(std::span<position_key> k, std::size_t i) {
    const double t = (1 - double{k[i].tension}) / 2;
    const double c = k[i].continuity;
    const double b = k[i].bias;
    const spacing factor = spacing_of(k[i - 1], k[i], k[i + 1]);
    const slope arriving = k[i] - k[i - 1];
    const slope between = k[i + 1] - k[i];
    const slope leaving = k[i + 2] - k[i + 1];
    k[i].tangent =
        stored((arriving * ((1 + c) * (1 + b) * t) + between * ((1 - c) * (1 - b) * t)) * factor.before);
    k[i + 1].tangent =
        stored((leaving * ((1 - c) * (1 + b) * t) + between * ((1 + c) * (1 - b) * t)) * factor.after);
}

constexpr double full_turn = 6.283184308; // a little less, so that a whole turn counts as more than one

// The logarithm of the turn between two neighbouring keys, `other` being the one whose sign may be changed.
quaternion turn_log(const rotation_key& key, const rotation_key& other, bool other_first) {
    if (!(std::fabs(double{other.angle} - key.angle) <= full_turn)) {
        const vector3d& axis = other_first ? key.axis : other.axis;
        return quaternion{0, axis.x, axis.y, axis.z}.ln();
    }
    quaternion q = other.rotation;
    if (quaternion_dot(q, key.rotation) < 0) q.unit_inverse();
    quaternion log{};
    if (other_first)
        quaternion_ln_dif(q, key.rotation, log);
    else
        quaternion_ln_dif(key.rotation, q, log);
    return log;
}

// How the spacing of three keys stretches the two tangents of the middle one; `c` is its continuity.
spacing rotation_spacing(const rotation_key& p, const rotation_key& key, const rotation_key& x) {
    const double half = (x.frame - p.frame) * 0.5;
    if (half == 0) return {1, 1};
    const double g1 = (key.frame - p.frame) / half;
    const double g2 = (x.frame - key.frame) / half;
    const double a = std::fabs(double{key.continuity});
    return {a + g1 - a * g1, a + g2 - a * g2};
}

// One of the two neighbours may be null.
void rotation_tangent(rotation_key& key, const rotation_key* previous, const rotation_key* next) {
    quaternion g1{}, g2{};
    if (previous != nullptr) g1 = turn_log(key, *previous, true);
    if (next != nullptr) g2 = turn_log(key, *next, false);
    if (previous == nullptr) g1 = g2;
    if (next == nullptr) g2 = g1;
    spacing f{1, 1};
    if (previous != nullptr && next != nullptr) f = rotation_spacing(*previous, key, *next);

    const double e = (1 - double{key.tension}) * 0.5;
    const double em = e * (1 - double{key.continuity});
    const double ep = e * (1 + double{key.continuity});
    const double b = key.bias;
    const auto out = [&](float a, float c) {
        return static_cast<float>((a * (1 - em * (1 + b) * f.before) - c * ep * (1 - b) * f.before) * 0.5);
    };
    const auto in = [&](float a, float c) {
        return static_cast<float>((a * ep * (1 + b) * f.after + c * (em * (1 - b) * f.after - 1)) * 0.5);
    };
    const quaternion m{out(g1.w, g2.w), out(g1.x, g2.x), out(g1.y, g2.y), out(g1.z, g2.z)};
    const quaternion n{in(g1.w, g2.w), in(g1.x, g2.x), in(g1.y, g2.y), in(g1.z, g2.z)};
    key.tangent_in = key.rotation * n.exp();
    key.tangent_out = key.rotation * m.exp();
}

} // namespace

void calc_position_tangents(std::span<position_key> k) {
    const std::size_t n = k.size();
    if (n < 2) return;
    if (n == 2) {
        const slope way = k[1] - k[0];
        k[0].tangent = stored(way * (1 - double{k[0].tension}));
        k[1].tangent = stored(way * (1 - double{k[1].tension}));
        return;
    }
    for (std::size_t i = 0; i + 1 < n; i += 2) {
        if (i == 0)
            first_pass(k);
        else if (i + 3 > n)
            last_pass(k);
        else
            middle_pass(k, i);
    }
}

void calc_rotation_tangents(std::span<rotation_key> k) {
    const std::size_t n = k.size();
    if (n < 2) return;
    for (std::size_t i = 1; i + 1 < n; ++i)
        rotation_tangent(k[i], &k[i - 1], &k[i + 1]);
    rotation_tangent(k[0], nullptr, &k[1]);
    rotation_tangent(k[n - 1], &k[n - 2], nullptr);
}
