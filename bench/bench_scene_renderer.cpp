// Whole frames of a scene: a lumpy ball of 4,000 faces under three lights, whose far half is turned away.
// Items are faces, drawn or not. The rows `roofline` and `memset` of the same program are one pass over the
// frame.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

#include "bench/frames.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"
#include "morvane/scene/moscene.h"

namespace {

constexpr int rings = 40, spokes = 50; // two faces a cell
constexpr double pi = 3.14159265358979;

void add_ball(moscene& scene, float radius) {
    scene.add_mesh("ball");
    mesh& m = *scene.last_mesh;
    mesh_alloc_vertices(m, (rings + 1) * spokes);
    mesh_alloc_faces(m, rings * spokes * 2);
    for (int ring = 0; ring <= rings; ++ring)
        for (int spoke = 0; spoke < spokes; ++spoke) {
            const double down = ring * pi / rings, round = spoke * 2 * pi / spokes;
            const double reach = radius * (1 + 0.1 * std::sin(5 * round) * std::sin(7 * down));
            mesh_set_uv(m, m.vertex_count, static_cast<float>(spoke) / spokes,
                        static_cast<float>(ring) / (rings + 1));
            mesh_add_vertex(m, static_cast<float>(reach * std::sin(down) * std::cos(round)),
                            static_cast<float>(reach * std::cos(down)),
                            static_cast<float>(reach * std::sin(down) * std::sin(round)));
        }
    const auto index = [](int ring, int spoke) {
        return static_cast<std::int16_t>(ring * spokes + spoke % spokes);
    };
    for (int ring = 0; ring < rings; ++ring)
        for (int spoke = 0; spoke < spokes; ++spoke) {
            mesh_add_face(m, index(ring, spoke), index(ring, spoke + 1), index(ring + 1, spoke), 0);
            mesh_add_face(m, index(ring, spoke + 1), index(ring + 1, spoke + 1), index(ring + 1, spoke), 0);
        }
    mesh_calc_normals(m);
    m.material = scene.first_material;
}

struct stage {
    moscene scene;

    stage() {
        raster_init(frame_columns, frame_rows);
        poly_clip_set_frame(frame_columns, frame_rows);
        scene.set_width(frame_columns);
        scene.set_height(frame_rows);
        scene.set_ambient(0.1F, 0.1F, 0.1F);
        scene.add_camera("camera", 0, 0, 0, 0, 0, 0, 0, 50);
        camera& c = *scene.first_camera;
        c.position = {0, 0, 150};
        c.current_fov = 60;
        scene.set_camera(0);
        scene.add_material("skin");
        material& skin = *scene.first_material;
        material_set_ambient(skin, 200, 150, 100);
        material_set_diffuse(skin, 200, 150, 100);
        skin.opacity = 160;
        skin.has_texture = true;
        skin.texture_map.pixels = bench_frames().texture.pixels;
        skin.texture_map.pixels_width = skin.texture_map.pixels_height = 256;
        for (const float x : {-100.0F, 20.0F, 90.0F}) {
            scene.add_light("light", x, 50, 80);
            scene.last_light->position = {x, 50, 80};
            scene.last_light->color_r = scene.last_light->color_g = scene.last_light->color_b = 0.4F;
        }
        add_ball(scene, 45);
    }
};

void draw(benchmark::State& state, std::uint32_t mode) {
    static stage ball;
    mesh& m = *ball.scene.first_mesh;
    mesh_set_render_mode(m, static_cast<std::int32_t>(mode));
    for (auto _ : state) {
        raster_clear_depth();
        ball.scene.scene_render(bench_frames().a.pixels);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * m.face_count);
}
BENCHMARK_CAPTURE(draw, flat_z, 0x24)->Name("scene_render/flat_z_36");
BENCHMARK_CAPTURE(draw, gouraud_z, 0x428)->Name("scene_render/gouraud_z_1064");
BENCHMARK_CAPTURE(draw, gouraud, 0x408)->Name("scene_render/gouraud_1032");
BENCHMARK_CAPTURE(draw, gouraud_az, 0x468)->Name("scene_render/gouraud_az_1128");
BENCHMARK_CAPTURE(draw, tex_lit_z, 0x230)->Name("scene_render/tex_lit_z_560");
BENCHMARK_CAPTURE(draw, tex_p, 0x90)->Name("scene_render/tex_p_144");
BENCHMARK_CAPTURE(draw, points, 0x01)->Name("scene_render/points_1");

// The part of a frame that draws nothing.
void transform(benchmark::State& state) {
    static stage ball;
    mesh& m = *ball.scene.first_mesh;
    for (auto _ : state) {
        mesh_to_camera(m, *ball.scene.camera);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * m.face_count);
}
BENCHMARK(transform)->Name("mesh_to_camera");

} // namespace

BENCHMARK_MAIN();
