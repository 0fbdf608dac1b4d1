#include "assets/forms/scene_file.h"

#include <bit>
#include <concepts>
#include <string_view>
#include <utility>

namespace assets {
namespace {

// Chunks after 3D Studio's own names.
enum chunk : std::uint16_t {
    main_chunk = 0x4d4d,
    file_version = 0x0002,
    editor = 0x3d3d,
    mesh_version = 0x3d3e,
    ambient_light = 0x2100,
    colour_floats = 0x0010,
    colour_bytes = 0x0011,
    percentage = 0x0030,
    material_block = 0xafff,
    material_name = 0xa000,
    material_ambient = 0xa010,
    material_diffuse = 0xa020,
    material_transparency = 0xa050,
    named_object = 0x4000,
    triangle_object = 0x4100,
    point_array = 0x4110,
    face_array = 0x4120,
    face_material = 0x4130,
    mesh_matrix = 0x4160,
    direct_light = 0x4600,
    camera_object = 0x4700,
    keyframer = 0xb000,
    keyframer_segment = 0xb008,
    object_node = 0xb002,
    camera_node = 0xb003,
    target_node = 0xb004,
    light_node = 0xb005,
    node_header = 0xb010,
    dummy_name = 0xb011,
    pivot = 0xb013,
    position_track = 0xb020,
    angle_track = 0xb023,
    roll_track = 0xb024,
    colour_track = 0xb025,
};

// Grows by values and by chunks, whose lengths are filled in when their bodies are whole.
class chunk_writer {
  public:
    file_bytes bytes;

