// The scene as a container: lists, records, their setters, and the debug dump.
#include <array>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "morvane/base/log.h"
#include "morvane/poly/render_modes.h"
#include "morvane/scene/moscene.h"
#include "tests/support/captured_output.h"

namespace {

void add_default_camera(moscene& scene, const char* name) {
    scene.add_camera(name, 1, 2, 3, 4, 5, 6, 0, 50);
}

// What `action` writes to standard output.
template<typename Action>
std::string printed_by(Action action) {
    captured_output printed;
    action();
    return printed.out();
}

} // namespace

TEST(moscene, starts_empty_and_takes_the_frame_size) {
    moscene scene;
    EXPECT_TRUE(scene.use_lights && scene.use_materials);
    EXPECT_EQ(scene.frame, 0);
    EXPECT_EQ(scene.first_mesh, nullptr);
    EXPECT_EQ(scene.find_mesh(""), nullptr);
    EXPECT_EQ(moscene::find_node(0, scene.first_node), nullptr);
    scene.set_width(513);
    scene.set_height(-7);
    EXPECT_EQ(scene.half_width, 256);
    EXPECT_EQ(scene.half_height, -3);
    scene.set_ambient(0.25F, 0.5F, 0.75F);
    EXPECT_EQ(scene.ambient_g, 0.5F);

    add_default_camera(scene, "eye");
    EXPECT_EQ(scene.first_camera->width, 513);
    EXPECT_EQ(scene.first_camera->half_width, 256);
    EXPECT_EQ(scene.first_camera->half_height, -3);
    scene.set_width(100);
    EXPECT_EQ(scene.first_camera->width, 513); // the size at its creation
}

TEST(moscene, lists_keep_the_order_and_find_the_first_of_a_name) {
    moscene scene;
    EXPECT_EQ(scene.add_mesh("one"), 1);
    EXPECT_EQ(scene.first_mesh, scene.last_mesh);
    EXPECT_EQ(scene.first_mesh->next, nullptr);
    EXPECT_EQ(scene.add_mesh("two"), 2);
    EXPECT_EQ(scene.add_mesh("one"), 3);
    EXPECT_EQ(scene.first_mesh->next->next, scene.last_mesh);
    EXPECT_EQ(scene.find_mesh("one"), scene.first_mesh);
    EXPECT_EQ(scene.find_mesh("two"), scene.first_mesh->next);
    EXPECT_EQ(scene.find_mesh("One"), nullptr);
    EXPECT_EQ(scene.find_mesh("on"), nullptr);
    EXPECT_EQ(scene.find_mesh("ones"), nullptr);

    EXPECT_EQ(scene.add_light("lamp", 1, 2, 3), 1);
    EXPECT_EQ(scene.add_light("other", 4, 5, 6), 2);
    EXPECT_EQ(scene.find_light("other")->start_position.y, 5);
    EXPECT_EQ(scene.add_material("glass"), 1);
    EXPECT_EQ(scene.find_material("Glass"), nullptr);
    EXPECT_EQ(scene.find_material("glass"), scene.last_material);
    add_default_camera(scene, "a");
    add_default_camera(scene, "b");
    EXPECT_EQ(scene.find_camera("b"), scene.last_camera);
    EXPECT_EQ(scene.last_camera->start_target.z, 6);
    EXPECT_EQ(scene.camera_count, 2);
}

TEST(moscene, records_stay_where_they_are_while_the_scene_grows) {
    moscene scene;
    scene.add_mesh("first");
    scene.add_light("first", 0, 0, 0);
    mesh* const first = scene.first_mesh;
    light* const lamp = scene.first_light;
    for (int i = 0; i < 70000; ++i)
        scene.add_light("more", 0, 0, 0);
    for (int i = 0; i < 1000; ++i)
        scene.add_mesh("more");
    EXPECT_EQ(scene.find_mesh("first"), first);
    EXPECT_EQ(scene.find_light("first"), lamp);
    EXPECT_EQ(scene.light_count, 70001);
    EXPECT_EQ(scene.add_light("wraps", 0, 0, 0), 70002 - 65536);
}

