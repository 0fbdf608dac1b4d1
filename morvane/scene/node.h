// A node of the keyframe tree: it animates one record of the scene by its tracks.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "morvane/math/quaternion.h"
#include "morvane/math/vector3d.h"
#include "morvane/scene/inner/names.h"
#include "morvane/scene/keys.h"

struct mesh;
struct camera;
struct light;

enum node_types : std::uint16_t {
    node_unknown = 0,
    node_ambient = 1,
    node_object = 2,        // mesh: position
    node_camera = 4,        // camera: position, field of view, roll
    node_camera_target = 8, // camera: target
    node_light = 16,        // light: position, colour
    node_light_target = 32, // light: target
    node_spotlight = 64,    // light: position, hotspot, falloff
};

inline constexpr std::uint16_t no_parent = 0xffff; // the parent id of a root node

struct node_color {
    float r = 0, g = 0, b = 0;
};

struct mokey_node {
    std::vector<position_key> pos_keys; // each as long as `alloc_keys` was told
    std::vector<rotation_key> rot_keys;
    std::vector<scale_key> scale_keys;
    std::vector<angle_key> roll_keys, fov_keys;
    std::vector<color_key> color_keys;
    std::vector<morph_key> morph_keys;
    std::vector<angle_key> hotspot_keys, falloff_keys;
    std::int16_t pos_count = 0, rot_count = 0, scale_count = 0, roll_count = 0, fov_count = 0; // keys so far
    std::int16_t color_count = 0, morph_count = 0, hotspot_count = 0, falloff_count = 0;
    vector3d pivot;
    std::uint16_t type = node_unknown; // one of `node_types`
    std::uint16_t id = 0;              // number in the file, from 0
    std::uint16_t parent = no_parent;  // id of the parent
    char name[name_capacity] = {};
    vector3d current_pos;               // values at the current frame, which children inherit; 0 until
    quaternion current_rot{1, 0, 0, 0}; // an evaluator writes them (no turn, for the rotation)
    float current_fov = 0, current_roll = 0;
    node_color current_color;
    float current_hotspot = 0, current_falloff = 0;
    mokey_node* next = nullptr; // sibling
    mokey_node *first_child = nullptr, *last_child = nullptr;
    mokey_node* parent_node = nullptr; // the way back up; null for a root
    mesh* object = nullptr;            // the record that the node animates: by its
    ::camera* camera = nullptr;        // type, one of the three; null where no
    ::light* light = nullptr;          // record has the node's name

    // Logs its signature.
    explicit mokey_node(std::uint16_t node_type);

    void set_id(std::uint16_t new_id);
    void set_parent(std::uint16_t parent_id);
    void set_name(std::string_view new_name); // cut to its field
    void set_pivot(float x, float y, float z);

    // Replaces the keys of a track (`track_types`) by `count` empty ones and sets its count to 0. `count` is
    // held to 0 to `key_limit`; another type changes nothing. Memory that can't be had leaves the track
    // empty.
    void alloc_keys(std::int32_t count, std::int32_t track);

    // Each logs its signature, fills the next key of its track and counts it. A key beyond those allocated is
    // ignored. Arguments: frame, value, tension, continuity, bias, ease to, ease from.
    void add_key_pos(std::uint16_t frame, float x, float y, float z, float tension, float continuity,
                     float bias, float ease_to, float ease_from);
    // Angle and rotation are the accumulated ones. Prints "ROT: (w, x, y, z)" of the rotation on standard
    // output.
    void add_key_rot(std::uint16_t frame, float angle, float x, float y, float z, float tension,
                     float continuity, float bias, float ease_to, float ease_from,
                     const quaternion& rotation);
    void add_key_scale(std::uint16_t frame, float x, float y, float z, float tension, float continuity,
                       float bias, float ease_to, float ease_from);
    void add_key_fov(std::uint16_t frame, float value, float tension, float continuity, float bias,
                     float ease_to, float ease_from);
    void add_key_roll(std::uint16_t frame, float value, float tension, float continuity, float bias,
                      float ease_to, float ease_from);
    void add_key_color(std::uint16_t frame, float r, float g, float b, float tension, float continuity,
                       float bias, float ease_to, float ease_from);
    void add_key_morph(std::uint16_t frame, std::string_view target, float tension, float continuity,
                       float bias, float ease_to, float ease_from);
    void add_key_hotspot(std::uint16_t frame, float value, float tension, float continuity, float bias,
                         float ease_to, float ease_from);
    void add_key_falloff(std::uint16_t frame, float value, float tension, float continuity, float bias,
                         float ease_to, float ease_from);

    // Tangents of the position track and of the rotation track (tangents.h), once after loading.
    void calc_tangents();
};

// The node after `node` in the subtree of `top`, parents before children; null behind the last. A walk of its
// own state: no tree is too deep for it.
inline mokey_node* next_below(mokey_node* node, const mokey_node* top) {
    if (node->first_child != nullptr) return node->first_child;
    for (; node != nullptr && node != top; node = node->parent_node)
        if (node->next != nullptr) return node->next;
    return nullptr;
}
