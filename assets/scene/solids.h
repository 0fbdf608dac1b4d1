// Bodies of flat faces, built up piece by piece for the 3D scene.
//
// Each piece is added to a solid with its corners counter-clockwise as seen from outside, and a material for
// each face.
#pragma once

#include <functional>
#include <span>

#include "assets/forms/scene_file.h"

namespace assets {

// Tells the material of a face from its middle and its unit normal.
using face_painter = std::function<std::uint16_t(vec3 middle, vec3 normal)>;

// One material for all.
face_painter painted(std::uint16_t material);

void add_triangle(solid& to, vec3 a, vec3 b, vec3 c, const face_painter& paint);

// The quad a, b, c, d, split from a to c.
void add_quad(solid& to, vec3 a, vec3 b, vec3 c, vec3 d, const face_painter& paint);

// Any number of corners in one plane, as a fan from the first one.
void add_polygon(solid& to, std::span<const vec3> corners, const face_painter& paint);

// The wall between two rings of as many corners, seen from outside: `lower` and `upper` run counter-clockwise
// as seen from above. It closes round the ring.
void add_wall(solid& to, std::span<const vec3> lower, std::span<const vec3> upper, const face_painter& paint);

// The roof from a ring up to a point.
void add_tip(solid& to, std::span<const vec3> ring, vec3 tip, const face_painter& paint);

// Makes one vertex of all that lie in the same place.
void weld(solid& shape);

// `corners` places around `middle` in the plane of `right` and `ahead` (unit vectors at right angles), the
// first one `turn` radians from `right`.
std::vector<vec3> ring_around(vec3 middle, vec3 right, vec3 ahead, double radius, int corners,
                              double turn = 0);

// Two pyramids base to base around `middle`, `radius` wide and `height` high each.
void add_octahedron(solid& to, vec3 middle, double radius, double height, const face_painter& paint);

// A sphere of 20 * 4^levels triangles, each vertex moved out by the factor that `swell` gives its direction.
void add_sphere(solid& to, vec3 middle, double radius, int levels, const std::function<double(vec3)>& swell,
                const face_painter& paint);

} // namespace assets
