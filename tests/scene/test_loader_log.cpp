// The lines that the loader writes to the log channel, and the front that picks the loader.
#include <gtest/gtest.h>

#include "morvane/scene/sceneload.h"
#include "tests/support/loaded_scene.h"
#include "tests/support/scene_writer.h"

using namespace scene_writer;

namespace {

constexpr std::uint32_t errors_and_notes = log_error | log_warning | log_note;

// What was printed, less the lines of the scene's own records.
std::string loader_lines(const std::string& printed) {
    std::string all;
    for (std::size_t at = 0; at < printed.size();) {
        const std::size_t end = printed.find('\n', at) + 1;
        const std::string line = printed.substr(at, end - at);
        if (line.find("::add_") == std::string::npos && line.find("mokey_node::") == std::string::npos &&
            line.find("ROT:") != 0)
            all += line;
        at = end;
    }
    return all;
}

std::string debug_lines(const scene_bytes& file) {
    return loader_lines(load_both_ways(file, log_debug)->printed);
}

} // namespace

TEST(loader_log, every_chunk_is_told_with_its_length_and_where_its_body_begins) {
    const chunk world =
        chunk(0x3d3d)
            .add(chunk(0x3d3e).u32({3}))
            .add(chunk(0xafff).add(chunk(0xa000).text("Red")).add(chunk(0xa020).add(colour_bytes(255, 0, 0))))
            .add(object_block("A", triangles({vertices({}), chunk(0x4111).u16({0})})));
    const chunk file =
        chunk(0x4d4d)
            .add(chunk(0x0002).u32({3}))
            .add(world)
            .add(chunk(0xb000).add(chunk(0xb002).add(chunk(0xb030).u16({0})).add(node_header("A"))));
    const loaded_pointer loaded = load_both_ways(file.bytes(), errors_and_notes);
    EXPECT_EQ(loaded->printed, "[N] Known chunk CHUNK3DS_MAIN (0x4D4D) with length 127 at ofs 6\n"
                               "[N] Known chunk CHUNK3DS_M3D_VERSION (0x2) with length 10 at ofs 12\n"
                               "[N] Known chunk CHUNK3DS_OBJECT (0x3D3D) with length 77 at ofs 22\n"
                               "[N] Known chunk CHUNK3DS_MESH_VERSION (0x3D3E) with length 10 at ofs 28\n"
                               "[N] Known chunk CHUNK3DS_MATERIAL (0xAFFF) with length 31 at ofs 38\n"
                               "[N] Known chunk CHUNK3DS_MAT_NAME (0xA000) with length 10 at ofs 44\n"
                               "[N] Known chunk CHUNK3DS_MAT_DIFFUSE (0xA020) with length 15 at ofs 54\n"
                               "[N] Known chunk CHUNK3DS_COLOR_24 (0x11) with length 9 at ofs 60\n"
                               "[N] Known chunk CHUNK3DS_OBJECTBLOCK (0x4000) with length 30 at ofs 69\n"
                               "[N] Known chunk CHUNK3DS_N_TRI_OBJECT (0x4100) with length 22 at ofs 77\n"
                               "[N] Known chunk CHUNK3DS_POINT_ARRAY (0x4110) with length 8 at ofs 83\n"
                               "[N] Known chunk CHUNK3DS_POINT_FLAG_ARRAY (0x4111) with length 8 at ofs 91\n"
                               "[N] Known chunk CHUNK3DS_KEYFRAMER (0xB000) with length 34 at ofs 99\n"
                               "[N] Known chunk CHUNK3DS_OBJECT_NODE_TAG (0xB002) with length 28 at ofs 105\n"
                               "[N] Unknown chunk id 0xB030 with length 8 at ofs 111\n"
                               "[N] Known chunk CHUNK3DS_NODE_HDR (0xB010) with length 14 at ofs 119\n");
}

TEST(loader_log, the_values_of_the_world_and_its_materials) {
    const chunk steel =
        chunk(0xafff)
            .add(chunk(0xa000).text("Steel"))
            .add(chunk(0xa010).add(colour_bytes(1, 2, 3)))
            .add(chunk(0xa041).add(percentage(77)))
            .add(map_chunk(0xa200, "wall.png", 60).add(chunk(0xa354).f32({2})).add(chunk(0xa356).f32({3})));
    EXPECT_EQ(debug_lines(scene_file({chunk(0x1200).add(colour_floats(0.5F, 1, 0)),
                                      chunk(0x2100).add(colour_floats(0, 0.25F, 1)), steel},
                                     {chunk(0xb008).u32({5, 0xffffffffU})})),
              "[D] Solid background color => (0.500000, 1.000000, 0.000000)\n"
              "[D] Ambient color => (0.000000, 0.250000, 1.000000)\n"
              "[D] Named object: Steel\n"
              "[D]   COLOR_24 => (1, 2, 3)\n"
              "[D]   Percentage => 77%\n"
              "[D]   Percentage => 60%\n"
              "[D] Named object: wall.png\n"
              "[D] uscale => 2.000000\n"
              "[D] vscale => 3.000000\n"
              "[D] Frames 5 - -1\n");
}

