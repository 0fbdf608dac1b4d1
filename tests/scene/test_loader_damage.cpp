// Files with chunks that are empty, unknown, out of place or damaged.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/loaded_scene.h"
#include "tests/support/scene_writer.h"

using namespace scene_writer;

namespace {

constexpr std::uint32_t warnings = log_error | log_warning;

chunk named_material(const char* name) {
    return chunk(0xafff).add(chunk(0xa000).text(name));
}

chunk light_at(float x, float y, float z) {
    return chunk(0x4600).f32({x, y, z});
}

chunk one_triangle() {
    return triangles({vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}), faces({{0, 1, 2, 7}})});
}

void use(loaded_scene& loaded) {
    const captured_output quiet;
    use_scene(loaded.scene);
}

} // namespace

TEST(loader_damage, a_main_chunk_of_skipped_chunks_leaves_the_scene_empty) {
    const chunk file = chunk(0x4d4d).add(chunk(0x0002).u32({3})).add(chunk(0x0100).f32({1}));
    const loaded_pointer loaded = load_both_ways(file.bytes());
    EXPECT_TRUE(loaded->result);
    EXPECT_EQ(loaded->text(), scene_text(moscene()));
}

TEST(loader_damage, unknown_and_misplaced_chunks_are_stepped_over_at_every_level) {
    const chunk unknown = chunk(0x7777).add(chunk(0x4700).f32({1, 2, 3}));
    const chunk misplaced = chunk(0xb013).f32({1, 2, 3}); // a pivot, which only nodes have
    const chunk file =
        chunk(0x4d4d)
            .add(unknown)
            .add(misplaced)
            .add(chunk(0x3d3d)
                     .add(unknown)
                     .add(misplaced)
                     .add(vertices({{1, 1, 1}}))
                     .add(chunk(0xafff).add(unknown).add(chunk(0xa000).text("M")).add(misplaced))
                     .add(chunk(0x4000).text("B").add(unknown).add(
                         triangles({unknown, misplaced, vertices({{1, 2, 3}}), unknown})))
                     .add(unknown))
            .add(chunk(0xb000).add(misplaced).add(unknown).add(
                chunk(0xb002).add(unknown).add(node_header("B")).add(vertices({}))))
            .add(unknown);
    const loaded_pointer loaded = load_both_ways(file.bytes(), log_note);
    EXPECT_EQ(loaded->scene.material_count, 1);
    ASSERT_EQ(loaded->scene.mesh_count, 1);
    EXPECT_EQ(text_of_mesh(*loaded->scene.first_mesh),
              "mesh B flags 0, 1 vertices, 0 faces\nvertex 0x1p+0 0x1.8p+1 0x1p+1\nuv 0x0p+0 0x0p+0\n");
    ASSERT_NE(loaded->scene.first_node, nullptr);
    EXPECT_EQ(loaded->scene.first_node->pivot.x, 0);
    std::size_t lines = 0;
    for (std::size_t at = loaded->printed.find("Unknown"); at != std::string::npos;
         at = loaded->printed.find("Unknown", at + 1))
        ++lines;
    EXPECT_EQ(lines, 17U);
}

TEST(loader_damage, an_empty_level_takes_the_sibling_behind_it_for_its_one_child) {
    const loaded_pointer swallowed =
        load_both_ways(scene_file({object_block("A", triangles()), object_block("B", one_triangle()),
                                   object_block("C", one_triangle())}));
    EXPECT_EQ(swallowed->scene.mesh_count, 2);
    EXPECT_EQ(swallowed->scene.find_mesh("B"), nullptr);
    EXPECT_NE(swallowed->scene.find_mesh("C"), nullptr);

    // A child that the level knows is taken in, and what follows is the sibling's sibling again.
    const loaded_pointer taken =
        load_both_ways(chunk(0x4d4d)
                           .add(chunk(0x3d3d))
                           .add(named_material("M"))
                           .add(chunk(0xb000).add(chunk(0xb002).add(node_header("N"))))
                           .bytes());
    EXPECT_EQ(taken->scene.material_count, 1);
    EXPECT_EQ(taken->scene.node_count, 1);
}