    void u16(std::uint32_t value) {
        bytes.push_back(static_cast<std::uint8_t>(value & 255));
        bytes.push_back(static_cast<std::uint8_t>(value >> 8 & 255));
    }
    void u32(std::uint32_t value) {
        u16(value & 0xffff);
        u16(value >> 16);
    }
    void f32(double value) { u32(std::bit_cast<std::uint32_t>(static_cast<float>(value))); }
    void place(vec3 p) {
        f32(p.x);
        f32(p.y);
        f32(p.z);
    }
    void text(std::string_view letters) {
        bytes.insert(bytes.end(), letters.begin(), letters.end());
        bytes.push_back(0);
    }
    void write(chunk id, std::invocable auto body) {
        u16(id);
        const std::size_t length_at = bytes.size();
        u32(0);
        body();
        const auto length = static_cast<std::uint32_t>(bytes.size() - length_at + 2);
        for (std::size_t i = 0; i < 4; ++i)
            bytes[length_at + i] = static_cast<std::uint8_t>(length >> (8 * i) & 255);
    }
    void write_u32(chunk id, std::uint32_t value) {
        write(id, [&] { u32(value); });
    }
};

void write_colour(chunk_writer& out, chunk id, scene_colour colour) {
    out.write(id, [&] {
        out.write(colour_bytes, [&] {
            for (const std::uint8_t channel : {colour.r, colour.g, colour.b})
                out.bytes.push_back(channel);
        });
    });
}

void write_material(chunk_writer& out, const scene_material& material) {
    out.write(material_block, [&] {
        out.write(material_name, [&] { out.text(material.name); });
        write_colour(out, material_ambient, material.ambient);
        write_colour(out, material_diffuse, material.diffuse);
        out.write(material_transparency, [&] { out.write(percentage, [&] { out.u16(0); }); });
    });
}

// The faces of each material, one group after the other, inside the face array.
void write_groups(chunk_writer& out, const solid& shape, const std::vector<scene_material>& materials) {
    for (std::size_t m = 0; m < materials.size(); ++m) {
        std::vector<std::size_t> group;
        for (std::size_t i = 0; i < shape.faces.size(); ++i)
            if (shape.faces[i].material == m) group.push_back(i);
        if (group.empty()) continue;
        out.write(face_material, [&] {
            out.text(materials[m].name);
            out.u16(static_cast<std::uint32_t>(group.size()));
            for (const std::size_t face : group)
                out.u16(static_cast<std::uint32_t>(face));
        });
    }
}

void write_body(chunk_writer& out, const scene_body& body, const std::vector<scene_material>& materials) {
    const auto triangles = [&] {
        out.write(point_array, [&] {
            out.u16(static_cast<std::uint32_t>(body.shape.vertices.size()));
            for (const vec3& vertex : body.shape.vertices)
                out.place(vertex);
        });
        out.write(mesh_matrix, [&] { // its place only: nothing is turned
            for (int i = 0; i < 9; ++i)
                out.f32(i % 4 == 0 ? 1 : 0);
            out.place(body.origin);
        });
        out.write(face_array, [&] {
            constexpr std::uint32_t all_edges_shown = 7;
            out.u16(static_cast<std::uint32_t>(body.shape.faces.size()));
            for (const solid_face& face : body.shape.faces)
                for (const std::uint32_t value :
                     {std::uint32_t{face.a}, std::uint32_t{face.b}, std::uint32_t{face.c}, all_edges_shown})
                    out.u16(value);
            write_groups(out, body.shape, materials);
        });
    };
    out.write(named_object, [&] {
        out.text(body.name);
        out.write(triangle_object, triangles);
    });
}

void write_camera(chunk_writer& out, const scene_camera& camera) {
    out.write(named_object, [&] {
        out.text(camera.name);
        out.write(camera_object, [&] {
            out.place(camera.places.front().value);
            out.place(camera.targets.front().value);
            out.f32(0);  // bank
            out.f32(35); // lens in millimetres; the angle's track is what counts
        });
    });
}

void write_light(chunk_writer& out, const scene_light& light) {
    out.write(named_object, [&] {
        out.text(light.name);
        out.write(direct_light, [&] {
            out.place(light.places.front().value);
            out.write(colour_floats, [&] { out.place(light.colours.front().value); });
        });
    });
}

void write_track(chunk_writer& out, chunk id, const scene_track& track, bool single) {
    const auto key = [&](const scene_key& k) {
        out.u32(static_cast<std::uint32_t>(k.frame));
        const double settings[] = {k.tension, k.continuity, k.bias, k.ease_to, k.ease_from};
        out.u16(0x1f); // all five of them follow
        for (const double setting : settings)
            out.f32(setting);
        if (single)
            out.f32(k.value.x);
        else
            out.place(k.value);
    };
    out.write(id, [&] {
        for (int i = 0; i < 5; ++i)
            out.u16(0); // flags and four unused words
        out.u32(static_cast<std::uint32_t>(track.size()));
        for (const scene_key& k : track)
            key(k);
    });
}

void write_header(chunk_writer& out, std::string_view name, int parent) {
    out.write(node_header, [&] {
        out.text(name);
        out.u16(0);
        out.u16(0);
        out.u16(static_cast<std::uint32_t>(parent) & 0xffff);
    });
}

void write_body_node(chunk_writer& out, const scene_body& body) {
    out.write(object_node, [&] {
        write_header(out, body.is_dummy ? "$$$DUMMY" : body.name, body.parent);
        if (body.is_dummy) out.write(dummy_name, [&] { out.text(body.name); });
        out.write(pivot, [&] { out.place({0, 0, 0}); });
        write_track(out, position_track, body.places, false);
    });
}

void write_camera_nodes(chunk_writer& out, const scene_camera& camera) {
    out.write(camera_node, [&] {
        write_header(out, camera.name, no_parent);
        write_track(out, position_track, camera.places, false);
        write_track(out, angle_track, camera.angles, true);
        write_track(out, roll_track, camera.rolls, true);
    });
    out.write(target_node, [&] {
        write_header(out, camera.name, no_parent);
        write_track(out, position_track, camera.targets, false);
    });
}

void write_light_node(chunk_writer& out, const scene_light& light) {
    out.write(light_node, [&] {
        write_header(out, light.name, no_parent);
        write_track(out, position_track, light.places, false);
        write_track(out, colour_track, light.colours, false);
    });
}

void write_editor(chunk_writer& out, const scene_description& scene) {
    out.write_u32(mesh_version, 3);
    out.write(ambient_light, [&] { out.write(colour_floats, [&] { out.place(scene.ambient); }); });
    for (const scene_material& material : scene.materials)
        write_material(out, material);
    for (const scene_body& body : scene.bodies)
        if (!body.is_dummy) write_body(out, body, scene.materials);
    for (const scene_camera& camera : scene.cameras)
        write_camera(out, camera);
    for (const scene_light& light : scene.lights)
        write_light(out, light);
}

void write_keyframer(chunk_writer& out, const scene_description& scene) {
    out.write(keyframer_segment, [&] {
        out.u32(static_cast<std::uint32_t>(scene.first_frame));
        out.u32(static_cast<std::uint32_t>(scene.last_frame));
    });
    for (const scene_body& body : scene.bodies)
        write_body_node(out, body);
    for (const scene_camera& camera : scene.cameras)
        write_camera_nodes(out, camera);
    for (const scene_light& light : scene.lights)
        write_light_node(out, light);
}

} // namespace

file_bytes scene_file(const scene_description& scene) {
    chunk_writer out;
    out.write(main_chunk, [&] {
        out.write_u32(file_version, 3);
        out.write(editor, [&] { write_editor(out, scene); });
        out.write(keyframer, [&] { write_keyframer(out, scene); });
    });
    return std::move(out.bytes);
}

} // namespace assets
