// What the chunks of a sound 3D Studio file become.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "tests/support/loaded_scene.h"
#include "tests/support/scene_writer.h"

using namespace scene_writer;

namespace {

void expect_vector(const vector3d& v, float x, float y, float z) {
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

// The nodes of a scene in which node 0 has the track that the test is about.
loaded_pointer load_track(const chunk& keys) {
    return load_both_ways(scene_file({}, {chunk(0xb002).add(node_header("Box")).add(keys)}));
}

} // namespace

TEST(loader_3ds, a_mesh_of_random_content_arrives_with_swapped_axes) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> place(-100, 100);
    const auto number = [&random](unsigned limit) { return static_cast<unsigned>(random()) % limit; };
    const vector3d origin{place(random), place(random), place(random)}; // of the matrix, in the file's axes
    std::vector<std::array<float, 3>> points(700);                      // more than the reader takes at once
    std::vector<std::array<float, 2>> pairs(700);
    std::vector<std::array<unsigned, 4>> corners(900);
    for (auto& point : points)
        point = {place(random), place(random), place(random)};
    for (auto& pair : pairs)
        pair = {place(random), place(random)};
    for (auto& face : corners)
        face = {number(700), number(700), number(700), number(65536)};
    std::vector<unsigned> named(300);
    for (unsigned& index : named)
        index = number(900);

    chunk matrix(0x4160);
    matrix.f32({1, 2, 3, 4, 5, 6, 7, 8, 9, origin.x, origin.y, origin.z});
    const loaded_pointer loaded = load_both_ways(scene_file(
        {chunk(0xafff).add(chunk(0xa000).text("Steel")),
         object_block("Box", triangles({vertices(points), mapping(pairs),
                                        faces(corners).add(material_group("Steel", named)), matrix}))}));

    ASSERT_TRUE(loaded->result);
    ASSERT_NE(loaded->scene.first_mesh, nullptr);
    const mesh& box = *loaded->scene.first_mesh;
    EXPECT_STREQ(box.name, "Box");
    EXPECT_EQ(box.flags, 0);
    ASSERT_EQ(box.vertex_count, 700);
    ASSERT_EQ(box.face_count, 900);
    for (std::size_t i = 0; i < points.size(); ++i) {
        expect_vector(box.vertices[i], points[i][0] - origin.x, points[i][2] - origin.z,
                      points[i][1] - origin.y);
        EXPECT_EQ(box.uv[i].u, pairs[i][0]);
        EXPECT_EQ(box.uv[i].v, pairs[i][1]);
    }
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const face& one = box.faces[i];
        const auto [a, b, c, flag] = corners[i];
        EXPECT_EQ(std::make_tuple(one.a, one.b, one.c), std::make_tuple(a, b, c));
        EXPECT_EQ(std::make_tuple(one.edge_ca, one.edge_bc, one.edge_ab, one.wrap_u, one.wrap_v),
                  std::make_tuple(flag & 4, flag & 2, flag & 1, flag / 8 % 2, flag / 16 % 2));
        const bool in_group = std::find(named.begin(), named.end(), i) != named.end();
        EXPECT_EQ(one.material, in_group ? loaded->scene.first_material : nullptr);
    }
}

TEST(loader_3ds, a_material_group_of_an_unknown_name_takes_the_material_away) {
    const loaded_pointer loaded = load_both_ways(scene_file(
        {chunk(0xafff).add(chunk(0xa000).text("steel")),
         object_block("Box", triangles({vertices({{0, 0, 0}}), faces({{0, 0, 0, 0}, {0, 0, 0, 0}}),
                                        material_group("steel", {0, 1}), material_group("Steel", {1})}))}));
    EXPECT_EQ(loaded->scene.first_mesh->faces[0].material, loaded->scene.first_material);
    EXPECT_EQ(loaded->scene.first_mesh->faces[1].material, nullptr);
}

