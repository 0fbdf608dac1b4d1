#include "show/sync_log.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "morvane/base/program.h"
#include "show/frame_clock.h"

std::array<float, 250> mark_times{};
std::int32_t mark_count = 0;

namespace {

[[noreturn]] void give_up(const char* path) {
    program::complain(path, std::strerror(errno));
    std::exit(1);
}

double frames_per_second() {
    const std::int64_t elapsed = std::int64_t{clock_end_ms} - clock_start_ms;
    // A run shorter than the clock can tell counts as one millisecond.
    return static_cast<double>(frame_count) * 1000 / static_cast<double>(std::max<std::int64_t>(elapsed, 1));
}

} // namespace

void mark_add() {
    const auto next = static_cast<std::size_t>(mark_count);
    if (next >= mark_times.size()) return;
    mark_times[next] = show_time;
    ++mark_count;
}

void sync_log_write(const char* path) {
    std::FILE* file = std::fopen(path, "w");
    if (file == nullptr) give_up(path);
    std::fprintf(file, "TIME: ");
    for (std::size_t i = 0; i < static_cast<std::size_t>(mark_count); ++i)
        std::fprintf(file, "%.2f, ", static_cast<double>(mark_times[i]));
    std::fprintf(file, "\n\n");
    std::fprintf(file, "FPS: ");
    std::fprintf(file, "%4.2f frames per second\n", frames_per_second());
    if (std::fflush(file) != 0) give_up(path);
    if (std::fclose(file) != 0) give_up(path);
}
