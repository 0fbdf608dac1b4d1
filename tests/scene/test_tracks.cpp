// Tracks: search, interpolation and tangents, against values worked out by hand and plain evaluators.
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "morvane/base/log.h"
#include "morvane/scene/moscene.h"
#include "morvane/scene/tracks.h"
#include "tests/support/captured_output.h"

namespace {

constexpr double pi = 3.14159265358979323846;

struct plain_key {
    int frame = 0;
    double x = 0;
    double tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};

// A node with a position track on the x axis; the others hold twice and minus the value.
mokey_node position_node(const std::vector<plain_key>& keys) {
    mokey_node node(node_object);
    node.alloc_keys(static_cast<std::int32_t>(keys.size()), track_position);
    for (const plain_key& k : keys) {
        const float x = static_cast<float>(k.x);
        node.add_key_pos(static_cast<std::uint16_t>(k.frame), x, 2 * x, -x, static_cast<float>(k.tension),
                         static_cast<float>(k.continuity), static_cast<float>(k.bias),
                         static_cast<float>(k.ease_to), static_cast<float>(k.ease_from));
    }
    node.calc_tangents();
    return node;
}

double position_at(mokey_node& node, float frame) {
    moscene scene;
    scene.frame = frame;
    vector3d out{9, 9, 9};
    scene.eval_pos(node, out, nullptr);
    EXPECT_NEAR(out.y, 2 * out.x, 1e-4 * (1 + std::fabs(out.x)));
    EXPECT_NEAR(out.z, -out.x, 1e-4 * (1 + std::fabs(out.x)));
    EXPECT_EQ(node.current_pos.x, out.x);
    return out.x;
}

// A node with a field of view track.
mokey_node fov_node(const std::vector<std::pair<int, float>>& keys) {
    mokey_node node(node_camera);
    node.alloc_keys(static_cast<std::int32_t>(keys.size()), track_fov);
    for (const auto& [frame, value] : keys)
        node.add_key_fov(static_cast<std::uint16_t>(frame), value, 1, 1, 1, 1, 1);
    return node;
}

double fov_at(mokey_node& node, float frame, const mokey_node* parent = nullptr) {
    moscene scene;
    scene.frame = frame;
    float out = 999;
    scene.eval_fov(node, out, parent);
    EXPECT_EQ(node.current_fov, out);
    return out;
}

// The tangents of a track with sound frames, straight from their formulas.
std::vector<double> plain_tangents(const std::vector<plain_key>& k) {
    const std::size_t n = k.size();
    std::vector<double> g(n, 0);
    if (n == 2)
        for (std::size_t i = 0; i < 2; ++i)
            g[i] = (k[1].x - k[0].x) * (1 - k[i].tension);
    if (n < 3) return g;
    for (std::size_t i = 0; i + 1 < n; i += 2) {
        const std::size_t middle = i == 0 ? 1 : i > n - 3 ? n - 2 : i;
        const double d1 = k[middle].frame - k[middle - 1].frame, d2 = k[middle + 1].frame - k[middle].frame;
        const double a = 2 * d2 / (d1 + d2), b = 2 * d1 / (d1 + d2);
        if (i == 0) {
            const double across = k[2].x - k[0].x, weight = 0.75 - d1 / (2 * (d1 + d2));
            g[0] = 0;
            g[1] = ((k[1].x - k[0].x - across / 2) * 1.5 + weight * across) * (1 - k[0].tension) * b;
        } else if (i > n - 3) {
            const double across = k[n - 1].x - k[n - 3].x, weight = 0.75 - d2 / (2 * (d1 + d2));
            g[n - 2] =
                ((k[n - 1].x - k[n - 2].x - across / 2) * 1.5 + weight * across) * (1 - k[n - 1].tension) * a;
            g[n - 1] = 0;
        } else {
            const double t = (1 - k[i].tension) / 2, c = k[i].continuity, s = k[i].bias;
            const double before = k[i].x - k[i - 1].x, here = k[i + 1].x - k[i].x,
                         after = k[i + 2].x - k[i + 1].x;
            g[i] = (before * (1 + c) * (1 + s) * t + here * (1 - c) * (1 - s) * t) * a;
            g[i + 1] = (after * (1 - c) * (1 + s) * t + here * (1 + c) * (1 - s) * t) * b;
        }
    }
    return g;
}

// The position at a frame inside the track.
double plain_position(const std::vector<plain_key>& k, double frame) {
    const std::vector<double> g = plain_tangents(k);
    std::size_t i = 0;
    while (k[i + 1].frame < frame)
        ++i;
    const double way = (frame - k[i].frame) / (k[i + 1].frame - k[i].frame);
    const double s = ease(way, k[i].ease_from, k[i + 1].ease_to);
    // Bezier form of the cubic, by repeated halving of the control polygon's ratios.
    std::array<double, 4> p{k[i].x, k[i].x + g[i] / 3, k[i + 1].x - g[i + 1] / 3, k[i + 1].x};
    for (std::size_t level = 3; level > 0; --level)
        for (std::size_t j = 0; j < level; ++j)
            p[j] += (p[j + 1] - p[j]) * s;
    return p[0];
}

std::vector<plain_key> random_track(std::mt19937& random, std::size_t count) {
    std::uniform_real_distribution<double> place(-50, 50), setting(-1, 1), side(0, 1);
    std::vector<plain_key> keys(count);
    int frame = static_cast<int>(random() % 20);
    for (plain_key& k : keys) {
        k = {frame,           place(random), setting(random), setting(random),
             setting(random), side(random),  side(random)};
        frame += 1 + static_cast<int>(random() % 30);
    }
    return keys;
}

} // namespace

