// The surface walk on grids of several sizes, beside the field at every point of the same grid.
#include <benchmark/benchmark.h>

#include "morvane/isosurface/isosurface.h"

namespace {

void place_spheres(isosurface& surface, std::int32_t grid) {
    surface.set_gridsize(grid);
    surface.spheres.assign(3, {});
    surface.spheres[0].position = {0.21F, 0.13F, -0.17F};
    surface.spheres[1].position = {-0.23F, 0.05F, 0.11F};
    surface.spheres[2].position = {0.02F, -0.31F, 0.19F};
    for (sphere& each : surface.spheres)
        each.threshold = 60;
}

struct metaballs : isosurface {
    explicit metaballs(std::int32_t grid) : isosurface(0, 60) { place_spheres(*this, grid); }
};

void polygonise(benchmark::State& state) {
    metaballs surface(static_cast<std::int32_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(surface.polygonise());
    state.counters["faces"] = surface.mesh.face_count;
}
BENCHMARK(polygonise)->Arg(20)->Arg(40)->Arg(80)->Unit(benchmark::kMicrosecond);

// What a scan of the whole grid spends on the field alone.
void field_everywhere(benchmark::State& state) {
    const metaballs surface(static_cast<std::int32_t>(state.range(0)));
    const std::int32_t n = surface.grid_size;
    for (auto _ : state)
        for (std::int32_t z = 0; z <= n; ++z)
            for (std::int32_t y = 0; y <= n; ++y)
                for (std::int32_t x = 0; x <= n; ++x)
                    benchmark::DoNotOptimize(
                        surface.field(surface.world_of(x), surface.world_of(y), surface.world_of(z)));
}
BENCHMARK(field_everywhere)->Arg(20)->Arg(40)->Arg(80)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
