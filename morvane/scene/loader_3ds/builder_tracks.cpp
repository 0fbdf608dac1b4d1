// Tracks of the current node.
#include <array>

#include "morvane/base/log.h"
#include "morvane/math/quaternion.h"
#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

namespace {

// What every key begins with. A key without one of the five floats has the one of the key before.
struct key_start {
    std::uint16_t frame = 0;
    float tension = 0, continuity = 0, bias = 0, ease_to = 0, ease_from = 0;
};

void read_key_start(sceneloader_3ds& in, key_start& key) {
    key.frame = in.read_u16();
    in.read_u16(); // the high half of the frame
    std::uint32_t flags = in.read_u16();
    for (float* value : {&key.tension, &key.continuity, &key.bias, &key.ease_to, &key.ease_from}) {
        if ((flags & 1) != 0) *value = in.read_float();
        flags >>= 1;
    }
}

std::int32_t read_key_count(sceneloader_3ds& in) {
    std::array<std::uint16_t, 7> header{}; // looping flags, unused, and the number of keys in two halves
    for (std::uint16_t& word : header)
        word = in.read_u16();
    const std::int32_t count = header[5];
    in.log_text(log_debug, "Keys => %i", count);
    return count;
}

// Reads a track whose values have at least `value_size` bytes. For each key, `read_value` reads the value,
// and `store(node, key)` logs and stores it; a key that the end of the data cuts is dropped.
template<typename ReadValue, typename Store>
void read_track(sceneloader_3ds& in, track_types track, std::size_t value_size, ReadValue read_value,
                Store store) {
    constexpr std::size_t start_size = 6;
    const std::int32_t count = read_key_count(in);
    const std::int32_t room = in.records_left(count, start_size + value_size);
    mokey_node* node = in.scene->current_node;
    if (node != nullptr) node->alloc_keys(room, track);
    key_start key;
    for (std::int32_t i = 0; i < count && in.bytes_left() > 0; ++i) {
        read_key_start(in, key);
        read_value();
        if (!in.cut_short()) store(node, key);
    }
}

using vector_setter = void (mokey_node::*)(std::uint16_t frame, float x, float y, float z, float tension,
                                           float continuity, float bias, float ease_to, float ease_from);
using value_setter = void (mokey_node::*)(std::uint16_t frame, float value, float tension, float continuity,
                                          float bias, float ease_to, float ease_from);

void build_vector_track(sceneloader_3ds& in, track_types track, vector_setter add, bool swapped) {
    vector3d value;
    read_track(
        in, track, 12, [&] { value = in.read_vector(); },
        [&](mokey_node* node, const key_start& key) {
            in.log_text(log_debug, "  Frame %i => (%f, %f, %f) T:%f C:%f B:%f ET:%f EF:%f", key.frame,
                        value.x, value.y, value.z, key.tension, key.continuity, key.bias, key.ease_to,
                        key.ease_from);
            if (node == nullptr) return;
            const vector3d stored = swapped ? swap_yz(value) : value;
            (node->*add)(key.frame, stored.x, stored.y, stored.z, key.tension, key.continuity, key.bias,
                         key.ease_to, key.ease_from);
        });
}

void build_value_track(sceneloader_3ds& in, track_types track, value_setter add) {
    float value = 0;
    read_track(
        in, track, 4, [&] { value = in.read_float(); },
        [&](mokey_node* node, const key_start& key) {
            in.log_text(log_debug, "  Frame %i => %f T:%f C:%f B:%f ET:%f EF:%f", key.frame, value,
                        key.tension, key.continuity, key.bias, key.ease_to, key.ease_from);
            if (node == nullptr) return;
            (node->*add)(key.frame, value, key.tension, key.continuity, key.bias, key.ease_to, key.ease_from);
        });
}

} // namespace

void build_position_track(sceneloader_3ds& in) {
    build_vector_track(in, track_position, &mokey_node::add_key_pos, true);
}

void build_scale_track(sceneloader_3ds& in) {
    build_vector_track(in, track_scale, &mokey_node::add_key_scale, false);
}

void build_color_track(sceneloader_3ds& in) {
    build_vector_track(in, track_color, &mokey_node::add_key_color, false);
}

void build_fov_track(sceneloader_3ds& in) {
    build_value_track(in, track_fov, &mokey_node::add_key_fov);
}

void build_roll_track(sceneloader_3ds& in) {
    build_value_track(in, track_roll, &mokey_node::add_key_roll);
}

void build_hotspot_track(sceneloader_3ds& in) {
    build_value_track(in, track_hotspot, &mokey_node::add_key_hotspot);
}

void build_falloff_track(sceneloader_3ds& in) {
    build_value_track(in, track_falloff, &mokey_node::add_key_falloff);
}

// Each key of the file turns on from the one before: angles add up, and so do the rotations, of which each
// takes the whole angle so far about its own axis.
void build_rotation_track(sceneloader_3ds& in) {
    float turn = 0;
    vector3d axis;
    float angle = 0;
    quaternion rotation{};
    rotation.identity();
    read_track(
        in, track_rotation, 16,
        [&] {
            turn = in.read_float();
            axis = in.read_vector();
        },
        [&](mokey_node* node, const key_start& key) {
            in.log_text(log_debug, "  Frame %i => Rot %f  (%f, %f, %f) T:%f C:%f B:%f ET:%f EF:%f", key.frame,
                        turn, axis.x, axis.y, axis.z, key.tension, key.continuity, key.bias, key.ease_to,
                        key.ease_from);
            angle += turn;
            quaternion step{};
            step.from_axis_angle(axis.x, axis.y, axis.z, angle);
            rotation = step * rotation;
            if (node == nullptr) return;
            node->add_key_rot(key.frame, angle, axis.x, axis.y, axis.z, key.tension, key.continuity, key.bias,
                              key.ease_to, key.ease_from, rotation);
        });
}

void build_morph_track(sceneloader_3ds& in) {
    read_track(
        in, track_morph, 1, [&] { in.read_string(); },
        [&](mokey_node* node, const key_start& key) {
            in.log_text(log_debug, "  Frame %i => %s T:%f C:%f B:%f ET:%f EF:%f", key.frame, in.name.data(),
                        key.tension, key.continuity, key.bias, key.ease_to, key.ease_from);
            if (node == nullptr) return;
            node->add_key_morph(key.frame, in.name.data(), key.tension, key.continuity, key.bias, key.ease_to,
                                key.ease_from);
        });
}
