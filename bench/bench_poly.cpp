// The fillers without a texture on large, medium and small triangles, and beside them, for as many pixels, a
// memset of the colour and a pass that reads and writes colour and depth. `pixels` and `each` are pixels a
// second and the time of a triangle.
//
// The depth-tested rows draw at one depth, so that every pixel is written; the rows with `_mixed` draw faces
// at all depths, of which most pixels are hidden.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/frames.h"
#include "morvane/base/kernel.h"
#include "morvane/poly/clipper.h"
#include "morvane/poly/fillers.h"
#include "morvane/poly/poly.h"
#include "morvane/poly/raster.h"
#include "morvane/poly/render_modes.h"

namespace {

struct corner {
    std::int32_t x, y, z, r, g, b;
};
struct triangle {
    corner a, b, c;
};
using triangles = std::vector<triangle>;

// Twice the area.
std::int64_t area2(const triangle& t) {
    return std::abs((t.b.x - t.a.x) * (t.c.y - t.a.y) - (t.c.x - t.a.x) * (t.b.y - t.a.y));
}

std::int64_t pixels_of(const triangles& all) {
    std::int64_t sum = 0;
    for (const triangle& t : all)
        sum += area2(t);
    return sum / 2;
}

// Triangles that fit into a box of `width` by `height` and cover a sixth of it at least, all over the frame.
triangles make_triangles(std::int32_t width, std::int32_t height, std::size_t count) {
    std::mt19937 random(7);
    const auto upto = [&random](std::int32_t most) {
        return std::uniform_int_distribution<std::int32_t>(0, most)(random);
    };
    triangles all;
    while (all.size() < count) {
        const std::int32_t x = 1 + upto(510 - width), y = upto(287 - height);
        const auto make = [&] {
            return corner{x + upto(width), y + upto(height), -100 - upto(2000),
                          upto(255),       upto(255),        upto(255)};
        };
        const triangle t{make(), make(), make()};
        if (area2(t) * 3 >= std::int64_t{width} * height) all.push_back(t);
    }
    return all;
}

// All at one depth.
triangles level(triangles all) {
    for (triangle& t : all)
        t.a.z = t.b.z = t.c.z = -500;
    return all;
}

struct size {
    const char* name;
    triangles mixed, level;
    size(const char* its_name, const triangles& all) : name(its_name), mixed(all), level(::level(all)) {}
};
const std::vector<size>& sizes() {
    static const std::vector<size> all{{"large", make_triangles(508, 287, 16)},
                                       {"medium", make_triangles(60, 60, 512)},
                                       {"small", make_triangles(10, 10, 4096)}}; // too many to learn by heart
    return all;
}

void count(benchmark::State& state, const triangles& all) {
    using benchmark::Counter;
    state.counters["pixels"] =
        Counter(static_cast<double>(pixels_of(all)), Counter::kIsIterationInvariantRate);
    state.counters["each"] =
        Counter(static_cast<double>(all.size()), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

constexpr std::uint32_t colour = 0x0040a0f0;
constexpr std::int32_t weight = 100;

using draw_function = void (*)(std::uint32_t* dst, const corner& a, const corner& b, const corner& c);

void draw_all(benchmark::State& state, const triangles& all, draw_function draw) {
    raster_init(frame_columns, frame_rows);
    raster_clear_depth();
    poly_clip_set_frame(frame_columns, frame_rows);
    std::uint32_t* const pixels = bench_frames().a.pixels;
    for (auto _ : state) {
        for (const triangle& t : all)
            draw(pixels, t.a, t.b, t.c);
        benchmark::ClobberMemory();
    }
    count(state, all);
}

// The way of a face through table, clipper and adapter, in the mode of the show's scene.
void draw_mode_36(std::uint32_t* dst, const corner& a, const corner& b, const corner& c) {
    static poly face;
    static const std::int32_t row = render_mode_find(mode_flat | mode_depth);
    const auto place = [](poly_vertex& v, const corner& from) {
        v.pos = {static_cast<float>(from.x), static_cast<float>(from.y), static_cast<float>(from.z)};
    };
    place(face.v[0], a);
    place(face.v[1], b);
    place(face.v[2], c);
    face.count = 3;
    face.b = 200;
    render_mode_draw(dst, face, row);
}

// As many bytes of colour as the triangles have.
void set_memory(benchmark::State& state, const triangles& all) {
    for (auto _ : state) {
        for (std::int64_t rest = pixels_of(all); rest > 0; rest -= frame_pixels) {
            std::memset(bench_frames().a.pixels, 0x5a,
                        static_cast<std::size_t>(std::min<std::int64_t>(rest, frame_pixels)) * 4);
            benchmark::ClobberMemory();
        }
    }
    count(state, all);
}

MORVANE_KERNEL void touch(std::uint32_t* pixels, std::uint32_t* depths, std::int64_t length) {
    for (std::int64_t i = 0; i < length; ++i) {
        pixels[i] += 1;
        depths[i] += 1;
    }
}

// Reads and writes colour and depth of as many pixels.
void read_write(benchmark::State& state, const triangles& all) {
    for (auto _ : state) {
        for (std::int64_t rest = pixels_of(all); rest > 0; rest -= frame_pixels) {
            touch(bench_frames().a.pixels, bench_frames().b.pixels,
                  std::min<std::int64_t>(rest, frame_pixels));
            benchmark::ClobberMemory();
        }
    }
    count(state, all);
}

#define XY(v) v.x, v.y
#define XYZ(v) v.x, v.y, v.z
#define RGB(v) v.r, v.g, v.b
struct row {
    const char* name;
    draw_function draw;
    bool mixed;
};
const row rows[] = {
    {"fill_flat", [](auto* d, auto& a, auto& b, auto& c) { fill_flat(d, XY(a), XY(b), XY(c), colour); },
     false},
    {"fill_flat_z",
     [](auto* d, auto& a, auto& b, auto& c) { fill_flat_z(d, XYZ(a), XYZ(b), XYZ(c), colour); }, false},
    {"fill_flat_z_mixed",
     [](auto* d, auto& a, auto& b, auto& c) { fill_flat_z(d, XYZ(a), XYZ(b), XYZ(c), colour); }, true},
    {"fill_flat_a",
     [](auto* d, auto& a, auto& b, auto& c) { fill_flat_a(d, XY(a), XY(b), XY(c), colour, weight); }, false},
    {"fill_flat_az",
     [](auto* d, auto& a, auto& b, auto& c) { fill_flat_az(d, XYZ(a), XYZ(b), XYZ(c), colour, weight); },
     false},
    {"fill_gouraud",
     [](auto* d, auto& a, auto& b, auto& c) { fill_gouraud(d, XY(a), RGB(a), XY(b), RGB(b), XY(c), RGB(c)); },
     false},
    {"fill_gouraud_z",
     [](auto* d, auto& a, auto& b, auto& c) {
         fill_gouraud_z(d, XYZ(a), RGB(a), XYZ(b), RGB(b), XYZ(c), RGB(c));
     },
     false},
    {"fill_gouraud_a",
     [](auto* d, auto& a, auto& b, auto& c) {
         fill_gouraud_a(d, XY(a), RGB(a), XY(b), RGB(b), XY(c), RGB(c), weight);
     },
     false},
    {"fill_gouraud_az",
     [](auto* d, auto& a, auto& b, auto& c) {
         fill_gouraud_az(d, XYZ(a), RGB(a), XYZ(b), RGB(b), XYZ(c), RGB(c), weight);
     },
     false},
    {"render_mode_36_mixed", draw_mode_36, true},
};
#undef XY
#undef XYZ
#undef RGB

template<typename Function, typename... Arguments>
void add(const char* name, const size& its_size, Function function, Arguments... arguments) {
    benchmark::RegisterBenchmark((std::string(name) + "/" + its_size.name).c_str(), function, arguments...)
        ->Unit(benchmark::kMicrosecond);
}

const bool registered = [] {
    for (const size& s : sizes()) {
        add("poly_memset", s, [&s](benchmark::State& state) { set_memory(state, s.level); });
        add("poly_read_write", s, [&s](benchmark::State& state) { read_write(state, s.level); });
        for (const row& r : rows)
            add(r.name, s,
                [&](benchmark::State& state) { draw_all(state, r.mixed ? s.mixed : s.level, r.draw); });
    }
    return true;
}();

} // namespace

BENCHMARK_MAIN();
