// One small file with something of everything, cut and changed at every byte.
#include <gtest/gtest.h>

#include "tests/support/loaded_scene.h"
#include "tests/support/scene_writer.h"

using namespace scene_writer;

namespace {

// Something of everything in as few bytes as will do.
scene_bytes small_file() {
    chunk place = track(0xb020, 2), turn = track(0xb021, 2), morph = track(0xb026, 1);
    key(place, 0, 0x1f, {1, 2, 3, 4, 5}, {1, 2, 3});
    key(place, 9, 1, {0.5F}, {4, 5, 6});
    key(turn, 0, 0, {}, {0, 0, 0, 1});
    key(turn, 5, 0, {}, {1, 0, 0, 1});
    key(morph, 4, 0, {}, {}).text("Ball");
    return scene_file(
        {chunk(0xafff)
             .add(chunk(0xa000).text("M"))
             .add(chunk(0xa020).add(colour_bytes(1, 2, 3)))
             .add(map_chunk(0xa200, "a.png", 9)),
         chunk(0x2100).add(colour_floats(1, 1, 1)),
         object_block("B", triangles({vertices({{1, 2, 3}, {4, 5, 6}}), mapping({{0, 1}, {1, 0}}),
                                      faces({{0, 1, 0, 7}}).add(material_group("M", {0})),
                                      chunk(0x4160).f32({1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 2, 3})})),
         object_block("L", chunk(0x4600)
                               .f32({1, 2, 3})
                               .add(colour_floats(1, 1, 1))
                               .add(chunk(0x4610).f32({1, 2, 3, 4, 5}))),
         object_block("C", chunk(0x4700).f32({1, 2, 3, 4, 5, 6, 7, 50}))},
        {chunk(0xb008).u32({0, 100}), chunk(0xb002).add(node_header("B")).add(place).add(turn).add(morph),
         chunk(0xb003).add(node_header("C", 0)).add(chunk(0xb013).f32({1, 2, 3}))});
}

// Loads many files one after the other, from a file and from memory, compares the two and uses them.
class damage_trial {
  public:
    std::string load(const scene_bytes& bytes) {
        moscene from_memory, from_file;
        const bool result = sceneloader_3ds().load_stream(from_memory, std::span<const std::uint8_t>(bytes));
        EXPECT_EQ(result, bytes.size() >= 6);
        EXPECT_EQ(sceneloader_3ds().load_file(from_file, folder.write(std::to_string(++files), bytes)),
                  result);
        const std::string text = scene_text(from_memory);
        EXPECT_EQ(text, scene_text(from_file));
        use_scene(from_memory);
        return text;
    }

  private:
    temp_folder folder;
    int files = 0; // a new one each time: writing over one waits for the disk
    captured_output quiet;
};

} // namespace

TEST(loader_bytes, every_truncation_of_a_small_file) {
    damage_trial trial;
    scene_bytes file = small_file();
    std::string text = trial.load(file);
    while (!file.empty()) {
        file.pop_back();
        file.shrink_to_fit(); // a read behind the end is one outside the block
        const std::string shorter = trial.load(file);
        EXPECT_LE(shorter.size(), text.size() + 64); // what a value cut off prints may be longer
        text = shorter;
    }
    EXPECT_EQ(text, scene_text(moscene()));
}

TEST(loader_bytes, every_byte_of_a_small_file_changed_in_four_ways) {
    damage_trial trial;
    const logging on(log_warning);
    const scene_bytes whole = small_file();
    for (std::size_t at = 2; at < whole.size(); ++at) {
        for (const unsigned change : {0xffU, 0x80U, 0x01U, 0x06U}) {
            scene_bytes damaged = whole;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ change);
            trial.load(damaged);
        }
    }
}

TEST(loader_bytes, a_block_of_unknown_size_is_read_no_further_than_its_first_length_says) {
    scene_bytes file = small_file();
    const auto load = [&file] {
        return load_scene(
            0, [&file](moscene& scene) { return sceneloader_3ds().load_stream(scene, file.data()); });
    };
    EXPECT_EQ(load()->text(), load_from_memory(file)->text());
    for (std::size_t length = file.size(); length >= 6; --length) {
        file.resize(length);
        file.shrink_to_fit();
        for (std::size_t i = 0; i < 4; ++i)
            file[2 + i] = static_cast<std::uint8_t>(length >> (8 * i));
        EXPECT_TRUE(load()->result);
    }
    file = chunk(0x1234).lie(0xffffffff).bytes(); // not a scene: nothing behind the header is looked at
    file.shrink_to_fit();
    const captured_output quiet;
    moscene scene;
    EXPECT_FALSE(sceneloader_3ds().load_stream(scene, file.data()));
}

TEST(loader_bytes, a_record_cut_by_the_end_changes_nothing) {
    const auto loaded_without_its_last_bytes = [](const chunk& section) {
        scene_bytes file = chunk(0x4d4d).add(section).bytes();
        file.resize(file.size() - 2);
        file.shrink_to_fit();
        return load_from_memory(file);
    };
    const chunk camera = object_block("eye", chunk(0x4700).f32({1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(loaded_without_its_last_bytes(chunk(0x3d3d).add(camera))->scene.camera_count, 0);
    const chunk range = chunk(0xb008).u32({10, 20});
    EXPECT_EQ(loaded_without_its_last_bytes(chunk(0xb000).add(range))->scene.start_frame, 0);
    const chunk ambient = chunk(0x2100).add(colour_floats(1, 1, 1));
    EXPECT_EQ(loaded_without_its_last_bytes(chunk(0x3d3d).add(ambient))->scene.ambient_r, 0);
}

TEST(loader_bytes, a_pivot_cut_by_the_end_keeps_the_parts_that_it_lacks) {
    const scene_bytes whole = scene_file({}, {chunk(0xb002)
                                                  .add(node_header("B"))
                                                  .add(chunk(0xb013).f32({1, 2, 3}))
                                                  .add(chunk(0xb013).f32({4, 5, 6}))});
    for (std::size_t cut = 0; cut <= 12; ++cut) {
        const loaded_pointer loaded = load_both_ways(std::span(whole).first(whole.size() - cut));
        const auto part = [&](std::size_t k) {
            return static_cast<float>((4 * (k + 1) + cut <= 12 ? 4 : 1) + k);
        };
        const vector3d& pivot = loaded->scene.first_node->pivot;
        EXPECT_EQ((std::array{pivot.x, pivot.z, pivot.y}), (std::array{part(0), part(1), part(2)})) << cut;
    }
}
