// The transfer, blend and sprite operators on surfaces of the show's size.
#include <benchmark/benchmark.h>

#include "bench/frames.h"
#include "morvane/gtex/blend.h"
#include "morvane/gtex/blend_windows.h"
#include "morvane/gtex/sprites.h"

namespace {

// Registers `call` under the name of the operator that it measures.
template<typename Call>
void bench(const char* name, Call call) {
    benchmark::RegisterBenchmark(name, [call](benchmark::State& state) {
        frames& f = bench_frames();
        for (auto _ : state) {
            call(f);
            benchmark::ClobberMemory();
        }
    });
}

bool register_all() {
    bench("gtex_fill", [](frames& f) { gtex_fill(f.a, 0x2200); });
    bench("gtex_copy", [](frames& f) { gtex_copy(f.a, f.b); });
    bench("gtex_copy_keyed", [](frames& f) { gtex_copy_keyed(f.a, f.b); });
    bench("gtex_copy_rect", [](frames& f) { gtex_copy_rect(f.texture, f.b, 100, 20); });
    bench("gtex_flip", [](frames& f) { gtex_flip(f.a); });
    bench("gtex_crossfade", [](frames& f) { gtex_crossfade(f.a, f.b, 100); });
    bench("gtex_add", [](frames& f) { gtex_add(f.a, f.b); });
    bench("gtex_add_keyed", [](frames& f) { gtex_add_keyed(f.a, f.b); });
    bench("gtex_solarise", [](frames& f) { gtex_solarise(f.a, f.a, 100); });
    bench("gtex_negate", [](frames& f) { gtex_negate(f.a, f.a); });
    bench("gtex_trail_2", [](frames& f) { gtex_trail(f.a, f.b, 2); });
    bench("gtex_trail_100", [](frames& f) { gtex_trail(f.a, f.b, 100); });
    bench("gtex_alpha_mix", [](frames& f) { gtex_alpha_mix(f.a, f.b); });
    bench("gtex_alpha_mix3", [](frames& f) { gtex_alpha_mix3(f.a, f.b, f.c); });
    bench("gtex_multiply", [](frames& f) { gtex_multiply(f.a, f.b); });
    bench("gtex_copy_mask", [](frames& f) { gtex_copy_mask(f.a, f.b); });
    bench("gtex_mask_from_luma", [](frames& f) { gtex_mask_from_luma(f.a, f.b); });
    bench("gtex_dual_fade", [](frames& f) { gtex_dual_fade(f.a, f.b, f.c, 100); });
    bench("gtex_average_keyed", [](frames& f) { gtex_average_keyed(f.a, f.b); });
    bench("gtex_xor_windows", [](frames& f) { gtex_xor_windows(f.a, f.b, 3, 5, f.c, -7, 2); });
    bench("gtex_channels_windows",
          [](frames& f) { gtex_channels_windows(f.a, f.b, 3, 5, f.c, -7, 2, f.b, 1, -4); });
    bench("gtex_negate_region", [](frames& f) { gtex_negate_region(f.a, f.b, 1, 1, 511, 287); });
    bench("gtex_add_sprite_250", [](frames& f) {
        for (int i = 0; i < 250; ++i)
            gtex_add_sprite(f.a, f.sprite, 1 + i, i);
    });
    bench("gtex_blit_frame", [](frames& f) { gtex_blit(f.a, f.b, 0, 0); });
    bench("gtex_copy_jitter", [](frames& f) { gtex_copy_jitter(f.a, f.b, 20); });
    bench("gtex_present", [](frames& f) { gtex_present(f.console, f.a); });
    bench("gtex_copy_raw", [](frames& f) { gtex_copy_raw(f.a, f.b.pixels, f.b.count); });
    bench("gtex_copy_keyed_dst", [](frames& f) { gtex_copy_keyed_dst(f.a, f.b); });
    bench("gtex_add_blit", [](frames& f) { gtex_add_blit(f.a, f.b, 0, 0); });
    bench("pixel_add", [](frames& f) { pixel_add(f.a, 70000, 1, 2, 3); });
    bench("pixel_add_packed", [](frames& f) { pixel_add_packed(f.a, 70000, 0x010203); });
    bench("pixel_add_xy", [](frames& f) { pixel_add_xy(f.a, 100, 100, 0x010203); });
    return true;
}

[[maybe_unused]] const bool registered = register_all();

} // namespace