TEST(ease, slows_both_ends) {
    EXPECT_EQ(ease(0.5, 0, 0), 0.5);
    EXPECT_EQ(ease(0.25, 0.5, 0.5), 0.125);
    EXPECT_EQ(ease(0.75, 0.5, 0.5), 0.875);
    EXPECT_EQ(ease(0.5, 1, 1), 0.5);
    for (const auto& [a, b] :
         {std::pair{0.3, 0.2}, {0.0, 0.6}, {0.6, 0.0}, {1.0, 0.0}, {0.0, 1.0}, {0.9, 0.8}}) {
        EXPECT_NEAR(ease(0, a, b), 0, 1e-15);
        EXPECT_EQ(ease(1, a, b), 1) << a << " " << b;
        double last = 0;
        for (int i = 1; i <= 1000; ++i) { // it rises in small steps
            const double value = ease(i / 1000.0, a, b);
            EXPECT_GT(value, last);
            EXPECT_LT(value - last, 0.0021);
            last = value;
        }
    }
    EXPECT_EQ(ease(-0.5, 0, 0.5), -0.5 * 2 / 1.5); // before the track, with no slow start
}

TEST(cosine_lerp, is_half_a_wave) {
    EXPECT_NEAR(cosine_lerp(0, 1, 0.25), 0.14645, 5e-6);
    EXPECT_NEAR(cosine_lerp(0, 1, 0.5), 0.5, 1e-9);
    EXPECT_NEAR(cosine_lerp(10, 20, 0.75), 10 + 10 * (1 - std::cos(0.75 * pi)) / 2, 1e-7);
}

TEST(find_key, lands_in_the_segment_that_ends_on_a_key) {
    const auto search = [](const std::vector<int>& frames, float t) {
        std::vector<angle_key> keys;
        for (const int frame : frames)
            keys.push_back({.frame = static_cast<std::uint16_t>(frame)});
        return find_key(std::span<const angle_key>(keys), t, 99);
    };
    EXPECT_EQ(search({10, 20, 30}, 10), 0);
    EXPECT_EQ(search({10, 20, 30}, 20), 0);
    EXPECT_EQ(search({10, 20, 30}, 20.5F), 1);
    EXPECT_EQ(search({10, 20, 30}, 30), 1);
    EXPECT_EQ(search({10, 20, 30}, 30.5F), 99);
    EXPECT_EQ(search({10, 20, 30}, -3), 0);
    EXPECT_EQ(search({10}, 500), 0);
    EXPECT_EQ(search({0, 65535}, 65535), 0);
    EXPECT_EQ(search({30, 20, 10}, 15), 99); // out of order
    EXPECT_EQ(search({30, 20, 10}, 5), 0);
}

