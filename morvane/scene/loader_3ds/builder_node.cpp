// Nodes of the keyframe tree, their pivots and what they animate.
#include <string_view>

#include "morvane/base/log.h"
#include "morvane/scene/loader_3ds/builder.h"
#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"

namespace {

// Ties the node to the record of that name, of the kind that its type animates; null if there is none.
void link_node(sceneloader_3ds& in, mokey_node& node, std::string_view name) {
    switch (node.type) {
    case node_object:
        node.object = in.meshes.find(in.scene->first_mesh, name);
        break;
    case node_camera:
    case node_camera_target:
        node.camera = in.cameras.find(in.scene->first_camera, name);
        break;
    case node_light:
    case node_light_target:
    case node_spotlight:
        node.light = in.lights.find(in.scene->first_light, name);
        break;
    default:
        break;
    }
}

// Makes the node that was read, in time that doesn't grow with the tree: a file may name 65535 nodes, each
// the child of the one before.
void add_node(sceneloader_3ds& in, std::uint16_t parent) {
    if (in.tree_was_empty)
        in.scene->add_node(in.node_type, parent, parent < in.nodes.size() ? in.nodes[parent] : nullptr);
    else
        in.scene->add_node(in.node_type, parent);
}

// Gives the node its id and takes the one away that it may have had.
void name_node(sceneloader_3ds& in, mokey_node& node, std::uint16_t id) {
    if (node.id < in.nodes.size() && in.nodes[node.id] == &node) in.nodes[node.id] = nullptr;
    node.set_id(id);
    in.nodes.resize(std::size_t{id} + 1);
    in.nodes[id] = &node;
}

} // namespace

void build_node(sceneloader_3ds& in) {
    moscene& scene = *in.scene;
    in.read_string();
    const std::string_view name = in.name.data();
    in.read_u16(); // two words of flags
    in.read_u16();
    const std::uint16_t parent = in.read_u16();
    in.log_text(log_debug, "Parent => %i", parent);
    if (in.cut_short()) return;

    const std::int32_t id = in.node_counter++;
    if (id >= no_parent) { // ids have 16 bits
        if (id == no_parent) in.log_text(log_warning, "More than %i nodes", no_parent);
        scene.current_node = nullptr;
        return;
    }
    const mokey_node* before = scene.current_node;
    add_node(in, parent);
    if (scene.current_node == before)
        in.log_text(log_warning, "Node %s has no parent %i", in.name.data(), parent);

    // A node that couldn't be made leaves what follows to the one before it.
    if (scene.current_node == nullptr) return;
    mokey_node& node = *scene.current_node;
    node.set_parent(parent);
    node.set_name(name);
    name_node(in, node, static_cast<std::uint16_t>(id));
    if (name != "$$$DUMMY") link_node(in, node, name);
}

void build_dummy(sceneloader_3ds& in) {
    moscene& scene = *in.scene;
    in.read_string();
    const std::string_view name = in.name.data();
    scene.add_mesh(name);
    scene.last_mesh->flags |= mesh_dummy | mesh_hidden;
    if (scene.current_node != nullptr) link_node(in, *scene.current_node, name);
}

void build_pivot(sceneloader_3ds& in) {
    mokey_node* const node = in.scene->current_node;
    vector3d place = node != nullptr ? swap_yz(node->pivot) : vector3d{};
    for (float* part : {&place.x, &place.y, &place.z})
        in.read_float_over(*part); // the end of the data leaves the rest of the pivot as it was
    in.log_text(log_debug, "Pivot => (%f, %f, %f)", place.x, place.y, place.z);
    const vector3d pivot = swap_yz(place);
    if (node != nullptr) node->set_pivot(pivot.x, pivot.y, pivot.z);
}
