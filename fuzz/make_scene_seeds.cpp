// Writes small scene files into FOLDER/3ds, which together hold every chunk that the reader knows.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "tests/support/scene_writer.h"

using namespace scene_writer;

namespace {

scene_bytes materials() {
    return scene_file(
        {chunk(0xafff)
             .add(chunk(0xa000).text("A"))
             .add(chunk(0xa010).add(colour_bytes(1, 2, 3)))
             .add(chunk(0xa020).add(colour_floats(0.5F, 1, 0)))
             .add(chunk(0xa030).add(chunk(0x0012).u8({1, 2, 3})))
             .add(chunk(0xa040).add(percentage(35)))
             .add(chunk(0xa041).add(fraction(0.5F)))
             .add(chunk(0xa050).add(percentage(50)))
             .add(map_chunk(0xa200, "a.png", 60).add(chunk(0xa354).f32({2})).add(chunk(0xa356).f32({3})))
             .add(map_chunk(0xa204, "b", 1))
             .add(map_chunk(0xa210, "c", 2))
             .add(map_chunk(0xa220, "d", 3))
             .add(map_chunk(0xa230, "e", 4)),
         chunk(0x1200).add(colour_floats(1, 1, 1)), chunk(0x2100).add(chunk(0x0013).f32({1, 1, 1}))});
}

scene_bytes objects() {
    return scene_file(
        {chunk(0xafff).add(chunk(0xa000).text("M")), chunk(0x3d3e).u32({3}),
         chunk(0x4000)
             .text("B")
             .add(triangles({vertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}), chunk(0x4111).u16({1, 0}),
                             mapping({{0, 0}, {1, 0}, {0, 1}}),
                             faces({{0, 1, 2, 7}, {2, 1, 0, 0x1f}})
                                 .add(material_group("M", {0}))
                                 .add(chunk(0x4150).u32({1, 2})),
                             chunk(0x4160).f32({1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 2, 3}), chunk(0x4165).u8({7})}))
             .add(chunk(0x4010))
             .add(chunk(0x4016)),
         object_block("L", chunk(0x4600)
                               .f32({1, 2, 3})
                               .add(colour_floats(1, 1, 1))
                               .add(chunk(0x4610).f32({1, 2, 3, 40, 50}).add(chunk(0x4630)))),
         object_block("C", chunk(0x4700).f32({1, 2, 3, 4, 5, 6, 7, 43}))});
}

// Two nodes, the second below the first, with every track.
scene_bytes nodes() {
    chunk place = track(0xb020, 3), turn = track(0xb021, 3), size = track(0xb022, 1),
          morph = track(0xb026, 1);
    for (unsigned i = 0; i < 3; ++i) {
        key(place, 10 * i, 0x1f, {0.5F, 0, -1, 0.25F, 1}, {1, static_cast<float>(i), 3});
        key(turn, 5 * i, 0, {}, {1, 0, 0, 1});
    }
    key(size, 0, 1, {1}, {1, 1, 1});
    key(morph, 0, 0, {}, {}).text("B");
    chunk values(0xb005);
    values.add(node_header("L", 0)).add(chunk(0xb013).f32({1, 2, 3}));
    for (const unsigned id : {0xb023U, 0xb024U, 0xb027U, 0xb028U}) {
        chunk angles = track(static_cast<std::uint16_t>(id), 2);
        key(angles, 0, 2, {1}, {10});
        key(angles, 9, 8, {1}, {20});
        values.add(angles);
    }
    chunk colours = track(0xb025, 1);
    key(colours, 3, 4, {1}, {1, 0.5F, 0});
    values.add(colours);
    return scene_file(
        {object_block("L", chunk(0x4600).f32({1, 2, 3}).add(colour_floats(1, 1, 1))),
         object_block("C", chunk(0x4700).f32({1, 2, 3, 4, 5, 6, 7, 50}))},
        {chunk(0xb00a).u16({5}).text("n").u32({9}), chunk(0xb008).u32({0, 9}), chunk(0xb009).u32({0}),
         chunk(0xb002)
             .add(chunk(0xb030).u16({0}))
             .add(node_header("$$$DUMMY"))
             .add(chunk(0xb011).text("D"))
             .add(place)
             .add(turn)
             .add(size)
             .add(morph),
         values, chunk(0xb003).add(node_header("C")).add(place),
         chunk(0xb004).add(node_header("C")).add(place), chunk(0xb001).add(node_header("$AMBIENT$")),
         chunk(0xb006).add(node_header("L")).add(place), chunk(0xb007).add(node_header("L", 1))});
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: make_scene_seeds FOLDER\n";
        return 1;
    }
    const std::filesystem::path folder = std::filesystem::path(arguments[1]) / "3ds";
    std::filesystem::create_directories(folder);
    const auto write = [&folder](const std::string& name, const scene_bytes& file) {
        std::ofstream stream(folder / name, std::ios::binary);
        stream.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    };
    write("materials", materials());
    write("objects", objects());
    write("nodes", nodes());
    write("empty", scene_file({}));
    return 0;
}
