// "Xtelmar": a ring-shaped canyon under a violet sky, gates along it and a spire in its middle.
//
// Angles run counter-clockwise as seen from above. The way through the canyon is one closed curve; a place on
// it is told by `u` from 0 to `way_keys`, a whole number being a key of the flight. Lengths are such that a
// lantern is some 100 across.
#pragma once

#include <vector>

#include "assets/forms/scene_file.h"

namespace assets::xtelmar {

inline constexpr int way_keys = 12;      // keys of one round
inline constexpr int frames_a_key = 200; // a round takes 2400 frames, 20 seconds
inline constexpr int round_frames = way_keys * frames_a_key;

// The first and last keys of a spline stand still, so the range that loops lies inside the tracks: it begins
// at the third key and ends one frame before its twin a round later, as the animation takes every second
// frame.
inline constexpr int first_frame = 2 * frames_a_key;
inline constexpr int last_frame = first_frame + round_frames - 1;
inline constexpr int track_keys = way_keys + 5;

// The place of the way at `u`, which wraps, and its direction (unit length).
vec3 way_at(double u);
vec3 way_direction(double u);

// Height of the ground; `angle` in radians, `radius` from the middle.
double ground_height(double angle, double radius);

enum paint : std::uint16_t {
    sky_zenith,
    sky_high,
    sky_middle,
    sky_low,
    sky_horizon,
    star_white,
    star_magenta,
    moss_floor,
    silt_floor,
    shore,
    rock_dark,
    rock_indigo,
    rock_violet,
    rock_frost,
    lake_glow,
    lake_deep,
    metal_dark,
    metal_light,
    glow_magenta,
    glow_phosphor,
    crystal_green,
    crystal_tip,
    moon_rock,
    lantern_gold,
    paint_count,
};
std::vector<scene_material> paints();

// Ground and sky.
std::vector<scene_body> ground_bodies();
std::vector<scene_body> sky_bodies();

// What stands and floats. `first` is the number that the first of the bodies will have in the scene.
std::vector<scene_body> standing_bodies();
std::vector<scene_body> floating_bodies(int first);

// Three cameras, the third flies through the canyon; the lights.
std::vector<scene_camera> cameras();
std::vector<scene_light> lights();

} // namespace assets::xtelmar
