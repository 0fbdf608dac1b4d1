// How brightly the light falls on a face.
#pragma once

#include <cstddef>

#include "morvane/object/object.h"

// The intensity of face `face`, 0 to 1, from `world_normals` and `light`, in 32-bit floats. What comes out
// above 1 gives 0 and not 1, what comes out below 0 (a face turned away) gives 0 too, and so do a zero normal
// and a number that is none. A `face` beyond the capacity gives 0. The renderers multiply each colour channel
// by it and truncate.
inline float object_face_intensity(const object& mesh, std::int32_t face) {
    if (face < 0 || face >= object_capacity) return 0;
    const object_vertex& normal = mesh.world_normals[static_cast<std::size_t>(face)];
    const float intensity =
        (normal.y / 256) * mesh.light.y + (normal.z / 256) * mesh.light.z + (normal.x / 256) * mesh.light.x;
    return intensity >= 0 && intensity <= 1 ? intensity : 0;
}