TEST(moscene, a_linked_mesh_stays_its_owners) {
    mesh lent, second;
    mesh_set_render_mode(lent, 36);
    {
        moscene scene;
        scene.set_render_mode(1032);
        EXPECT_EQ(scene.add_mesh(lent), 1);
        scene.add_mesh("own");
        EXPECT_EQ(scene.add_mesh(second), 3);
        EXPECT_EQ(scene.first_mesh, &lent);
        EXPECT_EQ(scene.last_mesh, &second);
        EXPECT_EQ(lent.render_mode, 36);
        EXPECT_EQ(lent.next->render_mode, 1032);
        // once more, at the head and at the tail: the list stays whole
        EXPECT_EQ(scene.add_mesh(lent), 3);
        EXPECT_EQ(scene.add_mesh(second), 3);
        EXPECT_EQ(lent.next->next, &second);
        EXPECT_EQ(second.next, nullptr);
    }
    mesh_alloc_vertices(lent, 3); // alive and well
    EXPECT_EQ(lent.vertices.size(), 3U);
}

TEST(moscene, names_are_cut_to_their_field) {
    const std::string longest(255, 'n'), too_long(1000, 'n');
    moscene scene;
    scene.add_mesh(too_long);
    scene.add_light(too_long, 0, 0, 0);
    scene.add_material(too_long);
    scene.add_camera(too_long, 0, 0, 0, 0, 0, 0, 0, 50);
    EXPECT_EQ(scene.first_mesh->name, longest);
    EXPECT_EQ(scene.find_light(longest), scene.first_light);
    EXPECT_EQ(scene.find_camera(longest), scene.first_camera);
    material_set_opac(*scene.first_material, too_long, 1);
    EXPECT_EQ(scene.first_material->opac_map.file_name, longest);
    mokey_node node(node_object);
    node.set_name(too_long);
    EXPECT_EQ(node.name, longest);
    node.alloc_keys(1, track_morph);
    node.add_key_morph(0, too_long, 0, 0, 0, 0, 0);
    EXPECT_EQ(node.morph_keys[0].target, longest);
}

TEST(moscene, every_addition_logs_its_signature) {
    log_channel = {.enabled = true, .level_mask = log_debug, .to_stdout = true};
    const std::string lines = printed_by([] {
        moscene scene;
        mesh lent;
        scene.add_mesh("m");
        scene.add_mesh(lent);
        add_default_camera(scene, "c");
        scene.add_light("l", 0, 0, 0);
        scene.add_material("m");
        scene.add_node(node_object, no_parent);
        scene.add_node(node_object, 77);
    });
    log_channel = {};
    EXPECT_EQ(lines, "[D] unsigned short moscene::add_mesh()\n[D] unsigned short moscene::add_mesh()\n"
                     "[D] unsigned short moscene::add_camera()\n[D] unsigned short moscene::add_light()\n"
                     "[D] unsigned short moscene::add_material()\n[D] unsigned short moscene::add_node()\n"
                     "[D] mokey_node::mokey_node()\n[D] unsigned short moscene::add_node()\n");
}

