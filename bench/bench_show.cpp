// The time that a frame takes, stretch by stretch of the score, without a display. Runs in a folder with the
// data tree. Every frame of the show, 60 a second of the show's time, is timed by itself, in several passes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <numeric>
#include <vector>

#include "tools/record/off_screen_show.h"

namespace {

constexpr std::int32_t fps = 60;
constexpr int passes = 5;

struct stretch {
    const char* name;
    double start, end; // seconds
};

constexpr stretch stretches[] = {
    {"opening", 0, 14.2},
    {"meteor", 14.2, 28.5},
    {"title_morvane", 28.5, 57.35},
    {"shake_presents", 57.35, 72},
    {"shake_lorrim", 72, 86.04},
    {"meteor_textured", 86.04, 100.36},
    {"cube", 100.36, 114.69},
    {"texture_turns", 114.69, 128.99},
    {"title_velkadame", 128.99, 137.67},
    {"cube_alone", 137.67, 147.49},
    {"scene", 147.49, 156},
    {"accident_alone", 156, 163},
    {"scene_again", 163, 175},
    {"clip", 175, 204.5},
    {"beat", 204.5, 237},
    {"beat_trails", 237, 276.46},
};

// Milliseconds of every frame of one pass over the show, in their order.
std::vector<double> pass() {
    const auto recorded = std::make_unique<off_screen_show>(fps);
    std::vector<double> all;
    for (std::int64_t frame = 0; frame < recorded->frame_at(off_screen_show::length()); ++frame) {
        const auto start = std::chrono::steady_clock::now();
        recorded->draw_up_to(frame);
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        all.push_back(taken.count());
    }
    return all;
}

// The best time of every frame. All passes draw the same, so what differs is other work on the machine.
const std::vector<double>& frame_times() {
    static const std::vector<double> times = [] {
        std::vector<double> best = pass();
        for (int i = 1; i < passes; ++i)
            std::ranges::transform(best, pass(), best.begin(),
                                   [](double a, double b) { return std::min(a, b); });
        return best;
    }();
    return times;
}

void report(benchmark::State& state, const stretch& part) {
    const auto& all = frame_times();
    const auto first = std::min(all.size(), static_cast<std::size_t>(part.start * fps));
    const auto end = std::min(all.size(), static_cast<std::size_t>(part.end * fps));
    std::vector<double> times(all.begin() + static_cast<std::ptrdiff_t>(first),
                              all.begin() + static_cast<std::ptrdiff_t>(end));
    std::sort(times.begin(), times.end());
    const double mean = std::accumulate(times.begin(), times.end(), 0.0) / static_cast<double>(times.size());
    for (auto _ : state)
        state.SetIterationTime(mean / 1000);
    state.counters["fps"] = 1000 / mean;
    state.counters["ms_mean"] = mean;
    state.counters["ms_p99"] = times[times.size() * 99 / 100];
    state.counters["ms_max"] = times.back();
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const auto add = [](const stretch& part) {
        benchmark::RegisterBenchmark(part.name, report, part)
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    for (const stretch& part : stretches)
        add(part);
    add({"whole_show", 0, off_screen_show::length()});
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