TEST(position_track, tangents_worked_out_by_hand) {
    mokey_node two = position_node({{0, 0}, {10, 10}});
    EXPECT_EQ(two.pos_keys[0].tangent.x, 10);
    EXPECT_EQ(two.pos_keys[1].tangent.y, 20);
    EXPECT_EQ(position_at(two, 5), 5);
    mokey_node tense = position_node({{0, 0, 1}, {10, 10, 0.5}});
    EXPECT_EQ(tense.pos_keys[0].tangent.x, 0);
    EXPECT_EQ(tense.pos_keys[1].tangent.x, 5);

    mokey_node three = position_node({{0, 0}, {10, 10}, {30, 20}});
    EXPECT_EQ(three.pos_keys[0].tangent.x, 0);
    EXPECT_NEAR(three.pos_keys[1].tangent.x, 20 * (0.75 - 10.0 / 60) * 2 / 3, 1e-6);
    EXPECT_NEAR(three.pos_keys[1].tangent.x, 7.7778, 5e-5);
    EXPECT_EQ(three.pos_keys[2].tangent.x, 0);

    // Of five, key 3 goes by the settings of key 2 and not its own, and key 4 has none.
    mokey_node five = position_node({{0, 0}, {10, 10}, {20, 20, 0, 0, 1}, {30, 40, 1, 1, 1}, {40, 80}});
    EXPECT_EQ(five.pos_keys[2].tangent.x, 10 * 2 * 0.5F);
    EXPECT_EQ(five.pos_keys[3].tangent.x, 40 * 2 * 0.5F);
    EXPECT_EQ(five.pos_keys[4].tangent.x, 0);
}

TEST(position_track, agrees_with_a_plain_evaluator) {
    std::mt19937 random(5);
    for (std::size_t count = 2; count < 10; ++count)
        for (int round = 0; round < 20; ++round) {
            const std::vector<plain_key> keys = random_track(random, count);
            mokey_node node = position_node(keys);
            const std::vector<double> tangents = plain_tangents(keys);
            for (std::size_t i = 0; i < count; ++i)
                EXPECT_NEAR(node.pos_keys[i].tangent.x, tangents[i], 1e-4) << count << " keys, key " << i;
            for (double t = keys.front().frame; t <= keys.back().frame; t += 0.5)
                EXPECT_NEAR(position_at(node, static_cast<float>(t)), plain_position(keys, t), 2e-3);
            for (const plain_key& k : keys)
                EXPECT_NEAR(position_at(node, static_cast<float>(k.frame)), k.x, 1e-4);
            EXPECT_EQ(position_at(node, static_cast<float>(keys.back().frame) + 0.25F),
                      static_cast<float>(keys.back().x));
        }
}

TEST(position_track, before_and_behind_its_keys) {
    mokey_node two = position_node({{10, 0}, {20, 10}});
    EXPECT_EQ(position_at(two, 5), -5); // goes on unclamped: straight here
    EXPECT_EQ(position_at(two, 1e9F), 10);
}

