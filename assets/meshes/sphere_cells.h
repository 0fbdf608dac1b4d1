// The sphere divided into cells, one around each of some points: what is nearer to it than to the others.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "assets/forms/mesh_kit.h"

namespace assets {

struct sphere_division {
    std::vector<vec3> corners;                   // unit vectors, where three cells meet
    std::vector<std::vector<std::size_t>> cells; // for each point the corners around it, counter-clockwise as
                                                 // seen from outside
};

// Divides by unit vectors, at least four and no four of them on one empty circle. Takes count^4 / 6 steps.
sphere_division divide_sphere(std::span<const vec3> points);

// `count` unit vectors, spread unevenly: a spiral, each point pushed aside by up to `disorder` of their mean
// distance, then `rounds` of Lloyd's method ("Least squares quantization in PCM", 1982), which moves each to
// the middle of its cell.
std::vector<vec3> spread_points(int count, double disorder, int rounds, std::uint32_t seed);

} // namespace assets
