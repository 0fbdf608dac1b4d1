// All that a scene holds as a text, and what the show does with a scene once it is loaded.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>

#include "morvane/scene/moscene.h"

// In a text wherever records don't hang together: a list that doesn't end at its tail or isn't as long as its
// count, more keys than a track has room for. No name has it inside.
inline const std::string broken_records(1, '\0');

// A line of text; floats are written with "%a", so that each bit counts.
[[gnu::format(printf, 1, 2)]] inline std::string line_of(const char* format, ...) {
    char buffer[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return std::string(buffer) + "\n";
}

inline std::string text_of(const char* what, const vector3d& v) {
    return line_of("%s %a %a %a", what, v.x, v.y, v.z);
}

template<typename Record, typename Each>
std::string text_of_list(const Record* first, const Record* last, std::int32_t count, Each each) {
    std::string all;
    const Record* tail = nullptr;
    std::int32_t length = 0;
    for (const Record* record = first; record != nullptr; record = record->next, ++length) {
        all += each(*record);
        tail = record;
    }
    return tail == last && length == count ? all : all + broken_records;
}

inline std::string text_of_mesh(const mesh& m) {
    std::string all =
        line_of("mesh %s flags %d, %d vertices, %d faces", m.name, m.flags, m.vertex_count, m.face_count);
    for (std::size_t i = 0; i < m.vertices.size(); ++i)
        all += text_of("vertex", m.vertices[i]) + line_of("uv %a %a", m.uv[i].u, m.uv[i].v);
    for (const face& f : m.faces)
        all += line_of("face %d %d %d, edges %d %d %d, wrap %d %d, %s", f.a, f.b, f.c, f.edge_ca, f.edge_bc,
                       f.edge_ab, f.wrap_u, f.wrap_v, f.material != nullptr ? f.material->name : "-");
    return all;
}

inline std::string text_of_slot(bool has, const map_slot& slot) {
    return has ? line_of("map %s %d", slot.file_name, slot.percent) : "no map\n";
}

inline std::string text_of_material(const material& m) {
    return line_of("material %s: %d %d %d, %d %d %d, %d %d %d, shininess %d, opacity %d", m.name, m.ambient_r,
                   m.ambient_g, m.ambient_b, m.diffuse_r, m.diffuse_g, m.diffuse_b, m.specular_r,
                   m.specular_g, m.specular_b, m.shininess, m.opacity) +
           text_of_slot(m.has_texture, m.texture_map) + text_of_slot(m.has_spec, m.spec_map) +
           text_of_slot(m.has_opac, m.opac_map) + text_of_slot(m.has_refl, m.refl_map) +
           text_of_slot(m.has_bump, m.bump_map);
}

inline std::string text_of_camera(const camera& c) {
    return line_of("camera %s bank %a focus %a", c.name, c.bank, c.focus) +
           text_of("from", c.start_position) + text_of("at", c.start_target);
}

inline std::string text_of_light(const light& l) {
    return line_of("light %s spot %d hotspot %a falloff %a shadows %d, colour %a %a %a", l.name, l.is_spot,
                   l.start_hotspot, l.start_falloff, l.cast_shadows, l.start_color_r, l.start_color_g,
                   l.start_color_b) +
           text_of("from", l.start_position) + text_of("at", l.start_target);
}

template<typename Keys, typename Value>
std::string text_of_track(const char* name, const Keys& keys, std::int16_t count, Value value) {
    std::string all;
    if (static_cast<std::size_t>(count) > keys.size()) return broken_records;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
        all += line_of("%s %d: %a %a %a %a %a", name, keys[i].frame, keys[i].tension, keys[i].continuity,
                       keys[i].bias, keys[i].ease_to, keys[i].ease_from) +
               value(keys[i]);
    return all;
}

inline std::string text_of_node(const mokey_node& n) {
    const auto vector = [](const auto& key) { return text_of(" ", key.value); };
    const auto value = [](const angle_key& key) { return line_of("  %a", key.value); };
    const char* tied = n.object != nullptr   ? n.object->name
                       : n.camera != nullptr ? n.camera->name
                       : n.light != nullptr  ? n.light->name
                                             : "-";
    return line_of("node %s type %d id %d parent %d tied to %s", n.name, n.type, n.id, n.parent, tied) +
           text_of("pivot", n.pivot) + text_of_track("position", n.pos_keys, n.pos_count, vector) +
           text_of_track("rotation", n.rot_keys, n.rot_count,
                         [](const rotation_key& key) {
                             return text_of("axis", key.axis) + line_of("  %a, %a %a %a %a", key.angle,
                                                                        key.rotation.w, key.rotation.x,
                                                                        key.rotation.y, key.rotation.z);
                         }) +
           text_of_track("scale", n.scale_keys, n.scale_count, vector) +
           text_of_track("roll", n.roll_keys, n.roll_count, value) +
           text_of_track("fov", n.fov_keys, n.fov_count, value) +
           text_of_track("colour", n.color_keys, n.color_count,
                         [](const color_key& key) { return line_of("  %a %a %a", key.r, key.g, key.b); }) +
           text_of_track("morph", n.morph_keys, n.morph_count,
                         [](const morph_key& key) { return line_of("  %s", key.target); }) +
           text_of_track("hotspot", n.hotspot_keys, n.hotspot_count, value) +
           text_of_track("falloff", n.falloff_keys, n.falloff_count, value);
}

// A level of the tree and all below it, children indented.
inline std::string text_of_nodes(const mokey_node* first, const std::string& indent = "") {
    std::string all;
    for (const mokey_node* node = first; node != nullptr; node = node->next)
        all += indent + text_of_node(*node) + text_of_nodes(node->first_child, indent + " ");
    return all;
}

// All that a file put into the scene.
inline std::string scene_text(const moscene& scene) {
    return line_of("ambient %a %a %a, frames %d to %d", scene.ambient_r, scene.ambient_g, scene.ambient_b,
                   scene.start_frame, scene.end_frame) +
           text_of_list(scene.first_mesh, scene.last_mesh, scene.mesh_count, text_of_mesh) +
           text_of_list(scene.first_camera, scene.last_camera, scene.camera_count, text_of_camera) +
           text_of_list(scene.first_light, scene.last_light, scene.light_count, text_of_light) +
           text_of_list(scene.first_material, scene.last_material, scene.material_count, text_of_material) +
           text_of_nodes(scene.first_node);
}

// What the show does with a scene after loading it.
inline void use_scene(moscene& scene) {
    scene.debug();
    scene.calc_normals();
    scene.prepare_keys(nullptr);
    scene.set_camera(0);
    scene.calc_bounds();
    for (int i = 0; i < 3; ++i)
        scene.scene_update();
}
