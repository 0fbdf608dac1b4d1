// The way through the canyon, and the colours of the place.
#include <array>
#include <cmath>
#include <numbers>

#include "assets/scene/xtelmar.h"

namespace assets::xtelmar {
namespace {

struct waypoint {
    double radius, height;
};
constexpr std::array<waypoint, way_keys> waypoints = {{{6000, 760},
                                                       {6500, 620},
                                                       {5800, 900},
                                                       {5100, 1500},
                                                       {5700, 1150},
                                                       {6800, 560},
                                                       {7300, 620},
                                                       {6500, 1200},
                                                       {5300, 2050},
                                                       {5200, 1500},
                                                       {6100, 700},
                                                       {6400, 560}}};

vec3 key_place(int i) {
    const int wrapped = (i % way_keys + way_keys) % way_keys;
    const waypoint& point = waypoints[static_cast<std::size_t>(wrapped)];
    const double angle = 2 * std::numbers::pi * wrapped / way_keys;
    return {point.radius * std::cos(angle), point.radius * std::sin(angle), point.height};
}

} // namespace

// Catmull and Rom, "A class of local interpolating splines" (1974).
vec3 way_at(double u) {
    const double whole = std::floor(u);
    const double t = u - whole;
    const int i = static_cast<int>(whole);
    const vec3 p0 = key_place(i - 1), p1 = key_place(i), p2 = key_place(i + 1), p3 = key_place(i + 2);
    return p1 + ((p2 - p0) * t + (p0 * 2 - p1 * 5 + p2 * 4 - p3) * (t * t) +
                 (p1 * 3 - p0 - p2 * 3 + p3) * (t * t * t)) *
                    0.5;
}

vec3 way_direction(double u) {
    return normalised(way_at(u + 0.01) - way_at(u - 0.01));
}

std::vector<scene_material> paints() {
    std::vector<scene_material> all(paint_count);
    all[sky_zenith] = {"sky zenith", {6, 5, 22}, {0, 0, 0}};
    all[sky_high] = {"sky high", {14, 10, 44}, {0, 0, 0}};
    all[sky_middle] = {"sky middle", {30, 17, 78}, {0, 0, 0}};
    all[sky_low] = {"sky low", {66, 26, 110}, {0, 0, 0}};
    all[sky_horizon] = {"sky horizon", {128, 46, 142}, {0, 0, 0}};
    all[star_white] = {"star white", {226, 220, 255}, {0, 0, 0}};
    all[star_magenta] = {"star magenta", {255, 128, 255}, {0, 0, 0}};
    all[moss_floor] = {"moss", {3, 22, 16}, {24, 112, 74}};
    all[silt_floor] = {"silt", {4, 14, 22}, {30, 78, 96}};
    all[shore] = {"shore", {8, 12, 34}, {44, 62, 130}};
    all[rock_dark] = {"rock dark", {6, 6, 24}, {34, 36, 98}};
    all[rock_indigo] = {"rock indigo", {10, 9, 36}, {58, 54, 148}};
    all[rock_violet] = {"rock violet", {18, 8, 38}, {118, 64, 186}};
    all[rock_frost] = {"rock frost", {34, 22, 54}, {214, 178, 236}};
    all[lake_glow] = {"lake glow", {24, 130, 96}, {20, 80, 60}};
    all[lake_deep] = {"lake deep", {6, 64, 54}, {20, 70, 60}};
    all[metal_dark] = {"metal dark", {5, 5, 14}, {70, 66, 110}};
    all[metal_light] = {"metal light", {14, 14, 30}, {150, 146, 200}};
    all[glow_magenta] = {"glow magenta", {236, 84, 226}, {0, 0, 0}};
    all[glow_phosphor] = {"glow phosphor", {110, 255, 176}, {0, 0, 0}};
    all[crystal_green] = {"crystal", {8, 70, 46}, {40, 190, 130}};
    all[crystal_tip] = {"crystal tip", {50, 180, 120}, {60, 80, 70}};
    all[moon_rock] = {"moon rock", {22, 12, 52}, {168, 110, 214}};
    all[lantern_gold] = {"lantern", {255, 190, 255}, {0, 0, 0}};
    return all;
}

} // namespace assets::xtelmar
