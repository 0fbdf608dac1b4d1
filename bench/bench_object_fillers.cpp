// Fillers and lines of the object engine. Items are pixels; rows with `_plain` walk every step and test every
// pixel, and the rows with `_worst` are far larger than the frame.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "bench/frames.h"
#include "morvane/object/fill.h"
#include "morvane/object/fill_spans.h"
#include "morvane/object/lines.h"
#include "tests/support/plain_fillers.h"

namespace {

struct point {
    std::int32_t x, y;
};
struct shape { // a triangle, or a line from a to b
    point a, b, c;
};

// Triangles with corners up to `reach` from their middle, all inside the frame.
std::vector<shape> shapes(std::int32_t reach) {
    std::mt19937 random(static_cast<std::uint32_t>(reach));
    const auto between = [&random](std::int32_t low, std::int32_t high) {
        return low + static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(high - low + 1));
    };
    std::vector<shape> all(1024); // too many for the processor to learn them by heart
    for (shape& s : all) {
        const point middle{between(reach + 1, 511 - reach), between(reach + 1, 287 - reach)};
        for (point* p : {&s.a, &s.b, &s.c})
            *p = {middle.x + between(-reach, reach), middle.y + between(-reach, reach)};
    }
    return all;
}
const std::vector<shape>& small_shapes() {
    static const std::vector<shape> all = shapes(10);
    return all;
}
const std::vector<shape>& large_shapes() {
    static const std::vector<shape> all = shapes(140);
    return all;
}
const std::vector<shape>& full_screen() { // two triangles
    static const std::vector<shape> all{{{0, 0}, {512, 0}, {0, 288}}, {{512, 0}, {512, 288}, {0, 288}}};
    return all;
}
// Covers the frame wherever the corners are.
const std::vector<shape>& worst_shapes() {
    static const std::vector<shape> all{
        {{INT32_MIN, INT32_MIN}, {INT32_MAX, INT32_MIN}, {0, INT32_MAX}},
        {{-2000000000, -1000000000}, {1999999999, -1000000001}, {3, 2000000000}}};
    return all;
}
// Through the frame, from one end of the numbers to the other.
const std::vector<shape>& worst_lines() {
    static const std::vector<shape> all{{{INT32_MIN, INT32_MIN + 100}, {INT32_MAX, INT32_MAX}, {}},
                                        {{INT32_MIN, 140}, {INT32_MAX, 150}, {}},
                                        {{250, INT32_MIN}, {260, INT32_MAX}, {}}};
    return all;
}

// Draws all of a list again and again, and counts the pixels that it writes.
template<typename Draw>
void run(benchmark::State& state, const std::vector<shape>& list, Draw draw) {
    const gtex frame = bench_frames().a;
    std::int64_t pixels = 0;
    for (const shape& s : list) {
        gtex_fill(frame, 0);
        draw(frame.pixels, s);
        for (std::int32_t i = 0; i < frame.count; ++i)
            pixels += frame.pixels[i] != 0;
    }
    for (auto _ : state) {
        for (const shape& s : list)
            draw(frame.pixels, s);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * pixels);
    state.counters["each"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(list.size()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

constexpr std::uint32_t colour = 0x202080;

void flat(std::uint32_t* dst, const shape& s) {
    fill_triangle(dst, s.a.x, s.a.y, s.b.x, s.b.y, s.c.x, s.c.y, colour);
}
void flat_plain(std::uint32_t* dst, const shape& s) {
    plain::fill_triangle(dst, {s.a.x, s.a.y}, {s.b.x, s.b.y}, {s.c.x, s.c.y}, colour);
}
void textured(std::uint32_t* dst, const shape& s) {
    fill_triangle_textured(dst, bench_frames().texture.pixels, s.a.x, s.a.y, s.b.x, s.b.y, s.c.x, s.c.y, 0, 0,
                           256, 30, 40, 200);
}
void textured_plain(std::uint32_t* dst, const shape& s) {
    plain::fill_triangle_textured(dst, bench_frames().texture.pixels, {s.a.x, s.a.y, 0, 0},
                                  {s.b.x, s.b.y, 256, 30}, {s.c.x, s.c.y, 40, 200});
}
void shaded(std::uint32_t* dst, const shape& s) {
    fill_triangle_shaded(dst, bench_frames().texture.pixels, s.a.x, s.a.y, s.b.x, s.b.y, s.c.x, s.c.y, 0, 0,
                         256, 30, 40, 200, 0.5F, 0.7F, 0.9F, true, true);
}
void half_quad(std::uint32_t* dst, const shape& s) {
    fill_quad(dst, s.a.x, s.a.y, s.b.x, s.b.y, s.c.x, s.c.y, s.a.x, s.a.y, 0xffffff, quad_half);
}
void line(std::uint32_t* dst, const shape& s) {
    draw_line(dst, s.a.x, s.a.y, s.b.x, s.b.y, colour);
}
void line_plain(std::uint32_t* dst, const shape& s) {
    plain::draw_line(dst, s.a.x, s.a.y, s.b.x, s.b.y, colour);
}
void line_bres(std::uint32_t* dst, const shape& s) {
    draw_line_bres(dst, s.a.x, s.a.y, s.b.x, s.b.y, colour);
}
void line_smooth(std::uint32_t* dst, const shape& s) {
    draw_line_smooth(dst, s.a.x, s.a.y, s.b.x, s.b.y, 0xffffff);
}

struct row {
    const char* name;
    const std::vector<shape>& (*list)();
    void (*draw)(std::uint32_t*, const shape&);
};
constexpr row rows[] = {
    {"fill_triangle_small", small_shapes, flat},
    {"fill_triangle_small_plain", small_shapes, flat_plain},
    {"fill_triangle_large", large_shapes, flat},
    {"fill_triangle_large_plain", large_shapes, flat_plain},
    {"fill_triangle_full_screen", full_screen, flat},
    {"fill_triangle_worst", worst_shapes, flat},
    {"fill_triangle_textured_small", small_shapes, textured},
    {"fill_triangle_textured_small_plain", small_shapes, textured_plain},
    {"fill_triangle_textured_large", large_shapes, textured},
    {"fill_triangle_textured_large_plain", large_shapes, textured_plain},
    {"fill_triangle_textured_full_screen", full_screen, textured},
    {"fill_triangle_textured_full_screen_plain", full_screen, textured_plain},
    {"fill_triangle_textured_worst", worst_shapes, textured},
    {"fill_triangle_shaded_large", large_shapes, shaded},
    {"fill_quad_half_large", large_shapes, half_quad},
    {"draw_line", large_shapes, line},
    {"draw_line_plain", large_shapes, line_plain},
    {"draw_line_short", small_shapes, line},
    {"draw_line_short_plain", small_shapes, line_plain},
    {"draw_line_worst", worst_lines, line},
    {"draw_line_bres", large_shapes, line_bres},
    {"draw_line_smooth", large_shapes, line_smooth},
    {"draw_line_smooth_worst", worst_lines, line_smooth},
};

[[maybe_unused]] const bool registered = [] {
    for (const row& r : rows)
        benchmark::RegisterBenchmark(r.name, [&r](benchmark::State& state) { run(state, r.list(), r.draw); });
    return true;
}();

} // namespace
