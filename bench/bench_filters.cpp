// The filters and distortions on surfaces of the show's size.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/frames.h"
#include "morvane/gtex/bump.h"
#include "morvane/gtex/filters.h"
#include "morvane/gtex/tunnel.h"
#include "morvane/gtex/wobble.h"
#include "morvane/gtex/zoom.h"

namespace {

// Registers `call` under the name of the operator that it measures.
template<typename Call>
void bench(const std::string& name, Call call) {
    benchmark::RegisterBenchmark(name.c_str(), [call](benchmark::State& state) {
        frames& f = bench_frames();
        for (auto _ : state) {
            call(f);
            benchmark::ClobberMemory();
        }
    });
}

bool register_blurs() {
    for (const std::int32_t n : {0, 1, 16, 32, 128, 511}) {
        const std::string argument = "/n:" + std::to_string(n);
        bench("gtex_blur_h" + argument, [=](frames& f) { gtex_blur_h(f.a, f.b, n); });
        bench("gtex_blur_h_at" + argument, [=](frames& f) { gtex_blur_h_at(f.a, f.b, 3, -2, n); });
        bench("gtex_blur_v_at" + argument, [=](frames& f) { gtex_blur_v_at(f.a, f.b, 3, -2, n); });
    }
    bench("gtex_smear", [](frames& f) { gtex_smear(f.a); });
    bench("gtex_glow", [](frames& f) { gtex_glow(f.a, -20); });
    return true;
}

bool register_distortions() {
    bench("gtex_zoom/in", [](frames& f) { gtex_zoom(f.a, f.b, 17, 9, 497, 280); });
    bench("gtex_zoom/far_in", [](frames& f) { gtex_zoom(f.a, f.b, 200, 100, 240, 130); });
    bench("gtex_zoom/none", [](frames& f) { gtex_zoom(f.a, f.b, 0, 0, 512, 288); });
    bench("gtex_zoom/out", [](frames& f) { gtex_zoom(f.texture, f.b, 0, 0, 512, 288); });
    bench("gtex_zoom/mirrored", [](frames& f) { gtex_zoom(f.a, f.b, 511, 287, 0, 0); });
    for (const std::int32_t amplitude : {0, 20, 63})
        bench("gtex_wobble/amplitude:" + std::to_string(amplitude),
              [=](frames& f) { gtex_wobble(f.a, f.b, 2, amplitude); });
    bench("gtex_wobble/mode:0", [](frames& f) { gtex_wobble(f.a, f.b, 0, 0); });
    bench("gtex_wobble/mode:1", [](frames& f) { gtex_wobble(f.a, f.b, 1, 0); });
    bench("gtex_tunnel", [](frames& f) { gtex_tunnel(f.a, f.texture, -700, 350); });
    bench("gtex_tunnel_warp", [](frames& f) { gtex_tunnel_warp(f.a, f.texture, -700, 350); });
    bench("gtex_tunnel_even", [](frames& f) { gtex_tunnel_even(f.a, f.texture, -700, 350); });
    bench("gtex_tunnel_odd", [](frames& f) { gtex_tunnel_odd(f.a, f.texture, -700, 350); });
    bench("gtex_bump", [](frames& f) { gtex_bump(f.a, {f.c.bytes, bump_map_columns * 288}, f.b, 10, 5); });
    return true;
}

[[maybe_unused]] const bool blurs = register_blurs();
[[maybe_unused]] const bool distortions = register_distortions();

} // namespace