TEST(loader_3ds, lights_and_cameras) {
    const chunk spot = chunk(0x4600)
                           .f32({1, 2, 3})
                           .add(colour_floats(0.25F, 0.5F, 0.75F))
                           .add(chunk(0x4620)) // off: nobody knows it here
                           .add(chunk(0x4610).f32({4, 5, 6, 40, 50}).add(chunk(0x4630)));
    const loaded_pointer loaded = load_both_ways(scene_file(
        {object_block("Spot", spot),
         object_block("Omni", chunk(0x4600).f32({7, 8, 9}).add(colour_bytes(255, 51, 0))),
         object_block("Eye", chunk(0x4700).f32({1, 2, 3, 4, 5, 6, 7, 50}).add(chunk(0x4720).f32({1, 2}))),
         chunk(0x2100).add(colour_floats(0.1F, 0.2F, 0.3F)), chunk(0x1200).add(colour_floats(1, 1, 1))}));
    const moscene& scene = loaded->scene;
    ASSERT_EQ(scene.light_count, 2);
    const light& first = *scene.first_light;
    EXPECT_STREQ(first.name, "Spot");
    expect_vector(first.start_position, 1, 2, 3); // lights keep the file's axes
    expect_vector(first.start_target, 4, 5, 6);
    expect_vector({first.start_color_r, first.start_color_g, first.start_color_b}, 0.25F, 0.5F, 0.75F);
    EXPECT_EQ(first.start_hotspot, 40);
    EXPECT_EQ(first.start_falloff, 50);
    EXPECT_TRUE(first.is_spot);
    EXPECT_TRUE(first.cast_shadows);
    const light& second = *scene.last_light;
    EXPECT_STREQ(second.name, "Omni");
    expect_vector({second.start_color_r, second.start_color_g, second.start_color_b}, 1, 0.2F, 0);
    EXPECT_FALSE(second.is_spot);
    EXPECT_FALSE(second.cast_shadows);

    ASSERT_EQ(scene.camera_count, 1);
    EXPECT_STREQ(scene.first_camera->name, "Eye");
    expect_vector(scene.first_camera->start_position, 1, 3, 2);
    expect_vector(scene.first_camera->start_target, 4, 6, 5);
    EXPECT_EQ(scene.first_camera->bank, 7);
    EXPECT_EQ(scene.first_camera->focus, 50);
    EXPECT_EQ(loaded->printed, ""); // a lens of the table
    expect_vector({scene.ambient_r, scene.ambient_g, scene.ambient_b}, 0.1F, 0.2F, 0.3F);
}

TEST(loader_3ds, a_material_takes_colours_and_percentages_of_every_type) {
    // What stands behind the value in a child is skipped: the chunks that follow arrive whole.
    const chunk linear_bytes = chunk(0x0012).u8({9, 8, 7, 99, 99});
    const chunk linear_floats = chunk(0x0013).f32({1, 0.5F, 2, 99});
    const chunk nobodys = chunk(0x0014).u8({3, 2, 1}); // taken for bytes, as in most files
    const chunk file =
        chunk(0xafff)
            .add(chunk(0xa000).text("Steel"))
            .add(chunk(0xa010).add(linear_bytes).add(colour_bytes(1, 1, 1))) // the second is skipped
            .add(chunk(0xa020).add(linear_floats))
            .add(chunk(0xa030).add(nobodys))
            .add(chunk(0xa040).add(fraction(0.358F)))
            .add(chunk(0xa041).add(percentage(77)))
            .add(chunk(0xa050).add(chunk(0x0030).u16({50, 99})))
            .add(map_chunk(0xa200, "WALL.JPG", 60)
                     .add(chunk(0xa351).u16({3}))
                     .add(chunk(0xa354).f32({2}))
                     .add(chunk(0xa356).f32({3}))
                     .add(chunk(0xbeef).u16({1})))
            .add(map_chunk(0xa204, "spec.png", 1))
            .add(map_chunk(0xa210, "opac.png", 2))
            .add(map_chunk(0xa220, "refl.png", 3))
            .add(map_chunk(0xa230, "bump.png", 4));
    const loaded_pointer loaded = load_both_ways(scene_file({file}));
    EXPECT_EQ(loaded->text(),
              "ambient 0x0p+0 0x0p+0 0x0p+0, frames 0 to 0\n"
              "material Steel: 9 8 7, 255 128 255, 3 2 1, shininess 36, opacity 130\n"
              "map WALL.JPG 60\nmap spec.png 1\nmap opac.png 2\nmap refl.png 3\nmap bump.png 4\n");
}

