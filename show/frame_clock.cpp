#include "show/frame_clock.h"

#include "morvane/platform/time/winbase.h"

std::int64_t clock_frequency = 0;
std::int64_t clock_origin = 0;
float show_time = 0;
std::int32_t frame_count = 0;
std::int32_t clock_start_ms = 0;
std::int32_t clock_end_ms = 0;

void clock_start() {
    winbase::QueryPerformanceFrequency(&clock_frequency);
    winbase::QueryPerformanceCounter(&clock_origin);
    clock_start_ms = winbase::clock();
    show_time = 0;
    frame_count = 0;
}

void clock_tick() {
    std::int64_t counter = 0;
    winbase::QueryPerformanceCounter(&counter);
    const auto ticks = static_cast<long double>(counter - clock_origin);
    show_time = static_cast<float>(ticks / static_cast<long double>(clock_frequency));
    if (frame_count < INT32_MAX) ++frame_count;
}