TEST(position_track, keys_on_one_frame_and_out_of_order_stay_numbers) {
    mokey_node pair = position_node({{10, 1}, {10, 2}});
    EXPECT_EQ(position_at(pair, 10), 2);
    EXPECT_EQ(position_at(pair, 5), 2);
    for (const auto& frames : {std::array{0, 0, 0, 0, 0},
                               {5, 5, 5, 7, 7},
                               {0, 10, 10, 10, 20},
                               {9, 3, 9, 3, 9},
                               {50, 40, 30, 20, 10},
                               {10, 0, 10, 65535, 0}}) {
        std::vector<plain_key> keys;
        for (const int frame : frames)
            keys.push_back({frame, static_cast<double>(keys.size()), 0.5, -0.5, 0.25, 0.5, 0.5});
        mokey_node node = position_node(keys);
        for (const position_key& key : node.pos_keys)
            EXPECT_TRUE(std::isfinite(key.tangent.x));
        for (const float t : {-10.0F, 0.0F, 5.0F, 10.0F, 15.0F, 50.0F, 70000.0F})
            EXPECT_TRUE(std::isfinite(position_at(node, t))) << frames[0] << " at " << t;
    }
    mokey_node step = position_node({{0, 0}, {10, 1}, {10, 5}, {20, 5}});
    EXPECT_NEAR(position_at(step, 10.01F), 5, 0.01); // the later key from here on
}

TEST(angle_track, waves_between_neighbours_and_holds_the_last) {
    mokey_node node = fov_node({{10, 20}, {20, 40}, {40, 10}});
    EXPECT_EQ(fov_at(node, 10), 20);
    EXPECT_NEAR(fov_at(node, 15), 30, 1e-5);
    EXPECT_EQ(fov_at(node, 20), 40);
    EXPECT_NEAR(fov_at(node, 25), 40 - 30 * (1 - std::cos(pi / 4)) / 2, 1e-5);
    EXPECT_EQ(fov_at(node, 40), 10);
    EXPECT_EQ(fov_at(node, 41), 10);
    EXPECT_NEAR(fov_at(node, 5), fov_at(node, 15), 1e-5); // even around the first key
    mokey_node pair = fov_node({{10, 1}, {10, 2}});
    EXPECT_EQ(fov_at(pair, 10), 2);
    mokey_node falling = fov_node({{30, 1}, {20, 2}, {10, 3}});
    for (const float t : {0.0F, 15.0F, 25.0F, 100.0F})
        EXPECT_TRUE(std::isfinite(fov_at(falling, t)));

    mokey_node light(node_light);
    light.alloc_keys(2, track_color);
    light.add_key_color(0, 0, 1, 2, 0, 0, 0, 0, 0);
    light.add_key_color(10, 1, 3, 2, 0, 0, 0, 0, 0);
    moscene scene;
    scene.frame = 2.5F;
    float r = 0, g = 0, b = 0;
    scene.eval_color(light, r, g, b, nullptr);
    EXPECT_NEAR(r, 0.14645, 1e-5);
    EXPECT_NEAR(g, 1 + 2 * 0.14645, 2e-5);
    EXPECT_EQ(b, 2);
}

// Before the only key and behind the last one: no interpolation, which makes no number of infinities.
TEST(tracks, a_key_that_holds_gives_its_value_on_top_of_the_parents) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const auto& [count, frame] : {std::pair{0, 21.0F}, {1, -5.0F}, {1, 21.0F}, {2, 21.0F}, {3, 21.0F}})
        for (const float last : {31.3F, infinity, -infinity}) {
            mokey_node parent(node_camera), child(node_camera);
            parent.current_pos = {1, 2, 3};
            parent.current_fov = 10;
            parent.current_roll = 20;
            parent.current_hotspot = 30;
            parent.current_falloff = 40;
            parent.current_color = {0.5F, 0.25F, 1};
            for (std::int32_t track = track_position; track <= track_falloff; ++track)
                child.alloc_keys(count + 1, track);
            for (int i = 0; i < count; ++i) {
                const auto place = static_cast<std::uint16_t>(10 * i);
                const float value = i + 1 < count ? 7 : last;
                child.add_key_pos(place, value, value, value, 0, 0, 0, 0, 0);
                child.add_key_fov(place, value, 0, 0, 0, 0, 0);
                child.add_key_roll(place, value, 0, 0, 0, 0, 0);
                child.add_key_hotspot(place, value, 0, 0, 0, 0, 0);
                child.add_key_falloff(place, value, 0, 0, 0, 0, 0);
                child.add_key_color(place, value, 2 * value, -value, 0, 0, 0, 0, 0);
            }
            moscene scene;
            scene.frame = frame;
            const float own = count > 0 ? last : 0;
            vector3d place;
            float fov = 0, roll = 0, hotspot = 0, falloff = 0, r = 0, g = 0, b = 0;
            scene.eval_pos(child, place, &parent);
            scene.eval_fov(child, fov, &parent);
            scene.eval_roll(child, roll, &parent);
            scene.eval_hotspot(child, hotspot, &parent);
            scene.eval_falloff(child, falloff, &parent);
            scene.eval_color(child, r, g, b, &parent);
            EXPECT_EQ((std::array{place.x, place.y, place.z, fov, roll, hotspot, falloff, r, g, b}),
                      (std::array{1 + own, 2 + own, 3 + own, 10 + own, 20 + own, 30 + own, 40 + own,
                                  0.5F + own, 0.25F + 2 * own, 1 - own}))
                << count << " keys at " << frame;
            EXPECT_EQ((std::array{child.current_fov, child.current_roll, child.current_hotspot,
                                  child.current_falloff, child.current_color.g}),
                      (std::array{fov, roll, hotspot, falloff, g}));
        }
}

