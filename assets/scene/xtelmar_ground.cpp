// The canyon's ground and the dome of the sky.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "assets/forms/noise.h"
#include "assets/scene/solids.h"
#include "assets/scene/xtelmar.h"

namespace assets::xtelmar {
namespace {

constexpr double turn = 2 * std::numbers::pi;

double smooth(double from, double to, double v) {
    const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

// Distance of the way from the middle at an angle; its keys lie at even angles, and between them it nearly
// does.
double way_radius(double angle) {
    const vec3 p = way_at(angle / turn * way_keys);
    return std::hypot(p.x, p.y);
}

double crest(double angle, double radius, std::uint32_t seed, double cell) {
    return static_cast<double>(ridges({static_cast<float>(radius * std::cos(angle) / cell + 40),
                                       static_cast<float>(radius * std::sin(angle) / cell + 40)},
                                      3, seed));
}

// Rows of the ground across the way: steps from the middle of the valley inwards and outwards.
constexpr auto rows = std::to_array<double>({-4300, -3300, -2600, -2000, -1550, -1150, -750, -300, 300, 750,
                                             1150, 1600, 2150, 2800, 3600, 4800, 6600});
constexpr int segments = 84;
constexpr int sectors = 6;

constexpr double lake_level = -640;
constexpr double lake_radius = 3000;

vec3 ground_vertex(int segment, std::size_t row) {
    const int wrapped = segment % segments;
    const auto jitter = [&](std::uint32_t seed) {
        return static_cast<double>(hash01(wrapped, static_cast<std::int32_t>(row), seed)) - 0.5;
    };
    const double angle = turn * (wrapped + jitter(11) * 0.55) / segments;
    const double radius = std::max(way_radius(angle) + rows[row] + jitter(12) * 240, 700.0);
    return {radius * std::cos(angle), radius * std::sin(angle), ground_height(angle, radius)};
}

paint ground_paint(vec3 middle, vec3 normal) {
    const double angle = std::atan2(middle.y, middle.x);
    const double radius = std::hypot(middle.x, middle.y);
    const double aside = radius - way_radius(angle);
    const auto chance = static_cast<double>(
        hash01(static_cast<std::int32_t>(middle.x), static_cast<std::int32_t>(middle.y), 31));
    if (middle.z < lake_level + 260) return chance < 0.6 ? shore : silt_floor;
    if (std::fabs(aside) < 900 && normal.z > 0.75) return chance < 0.7 ? moss_floor : silt_floor;
    const double level = middle.z + (chance - 0.5) * 900;
    if (level > 3000) return rock_frost;
    if (level > 1900) return rock_violet;
    return level > 800 ? rock_indigo : rock_dark;
}

solid ground_sector(int sector) {
    solid ground;
    const face_painter paint = [](vec3 middle, vec3 normal) { return ground_paint(middle, normal); };
    constexpr int wide = segments / sectors;
    for (int s = sector * wide; s < (sector + 1) * wide; ++s)
        for (std::size_t row = 0; row + 1 < rows.size(); ++row) {
            const vec3 a = ground_vertex(s, row), b = ground_vertex(s, row + 1);
            const vec3 c = ground_vertex(s + 1, row + 1), d = ground_vertex(s + 1, row);
            // The diagonal changes sides, so that no grain shows.
            if ((static_cast<std::size_t>(s) + row) % 2 == 0) {
                add_triangle(ground, a, b, c, paint);
                add_triangle(ground, a, c, d, paint);
            } else {
                add_triangle(ground, a, b, d, paint);
                add_triangle(ground, b, c, d, paint);
            }
        }
    return ground;
}

solid lake() {
    solid water;
    constexpr int corners = 24;
    const std::vector<vec3> outer =
        ring_around({0, 0, lake_level}, {1, 0, 0}, {0, 1, 0}, lake_radius, corners);
    const std::vector<vec3> inner = ring_around({0, 0, lake_level}, {1, 0, 0}, {0, 1, 0}, lake_radius * 0.55,
                                                corners, turn / corners / 2);
    add_wall(water, outer, inner, painted(lake_deep));
    add_tip(water, inner, {0, 0, lake_level}, painted(lake_glow));
    return water;
}

constexpr double dome_radius = 30000;
constexpr int dome_columns = 24;

paint dome_paint(vec3 middle) {
    const double lift = middle.z / dome_radius;
    const auto chance = static_cast<double>(
        hash01(static_cast<std::int32_t>(middle.x / 7), static_cast<std::int32_t>(middle.y / 7), 77));
    const double level = lift + (chance - 0.5) * 0.09;
    if (level < 0.2) return sky_horizon;
    if (level < 0.35) return sky_low;
    if (level < 0.52) return sky_middle;
    return level < 0.74 ? sky_high : sky_zenith;
}

// Seen from inside: the rings run clockwise.
solid dome() {
    solid sky;
    const face_painter paint = [](vec3 middle, vec3) { return dome_paint(middle); };
    const auto ring = [](double elevation, double offset) {
        std::vector<vec3> places =
            ring_around({0, 0, dome_radius * std::sin(elevation)}, {1, 0, 0}, {0, 1, 0},
                        dome_radius * std::cos(elevation), dome_columns, offset);
        std::reverse(places.begin(), places.end());
        return places;
    };
    constexpr double elevations[] = {-0.12, 0.06, 0.17, 0.31, 0.5, 0.74, 1.05};
    for (std::size_t i = 0; i + 1 < std::size(elevations); ++i)
        add_wall(sky, ring(elevations[i], 0.13 * static_cast<double>(i)),
                 ring(elevations[i + 1], 0.13 * static_cast<double>(i)), paint);
    add_tip(sky, ring(elevations[6], 0.65), {0, 0, dome_radius}, paint);
    return sky;
}

// Small triangles that face the middle.
solid stars() {
    solid all;
    constexpr int count = 180;
    for (int i = 0; i < count; ++i) {
        const auto random = [i](std::uint32_t seed) { return static_cast<double>(hash01(i, 5, seed)); };
        const double azimuth = turn * random(1), lift = 0.16 + 0.82 * random(2);
        const double flat = std::sqrt(1 - lift * lift);
        const vec3 to_star = {flat * std::cos(azimuth), flat * std::sin(azimuth), lift};
        const vec3 right = normalised(cross(to_star, {0, 0, 1}));
        const vec3 up = cross(right, to_star);
        const double size = 150 + 170 * random(3) * random(3);
        const vec3 place = to_star * (dome_radius * 0.93);
        add_triangle(all, place + (right * -1 - up * 0.6) * size, place + (right - up * 0.6) * size,
                     place + up * size, painted(i % 5 == 0 ? star_magenta : star_white));
    }
    return all;
}

scene_body still_body(std::string name, solid shape) {
    return {.name = std::move(name), .shape = std::move(shape), .origin = {}, .places = {{.value = {}}}};
}

} // namespace

double ground_height(double angle, double radius) {
    const double aside = radius - way_radius(angle);
    const double floor = 130 * crest(angle, radius, 3, 900);
    const double outer = smooth(800, 2500, aside) * (1900 + 1500 * crest(angle, radius, 5, 3300)) +
                         smooth(2600, 6000, aside) * (900 + 2600 * crest(angle, radius, 7, 5200));
    const double inner = smooth(800, 1900, -aside) * (700 + 1300 * crest(angle, radius, 9, 2100));
    const double basin = smooth(2000, 3400, -aside);
    return floor + outer + inner * (1 - basin) + basin * (lake_level - 160);
}

std::vector<scene_body> ground_bodies() {
    std::vector<scene_body> bodies;
    for (int sector = 0; sector < sectors; ++sector)
        bodies.push_back(still_body("ground " + std::to_string(sector + 1), ground_sector(sector)));
    bodies.push_back(still_body("lake", lake()));
    return bodies;
}

std::vector<scene_body> sky_bodies() {
    return {still_body("dome", dome()), still_body("stars", stars())};
}

} // namespace assets::xtelmar