TEST(loader_log, the_values_of_objects) {
    const chunk light = chunk(0x4600)
                            .f32({1, 2, 3})
                            .add(colour_floats(1, 0.5F, 0))
                            .add(chunk(0x4610).f32({4, 5, 6, 7, 8}))
                            .add(chunk(0x4630));
    const chunk arrays =
        triangles({vertices({{1, 2, 3}}), faces({{0, 0, 0, 7}}), material_group("Steel", {0}),
                   chunk(0x4160).f32({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})});
    EXPECT_EQ(debug_lines(scene_file({object_block("Lamp", light), object_block("Box", arrays),
                                      object_block("Eye", chunk(0x4700).f32({1, 2, 3, 4, 5, 6, 7, 50}))})),
              "[D] Named object: Lamp\n"
              "[D] Direct light position at => 1.000000, 2.000000, 3.000000\n"
              "[D] Light color => 1.000000, 0.500000, 0.000000\n"
              "[D] Spotlight => (4.000000, 5.000000, 6.000000) Hotspot 7.000000  Falloff 8.000000\n"
              "[D] Light casts shadows\n"
              "[D] Named object: Box\n"
              "[D]   Number of vertices: 1\n"
              "[D]   Number of faces: 1\n"
              "[D] Named object: Steel\n"
              "[D]   Number of faces having this texture: (Steel) 1\n"
              "[D]   Mesh Matrix:\n"
              "  [1.000000\t2.000000\t3.000000\t0]\n"
              "  [4.000000\t5.000000\t6.000000\t0]\n"
              "  [7.000000\t8.000000\t9.000000\t0]\n"
              "  [10.000000\t11.000000\t12.000000\t1]\n"
              "[D] Named object: Eye\n"
              "[D] Camera Position => (1.000000, 2.000000, 3.000000)\n"
              "    Target => (4.000000, 5.000000, 6.000000)\n"
              "    Bank Angle => 7.000000  Focus 50.000000\n");
}

TEST(loader_log, the_values_of_nodes_and_keys) {
    chunk place = track(0xb020, 2), turn = track(0xb021, 1), size = track(0xb022, 1), fov = track(0xb023, 1);
    key(place, 0, 0x1f, {1, 2, 3, 4, 5}, {1, 2, 3});
    key(place, 9, 0, {}, {4, 5, 6});
    key(turn, 1, 0, {}, {1, 0, 0, 1});
    key(size, 2, 0, {}, {1, 2, 3});
    key(fov, 3, 4, {-1}, {45});
    chunk morph = track(0xb026, 1);
    key(morph, 4, 0, {}, {}).text("Ball");
    const chunk node = chunk(0xb002)
                           .add(node_header("Box", 0xffff))
                           .add(chunk(0xb013).f32({1, 2, 3}))
                           .add(place)
                           .add(turn)
                           .add(size)
                           .add(fov)
                           .add(morph);
    EXPECT_EQ(
        debug_lines(scene_file({}, {node})),
        "[D] Named object: Box\n"
        "[D] Parent => 65535\n"
        "[D] Pivot => (1.000000, 2.000000, 3.000000)\n"
        "[D] Keys => 2\n"
        "[D]   Frame 0 => (1.000000, 2.000000, 3.000000) T:1.000000 C:2.000000 B:3.000000 ET:4.000000 "
        "EF:5.000000\n"
        "[D]   Frame 9 => (4.000000, 5.000000, 6.000000) T:1.000000 C:2.000000 B:3.000000 ET:4.000000 "
        "EF:5.000000\n"
        "[D] Keys => 1\n"
        "[D]   Frame 1 => Rot 1.000000  (0.000000, 0.000000, 1.000000) T:0.000000 C:0.000000 B:0.000000 "
        "ET:0.000000 EF:0.000000\n"
        "[D] Keys => 1\n"
        "[D]   Frame 2 => (1.000000, 2.000000, 3.000000) T:0.000000 C:0.000000 B:0.000000 ET:0.000000 "
        "EF:0.000000\n"
        "[D] Keys => 1\n"
        "[D]   Frame 3 => 45.000000 T:0.000000 C:0.000000 B:-1.000000 ET:0.000000 EF:0.000000\n"
        "[D] Keys => 1\n"
        "[D] Named object: Ball\n"
        "[D]   Frame 4 => Ball T:0.000000 C:0.000000 B:0.000000 ET:0.000000 EF:0.000000\n");
}