TEST(mesh, arrays_are_filled_within_their_bounds) {
    mesh m;
    EXPECT_EQ(m.render_mode, 1);
    EXPECT_EQ(m.render_row, render_mode_find(1));
    mesh_set_render_mode(m, 36);
    EXPECT_EQ(m.render_row, render_mode_find(36));
    mesh_set_render_mode(m, 8); // no such mode
    EXPECT_EQ(m.render_mode, 8);
    EXPECT_EQ(m.render_row, 0);

    mesh_add_vertex(m, 1, 1, 1); // before there are arrays
    mesh_add_face(m, 0, 0, 0, 0);
    EXPECT_EQ(m.vertex_count + m.face_count, 0);
    mesh_alloc_vertices(m, 2);
    mesh_alloc_faces(m, 2);
    for (int i = 1; i <= 3; ++i) {
        mesh_add_vertex(m, static_cast<float>(i), 0, 0);
        mesh_add_face(m, static_cast<std::int16_t>(-i), 1, 2, 0x1f);
    }
    EXPECT_EQ(m.vertex_count, 2);
    EXPECT_EQ(m.vertices[1].x, 2);
    EXPECT_EQ(m.face_count, 2);
    EXPECT_EQ(m.faces[1].a, -2);
    EXPECT_FALSE(face_in_mesh(m, m.faces[1]));
    const face& f = m.faces[0];
    EXPECT_EQ((std::array{f.edge_ca, f.edge_bc, f.edge_ab, f.wrap_u, f.wrap_v}),
              (std::array<std::uint8_t, 5>{4, 2, 1, 1, 1}));
    mesh_alloc_faces(m, 1);
    mesh_add_face(m, 0, 1, 0, 8);
    EXPECT_EQ(m.faces[0].wrap_u + m.faces[0].wrap_v + m.faces[0].edge_ab, 1);
    EXPECT_TRUE(face_in_mesh(m, m.faces[0]));

    material surface;
    for (const int i : {-1, 2, 1 << 30, INT32_MIN}) {
        mesh_set_vertex(m, 9, 9, 9, i);
        mesh_set_uv(m, i, 9, 9);
        mesh_set_face_material(m, &surface, i);
    }
    EXPECT_EQ(m.vertices[0].x + m.vertices[1].x, 3);
    mesh_set_uv(m, 1, 0.25F, 0.5F);
    EXPECT_EQ(m.uv[1].v, 0.5F);
    mesh_set_face_material(m, &surface, 0);
    EXPECT_EQ(m.faces[0].material, &surface);
    mesh_set_vertex(m, 7, 8, 9, 0);
    EXPECT_EQ(m.vertices[0].z, 9);
    EXPECT_EQ(m.vertex_count, 2);

    mesh_alloc_vertices(m, 1); // a second, smaller set begins anew
    EXPECT_EQ(m.vertex_count, 0);
    mesh_add_vertex(m, 1, 2, 3);
    mesh_add_vertex(m, 1, 2, 3);
    EXPECT_EQ(m.vertex_count, 1);
    mesh_alloc_vertices(m, -5);
    EXPECT_TRUE(m.vertices.empty() && m.normals.empty() && m.camera_vertices.empty() && m.uv.empty());
}

TEST(camera, tells_a_lens_that_stands_in_no_table) {
    moscene scene;
    const std::string line = printed_by([&] {
        for (const float lens : {15.0F, 20.0F, 24.0F, 28.0F, 35.0F, 50.0F, 85.0F, 135.0F, 200.0F})
            scene.add_camera("known", 0, 0, 0, 0, 0, 0, 0, lens);
        scene.add_camera("unknown", 0, 0, 0, 0, 0, 0, 12, 43);
    });
    EXPECT_EQ(line, "FOV: 55.813953\n");
    EXPECT_EQ(scene.last_camera->bank, 12);
    EXPECT_EQ(scene.last_camera->focus, 43);
    EXPECT_EQ(scene.last_camera->fov, 0);
    EXPECT_EQ(scene.last_camera->current_fov, 0);
    EXPECT_EQ(camera_lens_fov(20), 94.285713F);
    EXPECT_EQ(camera_lens_fov(135), 18);
}

TEST(light, starts_in_its_start_colour) {
    light l;
    EXPECT_EQ(l.color_r + l.color_g + l.color_b, 0);
    light_set_color(l, 0.25F, 0.5F, 1);
    EXPECT_EQ(l.start_color_g, 0.5F);
    EXPECT_EQ(l.color_g, 0.5F);
    light_set_spot(l, 1, 2, 3);
    light_set_hotspot(l, 40);
    light_set_falloff(l, 50);
    light_set_shadows(l, true);
    EXPECT_TRUE(l.is_spot && l.cast_shadows);
    EXPECT_EQ(l.start_target.z, 3);
    EXPECT_EQ(l.start_hotspot, 40);
    EXPECT_EQ(l.start_falloff, 50);
}

TEST(material, transparency_becomes_a_weight) {
    material m;
    EXPECT_EQ(m.opacity, 0);
    for (const auto& [percent, opacity] : {std::pair{0, 255},
                                           {100, 5},
                                           {50, 130},
                                           {1, 252},
                                           {99, 7},
                                           {102, 0},
                                           {65535, -163582},
                                           {-20, 305},
                                           {INT32_MIN, INT32_MAX},
                                           {INT32_MAX, INT32_MIN}}) {
        material_set_transparency(m, percent);
        EXPECT_EQ(m.opacity, opacity) << percent;
    }
}