TEST(loader_damage, chunks_before_their_time_do_nothing_or_wait) {
    const chunk early =
        triangles({chunk(0x4160).f32({1, 0, 0, 0, 1, 0, 0, 0, 1, 10, 20, 30}),         // moves no vertex
                   mapping({{5, 5}}), material_group("M", {0}), faces({{0, 1, 2, 0}}), // kept
                   vertices({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}})});
    const loaded_pointer loaded = load_both_ways(scene_file(
        {chunk(0xafff)
             .add(chunk(0xa020).add(colour_bytes(9, 9, 9)))
             .add(chunk(0xa050).add(percentage(9)))
             .add(map_chunk(0xa200, "a.png", 9))
             .add(chunk(0xa000).text("M")),
         object_block("L", chunk(0x4610).f32({1, 2, 3, 4, 5}).add(chunk(0x4630)).add(chunk(0x4010))),
         object_block("B", early)},
        {chunk(0xb002).add(chunk(0xb013).f32({1, 2, 3})).add(track(0xb020, 0)).add(node_header("B"))}));
    EXPECT_EQ(text_of_material(*loaded->scene.first_material),
              "material M: 0 0 0, 0 0 0, 0 0 0, shininess 0, opacity 0\n"
              "no map\nno map\nno map\nno map\nno map\n");
    EXPECT_EQ(loaded->scene.light_count, 0);
    const mesh& box = *loaded->scene.first_mesh;
    EXPECT_EQ(box.flags, 0);
    ASSERT_EQ(box.vertex_count, 3);
    EXPECT_EQ(box.vertices[2].y, 3);
    EXPECT_EQ(box.uv[0].u, 0);
    ASSERT_EQ(box.face_count, 1);
    EXPECT_EQ(box.faces[0].c, 2);
    EXPECT_EQ(box.faces[0].material, nullptr);
    EXPECT_EQ(loaded->scene.first_node->pivot.z, 0);
}

TEST(loader_damage, marks_go_to_the_mesh_and_the_light_that_came_last) {
    const loaded_pointer loaded = load_both_ways(
        scene_file({object_block("A", one_triangle().add(chunk(0x4010))), // inside the mesh nobody knows it
                    object_block("B", chunk(0x4010).add(chunk(0x4016))),  // this is the first's
                    chunk(0x4000).text("C").add(one_triangle()).add(chunk(0x4016))}));
    EXPECT_EQ(loaded->scene.first_mesh->flags, mesh_hidden | mesh_frozen);
    EXPECT_EQ(loaded->scene.last_mesh->flags, mesh_frozen);
}

TEST(loader_damage, a_missing_colour_or_percentage_costs_no_other_chunk) {
    const loaded_pointer loaded = load_both_ways(scene_file(
        {chunk(0xafff)
             .add(chunk(0xa000).text("M"))
             .add(chunk(0xa010))
             .add(chunk(0xa020).add(colour_bytes(1, 2, 3)))
             .add(chunk(0xa050))
             .add(chunk(0xa204).add(chunk(0xa300).text("full.png")))
             .add(chunk(0xa210).add(percentage(5)))
             .add(chunk(0xa040).add(percentage(7)))
             .add(chunk(0xa041)),
         chunk(0x2100), // before the next object, whose header it reads
         object_block("L", light_at(1, 2, 3).add(chunk(0x4610).f32({1, 2, 3, 4, 5}))),
         object_block("O", light_at(4, 5, 6).add(chunk(0x4630))), object_block("B", one_triangle())}));
    EXPECT_EQ(text_of_material(*loaded->scene.first_material),
              "material M: 0 0 0, 1 2 3, 0 0 0, shininess 7, opacity 0\n"
              "no map\nmap full.png 100\nno map\nno map\nno map\n");
    ASSERT_EQ(loaded->scene.light_count, 2);
    EXPECT_TRUE(loaded->scene.first_light->is_spot);
    EXPECT_EQ(loaded->scene.last_light->start_position.x, 4);
    EXPECT_TRUE(loaded->scene.last_light->cast_shadows);
    EXPECT_EQ(loaded->scene.mesh_count, 1);
    EXPECT_EQ(loaded->scene.first_mesh->face_count, 1);
}