TEST(loader_3ds, a_material_without_transparency_has_no_opacity_and_without_maps_none) {
    const loaded_pointer loaded =
        load_both_ways(scene_file({chunk(0xafff).add(chunk(0xa000).text("Plain"))}));
    EXPECT_EQ(text_of_material(*loaded->scene.first_material),
              "material Plain: 0 0 0, 0 0 0, 0 0 0, shininess 0, opacity 0\n"
              "no map\nno map\nno map\nno map\nno map\n");
}

TEST(loader_3ds, nodes_make_a_tree_of_their_parents_and_tie_to_records_by_name_and_type) {
    const chunk light = chunk(0x4600).f32({0, 0, 0}).add(colour_floats(1, 1, 1));
    const chunk eye = chunk(0x4700).f32({0, 0, 0, 0, 0, 0, 0, 50});
    const auto node = [](std::uint16_t tag, const char* name, unsigned parent) {
        return chunk(tag)
            .add(chunk(0xb030).u16({77})) // numbers go by the order of the file
            .add(node_header(name, parent));
    };
    const scene_bytes file = scene_file(
        {object_block("Box", triangles({vertices({})})), object_block("Lamp", light),
         object_block("Eye", eye)},
        {chunk(0xb00a).u16({5}).text("name").u32({100}), chunk(0xb008).u32({3, 0xffffffffU}),
         node(0xb001, "$AMBIENT$", 0xffff), node(0xb002, "Box", 0xffff),
         node(0xb002, "$$$DUMMY", 1).add(chunk(0xb011).text("Box")).add(chunk(0xb013).f32({1, 2, 3})),
         node(0xb002, "$$$DUMMY", 2).add(chunk(0xb011).text("Handle")), node(0xb003, "Eye", 3),
         node(0xb004, "Eye", 0xffff), node(0xb005, "Lamp", 1), node(0xb006, "Lamp", 0xffff),
         node(0xb007, "Lamp", 0xffff), node(0xb002, "Lamp", 0xffff)});
    const loaded_pointer loaded = load_both_ways(file);
    const auto line = [](const char* indent, const char* name, int type, int id, int parent, const char* tied,
                         const char* pivot = "0x0p+0 0x0p+0 0x0p+0") {
        return line_of("%snode %s type %d id %d parent %d tied to %s", indent, name, type, id, parent, tied) +
               "pivot " + pivot + "\n";
    };
    EXPECT_EQ(loaded->text().substr(loaded->text().find("node")),
              line("", "$AMBIENT$", 1, 0, 65535, "-") + line("", "Box", 2, 1, 65535, "Box") +
                  line(" ", "$$$DUMMY", 2, 2, 1, "Box", "0x1p+0 0x1.8p+1 0x1p+1") +
                  line("  ", "$$$DUMMY", 2, 3, 2, "Handle") + line("   ", "Eye", 4, 4, 3, "Eye") +
                  line(" ", "Lamp", 16, 6, 1, "Lamp") + line("", "Eye", 8, 5, 65535, "Eye") +
                  line("", "Lamp", 32, 7, 65535, "Lamp") + line("", "Lamp", 64, 8, 65535, "Lamp") +
                  line("", "Lamp", 2, 9, 65535, "-"));
    // The first mesh of a name wins: the dummy that is called Box moves the box.
    EXPECT_EQ(loaded->scene.first_node->next->first_child->object, loaded->scene.first_mesh);
    EXPECT_EQ(loaded->scene.start_frame, 3);
    EXPECT_EQ(loaded->scene.end_frame, -1);
    EXPECT_EQ(loaded->scene.mesh_count, 3);
    EXPECT_EQ(loaded->scene.last_mesh->flags, mesh_dummy | mesh_hidden);
    EXPECT_EQ(loaded->scene.first_mesh->flags, 0);
}

