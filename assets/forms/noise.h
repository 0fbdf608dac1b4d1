// Noise without a generator: every value is a hash of its place and a seed, so that it is the same
// everywhere.
//
// Coordinates are in cells of the lattice. With a `period` above 0 (whole cells, both ways) the pattern
// repeats.
#pragma once

#include <cstdint>

#include "assets/forms/shapes.h"

namespace assets {

// Uniform over [0, 1). The mixing steps are those of Jarzynski and Olano, "Hash functions for GPU
// rendering", 2020 (pcg2d).
float hash01(std::int32_t x, std::int32_t y, std::uint32_t seed);

// Gradient noise (Perlin, "Improving noise", 2002, with unit gradients of any direction), about -0.7 to 0.7.
float gradient_noise(vec2 p, std::uint32_t seed, std::int32_t period = 0);

// `octaves` of gradient noise, each at twice the frequency and half the height, about -1 to 1.
float fbm(vec2 p, int octaves, std::uint32_t seed, std::int32_t period = 0);

// The same of 1 - |noise|, squared: crests. 0 to 1.
float ridges(vec2 p, int octaves, std::uint32_t seed, std::int32_t period = 0);

// The cell of the nearest of one random point a lattice cell (Worley, "A cellular texture basis function",
// 1996): the distance to that point, the distance to the border of its cell (Quilez, "Voronoi edges"), and a
// value of 0 to 1 that belongs to it.
struct cell {
    float nearest;
    float edge;
    float value;
};
cell cells(vec2 p, std::uint32_t seed, std::int32_t period = 0);

} // namespace assets
