// The key records of a node's tracks, in the order in which a scene file gives them.
//
// `frame` is unsigned 16-bit; tension, continuity, bias, ease_to and ease_from come from the file, 0 where it
// has none. Roll, field of view, colour, hotspot and falloff keys carry them for the debug dump alone.
#pragma once

#include <cstdint>

#include "morvane/math/quaternion.h"
#include "morvane/math/vector3d.h"
#include "morvane/scene/inner/names.h"

struct position_key {
    std::uint16_t frame = 0;
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
    vector3d value;
    vector3d tangent; // slope on arrival and on departure
};

struct rotation_key {
    std::uint16_t frame = 0;
    float angle = 0;       // radians, the sum of the track's angles so far
    vector3d axis;         // as the file gives it
    quaternion rotation{}; // the product of the track's turns so far
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
    quaternion tangent_in{}, tangent_out{};
};

struct scale_key {
    std::uint16_t frame = 0;
    vector3d value;
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};

// Roll, field of view, hotspot and falloff, in degrees.
struct angle_key {
    std::uint16_t frame = 0;
    float value = 0;
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};

struct color_key {
    std::uint16_t frame = 0;
    float r = 0, g = 0, b = 0;
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};

struct morph_key {
    std::uint16_t frame = 0;
    char target[name_capacity] = {}; // a mesh's name
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};

// The tracks by number, for `mokey_node::alloc_keys`.
enum track_types : std::int32_t {
    track_position = 1,
    track_rotation = 2,
    track_scale = 3,
    track_roll = 4,
    track_fov = 5,
    track_color = 6,
    track_morph = 7,
    track_hotspot = 8,
    track_falloff = 9,
};

inline constexpr std::int32_t key_limit = 32767; // keys a track
