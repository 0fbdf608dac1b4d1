// The references that every figure is a ratio of: the memory roofline, memcpy and memset, on one frame.
#include <benchmark/benchmark.h>

#include <cstring>

#include "bench/frames.h"
#include "morvane/base/kernel.h"

namespace {

// One pass that reads two frames and writes one.
MORVANE_KERNEL void add_words(std::uint32_t* dst, const std::uint32_t* src, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i)
        dst[i] += src[i];
}

void roofline(benchmark::State& state) {
    for (auto _ : state) {
        add_words(bench_frames().a.pixels, bench_frames().b.pixels, frame_pixels);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(roofline);

void copy_memory(benchmark::State& state) {
    for (auto _ : state) {
        std::memcpy(bench_frames().a.pixels, bench_frames().b.pixels, frame_pixels * 4);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(copy_memory)->Name("memcpy");

void set_memory(benchmark::State& state) {
    for (auto _ : state) {
        std::memset(bench_frames().a.pixels, 0x5a, frame_pixels * 4);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(set_memory)->Name("memset");

} // namespace