TEST(loader_damage, a_second_array_takes_the_place_of_the_first) {
    const loaded_pointer loaded = load_both_ways(scene_file({object_block(
        "B", triangles({vertices({{9, 9, 9}}), faces({{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}}),
                        vertices({{1, 2, 3}, {4, 5, 6}}), faces({{1, 0, 1, 0}})}))}));
    const mesh& box = *loaded->scene.first_mesh;
    EXPECT_EQ(box.vertex_count, 2);
    EXPECT_EQ(box.vertices.size(), 2U);
    EXPECT_EQ(box.vertices[1].x, 4);
    EXPECT_EQ(box.face_count, 1);
    EXPECT_EQ(box.faces.size(), 1U);
    EXPECT_EQ(box.faces[0].a, 1);
}

TEST(loader_damage, counts_larger_than_what_is_left_are_cut_with_one_warning) {
    // The count, then two records and a part of one, which may look like a chunk.
    const auto cut = [](const chunk& last) {
        loaded_pointer loaded = load_both_ways(
            scene_file({object_block("B", triangles({vertices({{0, 0, 0}}), faces({{0, 0, 0, 0}}), last}))}),
            warnings);
        use(*loaded);
        return loaded;
    };
    const loaded_pointer points =
        cut(chunk(0x4110).u16({65535}).f32({1, 2, 3, 4, 5, 6}).u16({0x4110, 8, 0, 0}));
    EXPECT_EQ(points->scene.first_mesh->vertex_count, 2);
    EXPECT_EQ(points->scene.first_mesh->vertices.size(), 2U);
    EXPECT_EQ(points->scene.first_mesh->vertices[1].x, 4);
    EXPECT_EQ(points->printed, "[W] Chunk 0x4110 counts 65535 entries, and the data end after 2\n");
    const loaded_pointer corners = cut(chunk(0x4120).u16({65535, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0}));
    EXPECT_EQ(corners->scene.first_mesh->face_count, 2);
    EXPECT_EQ(corners->scene.first_mesh->faces.size(), 2U);
    EXPECT_EQ(corners->printed, "[W] Chunk 0x4120 counts 65535 entries, and the data end after 2\n");
    EXPECT_EQ(cut(chunk(0x4140).u16({3}).f32({1, 2, 3}))->scene.first_mesh->uv[0].u, 1);
    EXPECT_EQ(cut(chunk(0x4130).text("M").u16({65535, 0}).u8({0}))->scene.mesh_count, 1);
    use(*cut(chunk(0x4110).u16({65535})));

    chunk keys = track(0xb020, 65535);
    key(keys, 1, 0, {}, {1, 2, 3});
    key(keys, 2, 0, {}, {1, 2, 3});
    key(keys, 3, 3, {1, 2}, {1, 2});
    const loaded_pointer loaded =
        load_both_ways(scene_file({}, {chunk(0xb002).add(node_header("B")).add(keys)}), warnings);
    EXPECT_EQ(loaded->scene.first_node->pos_count, 2);
    EXPECT_LE(loaded->scene.first_node->pos_keys.size(), 4U);
    EXPECT_EQ(loaded->printed, "[W] Chunk 0xB020 counts 65535 entries, and the data end after 3\n");
    use(*loaded);
}

TEST(loader_damage, indices_beyond_an_array_get_one_warning_each_array) {
    const loaded_pointer loaded = load_both_ways(
        scene_file({named_material("M"),
                    object_block("B", triangles({vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}),
                                                 faces({{0, 1, 2, 0}, {0, 1, 3, 0}, {65535, 1, 2, 0}}),
                                                 material_group("M", {0, 3, 65535}),
                                                 mapping({{1, 1}, {2, 2}, {3, 3}, {4, 4}})}))}),
        warnings);
    EXPECT_EQ(loaded->printed, "[W] Material M is given to 2 faces that mesh B doesn't have\n"
                               "[W] Mesh B has mapping for 4 vertices, and 3 of them\n"
                               "[W] 2 faces of mesh B reach beyond its vertices\n");
    const mesh& box = *loaded->scene.first_mesh;
    EXPECT_EQ(box.face_count, 3); // what the file says is kept
    EXPECT_EQ(box.faces[2].a, -1);
    EXPECT_NE(box.faces[0].material, nullptr);
    EXPECT_EQ(box.uv[2].v, 3);
    use(*loaded);
}

