#include "morvane/scene/moscene.h"

#include "morvane/base/log.h"

namespace {

template<typename Record>
void append(Record*& first, Record*& last, Record& record) {
    record.next = nullptr;
    if (last != nullptr)
        last->next = &record;
    else
        first = &record;
    last = &record;
}

template<typename Record>
Record* find_by_name(Record* first, std::string_view name) {
    for (Record* record = first; record != nullptr; record = record->next)
        if (record->name == name) return record;
    return nullptr;
}

// The count of a list is returned as the unsigned short that the signatures tell.
std::uint16_t counted(std::int32_t& count) {
    return static_cast<std::uint16_t>(++count & 0xffff);
}

} // namespace

void moscene::set_width(std::int32_t w) {
    width = w;
    half_width = w / 2;
}

void moscene::set_height(std::int32_t h) {
    height = h;
    half_height = h / 2;
}

void moscene::set_render_mode(std::int32_t mode) {
    default_render_mode = mode;
}

void moscene::set_ambient(float r, float g, float b) {
    ambient_r = r;
    ambient_g = g;
    ambient_b = b;
}

std::uint16_t moscene::add_mesh(std::string_view name) {
    log_message("unsigned short moscene::add_mesh()", log_debug, 0);
    mesh& added = meshes.emplace_back();
    set_name_field(added.name, name);
    mesh_set_render_mode(added, default_render_mode);
    append(first_mesh, last_mesh, added);
    return counted(mesh_count);
}

std::uint16_t moscene::add_mesh(mesh& linked) {
    log_message("unsigned short moscene::add_mesh()", log_debug, 0);
    for (const mesh* m = first_mesh; m != nullptr; m = m->next)
        if (m == &linked) return static_cast<std::uint16_t>(mesh_count & 0xffff);
    append(first_mesh, last_mesh, linked);
    return counted(mesh_count);
}

std::uint16_t moscene::add_camera(std::string_view name, float x, float y, float z, float target_x,
                                  float target_y, float target_z, float bank, float focus) {
    log_message("unsigned short moscene::add_camera()", log_debug, 0);
    const vector3d from{x, y, z};
    const vector3d at{target_x, target_y, target_z};
    ::camera& added = cameras.emplace_back(name, from, at, bank, focus);
    added.width = width;
    added.height = height;
    added.half_width = width / 2;
    added.half_height = height / 2;
    append(first_camera, last_camera, added);
    return counted(camera_count);
}

std::uint16_t moscene::add_light(std::string_view name, float x, float y, float z) {
    log_message("unsigned short moscene::add_light()", log_debug, 0);
    light& added = lights.emplace_back();
    set_name_field(added.name, name);
    added.start_position = {x, y, z};
    append(first_light, last_light, added);
    return counted(light_count);
}

std::uint16_t moscene::add_material(std::string_view name) {
    log_message("unsigned short moscene::add_material()", log_debug, 0);
    material& added = materials.emplace_back();
    set_name_field(added.name, name);
    append(first_material, last_material, added);
    return counted(material_count);
}

std::uint16_t moscene::add_node(std::uint16_t type, std::uint16_t parent) {
    mokey_node* above = nullptr;
    if (parent != no_parent)
        for (mokey_node* root = first_node; root != nullptr && above == nullptr; root = root->next)
            above = find_node(parent, root);
    return add_node(type, parent, above);
}

std::uint16_t moscene::add_node(std::uint16_t type, std::uint16_t parent, mokey_node* above) {
    log_message("unsigned short moscene::add_node()", log_debug, 0);
    if (parent == no_parent) {
        current_node = &nodes.emplace_back(type);
        append(first_node, last_node, *current_node);
    } else if (above != nullptr) {
        current_node = &nodes.emplace_back(type);
        current_node->parent_node = above;
        append(above->first_child, above->last_child, *current_node);
    }
    return counted(node_count);
}

mesh* moscene::find_mesh(std::string_view name) const {
    return find_by_name(first_mesh, name);
}

::camera* moscene::find_camera(std::string_view name) const {
    return find_by_name(first_camera, name);
}

light* moscene::find_light(std::string_view name) const {
    return find_by_name(first_light, name);
}

material* moscene::find_material(std::string_view name) const {
    return find_by_name(first_material, name);
}

mokey_node* moscene::find_node(std::uint16_t id, mokey_node* start) {
    mokey_node* node = start;
    while (node != nullptr && node->id != id)
        node = next_below(node, start);
    return node;
}
