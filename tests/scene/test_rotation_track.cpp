// Rotation tracks: turns worked out by hand, and all their settings against a plain evaluator.
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/scene/moscene.h"
#include "morvane/scene/tracks.h"
#include "tests/support/captured_output.h"
#include "tests/support/quaternions.h"

namespace {

constexpr double pi = 3.14159265358979323846;

// q and -q are the same turn; here the sign counts.
struct turn_key {
    int frame;
    double degrees; // accumulated, about z
    double tension = 0;
};

mokey_node rotation_node(const std::vector<turn_key>& keys) {
    const captured_output ignored; // a line for each key
    mokey_node node(node_object);
    node.alloc_keys(static_cast<std::int32_t>(keys.size()), track_rotation);
    for (const turn_key& k : keys) {
        const auto angle = static_cast<float>(k.degrees * pi / 180);
        quaternion turned{};
        turned.from_axis_angle(0, 0, 1, angle);
        node.add_key_rot(static_cast<std::uint16_t>(k.frame), angle, 0, 0, 1, static_cast<float>(k.tension),
                         0, 0, 0, 0, turned);
    }
    node.calc_tangents();
    return node;
}

quaternion rotation_at(mokey_node& node, float frame, const mokey_node* parent = nullptr) {
    moscene scene;
    scene.frame = frame;
    quaternion out{7, 7, 7, 7};
    scene.eval_rot(node, out, parent);
    return out;
}

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

TEST(rotation_track, turns_evenly_and_hands_its_parent_on) {
    mokey_node node = rotation_node({{0, 0}, {10, 60}, {20, 120}, {30, 180}});
    for (const float t : {0.0F, 2.5F, 10.0F, 17.0F, 25.0F, 30.0F}) {
        const double half = t * 3 * pi / 180;
        expect_quaternion(rotation_at(node, t), std::cos(half), 0, 0, std::sin(half));
        expect_quaternion(node.current_rot, std::cos(half), 0, 0, std::sin(half));
    }
    mokey_node parent(node_object);
    parent.current_rot = {0, 1, 0, 0};
    expect_quaternion(rotation_at(node, 10, &parent), 0, std::cos(pi / 6), std::sin(pi / 6), 0);
    expect_quaternion(node.current_rot, 0, std::cos(pi / 6), std::sin(pi / 6), 0);
    // Behind the last key the parent is on the other side, and the node keeps its own.
    expect_quaternion(rotation_at(node, 31, &parent), 0, 0, -1, 0);
    expect_quaternion(node.current_rot, 0, 0, 0, 1);

    mokey_node one = rotation_node({{5, 90}});
    expect_quaternion(rotation_at(one, 100), std::cos(pi / 4), 0, 0, std::sin(pi / 4));
    const quaternion before = one.current_rot;
    expect_quaternion(rotation_at(one, -1), 7, 7, 7, 7); // no negative frames: nothing changes
    mokey_node none(node_object);
    expect_quaternion(rotation_at(none, 5), 7, 7, 7, 7);
    expect_quaternion(one.current_rot, before.w, before.x, before.y, before.z, 0);
}

TEST(rotation_track, tangents_bend_towards_the_neighbours) {
    // 0, 30 and 90 degrees, evenly spaced: the middle tangents are a quarter of the two half turns'
    // difference.
    mokey_node node = rotation_node({{0, 0}, {10, 30}, {20, 90}});
    const double g1 = 15 * pi / 180, g2 = 30 * pi / 180;
    const double out = 15 * pi / 180 + (g1 * 0.5 - g2 * 0.5) * 0.5;
    const double in = 15 * pi / 180 + (g1 * 0.5 + g2 * (0.5 - 1)) * 0.5;
    expect_quaternion(node.rot_keys[1].tangent_out, std::cos(out), 0, 0, std::sin(out));
    expect_quaternion(node.rot_keys[1].tangent_in, std::cos(in), 0, 0, std::sin(in));
    // The ends have one neighbour, which counts on both sides.
    expect_quaternion(node.rot_keys[0].tangent_out, 1, 0, 0, 0);
    expect_quaternion(node.rot_keys[2].tangent_in, std::cos(pi / 4), 0, 0, std::sin(pi / 4));
    // Full tension: both go half of their own way.
    mokey_node tense = rotation_node({{0, 0}, {10, 30, 1}, {20, 90}});
    expect_quaternion(tense.rot_keys[1].tangent_out, std::cos(g1 * 1.5), 0, 0, std::sin(g1 * 1.5));
    expect_quaternion(tense.rot_keys[1].tangent_in, std::cos(g1 - g2 / 2), 0, 0, std::sin(g1 - g2 / 2));
    // Uneven spacing scales what the neighbours add: 10 and 30 of 40 frames.
    mokey_node uneven = rotation_node({{0, 0}, {10, 30}, {40, 90}});
    const double far_out = g1 + (g1 * (1 - 0.5 * 0.5) - g2 * 0.5 * 0.5) * 0.5;
    expect_quaternion(uneven.rot_keys[1].tangent_out, std::cos(far_out), 0, 0, std::sin(far_out));
    const double far_in = g1 + (g1 * 0.5 * 1.5 + g2 * (0.5 * 1.5 - 1)) * 0.5;
    expect_quaternion(uneven.rot_keys[1].tangent_in, std::cos(far_in), 0, 0, std::sin(far_in));
}

TEST(rotation_track, tangents_across_a_sign_and_across_a_turn) {
    // 0 and 200 degrees: the dot product is negative, so the way to the inverse of the second counts, which
    // is 160 degrees. Full tension: half of it.
    mokey_node node = rotation_node({{0, 0, 1}, {10, 200, 1}});
    const double g = 40 * pi / 180;
    expect_quaternion(node.rot_keys[0].tangent_out, std::cos(g), 0, 0, std::sin(g));
    // More than a turn away, and a whole turn too, the logarithm of the pure axis counts: a right angle.
    for (const double away : {360.0, 400.0, 1000.0}) {
        mokey_node far = rotation_node({{0, 0}, {10, 30}, {20, 30 + away}});
        const double out = 15 * pi / 180 + (15 * pi / 180 * 0.5 - pi / 2 * 0.5) * 0.5;
        expect_quaternion(far.rot_keys[1].tangent_out, std::cos(out), 0, 0, std::sin(out));
        mokey_node back = rotation_node({{0, 30 + away}, {10, 30}, {20, 0}});
        const double in = 15 * pi / 180 + (pi / 2 * 0.5 - -15 * pi / 180 * 0.5) * 0.5;
        expect_quaternion(back.rot_keys[1].tangent_in, std::cos(in), 0, 0, std::sin(in));
    }
}

TEST(rotation_track, more_than_a_turn_spins_on) {
    // A turn and a half: the tangents come from the axis, times a right angle.
    mokey_node node = rotation_node({{0, 0}, {10, 540}});
    // One half turn more than from 0 to 540: half of pi / 2 + pi.
    const double quarter = (pi / 2 + pi) * 0.5;
    moscene scene;
    scene.frame = 5;
    quaternion keyed{}, bent{}, expected{}, out{};
    quaternion_slerp(node.rot_keys[0].rotation, node.rot_keys[1].rotation, 1, 0.5F, keyed);
    expect_quaternion(keyed, std::cos(quarter), 0, 0, -std::sin(quarter), 1e-5);
    quaternion_slerp(node.rot_keys[0].tangent_out, node.rot_keys[1].tangent_in, 1, 0.5F, bent);
    quaternion_slerp(keyed, bent, 0, 0.5F, expected);
    scene.eval_rot(node, out, nullptr);
    expect_quaternion(out, expected.w, expected.x, expected.y, expected.z);
    // G = ln(0, z) = pi / 2 z on both sides: M = 0, N = 0
    expect_quaternion(node.rot_keys[0].tangent_out, 1, 0, 0, 0);
    // Three keys on one frame are evenly spaced.
    mokey_node jam = rotation_node({{5, 0}, {5, 30}, {5, 90}});
    EXPECT_TRUE(std::isfinite(jam.rot_keys[1].tangent_out.w));
    expect_quaternion(rotation_at(jam, 5), std::cos(pi / 12), 0, 0, std::sin(pi / 12));
}