TEST(loader_damage, lengths_below_a_header_skip_nothing) {
    for (const std::uint32_t length : {0U, 1U, 5U, 6U}) {
        const loaded_pointer loaded = load_both_ways(
            scene_file({chunk(0x7777).lie(length), object_block("B", triangles({chunk(0x7777).lie(length)})),
                        named_material("M")}));
        EXPECT_EQ(loaded->scene.mesh_count, 1);
        EXPECT_EQ(loaded->scene.material_count, 1);
    }
    scene_bytes zeros = chunk(0x4d4d).lie(1 << 20).bytes();
    zeros.resize(1 << 20);
    EXPECT_EQ(load_both_ways(zeros)->text(), scene_text(moscene()));
}

TEST(loader_damage, lengths_that_pass_the_end_of_the_data_end_the_walk) {
    for (const std::uint32_t length :
         {1000U, 0x7ffffff0U, 0x7fffffffU, 0x80000000U, 0xfffffff0U, 0xffffffffU}) {
        const loaded_pointer loaded = load_both_ways(
            scene_file({object_block("B", triangles({chunk(0x7777).u16({1}).lie(length), vertices({})})),
                        named_material("M")}));
        EXPECT_TRUE(loaded->result);
        EXPECT_EQ(loaded->scene.mesh_count, 1);
        EXPECT_EQ(loaded->scene.material_count, 0);
        const chunk colour = chunk(0x0011).u8({1, 2, 3}).lie(length);
        EXPECT_EQ(
            load_both_ways(
                scene_file({named_material("M").add(chunk(0xa020).add(colour)), named_material("N")}))
                ->text(),
            load_both_ways(scene_file({named_material("M").add(chunk(0xa020).add(colour_bytes(1, 2, 3)))}))
                ->text());
    }
}

TEST(loader_damage, what_the_main_chunk_says_of_its_length_ends_the_walk) {
    const scene_bytes inner = chunk(0x3d3d).add(named_material("A")).add(named_material("B")).bytes();
    const auto with_length = [&inner](std::uint32_t length) {
        scene_bytes file = chunk(0x4d4d).lie(length).bytes();
        file.insert(file.end(), inner.begin(), inner.end());
        return load_both_ways(file)->scene.material_count;
    };
    EXPECT_EQ(with_length(static_cast<std::uint32_t>(inner.size()) + 6), 2);
    EXPECT_EQ(with_length(0x7fffffff), 2);
    EXPECT_EQ(with_length(33), 2); // both levels ask behind each chunk only
    EXPECT_EQ(with_length(26), 1);
    EXPECT_EQ(with_length(0), 1);
    EXPECT_EQ(with_length(0xffffffff), 1); // below 0
}

TEST(loader_damage, names_that_are_too_long_or_have_no_end) {
    const std::string endless(300, 'x');
    const loaded_pointer loaded = load_both_ways(
        scene_file({named_material(endless.c_str()),
                    object_block(endless, triangles({faces({{0, 0, 0, 0}}), material_group(endless, {0})})),
                    named_material("M")}));
    EXPECT_EQ(loaded->scene.first_mesh->name, endless.substr(0, 255));
    EXPECT_EQ(loaded->scene.first_material->name, endless.substr(0, 255));
    EXPECT_EQ(loaded->scene.material_count, 2);
    EXPECT_EQ(loaded->scene.first_mesh->faces[0].material, loaded->scene.first_material); // cut alike

    const loaded_pointer open = load_both_ways(scene_file({chunk(0xafff).add(chunk(0xa000).raw(endless))}));
    ASSERT_EQ(open->scene.material_count, 1);
    EXPECT_EQ(open->scene.first_material->name, endless.substr(0, 255));
}