TEST(debug_dump, of_an_empty_scene_is_the_header) {
    EXPECT_EQ(printed_by([] { moscene{}.debug(); }),
              "Debug info for moscene:\nMeshes: 0\nLights: 0\nCameras: 0\nKeyframe nodes: 0\nMaterials: "
              "0\n-----\n");
}

TEST(debug_dump, shows_records_of_every_kind) {
    moscene scene;
    scene.add_mesh("box");
    scene.add_mesh("ball");
    scene.add_camera("eye", 1, -2.5F, 3, 4, 5, 1234567, 7.25F, 50);
    scene.add_light("bulb", 1, 2, 3);
    light_set_color(*scene.last_light, 1, 0.5F, 0.123456F);
    scene.add_light("cone", -1, -2, -3);
    light_set_spot(*scene.last_light, 4, 5, 6);
    light_set_hotspot(*scene.last_light, 44.5F);
    light_set_falloff(*scene.last_light, 45.5F);
    light_set_shadows(*scene.last_light, true);
    scene.add_material("plain");
    scene.add_material("rich");
    material& rich = *scene.last_material;
    material_set_ambient(rich, 1, 2, 3);
    material_set_diffuse(rich, 4, 5, 6);
    material_set_specular(rich, 7, 8, 9);
    material_set_shininess(rich, 33);
    material_set_bump(rich, "B.TGA", 5);
    material_set_texture(rich, "T.TGA", 1);
    material_set_spec(rich, "S.TGA", 2);
    material_set_opac(rich, "O.TGA", 3);
    material_set_refl(rich, "R.TGA", 4);
    EXPECT_EQ(printed_by([&] { scene.debug(); }),
              "Debug info for moscene:\nMeshes: 2\nLights: 2\nCameras: 1\nKeyframe nodes: 0\nMaterials: 2\n"
              "\nMeshes:\n  0 => 'box'\n  1 => 'ball'\n"
              "\nCameras:\n  0 => 'eye'\n    Position => {   1.000,   -2.500,    3.000}\n"
              "    Target => {   4.000,    5.000, 1234567.000}\n    Bank =>    7.250\n    Focus =>   50.000\n"
              "\nLights:\n  0 => 'bulb'\n    Position => {   1.000,    2.000,    3.000}\n"
              "    Color => {1.00000, 0.50000, 0.12346}\n    Cast shadows? 0\n"
              "  1 => 'cone'\n    Position => {  -1.000,   -2.000,   -3.000}\n"
              "    Target => {   4.000,    5.000,    6.000}\n"
              "    Hotspot =>   44.500\n    Falloff =>   45.500\n"
              "    Color => {0.00000, 0.00000, 0.00000}\n    Cast shadows? 1\n"
              "\nMaterials: (2)\n\nMaterial name: plain\nAmbient => 0, 0, 0\nDiffuse => 0, 0, 0\n"
              "Specular => 0, 0, 0\n"
              "\nMaterial name: rich\nAmbient => 1, 2, 3\nDiffuse => 4, 5, 6\nSpecular => 7, 8, 9\n"
              "Texturemap T.TGA, Percentage 1\nSpecmap S.TGA, Percentage 2\nOpacmap O.TGA, Percentage 3\n"
              "Reflectionmap R.TGA, Percentage 4\nBumpmap B.TGA, Percentage 5\n-----\n");
}

