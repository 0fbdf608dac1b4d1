// A convex polygon on its way to the rasterizers, with every attribute that one of them may want.
#pragma once

#include <array>
#include <cstdint>

#include "morvane/math/vector3d.h"

struct poly_vertex {
    vector3d pos; // camera space; after projection x and y are pixels and z stays the camera-space depth
    float u = 0, v = 0;               // in texels
    std::int32_t r = 0, g = 0, b = 0; // 0 to 255 when they come from the renderer
};

inline constexpr std::int32_t poly_capacity = 20;

// A plain value. `count` never passes `poly_capacity`.
struct poly {
    std::array<poly_vertex, poly_capacity> v;
    std::int32_t opacity = 256;      // blend weight of the alpha modes, 0 to 256; 256 is opaque
    std::int32_t texture_width = 0;  // texels a row
    std::int32_t texture_height = 0; // rows; 0 for a texture that holds whatever texel its coordinates name
    const std::uint32_t* texture = nullptr;
    std::int32_t r = 0, g = 0, b = 0; // face colour, 0 to 255
    std::int32_t count = 0;
};
