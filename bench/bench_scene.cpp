// Preparing and animating scenes, beside the references. Loading has its rows in bench_loader.cpp.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "bench/frames.h"
#include "morvane/scene/moscene.h"

namespace {

// As many faces as a file can give a mesh: a wavy field of triangles over 181 by 181 points, twice.
std::unique_ptr<mesh> largest_mesh() {
    constexpr int side = 181, faces = 65535;
    auto m = std::make_unique<mesh>();
    mesh_alloc_vertices(*m, side * side);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            mesh_add_vertex(*m, static_cast<float>(x), std::sin(static_cast<float>(x * y) * 0.1F),
                            static_cast<float>(y));
    mesh_alloc_faces(*m, faces);
    for (int i = 0; i < faces; ++i) {
        const int cell = i / 2 % ((side - 1) * (side - 1));
        const int at = cell / (side - 1) * side + cell % (side - 1);
        const int b = i % 2 != 0 ? at + side + 1 : at + side, c = i % 2 != 0 ? at + 1 : at + side + 1;
        mesh_add_face(*m, static_cast<std::int16_t>(at), static_cast<std::int16_t>(b),
                      static_cast<std::int16_t>(c), 7);
    }
    return m;
}

void calc_normals(benchmark::State& state) {
    const auto m = largest_mesh();
    for (auto _ : state) {
        mesh_calc_normals(*m);
        benchmark::ClobberMemory();
    }
    state.counters["faces"] = m->face_count;
    state.counters["vertices"] = m->vertex_count;
}
BENCHMARK(calc_normals)->Name("mesh_calc_normals")->Unit(benchmark::kMicrosecond);

void calc_bounds(benchmark::State& state) {
    const auto m = largest_mesh();
    for (auto _ : state) {
        mesh_calc_bounds(*m);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(calc_bounds)->Name("mesh_calc_bounds")->Unit(benchmark::kMicrosecond);

// Nodes in groups of ten, a parent with nine children, each with a position track of `keys` keys; every tenth
// is a light with a colour track.
std::unique_ptr<moscene> animated_scene(int nodes, int keys) {
    auto scene = std::make_unique<moscene>();
    scene->end_frame = 1000;
    for (int i = 0; i < nodes; ++i) {
        const bool is_light = i % 10 == 9;
        const auto parent = static_cast<std::uint16_t>(i % 10 == 0 ? no_parent : i - i % 10);
        scene->add_node(is_light ? node_light : node_object, parent);
        mokey_node& node = *scene->current_node;
        node.set_id(static_cast<std::uint16_t>(i));
        scene->add_mesh("box");
        node.object = scene->last_mesh;
        if (is_light) {
            scene->add_light("lamp", 0, 0, 0);
            node.light = scene->last_light;
        }
        node.alloc_keys(keys, track_position);
        node.alloc_keys(keys, track_color);
        for (int k = 0; k < keys; ++k) {
            const auto frame = static_cast<std::uint16_t>(k * 1000 / (keys - 1));
            const auto place = static_cast<float>((i * 7 + k * 13) % 50);
            node.add_key_pos(frame, place, -place, place / 2, 0.1F, 0.2F, 0.3F, 0.4F, 0.5F);
            node.add_key_color(frame, place / 50, 0.5F, 0.25F, 0, 0, 0, 0, 0);
        }
    }
    scene->add_camera("eye", 0, 0, 0, 0, 0, 0, 0, 50);
    scene->prepare_keys(nullptr);
    scene->set_camera(0);
    return scene;
}

void update(benchmark::State& state) {
    const auto scene = animated_scene(1000, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        scene->scene_update();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(update)
    ->Name("scene_update_1000_nodes")
    ->ArgName("keys")
    ->Arg(8)
    ->Arg(64)
    ->Unit(benchmark::kMicrosecond);

void prepare(benchmark::State& state) {
    const auto scene = animated_scene(1000, 8);
    for (auto _ : state) {
        scene->prepare_keys(nullptr);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(prepare)->Name("prepare_keys_1000_nodes")->Unit(benchmark::kMicrosecond);

// The worst tree for the search of a parent: each node the child of the one before.
void chain(benchmark::State& state) {
    for (auto _ : state) {
        moscene scene;
        for (int i = 0; i < state.range(0); ++i) {
            scene.add_node(node_object, static_cast<std::uint16_t>(i == 0 ? no_parent : i - 1));
            scene.current_node->set_id(static_cast<std::uint16_t>(i));
        }
        benchmark::DoNotOptimize(scene.current_node);
    }
}
BENCHMARK(chain)
    ->Name("add_node_chain")
    ->ArgName("nodes")
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    frame_tables_init();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