TEST(debug_dump, shows_the_tree_with_every_track) {
    moscene scene;
    scene.add_mesh("box");
    scene.add_camera("eye", 0, 0, 0, 0, 0, 0, 0, 50);
    scene.add_node(node_object, no_parent);
    mokey_node& root = *scene.current_node;
    root.set_name("box");
    root.set_parent(no_parent);
    root.set_pivot(1, 2, -3);
    root.object = scene.first_mesh;
    for (std::int32_t track = track_position; track <= track_falloff; ++track)
        root.alloc_keys(2, track);
    root.add_key_pos(1, 1, 2, 3, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_pos(2, 1, 2, 3, 0, 0, 0, 0, 0);
    const std::string turned = printed_by([&] {
        root.add_key_rot(3, 1.5F, 0, 0, 1, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F, {1, 0.5F, -2, 0});
    });
    EXPECT_EQ(turned, "ROT: (1.000000, 0.500000, -2.000000, 0.000000)\n");
    root.add_key_scale(4, 1, 2, 3, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_fov(5, 45, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_roll(6, 46, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_color(7, 1, 2, 3, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_morph(8, "ball", 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_hotspot(9, 47, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);
    root.add_key_falloff(10, 48, 0.5F, 1.5F, 2.5F, 3.5F, 4.5F);

    const auto add_child = [&scene](std::uint16_t type, std::uint16_t parent,
                                    std::uint16_t id) -> mokey_node& {
        scene.add_node(type, parent);
        scene.current_node->set_id(id);
        scene.current_node->set_parent(parent);
        return *scene.current_node;
    };
    add_child(node_camera, 0, 1).camera = scene.first_camera;
    add_child(node_camera_target, 1, 2).set_name("eye");
    add_child(node_spotlight, 0, 3);
    add_child(node_unknown, no_parent, 4);
    add_child(node_ambient, 4, 5);
    add_child(node_light, 4, 6);
    add_child(node_light_target, 4, 7);
    add_child(9, 4, 8);
    add_child(node_object, 99,
              9); // no such parent: counted, not made; the last node takes id and parent over

    const std::string place = "   1.000,    2.000,    3.000";
    const std::string head = "C:1.500000 B:2.500000 ET:3.500000 ";
    const std::string plain = " T:0.500000 " + head + "EF:4.500000\n";
    const std::string bare = " T:0.500000 " + head + "EF4.500000\n";
    const std::string pivot = " Pivot => {   0.000,    0.000,    0.000}\n";
    const std::string dump = printed_by([&] { scene.debug(); });
    const std::string tree = dump.substr(dump.find("\nKeyframe nodes: ("));
    EXPECT_EQ(tree,
              "\nKeyframe nodes: (10)\n Node 0 (parent 65535)\n Name => box\n"
              " Pivot => {   1.000,    2.000,   -3.000}\n Node type => object (box)\n Position keys => 2\n"
              "  Frame 1 => {" +
                  place + "} T0.500000 " + head +
                  "EF:4.500000 \n"
                  "  Frame 2 => {" +
                  place +
                  "} T0.000000 C:0.000000 B:0.000000 ET:0.000000 EF:0.000000 \n"
                  " Rotation keys => 1\n"
                  "  Frame 3 => Axis{   0.000,    0.000,    1.000} Angle{   1.500}" +
                  plain + " Scale keys => 1\n  Frame 4 => {" + place + "}" + plain +
                  " Fov keys => 1\n  Frame 5 => 45.000000" + plain +
                  " Roll keys => 1\n  Frame 6 => 46.000000" + bare + " Color keys => 1\n  Frame 7 => {" +
                  place + "}" + bare + " Morph keys => 1\n  Frame 8 => ball" + bare +
                  " Hotspot keys => 1\n  Frame 9 => 47.000000" + bare +
                  " Falloff keys => 1\n  Frame 10 => 48.000000" + bare +
                  "\n"
                  "   Node 1 (parent 0)\n   Name => \n  " +
                  pivot +
                  "   Node type => camera (eye)\n\n"
                  "     Node 2 (parent 1)\n     Name => eye\n    " +
                  pivot +
                  "     Node type => camera target\n\n"
                  "   Node 3 (parent 0)\n   Name => \n  " +
                  pivot +
                  "   Node type => spotlight\n\n"
                  " Node 4 (parent 65535)\n Name => \n" +
                  pivot +
                  " Node type => unknown\n\n"
                  "   Node 5 (parent 4)\n   Name => \n  " +
                  pivot +
                  "   Node type => ambient\n\n"
                  "   Node 6 (parent 4)\n   Name => \n  " +
                  pivot +
                  "   Node type => light\n\n"
                  "   Node 7 (parent 4)\n   Name => \n  " +
                  pivot +
                  "   Node type => light target\n\n"
                  "   Node 9 (parent 99)\n   Name => \n  " +
                  pivot + "\n-----\n");
}
