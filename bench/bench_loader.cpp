// Loading a scene as large as one mesh of its format can be, from a file and from memory.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

#include "morvane/scene/loader_3ds/reader.h"
#include "morvane/scene/moscene.h"
#include "tests/support/scene_writer.h"

namespace {

using namespace scene_writer;

constexpr unsigned around = 250; // vertices of a ring
constexpr unsigned rings = 131;  // 65,000 faces between them

// A tube with mapping coordinates and two materials, and a node that moves it by 1,000 keys.
scene_bytes tube() {
    std::vector<std::array<float, 3>> points;
    std::vector<std::array<float, 2>> pairs;
    std::vector<std::array<unsigned, 4>> corners;
    std::vector<unsigned> striped;
    for (unsigned ring = 0; ring < rings; ++ring) {
        for (unsigned i = 0; i < around; ++i) {
            const float u = static_cast<float>(i) / around, v = static_cast<float>(ring) / rings;
            points.push_back({std::cos(u * 6.2831853F), std::sin(u * 6.2831853F), v});
            pairs.push_back({u, v});
            if (ring + 1 == rings) continue;
            const unsigned here = ring * around + i, next = ring * around + (i + 1) % around;
            if (ring % 2 == 0) striped.push_back(static_cast<unsigned>(corners.size()));
            corners.push_back({here, next, here + around, 7});
            corners.push_back({next, next + around, here + around, 7});
        }
    }
    chunk place = track(0xb020, 1000);
    for (unsigned i = 0; i < 1000; ++i)
        key(place, i, 0x1f, {0, 0, 0, 0, 0}, {static_cast<float>(i), 0, 0});
    return scene_file(
        {chunk(0xafff).add(chunk(0xa000).text("stripe")),
         object_block("tube", triangles({vertices(points), mapping(pairs),
                                         faces(corners).add(material_group("stripe", striped))}))},
        {chunk(0xb008).u32({0, 1000}), chunk(0xb002).add(node_header("tube")).add(place)});
}

// The same bytes in memory and on the disk, as long as the program runs.
struct tube_file {
    scene_bytes bytes = tube();
    std::string path = (std::filesystem::temp_directory_path() / "morvane_bench_loader.3ds").string();

    tube_file() {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    ~tube_file() { std::remove(path.c_str()); }
    tube_file(const tube_file&) = delete;
    tube_file& operator=(const tube_file&) = delete;
};

const tube_file& file() {
    static const tube_file only;
    return only;
}

void count_work(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file().bytes.size()));
}

// The bytes alone, as a measure.
void read_bytes(benchmark::State& state) {
    scene_bytes bytes(file().bytes.size());
    for (auto _ : state) {
        std::FILE* stream = std::fopen(file().path.c_str(), "rb");
        benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), stream));
        std::fclose(stream);
    }
    count_work(state);
}
BENCHMARK(read_bytes)->Name("loader_3ds_bytes_alone")->Unit(benchmark::kMicrosecond);

template<typename Load>
void load_scenes(benchmark::State& state, Load load) {
    for (auto _ : state) {
        moscene scene;
        if (!load(scene) || scene.first_mesh->face_count != 65000) state.SkipWithError("not loaded");
    }
    count_work(state);
}

void load_file(benchmark::State& state) {
    load_scenes(state, [](moscene& scene) { return sceneloader_3ds().load_file(scene, file().path); });
}
BENCHMARK(load_file)->Name("loader_3ds_load_file")->Unit(benchmark::kMicrosecond);

void load_stream(benchmark::State& state) {
    load_scenes(state, [](moscene& scene) {
        return sceneloader_3ds().load_stream(scene, std::span<const std::uint8_t>(file().bytes));
    });
}
BENCHMARK(load_stream)->Name("loader_3ds_load_stream")->Unit(benchmark::kMicrosecond);

} // namespace
