#include "morvane/scene/node.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <new>

#include "morvane/base/log.h"
#include "morvane/scene/inner/tangents.h"
#include "morvane/scene/tracks.h"

namespace {

template<typename Key>
void replace_keys(std::vector<Key>& keys, std::int16_t& used, std::size_t count) {
    used = 0;
    try {
        keys.assign(count, Key{});
    } catch (const std::bad_alloc&) {
        keys.clear();
    }
}

// Logs the signature and stores `key` as the next of its track.
template<typename Key>
bool add_key(std::vector<Key>& keys, std::int16_t& used, const Key& key, const char* signature) {
    log_message(signature, log_debug, 0);
    if (static_cast<std::size_t>(used) >= keys.size()) return false;
    keys[static_cast<std::size_t>(used)] = key;
    ++used;
    return true;
}

} // namespace

mokey_node::mokey_node(std::uint16_t node_type) : type(node_type) {
    log_message("mokey_node::mokey_node()", log_debug, 0);
}

void mokey_node::set_id(std::uint16_t new_id) {
    id = new_id;
}

void mokey_node::set_parent(std::uint16_t parent_id) {
    parent = parent_id;
}

void mokey_node::set_name(std::string_view new_name) {
    set_name_field(name, new_name);
}

void mokey_node::set_pivot(float x, float y, float z) {
    pivot = {x, y, z};
}

void mokey_node::alloc_keys(std::int32_t count, std::int32_t track) {
    const auto n = static_cast<std::size_t>(std::clamp(count, 0, key_limit));
    switch (track) {
    case track_position:
        return replace_keys(pos_keys, pos_count, n);
    case track_rotation:
        return replace_keys(rot_keys, rot_count, n);
    case track_scale:
        return replace_keys(scale_keys, scale_count, n);
    case track_roll:
        return replace_keys(roll_keys, roll_count, n);
    case track_fov:
        return replace_keys(fov_keys, fov_count, n);
    case track_color:
        return replace_keys(color_keys, color_count, n);
    case track_morph:
        return replace_keys(morph_keys, morph_count, n);
    case track_hotspot:
        return replace_keys(hotspot_keys, hotspot_count, n);
    case track_falloff:
        return replace_keys(falloff_keys, falloff_count, n);
    default:
        return;
    }
}

void mokey_node::add_key_pos(std::uint16_t frame, float x, float y, float z, float tension, float continuity,
                             float bias, float ease_to, float ease_from) {
    const position_key key{frame, tension, continuity, bias, ease_to, ease_from, {x, y, z}, {}};
    add_key(pos_keys, pos_count, key, "void mokey_node::add_key_pos()");
}

void mokey_node::add_key_rot(std::uint16_t frame, float angle, float x, float y, float z, float tension,
                             float continuity, float bias, float ease_to, float ease_from,
                             const quaternion& rotation) {
    const rotation_key key{frame, angle,   {x, y, z}, rotation, tension, continuity,
                           bias,  ease_to, ease_from, {},       {}};
    if (!add_key(rot_keys, rot_count, key, "void mokey_node::add_key_rot()")) return;
    std::printf("ROT: (%f, %f, %f, %f)\n", double{rotation.w}, double{rotation.x}, double{rotation.y},
                double{rotation.z});
}

void mokey_node::add_key_scale(std::uint16_t frame, float x, float y, float z, float tension,
                               float continuity, float bias, float ease_to, float ease_from) {
    const scale_key key{frame, {x, y, z}, tension, continuity, bias, ease_to, ease_from};
    add_key(scale_keys, scale_count, key, "void mokey_node::add_key_scale()");
}

void mokey_node::add_key_color(std::uint16_t frame, float r, float g, float b, float tension,
                               float continuity, float bias, float ease_to, float ease_from) {
    const color_key key{frame, r, g, b, tension, continuity, bias, ease_to, ease_from};
    add_key(color_keys, color_count, key, "void mokey_node::add_key_color()");
}

void mokey_node::add_key_morph(std::uint16_t frame, std::string_view target, float tension, float continuity,
                               float bias, float ease_to, float ease_from) {
    morph_key key{frame, {}, tension, continuity, bias, ease_to, ease_from};
    set_name_field(key.target, target);
    add_key(morph_keys, morph_count, key, "void mokey_node::add_key_morph()");
}

void mokey_node::add_key_fov(std::uint16_t frame, float value, float tension, float continuity, float bias,
                             float ease_to, float ease_from) {
    const angle_key key{frame, value, tension, continuity, bias, ease_to, ease_from};
    add_key(fov_keys, fov_count, key, "void mokey_node::add_key_fov()");
}

void mokey_node::add_key_roll(std::uint16_t frame, float value, float tension, float continuity, float bias,
                              float ease_to, float ease_from) {
    const angle_key key{frame, value, tension, continuity, bias, ease_to, ease_from};
    add_key(roll_keys, roll_count, key, "void mokey_node::add_key_roll()");
}

void mokey_node::add_key_hotspot(std::uint16_t frame, float value, float tension, float continuity,
                                 float bias, float ease_to, float ease_from) {
    const angle_key key{frame, value, tension, continuity, bias, ease_to, ease_from};
    add_key(hotspot_keys, hotspot_count, key, "void mokey_node::add_key_hotspot()");
}

void mokey_node::add_key_falloff(std::uint16_t frame, float value, float tension, float continuity,
                                 float bias, float ease_to, float ease_from) {
    const angle_key key{frame, value, tension, continuity, bias, ease_to, ease_from};
    add_key(falloff_keys, falloff_count, key, "void mokey_node::add_key_falloff()");
}

void mokey_node::calc_tangents() {
    calc_position_tangents(keys_in_use(pos_keys, pos_count));
    calc_rotation_tangents(keys_in_use(rot_keys, rot_count));
}
