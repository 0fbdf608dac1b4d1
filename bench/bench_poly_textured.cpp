// The textured fillers. Items are pixels; `ns` is the time of one. Compare with `memset` of a frame in the
// same program, and with the flat fillers. Rows `_wrapped` leave the texture, rows `_few` name more rows than
// it has.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "bench/frames.h"
#include "morvane/poly/fill_perspective.h"
#include "morvane/poly/fill_textured.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/raster.h"

namespace {

struct corner {
    std::int32_t x, y, z, u, v;
};
struct triangle {
    corner a, b, c;
};

// Triangles with corners up to `reach` from their middle, all inside the frame, two texels to three pixels.
std::vector<triangle> triangles(std::int32_t reach, std::size_t count) {
    std::mt19937 random(static_cast<std::uint32_t>(reach));
    const auto between = [&random](std::int32_t low, std::int32_t high) {
        return std::uniform_int_distribution(low, high)(random);
    };
    std::vector<triangle> all(count);
    for (triangle& t : all) {
        const std::int32_t x = between(reach + 1, 511 - reach), y = between(reach + 1, 287 - reach);
        for (corner* c : {&t.a, &t.b, &t.c}) {
            const std::int32_t dx = between(-reach, reach), dy = between(-reach, reach);
            *c = {x + dx, y + dy, between(-600, -300), 128 + (dx + dy) / 3, 128 + (dx - dy) / 3};
        }
    }
    return all;
}

struct shape_set {
    const char* name;
    std::vector<triangle> all;
    std::int64_t pixels;
};

// How many pixels they cover, counted.
std::int64_t coverage(const std::vector<triangle>& all) {
    std::vector<std::uint32_t> frame(frame_pixels);
    std::int64_t covered = 0;
    for (const auto& [a, b, c] : all) {
        std::fill(frame.begin(), frame.end(), 0U);
        fill_flat(frame.data(), a.x, a.y, b.x, b.y, c.x, c.y, 1);
        covered += std::count(frame.begin(), frame.end(), 1U);
    }
    return covered;
}

std::vector<shape_set> make_shapes() {
    raster_init(frame_columns, frame_rows);
    std::vector<shape_set> sets = {
        {"large", triangles(140, 128), 0},
        {"medium", triangles(40, 512), 0},
        {"small", triangles(10, 1024), 0},
        {"frame",
         {{{0, 0, -400, 0, 0}, {512, 0, -400, 255, 0}, {0, 288, -400, 0, 255}},
          {{512, 0, -400, 255, 0}, {512, 288, -400, 255, 255}, {0, 288, -400, 0, 255}}},
         0}};
    for (shape_set& set : sets)
        set.pixels = coverage(set.all);
    return sets;
}

template<typename Draw>
void run(benchmark::State& state, const shape_set& shapes, Draw draw) {
    raster_init(frame_columns, frame_rows);
    raster_clear_depth();
    std::uint32_t* const pixels = bench_frames().a.pixels;
    for (auto _ : state) {
        for (const triangle& t : shapes.all)
            draw(pixels, t);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * shapes.pixels);
}

template<typename Filler, typename... Rest>
auto affine(Filler filler, Rest... rest) {
    return [=](std::uint32_t* dst, const triangle& t) {
        const auto& [a, b, c] = t;
        filler(dst, a.x, a.y, a.u, a.v, b.x, b.y, b.u, b.v, c.x, c.y, c.u, c.v, rest...);
    };
}

template<typename Filler, typename... Rest>
auto tested(Filler filler, Rest... rest) {
    return [=](std::uint32_t* dst, const triangle& t) {
        const auto& [a, b, c] = t;
        filler(dst, a.x, a.y, a.z, a.u, a.v, b.x, b.y, b.z, b.u, b.v, c.x, c.y, c.z, c.u, c.v, rest...);
    };
}

template<typename Filler, typename... Rest>
auto perspective(Filler filler, Rest... rest) {
    return [=](std::uint32_t* dst, const triangle& t) {
        const auto f = [](std::int32_t value) { return static_cast<float>(value); };
        const auto& [a, b, c] = t;
        filler(dst, f(a.x), f(a.y), f(a.z), f(a.u), f(a.v), f(b.x), f(b.y), f(b.z), f(b.u), f(b.v), f(c.x),
               f(c.y), f(c.z), f(c.u), f(c.v), rest...);
    };
}

const bool registered = [] {
    static const std::vector<shape_set> sets = make_shapes();
    const std::uint32_t* const texels = bench_frames().texture.pixels;
    for (const shape_set& set : sets) {
        const auto add = [&](const char* name, auto draw) {
            benchmark::RegisterBenchmark((std::string(name) + "/" + set.name).c_str(),
                                         [&set, draw](benchmark::State& state) { run(state, set, draw); });
        };
        add("fill_tex", affine(fill_tex, texels, 256, 256));
        add("fill_tex_wrapped", affine(fill_tex, texels, 90, 90));
        add("fill_tex_z", tested(fill_tex_z, texels, 256, 256));
        add("fill_tex_a", affine(fill_tex_a, texels, 256, 100, 256));
        add("fill_tex_az", tested(fill_tex_az, texels, 256, 100, 256));
        add("fill_tex_lit", affine(fill_tex_lit, 200, 150, 100, texels, 256, 256));
        add("fill_tex_lit_z", tested(fill_tex_lit_z, 200, 150, 100, texels, 256, 256));
        add("fill_tex_lit_a", affine(fill_tex_lit_a, 200, 150, 100, texels, 256, 100, 256));
        add("fill_tex_lit_az", tested(fill_tex_lit_az, 200, 150, 100, texels, 256, 100, 256));
        add("fill_tex_p", perspective(fill_tex_p, texels, 256, 256));
        add("fill_tex_p_few", perspective(fill_tex_p, texels, 256, 100));
        add("fill_tex_lit_p", perspective(fill_tex_lit_p, texels, 256, 200, 150, 100, 256));
        add("fill_tex_pa", perspective(fill_tex_pa, texels, 256, 100, 256));
        add("fill_tex_lit_pa", perspective(fill_tex_lit_pa, texels, 256, 200, 150, 100, 100, 256));
    }
    return true;
}();

} // namespace
