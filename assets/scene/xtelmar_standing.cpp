// What stands in the canyon: gates over the way, beacons beside it, crystals on the slopes, the spire.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "assets/forms/noise.h"
#include "assets/scene/solids.h"
#include "assets/scene/xtelmar.h"

namespace assets::xtelmar {
namespace {

constexpr double turn = 2 * std::numbers::pi;
constexpr vec3 up = {0, 0, 1};

double random(int i, int what, std::uint32_t seed) {
    return static_cast<double>(hash01(i, what, seed));
}

vec3 on_ground(double angle, double radius) {
    return {radius * std::cos(angle), radius * std::sin(angle), ground_height(angle, radius)};
}

// An upright ring of eight blocks around the way; its inner side glows.
solid gate(double u) {
    constexpr double outer_radius = 1120, inner_radius = 900, depth = 85;
    constexpr int corners = 8;
    const vec3 middle = way_at(u) + up * 120;
    const vec3 forward = way_direction(u);
    const vec3 right = normalised(cross(forward, up));
    const vec3 above = cross(right, forward);
    const auto ring = [&](double along, double radius) {
        return ring_around(middle + forward * along, right, above, radius, corners, turn / corners / 2);
    };
    const auto outer_back = ring(-depth, outer_radius), outer_front = ring(depth, outer_radius);
    const auto inner_back = ring(-depth, inner_radius), inner_front = ring(depth, inner_radius);
    solid block;
    for (std::size_t i = 0; i < corners; ++i) {
        const std::size_t n = (i + 1) % corners;
        const paint face = i % 2 == 0 ? metal_dark : metal_light;
        add_quad(block, outer_back[i], outer_front[i], outer_front[n], outer_back[n], painted(metal_dark));
        add_quad(block, inner_back[n], inner_front[n], inner_front[i], inner_back[i], painted(glow_magenta));
        add_quad(block, outer_back[n], inner_back[n], inner_back[i], outer_back[i], painted(face));
        add_quad(block, outer_front[i], inner_front[i], inner_front[n], outer_front[n], painted(face));
    }
    return block;
}

void add_beacon(solid& to, vec3 foot, double height) {
    const auto base = ring_around(foot - up * 60, {1, 0, 0}, {0, 1, 0}, 62, 4, turn / 8);
    const auto neck = ring_around(foot + up * height, {1, 0, 0}, {0, 1, 0}, 34, 4, turn / 8);
    add_wall(to, base, neck, painted(metal_dark));
    add_tip(to, neck, foot + up * (height + 110), painted(glow_phosphor));
}

// Pairs along the whole way, which make speed felt.
solid beacons() {
    solid all;
    constexpr int pairs = 24;
    for (int i = 0; i < pairs; ++i) {
        const vec3 p = way_at(static_cast<double>(way_keys) * (i + 0.5) / pairs);
        const double angle = std::atan2(p.y, p.x), radius = std::hypot(p.x, p.y);
        for (const double aside : {-560.0, 560.0})
            add_beacon(all, on_ground(angle, radius + aside), 190 + 90 * random(i, 1, 51));
    }
    return all;
}

// A prism of six sides with a point, leaning.
void add_crystal(solid& to, vec3 foot, vec3 axis, double radius, double height) {
    const vec3 right = normalised(cross(axis, {0.3, 0.9, 0.1}));
    const vec3 ahead = cross(axis, right);
    const auto base = ring_around(foot - axis * 120, right, ahead, radius, 6);
    const auto neck = ring_around(foot + axis * height, right, ahead, radius * 0.82, 6);
    add_wall(to, base, neck, painted(crystal_green));
    add_tip(to, neck, foot + axis * (height + radius * 2.2), painted(crystal_tip));
}

solid crystals(int half) {
    solid all;
    constexpr int clusters = 18;
    for (int i = half; i < clusters; i += 2) {
        const double angle = turn * (i + 0.7 * random(i, 0, 61)) / clusters;
        const vec3 way = way_at(angle / turn * way_keys);
        const double side = i % 3 == 0 ? -1 : 1;
        const double radius = std::hypot(way.x, way.y) + side * (1050 + 500 * random(i, 1, 61));
        for (int k = 0; k < 3; ++k) {
            const vec3 foot = on_ground(angle + 0.035 * (k - 1), radius + 170 * (random(i, k + 2, 61) - 0.5));
            const vec3 lean = normalised(vec3{random(i, k + 5, 61) - 0.5, random(i, k + 8, 61) - 0.5, 1.1});
            const double size = k == 1 ? 1 : 0.55;
            add_crystal(all, foot, lean, (90 + 70 * random(i, k, 62)) * (0.6 + 0.4 * size),
                        size * (620 + 520 * random(i, k, 63)));
        }
    }
    return all;
}

// A twisted tower of hexagons out of the lake, bands of light in it.
solid spire() {
    struct storey {
        double height, radius;
        paint wall;
    };
    constexpr storey storeys[] = {
        {-700, 1250, metal_dark}, {-100, 900, metal_light},   {500, 690, metal_dark},
        {600, 720, glow_magenta}, {680, 690, metal_light},    {1500, 520, metal_dark},
        {2300, 420, metal_light}, {2380, 450, glow_phosphor}, {2460, 420, metal_light},
        {3200, 360, metal_dark},  {3900, 430, metal_light},   {4300, 620, glow_magenta},
        {4420, 640, metal_dark},  {4700, 330, metal_light},   {5300, 60, metal_light},
    };
    solid tower;
    const auto ring = [&](std::size_t i) {
        return ring_around({0, 0, storeys[i].height}, {1, 0, 0}, {0, 1, 0}, storeys[i].radius, 6,
                           storeys[i].height * 0.00042);
    };
    for (std::size_t i = 0; i + 1 < std::size(storeys); ++i)
        add_wall(tower, ring(i), ring(i + 1), painted(storeys[i].wall));
    add_tip(tower, ring(std::size(storeys) - 1), {0, 0, 5900}, painted(glow_phosphor));
    return tower;
}

scene_body still_body(std::string name, solid shape) {
    return {.name = std::move(name), .shape = std::move(shape), .origin = {}, .places = {{.value = {}}}};
}

} // namespace

std::vector<scene_body> standing_bodies() {
    std::vector<scene_body> bodies;
    constexpr int gates = 6;
    for (int i = 0; i < gates; ++i)
        bodies.push_back(still_body("gate " + std::to_string(i + 1), gate(way_keys * (i + 0.4) / gates)));
    bodies.push_back(still_body("beacons", beacons()));
    bodies.push_back(still_body("crystals 1", crystals(0)));
    bodies.push_back(still_body("crystals 2", crystals(1)));
    bodies.push_back(still_body("spire", spire()));
    return bodies;
}

} // namespace assets::xtelmar