TEST(loader_damage, an_object_keeps_its_name_whatever_is_named_inside) {
    const loaded_pointer loaded =
        load_both_ways(scene_file({chunk(0x4000)
                                       .text("Box")
                                       .add(triangles({vertices({}), material_group("Steel", {})}))
                                       .add(triangles({vertices({})}))
                                       .add(light_at(0, 0, 0).add(colour_floats(1, 1, 1)))
                                       .add(chunk(0x4700).f32({0, 0, 0, 0, 0, 0, 0, 50}))}));
    ASSERT_EQ(loaded->scene.mesh_count, 2);
    EXPECT_STREQ(loaded->scene.last_mesh->name, "Box");
    EXPECT_STREQ(loaded->scene.first_light->name, "Box");
    EXPECT_STREQ(loaded->scene.first_camera->name, "Box");
}

TEST(loader_damage, a_track_holds_what_its_count_can_say) {
    chunk keys = track(0xb023, 40000);
    for (unsigned i = 0; i < 40000; ++i)
        key(keys, i, 0, {}, {1});
    const loaded_pointer loaded = load_both_ways(
        scene_file({}, {chunk(0xb003).add(node_header("N")).add(keys).add(chunk(0xb013).f32({1, 2, 3}))}));
    EXPECT_EQ(loaded->scene.first_node->fov_count, 32767);
    EXPECT_EQ(loaded->scene.first_node->pivot.x, 1);
}

TEST(loader_damage, a_chain_of_nodes_as_deep_as_the_file_likes) {
    chunk keyframer(0xb000);
    for (unsigned i = 0; i < 3000; ++i)
        keyframer.add(chunk(0xb002).add(node_header("", i == 0 ? 0xffff : i - 1)));
    const scene_bytes file = chunk(0x4d4d).add(keyframer).bytes();
    const auto loaded = load_from_memory(file);
    EXPECT_EQ(loaded->scene.node_count, 3000);
    use(*loaded);
    int depth = 0;
    for (const mokey_node* node = loaded->scene.first_node; node != nullptr; node = node->first_child)
        ++depth;
    EXPECT_EQ(depth, 3000);
}

TEST(loader_damage, no_more_nodes_than_there_are_ids) {
    chunk keyframer(0xb000);
    for (int i = 0; i < 65537; ++i)
        keyframer.add(chunk(0xb002).add(node_header("")));
    keyframer.add(chunk(0xb002).add(chunk(0xb013).f32({1, 2, 3}))); // nobody's pivot
    const loaded_pointer loaded = load_from_memory(chunk(0x4d4d).add(keyframer).bytes(), warnings);
    EXPECT_EQ(loaded->printed, "[W] More than 65535 nodes\n");
    EXPECT_EQ(loaded->scene.node_count, 65535);
    EXPECT_EQ(loaded->scene.last_node->id, 65534);
    EXPECT_EQ(loaded->scene.last_node->pivot.x, 0);
}

TEST(loader_damage, a_second_load_into_one_scene_adds_to_it) {
    const scene_bytes file =
        scene_file({object_block("B", triangles({vertices({})}))},
                   {chunk(0xb002).add(node_header("B")), chunk(0xb002).add(node_header("B", 0)),
                    chunk(0xb002).add(node_header("B", 9))});
    loaded_scene both;
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(sceneloader_3ds().load_stream(both.scene, std::span<const std::uint8_t>(file)));
    use(both);
    EXPECT_EQ(both.text(), // ids begin at 0 again, and a parent is the first node of its id
              "ambient 0x0p+0 0x0p+0 0x0p+0, frames 0 to 0\n"
              "mesh B flags 0, 0 vertices, 0 faces\nmesh B flags 0, 0 vertices, 0 faces\n"
              "node B type 2 id 0 parent 65535 tied to B\npivot 0x0p+0 0x0p+0 0x0p+0\n"
              " node B type 2 id 2 parent 9 tied to B\npivot 0x0p+0 0x0p+0 0x0p+0\n"
              " node B type 2 id 2 parent 9 tied to B\npivot 0x0p+0 0x0p+0 0x0p+0\n"
              "node B type 2 id 0 parent 65535 tied to B\npivot 0x0p+0 0x0p+0 0x0p+0\n");
}
