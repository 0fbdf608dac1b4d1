// What floats: the moon over the spire, the stones around it, the lanterns that fly ahead.
#include <cmath>
#include <numbers>
#include <string>

#include "assets/forms/noise.h"
#include "assets/scene/solids.h"
#include "assets/scene/xtelmar.h"

namespace assets::xtelmar {
namespace {

constexpr double turn = 2 * std::numbers::pi;

// A track over the whole time whose key `i` holds `place(i)`. It loops if `place` does after `way_keys`.
scene_track round_track(auto place) {
    scene_track track;
    for (int i = 0; i < track_keys; ++i)
        track.push_back({.frame = i * frames_a_key, .value = place(i)});
    return track;
}

// It goes round the spire's head once while the flight goes round the canyon.
scene_body moon() {
    scene_body body{.name = "moon", .origin = {}};
    const auto swell = [](vec3 d) { return 1 + 0.09 * smooth_noise(d, 2.2, 2); };
    add_sphere(body.shape, {}, 900, 2, swell, painted(moon_rock));
    body.places = round_track([](int i) {
        const double angle = turn * i / way_keys + 2.4;
        return vec3{2300 * std::cos(angle), 2300 * std::sin(angle), 5200 + 260 * std::sin(turn * i / 6)};
    });
    return body;
}

// Stones that hang in a circle around the spire; a dummy lifts and lowers all of them, and each has a small
// motion of its own.
void add_stones(std::vector<scene_body>& bodies, int first) {
    constexpr int count = 9;
    const int carrier = first + static_cast<int>(bodies.size());
    bodies.push_back({.name = "stones",
                      .places = round_track([](int i) {
                          return vec3{0, 0, 420 * std::sin(turn * i / 12)};
                      }),
                      .is_dummy = true});
    for (int s = 0; s < count; ++s) {
        const double angle = turn * s / count;
        const double radius = 2150 + 350 * (s % 3);
        const vec3 middle = {radius * std::cos(angle), radius * std::sin(angle), 1900 + 420.0 * (s % 4)};
        scene_body stone{.name = "stone " + std::to_string(s + 1), .origin = middle, .parent = carrier};
        add_octahedron(stone.shape, middle, 190 + 40 * (s % 3), 640 + 90 * (s % 4), [](vec3 p, vec3 normal) {
            return normal.z * (p.z > 0 ? 1 : -1) > 0 ? rock_violet : rock_frost;
        });
        stone.places = round_track([&](int i) {
            return middle + vec3{0, 0, 170 * std::sin(turn * (i + 2.0 * s) / (s % 2 == 0 ? 4 : 6))};
        });
        bodies.push_back(std::move(stone));
    }
}

// Lanterns lead the way: each flies along it, two sparks beside it.
void add_lanterns(std::vector<scene_body>& bodies, int first) {
    constexpr double leads[] = {0.62, 0.95, 3.5, 7.2};
    for (std::size_t l = 0; l < std::size(leads); ++l) {
        const int carrier = first + static_cast<int>(bodies.size());
        const double lead = leads[l];
        const double side = l % 2 == 0 ? 1 : -1;
        const auto place = [&](int i) {
            const vec3 across = normalised(cross(way_direction(i + lead), {0, 0, 1}));
            return way_at(i + lead) + across * (side * 170 * std::cos(turn * i / 4)) +
                   vec3{0, 0, 60 + 110 * std::sin(turn * i / 3 + static_cast<double>(l))};
        };
        scene_body lantern{.name = "lantern " + std::to_string(l + 1), .origin = {}};
        add_octahedron(lantern.shape, {}, 46, 84, painted(lantern_gold));
        lantern.places = round_track(place);
        bodies.push_back(std::move(lantern));
        for (const int spark : {-1, 1}) {
            scene_body small{.name = "spark " + std::to_string(l + 1) + (spark < 0 ? "a" : "b"),
                             .origin = {},
                             .parent = carrier};
            add_octahedron(small.shape, {}, 20, 32, painted(glow_phosphor));
            small.places = round_track([&](int i) {
                const double phase = turn * i / 3;
                return vec3{130.0 * spark * std::cos(phase), 130.0 * spark * std::sin(phase), 60.0 * spark};
            });
            bodies.push_back(std::move(small));
        }
    }
}

} // namespace

std::vector<scene_body> floating_bodies(int first) {
    std::vector<scene_body> bodies;
    bodies.push_back(moon());
    add_stones(bodies, first);
    add_lanterns(bodies, first);
    return bodies;
}

} // namespace assets::xtelmar