TEST(keys, stay_within_their_allocation) {
    mokey_node node(node_object);
    node.add_key_pos(1, 2, 3, 4, 0, 0, 0, 0, 0); // never allocated
    node.add_key_rot(1, 2, 3, 4, 5, 0, 0, 0, 0, 0, {1, 0, 0, 0});
    EXPECT_EQ(node.pos_count, 0);
    node.alloc_keys(1, track_position);
    for (int i = 0; i < 3; ++i)
        node.add_key_pos(static_cast<std::uint16_t>(i), 1, 2, 3, 0, 0, 0, 0, 0);
    EXPECT_EQ(node.pos_count, 1);
    EXPECT_EQ(node.pos_keys[0].frame, 0);
    node.alloc_keys(2, track_position);
    EXPECT_EQ(node.pos_count, 0);
    EXPECT_EQ(node.pos_keys.size(), 2U);
    node.alloc_keys(70000, track_color);
    EXPECT_EQ(node.color_keys.size(), 32767U);
    node.alloc_keys(-1, track_color);
    EXPECT_TRUE(node.color_keys.empty());
    node.alloc_keys(5, 10);
    node.alloc_keys(5, 0);
    node.alloc_keys(32767, track_scale);
    for (int i = 0; i < 40000; ++i)
        node.add_key_scale(1, 1, 1, 1, 0, 0, 0, 0, 0);
    EXPECT_EQ(node.scale_count, 32767);
}

TEST(keys, additions_log_their_signatures) {
    log_channel = {.enabled = true, .level_mask = log_debug, .to_stdout = true};
    captured_output printed;
    mokey_node node(node_object);
    node.add_key_pos(0, 0, 0, 0, 0, 0, 0, 0, 0);
    node.add_key_rot(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, {});
    node.add_key_scale(0, 0, 0, 0, 0, 0, 0, 0, 0);
    node.add_key_fov(0, 0, 0, 0, 0, 0, 0);
    node.add_key_roll(0, 0, 0, 0, 0, 0, 0);
    node.add_key_color(0, 0, 0, 0, 0, 0, 0, 0, 0);
    node.add_key_morph(0, "", 0, 0, 0, 0, 0);
    node.add_key_hotspot(0, 0, 0, 0, 0, 0, 0);
    node.add_key_falloff(0, 0, 0, 0, 0, 0, 0);
    printed.stop();
    log_channel = {};
    std::string expected = "[D] mokey_node::mokey_node()\n";
    for (const char* name : {"pos", "rot", "scale", "fov", "roll", "color", "morph", "hotspot", "falloff"})
        expected += "[D] void mokey_node::add_key_" + std::string(name) + "()\n";
    EXPECT_EQ(printed.out(), expected);
}
