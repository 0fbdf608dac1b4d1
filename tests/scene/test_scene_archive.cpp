// Scenes out of an archive.
#include <gtest/gtest.h>

#include <filesystem>

#include "morvane/base/log.h"
#include "morvane/scene/scene_archive.h"
#include "tests/support/captured_output.h"
#include "tests/support/pack_files.h"
#include "tests/support/temp_file.h"

namespace {

pack_bytes chunk(unsigned id, const pack_bytes& body) {
    pack_bytes bytes;
    bytes.reserve(6 + body.size());
    bytes.resize(6);
    put_number(bytes, 2, static_cast<std::int32_t>(body.size() + 6));
    bytes[0] = static_cast<std::uint8_t>(id);
    bytes[1] = static_cast<std::uint8_t>(id >> 8);
    bytes.insert(bytes.end(), body.begin(), body.end());
    return bytes;
}

// A scene of one mesh with three vertices.
pack_bytes small_scene() {
    pack_bytes vertices(2 + 3 * 12);
    vertices[0] = 3;
    const pack_bytes mesh = chunk(0x4100, chunk(0x4110, vertices));
    pack_bytes object = text_bytes(std::string("Mesh01\0", 7));
    object.insert(object.end(), mesh.begin(), mesh.end());
    return chunk(0x4d4d, chunk(0x3d3d, chunk(0x4000, object)));
}

class scene_archive : public testing::Test {
  protected:
    scene_archive() {
        std::filesystem::current_path(folder.path());
        folder.write("a.mop", archive_of({{"data/packed.3ds", small_scene()},
                                          {"broken.3ds", text_bytes("no scene")},
                                          {"packed.3DS", small_scene()},
                                          {"noext", small_scene()}}));
        folder.write("loose.3ds", small_scene());
        EXPECT_EQ(archive.open("a.mop"), 1);
        log_channel = {.enabled = true, .level_mask = log_debug, .to_stdout = true};
    }
    ~scene_archive() override {
        log_channel = {};
        std::filesystem::current_path("/");
    }

    // Loads; keeps what was printed in `said`.
    bool load(const std::string& name) {
        captured_output printed;
        const bool loaded = sceneload_archive(archive, scene, name);
        said = printed.out();
        return loaded;
    }

    temp_folder folder;
    mopak archive;
    moscene scene;
    std::string said;
};

} // namespace

TEST_F(scene_archive, loads_packed_and_loose_scenes) {
    int meshes = 0;
    for (const char* name : {"data/packed.3ds", "loose.3ds"}) {
        EXPECT_TRUE(load(name));
        EXPECT_EQ(said.substr(0, said.find('\n')),
                  "[D] file extension in sceneload_archive found to be of .3ds type");
        EXPECT_EQ(scene.mesh_count, ++meshes);
        ASSERT_NE(scene.last_mesh, nullptr);
        EXPECT_EQ(scene.last_mesh->vertex_count, 3);
        EXPECT_EQ(scene.folder, meshes == 1 ? "data" : ".");
    }
}

TEST_F(scene_archive, what_is_no_scene) {
    EXPECT_FALSE(load("noext"));
    EXPECT_EQ(said, "");
    EXPECT_FALSE(load("missing.3ds"));
    EXPECT_EQ(said, "[D] file extension in sceneload_archive found to be of .3ds type\n"
                    "A critical error occured: Unable to load file!\n");
    EXPECT_FALSE(load("missing.txt")); // it must be there, whatever it is
    EXPECT_TRUE(load("packed.3DS"));   // another type counts as loaded
    EXPECT_EQ(said, "[D] file extension in sceneload_archive found to be of .3DS type\n");
    EXPECT_FALSE(load("broken.3ds"));
    EXPECT_EQ(scene.mesh_count, 0);
}