TEST(loader_3ds, a_node_called_dummy_is_tied_by_its_dummy_chunk_alone) {
    const loaded_pointer loaded = load_both_ways(
        scene_file({object_block("$$$DUMMY", triangles({vertices({})})),
                    object_block("$$$dummy", triangles({vertices({})}))},
                   {chunk(0xb002).add(node_header("$$$DUMMY")), chunk(0xb002).add(node_header("$$$dummy")),
                    chunk(0xb002).add(node_header("Plain")).add(chunk(0xb011).text("$$$DUMMY"))}));
    const mokey_node& first = *loaded->scene.first_node;
    EXPECT_EQ(first.object, nullptr);
    EXPECT_EQ(first.next->object, loaded->scene.first_mesh->next);
    EXPECT_EQ(first.next->next->object, loaded->scene.first_mesh);
}

TEST(loader_3ds, a_node_without_its_parent_gives_its_place_to_the_node_before) {
    const loaded_pointer loaded = load_both_ways(
        scene_file({}, {chunk(0xb002).add(node_header("Orphan", 5)).add(chunk(0xb013).f32({1, 1, 1})),
                        chunk(0xb002).add(node_header("Root")),
                        chunk(0xb003).add(node_header("Stray", 7)).add(chunk(0xb013).f32({1, 2, 3}))}));
    EXPECT_EQ(text_of_nodes(loaded->scene.first_node),
              "node Stray type 2 id 2 parent 7 tied to -\npivot 0x1p+0 0x1.8p+1 0x1p+1\n");
    EXPECT_EQ(loaded->scene.node_count, 3);
}

TEST(loader_3ds, keys_keep_the_spline_values_that_they_do_not_give) {
    chunk keys = track(0xb020, 3);
    key(keys, 0, 0x1f, {1, 2, 3, 4, 5}, {10, 20, 30});
    key(keys, 7, 0x05, {0.5F, -1}, {11, 21, 31});
    key(keys, 65535, 0xffe0, {}, {12, 22, 32});
    const std::string text = load_track(keys)->text();
    EXPECT_EQ(text.substr(text.find("position")),
              "position 0: 0x1p+0 0x1p+1 0x1.8p+1 0x1p+2 0x1.4p+2\n  0x1.4p+3 0x1.ep+4 0x1.4p+4\n"
              "position 7: 0x1p-1 0x1p+1 -0x1p+0 0x1p+2 0x1.4p+2\n  0x1.6p+3 0x1.fp+4 0x1.5p+4\n"
              "position 65535: 0x1p-1 0x1p+1 -0x1p+0 0x1p+2 0x1.4p+2\n  0x1.8p+3 0x1p+5 0x1.6p+4\n");

    // Each chunk begins with zeros again.
    chunk more = track(0xb022, 1);
    key(more, 1, 0, {}, {1, 2, 3});
    const loaded_pointer both =
        load_both_ways(scene_file({}, {chunk(0xb002).add(node_header("Box")).add(keys).add(more)}));
    ASSERT_EQ(both->scene.first_node->scale_count, 1);
    expect_vector(both->scene.first_node->scale_keys[0].value, 1, 2, 3); // scales aren't swapped
    EXPECT_EQ(both->scene.first_node->scale_keys[0].tension, 0);
    EXPECT_EQ(both->scene.first_node->scale_keys[0].ease_from, 0);
}

