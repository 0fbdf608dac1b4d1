// The object engine's passes over a full mesh (4096 vertices, 4096 faces), beside the references.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <random>
#include <string>

#include "bench/frames.h"
#include "morvane/object/asc_reader.h"
#include "morvane/object/sort.h"
#include "morvane/object/transform.h"

namespace {

// A ball of scattered vertices and small faces between neighbours, in front of the viewer.
object& full_mesh() {
    static const std::unique_ptr<object> mesh = [] {
        auto made = std::make_unique<object>();
        std::mt19937 random(7);
        std::uniform_real_distribution<float> place(-100, 100);
        made->vertex_count = made->face_count = object_capacity;
        for (std::size_t i = 0; i < object_capacity; ++i) {
            made->model_vertices[i] = {.x = place(random), .y = place(random), .z = place(random)};
            made->model_normals[i] = {.x = 181, .y = 0, .z = -181};
            const auto corner = static_cast<std::uint16_t>(i);
            made->faces[i] = {.a = corner,
                              .b = static_cast<std::uint16_t>((corner + 1) % object_capacity),
                              .c = static_cast<std::uint16_t>((corner + 2) % object_capacity)};
        }
        made->vertex_matrix = made->normal_matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -180, 1};
        object_apply_matrices(*made);
        return made;
    }();
    return *mesh;
}

void rotate(benchmark::State& state) {
    for (auto _ : state) {
        object_rotate(full_mesh(), 0.01F, 0.02F, 0.03F);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(rotate)->Name("object_rotate");

void apply_matrices(benchmark::State& state) {
    for (auto _ : state) {
        object_apply_matrices(full_mesh());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(apply_matrices)->Name("object_apply_matrices");

void ripple(benchmark::State& state) {
    float phase = 0;
    for (auto _ : state) {
        object_ripple(full_mesh(), phase, 30);
        phase += 0.01F;
        benchmark::ClobberMemory();
    }
    object_apply_matrices(full_mesh());
}
BENCHMARK(ripple)->Name("object_ripple");

void project(benchmark::State& state) {
    for (auto _ : state) {
        object_project(full_mesh(), 256, 144);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(project)->Name("object_project");

void project_scaled(benchmark::State& state) {
    for (auto _ : state) {
        object_project_scaled(full_mesh(), 256, 144, 1.5F);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(project_scaled)->Name("object_project_scaled");

void sort_faces(benchmark::State& state) {
    for (auto _ : state) {
        object_sort_faces_between(full_mesh(), -2048, 0);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(sort_faces)->Name("object_sort_faces_between");

// Depths in patterns that are hard on a pivot which is the first key.
struct pattern {
    const char* name;
    std::int32_t (*depth)(std::int32_t i);
};
constexpr std::array<pattern, 5> patterns = {{
    {"nearest_first", [](std::int32_t i) { return -i; }},
    {"farthest_first", [](std::int32_t i) { return i; }},
    {"organ_pipe", [](std::int32_t i) { return i < object_capacity / 2 ? i : object_capacity - i; }},
    {"valley", [](std::int32_t i) { return i < object_capacity / 2 ? -i : i - object_capacity; }},
    {"all_equal", [](std::int32_t) { return 0; }},
}};

void sort_vertices(benchmark::State& state, std::int32_t (*depth)(std::int32_t)) {
    for (std::int32_t i = 0; i < object_capacity; ++i)
        full_mesh().world_vertices[static_cast<std::size_t>(i)].z = static_cast<float>(depth(i));
    for (auto _ : state) {
        object_sort_vertices(full_mesh());
        benchmark::ClobberMemory();
    }
    object_apply_matrices(full_mesh());
}
[[maybe_unused]] const bool patterns_registered = [] {
    for (const pattern& each : patterns)
        benchmark::RegisterBenchmark((std::string("object_sort_vertices/") + each.name).c_str(),
                                     sort_vertices, each.depth);
    return true;
}();

std::string full_file() {
    std::string text = "Named object: \"Full\"\nTri-mesh, Vertices: 4096     Faces: 4096\nVertex list:\n";
    for (std::int32_t i = 0; i < object_capacity; ++i)
        text += "Vertex " + std::to_string(i) + ":  X:" + std::to_string(i * 0.25) +
                "     Y:-1.5     Z:" + std::to_string(-i) + ".125     U:0.5     V:0.75\n";
    text += "Face list:\n";
    for (std::int32_t i = 0; i < object_capacity; ++i)
        text += "Face " + std::to_string(i) + ":    A:" + std::to_string(i) + " B:0 C:1 AB:1 BC:0 CA:1\n";
    return text;
}

void read_asc(benchmark::State& state) {
    const std::string text = full_file();
    const auto mesh = std::make_unique<object>();
    mesh->read_mapping = 1;
    for (auto _ : state)
        if (const std::string problem = object_read_asc(text, *mesh); !problem.empty())
            state.SkipWithError(problem.c_str());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(read_asc)->Name("object_read_asc");

} // namespace

int main(int argc, char** argv) {
    frame_tables_init();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
