// The operators that make pictures from nothing, on surfaces of the show's size, and the tables behind them.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/frames.h"
#include "morvane/base/random.h"
#include "morvane/gtex/noise.h"
#include "morvane/gtex/patterns.h"
#include "morvane/gtex/plasma.h"

namespace {

struct plasma_maps {
    std::vector<std::uint8_t> a = std::vector<std::uint8_t>(plasma_map_size);
    std::vector<std::uint8_t> b = std::vector<std::uint8_t>(plasma_map_size);
    plasma_maps() { plasma_tables_init(a, b); }
};

void bench_plasma(benchmark::State& state) {
    static const plasma_maps maps;
    const auto shift = static_cast<std::int32_t>(state.range(0));
    float time = 0;
    for (auto _ : state) {
        gtex_plasma(bench_frames().a, maps.a, maps.b, time, shift);
        time += 0.01F;
        benchmark::ClobberMemory();
    }
}
BENCHMARK(bench_plasma)->Name("gtex_plasma")->ArgName("shift")->Arg(0)->Arg(1);

void bench_noise(benchmark::State& state) {
    for (auto _ : state) {
        gtex_noise(bench_frames().a, static_cast<std::int32_t>(state.range(0)));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(bench_noise)->Name("gtex_noise")->ArgName("range")->Arg(80)->Arg(240);

void bench_rand_fill(benchmark::State& state) {
    std::vector<std::uint16_t> numbers(frame_pixels);
    for (auto _ : state) {
        random_fill(numbers);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(bench_rand_fill)->Name("rand_fill");

void bench_rand(benchmark::State& state) {
    for (auto _ : state)
        for (std::int32_t i = 0; i < frame_pixels; ++i)
            benchmark::DoNotOptimize(random_next());
}
BENCHMARK(bench_rand)->Name("rand/draws:147456");

template<void operation(gtex, std::uint32_t)>
void bench_picture(benchmark::State& state) {
    for (auto _ : state) {
        operation(bench_frames().a, 0x115533);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(bench_picture<gtex_radial>)->Name("gtex_radial");
BENCHMARK(bench_picture<gtex_pattern_blue>)->Name("gtex_pattern_blue");
BENCHMARK(bench_picture<gtex_pattern_green>)->Name("gtex_pattern_green");
BENCHMARK(bench_picture<gtex_pattern_red>)->Name("gtex_pattern_red");
BENCHMARK(bench_picture<gtex_pattern_product>)->Name("gtex_pattern_product");

void bench_plasma_tables(benchmark::State& state) {
    plasma_maps maps;
    for (auto _ : state)
        plasma_tables_init(maps.a, maps.b);
}
BENCHMARK(bench_plasma_tables)->Name("plasma_tables_init")->Unit(benchmark::kMillisecond);

} // namespace