TEST(loader_log, what_is_no_scene_fails_with_a_critical_line) {
    const std::string cry = "A critical error occured: File is not in autodesk 3dstudio format!\n";
    for (const scene_bytes& file : {chunk(0x3d3d).add(chunk(0x4000).text("Box")).bytes(), scene_bytes{},
                                    scene_bytes{0x4d, 0x4d, 6, 0, 0}}) {
        const loaded_pointer loaded = load_both_ways(file, log_error);
        EXPECT_FALSE(loaded->result);
        EXPECT_EQ(loaded->printed, "[ERROR] File is not in autodesk 3dstudio format!\n" + cry);
        EXPECT_EQ(loaded->text(), scene_text(moscene()));
    }
    const loaded_pointer nothing = load_scene(0, [](moscene& scene) {
        return sceneloader_3ds().load_stream(scene, static_cast<const std::uint8_t*>(nullptr));
    });
    EXPECT_FALSE(nothing->result);
    EXPECT_EQ(nothing->printed, cry);
}

TEST(loader_log, entry_points_leave_a_trace) {
    const scene_bytes file = scene_file({});
    EXPECT_EQ(load_from_memory(file, log_trace)->printed, "[-] bool sceneloader_3ds::load_stream()\n");
    EXPECT_EQ(load_from_file(file, log_trace)->printed, "[-] bool sceneloader_3ds::load_file()\n");
    EXPECT_TRUE(load_from_file(file)->result);

    const temp_folder folder;
    for (const std::string& path :
         {folder.path("missing.3ds"), std::string("/dev/stdin/x.3ds"), std::string()}) {
        const loaded_pointer missing =
            load_scene(0, [&path](moscene& scene) { return sceneloader_3ds().load_file(scene, path); });
        EXPECT_FALSE(missing->result);
        EXPECT_EQ(missing->printed, "A critical error occured: Unable to load scene file\n");
    }
    moscene scene;
    EXPECT_TRUE(sceneloader_3ds().load_packed(scene, "any", "thing"));
    EXPECT_EQ(scene_text(scene), scene_text(moscene()));
}

TEST(loader_log, a_loader_may_be_used_again) {
    const scene_bytes first =
        scene_file({object_block("One", triangles({vertices({})}))}, {chunk(0xb002).add(node_header("One"))});
    const temp_folder folder;
    const std::string path = folder.write("a.3ds", first);
    sceneloader_3ds loader;
    for (int i = 0; i < 3; ++i) {
        moscene scene;
        EXPECT_TRUE(i == 1 ? loader.load_stream(scene, std::span<const std::uint8_t>(first))
                           : loader.load_file(scene, path));
        EXPECT_EQ(scene_text(scene), load_from_memory(first)->text());
        EXPECT_EQ(loader.file != nullptr, i != 1);
        EXPECT_EQ(loader.data != nullptr, i == 1);
        EXPECT_EQ(loader.source, i == 1 ? 2 : 1);
        EXPECT_EQ(loader.offset, static_cast<std::int64_t>(first.size()));
        EXPECT_EQ(loader.total, static_cast<std::int64_t>(first.size()));
        EXPECT_EQ(loader.node_counter, 1);
    }
}

TEST(sceneload, the_extension_picks_the_loader_letter_by_letter) {
    const scene_bytes file = scene_file({object_block("Box", triangles({vertices({})}))});
    const temp_folder folder;
    folder.write("in/good.3ds", file);
    folder.write("in.a/two.dots.3ds", file);
    folder.write("in/loud.3DS", file);
    folder.write("in.3ds/plain", file);
    struct expected {
        const char* name;
        bool result;
        std::int32_t meshes;
        const char* extension;
    };
    for (const auto& [name, result, meshes, extension] :
         {expected{"in/good.3ds", true, 1, "3ds"}, expected{"in.a/two.dots.3ds", true, 1, "3ds"},
          expected{"in/loud.3DS", true, 0, "3DS"}, expected{"in/missing.3ds", false, 0, "3ds"},
          expected{"in/missing.obj", true, 0, "obj"}, expected{"in.3ds/plain", true, 0, "3ds/plain"},
          expected{"in/good.", true, 0, ""}}) {
        const std::string path = folder.path(name);
        const loaded_pointer loaded =
            load_scene(log_debug, [&path](moscene& scene) { return sceneload_file(scene, path); });
        EXPECT_EQ(loaded->result, result);
        EXPECT_EQ(loaded->scene.mesh_count, meshes);
        EXPECT_EQ(loaded->printed.find(std::string("[D] file extension in sceneload_file found to be of .") +
                                       extension + " type\n"),
                  0U);
    }
    const loaded_pointer without =
        load_scene(31, [](moscene& scene) { return sceneload_file(scene, "scene"); });
    EXPECT_FALSE(without->result);
    EXPECT_EQ(without->printed, "");
}

TEST(sceneload, the_scene_knows_its_folder) {
    const temp_folder folder;
    moscene scene;
    EXPECT_TRUE(sceneload_file(scene, folder.write("in/good.3ds", scene_file({}))));
    EXPECT_EQ(scene.folder, folder.path("in"));
    const captured_output quiet;
    sceneload_file(scene, "none.3ds");
    EXPECT_EQ(scene.folder, ".");
    sceneload_file(scene, "/none.3ds");
    EXPECT_EQ(scene.folder, "/");
}