TEST(loader_3ds, every_track_arrives_in_its_own_array) {
    struct kind {
        std::uint16_t id;
        const char* name;
        std::initializer_list<float> value;
        const char* shown;
    };
    for (const kind& each :
         {kind{0xb022, "scale", {1, 2, 4}, "  0x1p+0 0x1p+1 0x1p+2"}, kind{0xb023, "fov", {8}, "  0x1p+3"},
          kind{0xb024, "roll", {16}, "  0x1p+4"}, kind{0xb025, "colour", {1, 2, 4}, "  0x1p+0 0x1p+1 0x1p+2"},
          kind{0xb027, "hotspot", {32}, "  0x1p+5"}, kind{0xb028, "falloff", {64}, "  0x1p+6"}}) {
        chunk keys = track(each.id, 1);
        key(keys, 9, 1, {0.5F}, each.value);
        const std::string text = load_track(keys)->text();
        EXPECT_NE(text.find(std::string("\n") + each.name + " 9: 0x1p-1 0x0p+0 0x0p+0 0x0p+0 0x0p+0\n" +
                            each.shown + "\n"),
                  std::string::npos)
            << text;
    }
    chunk morph = track(0xb026, 2);
    key(morph, 1, 0, {}, {}).text("Ball");
    key(morph, 2, 2, {1}, {}).text("");
    const loaded_pointer loaded = load_track(morph);
    ASSERT_EQ(loaded->scene.first_node->morph_count, 2);
    EXPECT_STREQ(loaded->scene.first_node->morph_keys[0].target, "Ball");
    EXPECT_STREQ(loaded->scene.first_node->morph_keys[1].target, "");
    EXPECT_EQ(loaded->scene.first_node->morph_keys[1].continuity, 1);
}

TEST(loader_3ds, rotations_take_the_angle_of_all_keys_so_far) {
    constexpr float quarter = std::numbers::pi_v<float> / 2;
    chunk keys = track(0xb021, 3);
    key(keys, 0, 0, {}, {0, 0, 0, 1});
    key(keys, 10, 0, {}, {quarter, 0, 0, 1});
    key(keys, 20, 0, {}, {quarter, 0, 0, 1});
    const loaded_pointer loaded = load_track(keys);
    ASSERT_EQ(loaded->scene.first_node->rot_count, 3);
    double turned = 0;
    for (int i = 0; i < 3; ++i) {
        const rotation_key& one = loaded->scene.first_node->rot_keys[static_cast<std::size_t>(i)];
        const double angle = i * std::numbers::pi / 2;
        turned += angle; // each key turns by the whole angle so far, from where the one before has left
        EXPECT_NEAR(one.angle, angle, 1e-6);
        expect_vector(one.axis, 0, 0, 1); // axes aren't swapped
        EXPECT_NEAR(std::abs(one.rotation.w), std::abs(std::cos(turned / 2)), 1e-6);
        EXPECT_NEAR(std::abs(one.rotation.z), std::abs(std::sin(turned / 2)), 1e-6);
        EXPECT_NEAR(one.rotation.x, 0, 1e-6);
        EXPECT_NEAR(one.rotation.y, 0, 1e-6);
    }
}

TEST(loader_3ds, rotations_about_two_axes_multiply_from_the_left) {
    constexpr float quarter = std::numbers::pi_v<float> / 2;
    chunk keys = track(0xb021, 2);
    key(keys, 0, 0, {}, {quarter, 1, 0, 0});
    key(keys, 10, 0, {}, {quarter, 0, 1, 0}); // half a turn about y by now
    const loaded_pointer loaded = load_track(keys);
    const quaternion& both = loaded->scene.first_node->rot_keys[1].rotation;
    // j (cos 45 + i sin 45) = j cos 45 - k sin 45, up to the sign of all four
    const double half = std::sqrt(0.5) * (both.y < 0 ? -1 : 1);
    EXPECT_NEAR(both.w, 0, 1e-6);
    EXPECT_NEAR(both.x, 0, 1e-6);
    EXPECT_NEAR(both.y, half, 1e-6);
    EXPECT_NEAR(both.z, -half, 1e-6);
}
