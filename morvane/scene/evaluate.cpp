// The evaluators: a track and the scene's frame give a value.
#include <cmath>
#include <utility>

#include "morvane/scene/moscene.h"
#include "morvane/scene/tracks.h"

namespace {

constexpr double half_turns = 0.15915494; // 1 / (2 pi)

// The keys around frame `t` of a track that is interpolated by cosine, and where `t` lies between them.
// In a track of one key, and behind the last one, both are the key that holds.
template<typename Key>
struct key_pair {
    const Key *from, *to;
    double t;
};

template<typename Key>
key_pair<Key> keys_around(std::span<const Key> keys, float t) {
    const std::int32_t i = find_key(keys, t, -1);
    if (keys.size() == 1 || i < 0) return {&keys.back(), &keys.back(), 0};
    const Key& from = keys[static_cast<std::size_t>(i)];
    const Key& to = keys[static_cast<std::size_t>(i) + 1];
    return {&from, &to, segment_position(from, to, t)};
}

// The value there. A key that holds gives its own, infinities included: no interpolation.
template<typename Key>
double value_at(const key_pair<Key>& keys, float Key::*value) {
    if (keys.from == keys.to) return double{keys.to->*value};
    return cosine_lerp(keys.from->*value, keys.to->*value, keys.t);
}

// The value of a roll, field of view, hotspot or falloff track, on top of the parent's.
float eval_angle(std::span<const angle_key> keys, float frame, float inherited) {
    if (keys.empty()) return inherited;
    return static_cast<float>(inherited + value_at(keys_around(keys, frame), &angle_key::value));
}

double eased(const auto& from, const auto& to, float t) {
    return ease(segment_position(from, to, t), from.ease_from, to.ease_to);
}

} // namespace

void moscene::eval_pos(mokey_node& node, vector3d& out, const mokey_node* parent) const {
    out = vector3d{} - node.pivot;
    if (parent != nullptr) out = out + parent->current_pos;
    const auto keys = keys_in_use(std::as_const(node.pos_keys), node.pos_count);
    if (!keys.empty()) {
        const auto i = static_cast<std::size_t>(find_key(keys, frame, std::int32_t(keys.size()) - 1));
        if (i + 1 < keys.size()) {
            const position_key& from = keys[i];
            const position_key& to = keys[i + 1];
            hermite(out, from.value, from.tangent, to.value, to.tangent, eased(from, to, frame));
        } else {
            out = out + keys[i].value; // a track of one key, or the frame is behind the last
        }
    }
    node.current_pos = out;
}

void moscene::eval_rot(mokey_node& node, quaternion& out, const mokey_node* parent) const {
    const auto keys = keys_in_use(std::as_const(node.rot_keys), node.rot_count);
    if (frame < 0 || keys.empty()) return;
    const std::int32_t i = find_key(keys, frame, -1);
    if (i < 0) { // behind the last key the node's own value doesn't take the parent in
        out = node.current_rot = keys.back().rotation;
        if (parent != nullptr) out = parent->current_rot * out;
        return;
    }
    if (keys.size() == 1) {
        out = keys[0].rotation;
    } else {
        const rotation_key& from = keys[static_cast<std::size_t>(i)];
        const rotation_key& to = keys[static_cast<std::size_t>(i) + 1];
        const double s = eased(from, to, frame);
        const double turns = (double{to.angle} - from.angle) * half_turns;
        const auto spin = static_cast<float>(turns <= 0 ? std::ceil(turns) : std::floor(turns));
        quaternion keyed{}, bent{};
        quaternion_slerp(from.rotation, to.rotation, spin, static_cast<float>(s), keyed);
        quaternion_slerp(from.tangent_out, to.tangent_in, spin, static_cast<float>(s), bent);
        quaternion_slerp(keyed, bent, 0, static_cast<float>(2 * s * (1 - s)), out);
    }
    if (parent != nullptr) out = out * parent->current_rot;
    node.current_rot = out;
}

void moscene::eval_roll(mokey_node& node, float& out, const mokey_node* parent) const {
    const auto keys = keys_in_use(std::as_const(node.roll_keys), node.roll_count);
    out = node.current_roll = eval_angle(keys, frame, parent != nullptr ? parent->current_roll : 0);
}

void moscene::eval_fov(mokey_node& node, float& out, const mokey_node* parent) const {
    const auto keys = keys_in_use(std::as_const(node.fov_keys), node.fov_count);
    out = node.current_fov = eval_angle(keys, frame, parent != nullptr ? parent->current_fov : 0);
}

void moscene::eval_hotspot(mokey_node& node, float& out, const mokey_node* parent) const {
    const auto keys = keys_in_use(std::as_const(node.hotspot_keys), node.hotspot_count);
    out = node.current_hotspot = eval_angle(keys, frame, parent != nullptr ? parent->current_hotspot : 0);
}

void moscene::eval_falloff(mokey_node& node, float& out, const mokey_node* parent) const {
    const auto keys = keys_in_use(std::as_const(node.falloff_keys), node.falloff_count);
    out = node.current_falloff = eval_angle(keys, frame, parent != nullptr ? parent->current_falloff : 0);
}

void moscene::eval_color(mokey_node& node, float& r, float& g, float& b, const mokey_node* parent) const {
    node_color sum = parent != nullptr ? parent->current_color : node_color{};
    const auto keys = keys_in_use(std::as_const(node.color_keys), node.color_count);
    if (!keys.empty()) {
        const key_pair<color_key> around = keys_around(keys, frame);
        sum.r = static_cast<float>(sum.r + value_at(around, &color_key::r));
        sum.g = static_cast<float>(sum.g + value_at(around, &color_key::g));
        sum.b = static_cast<float>(sum.b + value_at(around, &color_key::b));
    }
    node.current_color = sum;
    r = sum.r;
    g = sum.g;
    b = sum.b;
}
