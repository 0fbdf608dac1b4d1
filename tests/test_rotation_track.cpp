// Rotation tracks with all their settings against a plain evaluator.
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "scene/moscene.h"
#include "scene/tracks.h"
#include "tests/support/captured_output.h"
#include "tests/support/quaternions.h"

namespace {

using four = std::array<double, 4>; // w, x, y, z

four wide(const quaternion& q) {
    return {q.w, q.x, q.y, q.z};
}

four product(const four& p, const four& q) {
    return {p[0] * q[0] - p[1] * q[1] - p[2] * q[2] - p[3] * q[3],
            p[0] * q[1] + p[1] * q[0] + p[2] * q[3] - p[3] * q[2],
            p[0] * q[2] - p[1] * q[3] + p[2] * q[0] + p[3] * q[1],
            p[0] * q[3] + p[1] * q[2] - p[2] * q[1] + p[3] * q[0]};
}

// The logarithm of the turn from key `a` to key `b`; `flipped` is the one that is inverted where the two
// point apart.
four turn_between(const rotation_key& a, const rotation_key& b, bool flip_a) {
    constexpr double right_angle = 1.5707964;
    if (std::fabs(double{b.angle} - a.angle) > 6.283184308)
        return {0, right_angle * b.axis.x, right_angle * b.axis.y, right_angle * b.axis.z};
    four p = wide(a.rotation), q = wide(b.rotation);
    if (p[0] * q[0] + p[1] * q[1] + p[2] * q[2] + p[3] * q[3] < 0)
        for (std::size_t i = 1; i < 4; ++i)
            (flip_a ? p : q)[i] *= -1;
    const four turn = product({p[0], -p[1], -p[2], -p[3]}, q); // its w is the dot product
    const double r = std::hypot(turn[1], turn[2], turn[3]);
    const double s = std::atan(r / turn[0]) / r;
    return {0, s * turn[1], s * turn[2], s * turn[3]};
}

// `rotation` times the exponential of a `g1` + b `g2`.
four bent(const rotation_key& key, const four& g1, double a, const four& g2, double b) {
    four v{};
    for (std::size_t i = 1; i < 4; ++i)
        v[i] = a * g1[i] + b * g2[i];
    const double r = std::hypot(v[1], v[2], v[3]), s = r > 0 ? std::sin(r) / r : 1;
    return product(wide(key.rotation), {std::cos(r), s * v[1], s * v[2], s * v[3]});
}

// Incoming and outgoing tangent of key `i`.
std::array<four, 2> plain_rotation_tangents(const std::vector<rotation_key>& k, std::size_t i) {
    const bool first = i == 0, last = i + 1 == k.size();
    const four before = turn_between(k[first ? 0 : i - 1], k[first ? 1 : i], !first);
    const four after = last ? before : turn_between(k[i], k[i + 1], false);
    double f1 = 1, f2 = 1;
    if (!first && !last) {
        const double whole = k[i + 1].frame - k[i - 1].frame, rest = 1 - std::fabs(double{k[i].continuity});
        f1 += rest * (2 * (k[i].frame - k[i - 1].frame) / whole - 1);
        f2 += rest * (2 * (k[i + 1].frame - k[i].frame) / whole - 1);
    }
    const double t = k[i].tension, c = k[i].continuity, b = k[i].bias;
    const double near = (1 - t) * (1 - c) / 2, far = (1 - t) * (1 + c) / 2;
    return {bent(k[i], before, far * (1 + b) * f2 / 2, after, (near * (1 - b) * f2 - 1) / 2),
            bent(k[i], before, (1 - near * (1 + b) * f1) / 2, after, -far * (1 - b) * f1 / 2)};
}

// Turns about any axis, forward and backward, up to two turns a segment, with all settings and eases in use.
mokey_node random_rotation_node(std::mt19937& random, std::size_t count) {
    const captured_output ignored;
    std::uniform_real_distribution<float> setting(-1, 1), side(0, 1), way(-12, 12);
    mokey_node node(node_object);
    node.alloc_keys(static_cast<std::int32_t>(count), track_rotation);
    std::uint16_t frame = 0;
    float angle = 0;
    for (std::size_t i = 0; i < count; ++i) {
        vector3d axis{setting(random), setting(random), setting(random)};
        axis.normalize();
        quaternion rotation{setting(random), setting(random), setting(random), setting(random)};
        rotation.normalize();
        node.add_key_rot(frame, angle, axis.x, axis.y, axis.z, setting(random), setting(random),
                         setting(random), side(random), side(random), rotation);
        frame = static_cast<std::uint16_t>(frame + 1 + random() % 30);
        angle += way(random);
    }
    node.calc_tangents();
    return node;
}
} // namespace

TEST(rotation_track, agrees_with_a_plain_evaluator) {
    std::mt19937 random(11);
    for (std::size_t count = 2; count < 8; ++count)
        for (int round = 0; round < 20; ++round) {
            mokey_node node = random_rotation_node(random, count);
            for (std::size_t i = 0; i < count; ++i) {
                const auto [in, out] = plain_rotation_tangents(node.rot_keys, i);
                const rotation_key& key = node.rot_keys[i];
                expect_quaternion(key.tangent_in, in[0], in[1], in[2], in[3], 1e-5);
                expect_quaternion(key.tangent_out, out[0], out[1], out[2], out[3], 1e-5);
            }
            for (std::size_t i = 0; i + 1 < count; ++i) {
                const rotation_key &a = node.rot_keys[i], &b = node.rot_keys[i + 1];
                moscene scene;
                scene.frame = static_cast<float>(a.frame) * 0.75F + static_cast<float>(b.frame) * 0.25F;
                const double s = ease(0.25, a.ease_from, b.ease_to);
                // whole turns of the way, without their fraction: half turns of the half angle
                const auto spin = static_cast<float>(std::trunc((double{b.angle} - a.angle) * 0.15915494));
                quaternion keyed{}, tangents{}, expected{}, out{};
                quaternion_slerp(a.rotation, b.rotation, spin, static_cast<float>(s), keyed);
                quaternion_slerp(a.tangent_out, b.tangent_in, spin, static_cast<float>(s), tangents);
                quaternion_slerp(keyed, tangents, 0, static_cast<float>(2 * s * (1 - s)), expected);
                scene.eval_rot(node, out, nullptr);
                expect_quaternion(out, expected.w, expected.x, expected.y, expected.z, 1e-6);
            }
        }
}
