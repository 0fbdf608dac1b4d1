// The transfer, blend and sprite operators on surfaces of the show's size.
#include <benchmark/benchmark.h>

#include "bench/frames.h"
#include "gtex/blend.h"
#include "gtex/blend_windows.h"
#include "gtex/sprites.h"

namespace {

// A benchmark that bears the operator's name: `call` is what runs once an iteration on the frames `f`.
#define BENCH_OPERATOR(name, call)                                                                           \
    void bench_##name(benchmark::State& state) {                                                             \
        frames& f = bench_frames();                                                                          \
        for (auto _ : state) {                                                                               \
            call;                                                                                            \
            benchmark::ClobberMemory();                                                                      \
        }                                                                                                    \
    }                                                                                                        \
    BENCHMARK(bench_##name)->Name(#name)

BENCH_OPERATOR(gtex_fill, gtex_fill(f.a, 0x2200));
BENCH_OPERATOR(gtex_copy, gtex_copy(f.a, f.b));
BENCH_OPERATOR(gtex_copy_keyed, gtex_copy_keyed(f.a, f.b));
BENCH_OPERATOR(gtex_copy_rect, gtex_copy_rect(f.texture, f.b, 100, 20));
BENCH_OPERATOR(gtex_flip, gtex_flip(f.a));
BENCH_OPERATOR(gtex_crossfade, gtex_crossfade(f.a, f.b, 100));
BENCH_OPERATOR(gtex_add, gtex_add(f.a, f.b));
BENCH_OPERATOR(gtex_add_keyed, gtex_add_keyed(f.a, f.b));
BENCH_OPERATOR(gtex_solarise, gtex_solarise(f.a, f.a, 100));
BENCH_OPERATOR(gtex_negate, gtex_negate(f.a, f.a));
BENCH_OPERATOR(gtex_trail_2, gtex_trail(f.a, f.b, 2));
BENCH_OPERATOR(gtex_trail_100, gtex_trail(f.a, f.b, 100));
BENCH_OPERATOR(gtex_alpha_mix, gtex_alpha_mix(f.a, f.b));
BENCH_OPERATOR(gtex_alpha_mix3, gtex_alpha_mix3(f.a, f.b, f.c));
BENCH_OPERATOR(gtex_multiply, gtex_multiply(f.a, f.b));
BENCH_OPERATOR(gtex_copy_mask, gtex_copy_mask(f.a, f.b));
BENCH_OPERATOR(gtex_mask_from_luma, gtex_mask_from_luma(f.a, f.b));
BENCH_OPERATOR(gtex_dual_fade, gtex_dual_fade(f.a, f.b, f.c, 100));
BENCH_OPERATOR(gtex_average_keyed, gtex_average_keyed(f.a, f.b));
BENCH_OPERATOR(gtex_xor_windows, gtex_xor_windows(f.a, f.b, 3, 5, f.c, -7, 2));
BENCH_OPERATOR(gtex_channels_windows, gtex_channels_windows(f.a, f.b, 3, 5, f.c, -7, 2, f.b, 1, -4));
BENCH_OPERATOR(gtex_negate_region, gtex_negate_region(f.a, f.b, 1, 1, 511, 287));
BENCH_OPERATOR(gtex_add_sprite_250, for (int i = 0; i < 250; ++i) gtex_add_sprite(f.a, f.sprite, 1 + i, i));
BENCH_OPERATOR(gtex_blit_frame, gtex_blit(f.a, f.b, 0, 0));
BENCH_OPERATOR(gtex_copy_jitter, gtex_copy_jitter(f.a, f.b, 20));

} // namespace
