// The cameras and the lights.
#include <array>
#include <cmath>
#include <numbers>

#include "assets/scene/xtelmar.h"

namespace assets::xtelmar {
namespace {

constexpr double turn = 2 * std::numbers::pi;

// A key of the flight's character: the same on each round.
struct touch {
    double tension, continuity, bias, ease_to, ease_from;
    double to_spire; // how far the eyes turn from the way to the spire, 0 to 1
    double angle;    // field of view in degrees
    double roll;     // degrees
};
constexpr std::array<touch, way_keys> touches = {{
    {0.0, 0.0, 0.0, 0.0, 0.0, 0.05, 84, 0},
    {0.0, 0.0, 0.1, 0.0, 0.0, 0.0, 88, 9},
    {0.1, 0.0, 0.0, 0.0, 0.0, 0.15, 82, 4},
    {0.0, 0.1, 0.0, 0.0, 0.0, 0.5, 76, -6},
    {-0.1, 0.0, 0.0, 0.0, 0.0, 0.35, 78, -10},
    {0.0, 0.0, -0.1, 0.0, 0.0, 0.0, 86, 6},
    {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 90, 12},
    {0.0, 0.0, 0.1, 0.0, 0.0, 0.2, 82, 5},
    {0.1, 0.0, 0.0, 0.3, 0.3, 0.55, 74, -8}, // hovers before the spire
    {0.0, -0.1, 0.0, 0.0, 0.0, 0.4, 76, -12},
    {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 86, 0},
    {-0.1, 0.0, 0.0, 0.0, 0.0, 0.0, 88, 8},
}};

scene_key flight_key(int i, vec3 value) {
    const touch& t = touches[static_cast<std::size_t>(i % way_keys)];
    return {.frame = i * frames_a_key,
            .value = value,
            .tension = t.tension,
            .continuity = t.continuity,
            .bias = t.bias,
            .ease_to = t.ease_to,
            .ease_from = t.ease_from};
}

scene_camera flight() {
    constexpr vec3 spire_heart = {0, 0, 3300};
    scene_camera camera{.name = "flight"};
    for (int i = 0; i < track_keys; ++i) {
        const touch& t = touches[static_cast<std::size_t>(i % way_keys)];
        const vec3 ahead = way_at(i + 0.55) + vec3{0, 0, 120};
        camera.places.push_back(flight_key(i, way_at(i)));
        camera.targets.push_back(flight_key(i, ahead * (1 - t.to_spire) + spire_heart * t.to_spire));
        camera.angles.push_back({.frame = i * frames_a_key, .value = {t.angle, 0, 0}});
        camera.rolls.push_back({.frame = i * frames_a_key, .value = {t.roll, 0, 0}});
    }
    return camera;
}

scene_camera still(const char* name, vec3 place, vec3 target, double angle) {
    return {.name = name,
            .places = {{.value = place}},
            .targets = {{.value = target}},
            .angles = {{.value = {angle, 0, 0}}},
            .rolls = {{.value = {0, 0, 0}}}};
}

// A light that goes round once while the flight does, its colours met one after the other.
scene_light wandering_light(const char* name, double height, double start, std::array<vec3, 4> colours) {
    scene_light light{.name = name};
    for (int i = 0; i < track_keys; ++i) {
        const double angle = start + turn / 12 * std::sin(turn * i / way_keys);
        light.places.push_back({.frame = i * frames_a_key,
                                .value = {10000 * std::cos(angle), 10000 * std::sin(angle), 10000 * height}});
        light.colours.push_back(
            {.frame = i * frames_a_key, .value = colours[static_cast<std::size_t>(i % way_keys / 3)]});
    }
    return light;
}

} // namespace

std::vector<scene_camera> cameras() {
    return {still("overview", {9000, -9000, 9000}, {0, 0, 800}, 70),
            still("spire", {4200, 1500, 900}, {0, 0, 3000}, 80), flight()};
}

std::vector<scene_light> lights() {
    return {
        wandering_light("key", 0.75, 0.3,
                        {{{0.95, 0.80, 1.0}, {0.75, 0.85, 1.0}, {0.80, 1.0, 0.90}, {1.0, 0.72, 0.95}}}),
        wandering_light("fill", 0.2, 2.1,
                        {{{0.20, 0.22, 0.55}, {0.16, 0.34, 0.5}, {0.3, 0.2, 0.5}, {0.2, 0.2, 0.6}}}),
        wandering_light("rim", 0.05, 3.6,
                        {{{0.5, 0.12, 0.45}, {0.35, 0.1, 0.5}, {0.2, 0.3, 0.4}, {0.55, 0.1, 0.4}}}),
    };
}

} // namespace assets::xtelmar
