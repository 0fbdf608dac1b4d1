// A 3D scene as it is modelled, and its way into the chunked binary form that the show reads.
//
// Right-handed, z up. The corners of a face run counter-clockwise as seen from the side that it shows. Frames
// are whole numbers, 120 of them a second of the show.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assets/forms/file_forms.h"
#include "assets/forms/mesh_kit.h"

namespace assets {

struct scene_colour {
    std::uint8_t r = 0, g = 0, b = 0;
};

// `ambient` is what a face shows without any light, `diffuse` what a light adds that falls on it at a right
// angle.
struct scene_material {
    std::string name = {};
    scene_colour ambient = {}, diffuse = {};
};

struct solid_face {
    std::uint16_t a = 0, b = 0, c = 0;
    std::uint16_t material = 0; // index into the scene's materials
};

struct solid {
    std::vector<vec3> vertices; // at most 32768, which is what a face can name
    std::vector<solid_face> faces;
};

// A key of a spline after Kochanek and Bartels, "Interpolating splines with local tension, continuity, and
// bias control" (1984). A track of single numbers uses `value.x`.
struct scene_key {
    int frame = 0;
    vec3 value = {};
    double tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};
using scene_track = std::vector<scene_key>;

inline constexpr int no_parent = -1;

// What the nodes of the scene stand for, each in its kind's list. Nodes are numbered in the order bodies,
// cameras (two nodes each), lights.
struct scene_body {
    std::string name = {};
    solid shape = {};        // in places of the scene at which the body was modelled
    vec3 origin = {};        // the point of it that `places` moves
    scene_track places = {}; // where `origin` is, less where the parent's is; one key: it stands still
    int parent = no_parent;  // index of an earlier body
    bool is_dummy = false;   // has no shape, only carries its children
};

struct scene_camera {
    std::string name = {};
    scene_track places = {}, targets = {};
    scene_track angles = {}; // horizontal field of view in degrees
    scene_track rolls = {};  // degrees
};

struct scene_light {
    std::string name = {};
    scene_track places = {};  // only the direction from the middle of the scene counts
    scene_track colours = {}; // red, green, blue from 0 to 1
};

struct scene_description {
    std::vector<scene_material> materials = {};
    std::vector<scene_body> bodies = {};
    std::vector<scene_camera> cameras = {};
    std::vector<scene_light> lights = {};
    vec3 ambient = {}; // light that is everywhere, 0 to 1
    int first_frame = 0, last_frame = 0;
};

// The scene as a 3D Studio file.
file_bytes scene_file(const scene_description& scene);

} // namespace assets
