// The debug dump: all of a scene but its geometry, as text on standard output. The differences of punctuation
// between the key lines are part of it.
#include <cstdio>
#include <string>

#include "morvane/scene/moscene.h"
#include "morvane/scene/tracks.h"

namespace {

void print_place(const char* label, const vector3d& place) {
    std::printf("    %s => {%8.3f, %8.3f, %8.3f}\n", label, double{place.x}, double{place.y},
                double{place.z});
}

void print_cameras(const camera* first) {
    std::printf("\nCameras:\n");
    int index = 0;
    for (const camera* c = first; c != nullptr; c = c->next) {
        std::printf("  %i => '%s'\n", index++, c->name);
        print_place("Position", c->start_position);
        print_place("Target", c->start_target);
        std::printf("    Bank => %8.3f\n", double{c->bank});
        std::printf("    Focus => %8.3f\n", double{c->focus});
    }
}

void print_lights(const light* first) {
    std::printf("\nLights:\n");
    int index = 0;
    for (const light* l = first; l != nullptr; l = l->next) {
        std::printf("  %i => '%s'\n", index++, l->name);
        print_place("Position", l->start_position);
        if (l->is_spot) {
            print_place("Target", l->start_target);
            std::printf("    Hotspot => %8.3f\n", double{l->start_hotspot});
            std::printf("    Falloff => %8.3f\n", double{l->start_falloff});
        }
        std::printf("    Color => {%1.5f, %1.5f, %1.5f}\n", double{l->start_color_r},
                    double{l->start_color_g}, double{l->start_color_b});
        std::printf("    Cast shadows? %i\n", l->cast_shadows ? 1 : 0);
    }
}

void print_map(const char* label, bool used, const map_slot& slot) {
    if (used) std::printf("%s %s, Percentage %i\n", label, slot.file_name, slot.percent);
}

void print_material(const material& m) {
    std::printf("\nMaterial name: %s\n", m.name);
    std::printf("Ambient => %i, %i, %i\n", m.ambient_r, m.ambient_g, m.ambient_b);
    std::printf("Diffuse => %i, %i, %i\n", m.diffuse_r, m.diffuse_g, m.diffuse_b);
    std::printf("Specular => %i, %i, %i\n", m.specular_r, m.specular_g, m.specular_b);
    print_map("Texturemap", m.has_texture, m.texture_map);
    print_map("Specmap", m.has_spec, m.spec_map);
    print_map("Opacmap", m.has_opac, m.opac_map);
    print_map("Reflectionmap", m.has_refl, m.refl_map);
    print_map("Bumpmap", m.has_bump, m.bump_map);
}

// Where the key lines differ behind their value.
struct punctuation {
    const char* tension = "T:";
    const char* ease_from = "EF:";
    const char* end = "\n";
};
constexpr punctuation plain;
constexpr punctuation of_position{.tension = "T", .end = " \n"};
constexpr punctuation without_last_colon{.ease_from = "EF"};

template<typename Key>
void print_settings(const Key& key, const punctuation& marks) {
    std::printf(" %s%f C:%f B:%f ET:%f %s%f%s", marks.tension, double{key.tension}, double{key.continuity},
                double{key.bias}, double{key.ease_to}, marks.ease_from, double{key.ease_from}, marks.end);
}

void print_value(const position_key& key) {
    std::printf("{%8.3f, %8.3f, %8.3f}", double{key.value.x}, double{key.value.y}, double{key.value.z});
}
void print_value(const rotation_key& key) {
    std::printf("Axis{%8.3f, %8.3f, %8.3f} Angle{%8.3f}", double{key.axis.x}, double{key.axis.y},
                double{key.axis.z}, double{key.angle});
}
void print_value(const scale_key& key) {
    std::printf("{%8.3f, %8.3f, %8.3f}", double{key.value.x}, double{key.value.y}, double{key.value.z});
}
void print_value(const angle_key& key) {
    std::printf("%f", double{key.value});
}
void print_value(const color_key& key) {
    std::printf("{%8.3f, %8.3f, %8.3f}", double{key.r}, double{key.g}, double{key.b});
}
void print_value(const morph_key& key) {
    std::printf("%s", key.target);
}

template<typename Key>
void print_track(const std::string& indent, const char* label, const std::vector<Key>& keys,
                 std::int16_t count, const punctuation& marks) {
    const auto used = keys_in_use(keys, count);
    if (used.empty()) return;
    std::printf("%s %s keys => %i\n", indent.c_str(), label, static_cast<int>(used.size()));
    for (const Key& key : used) {
        std::printf("%s  Frame %i => ", indent.c_str(), key.frame);
        print_value(key);
        print_settings(key, marks);
    }
}

// A node whose record was not found shows an empty name.
void print_node_type(const std::string& indent, const mokey_node& node) {
    const char* const i = indent.c_str();
    switch (node.type) {
    case node_unknown:
        std::printf("%s Node type => unknown\n", i);
        break;
    case node_ambient:
        std::printf("%s Node type => ambient\n", i);
        break;
    case node_object:
        std::printf("%s Node type => object (%s)\n", i, node.object != nullptr ? node.object->name : "");
        break;
    case node_camera:
        std::printf("%s Node type => camera (%s)\n", i, node.camera != nullptr ? node.camera->name : "");
        break;
    case node_camera_target:
        std::printf("%s Node type => camera target\n", i);
        break;
    case node_light:
        std::printf("%s Node type => light\n", i);
        break;
    case node_light_target:
        std::printf("%s Node type => light target\n", i);
        break;
    case node_spotlight:
        std::printf("%s Node type => spotlight\n", i);
        break;
    default:
        break;
    }
}

void print_node(const mokey_node& n, std::size_t depth) {
    const std::string indent(2 * depth, ' ');
    const char* const i = indent.c_str();
    std::printf("%s Node %i (parent %i)\n", i, n.id, n.parent);
    std::printf("%s Name => %s\n", i, n.name);
    std::printf("%s Pivot => {%8.3f, %8.3f, %8.3f}\n", i, double{n.pivot.x}, double{n.pivot.y},
                double{n.pivot.z});
    print_node_type(indent, n);
    print_track(indent, "Position", n.pos_keys, n.pos_count, of_position);
    print_track(indent, "Rotation", n.rot_keys, n.rot_count, plain);
    print_track(indent, "Scale", n.scale_keys, n.scale_count, plain);
    print_track(indent, "Fov", n.fov_keys, n.fov_count, plain);
    print_track(indent, "Roll", n.roll_keys, n.roll_count, without_last_colon);
    print_track(indent, "Color", n.color_keys, n.color_count, without_last_colon);
    print_track(indent, "Morph", n.morph_keys, n.morph_count, without_last_colon);
    print_track(indent, "Hotspot", n.hotspot_keys, n.hotspot_count, without_last_colon);
    print_track(indent, "Falloff", n.falloff_keys, n.falloff_count, without_last_colon);
    std::printf("\n");
}

// All levels of the tree, parents before children.
void print_tree(const mokey_node* node) {
    std::size_t depth = 0;
    while (node != nullptr) {
        print_node(*node, depth);
        if (node->first_child != nullptr) {
            node = node->first_child;
            ++depth;
            continue;
        }
        while (node != nullptr && node->next == nullptr) {
            node = node->parent_node;
            --depth;
        }
        if (node != nullptr) node = node->next;
    }
}

} // namespace

void moscene::debug() const {
    std::printf("Debug info for moscene:\n");
    std::printf("Meshes: %i\nLights: %i\nCameras: %i\nKeyframe nodes: %i\nMaterials: %i\n", mesh_count,
                light_count, camera_count, node_count, material_count);
    if (mesh_count != 0) {
        std::printf("\nMeshes:\n");
        int index = 0;
        for (const mesh* m = first_mesh; m != nullptr; m = m->next)
            std::printf("  %i => '%s'\n", index++, m->name);
    }
    if (camera_count != 0) print_cameras(first_camera);
    if (light_count != 0) print_lights(first_light);
    if (node_count != 0) {
        std::printf("\nKeyframe nodes: (%i)\n", node_count);
        print_tree(first_node);
    }
    if (material_count != 0) {
        std::printf("\nMaterials: (%i)\n", material_count);
        for (const material* m = first_material; m != nullptr; m = m->next)
            print_material(*m);
    }
    std::printf("-----\n");
}
