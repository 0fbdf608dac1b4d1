#include "tools/mopak/progress.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <unistd.h>

#include "tools/mopak/report.h"

namespace {

constexpr double quiet_seconds = 1.0; // work that is over by then tells nothing
constexpr double pause_seconds = 0.1; // between two looks of the line
constexpr std::size_t longest_name = 50;

double steady_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The end of a long name tells more than its start.
std::string shortened(std::string_view name) {
    if (name.size() <= longest_name) return printable(name);
    return "..." + printable(name.substr(name.size() - longest_name + 3));
}

} // namespace

progress::progress(std::string doing, std::int64_t work)
    : progress(std::move(doing), work, stderr, isatty(STDERR_FILENO) == 1, steady_seconds) {}

progress::progress(std::string doing, std::int64_t work, std::FILE* where, bool on_terminal,
                   std::function<double()> seconds)
    : verb(std::move(doing)), total(std::max<std::int64_t>(work, 1)), sink(where), terminal(on_terminal),
      clock(std::move(seconds)), start(clock()) {}

void progress::at(std::int64_t done, std::string_view name) {
    const double now = clock();
    if (now - start < quiet_seconds) return;
    const int hundredths = static_cast<int>(std::clamp<std::int64_t>(100 * done / total, 0, 100));
    if (terminal) {
        if (now - last_shown < pause_seconds) return;
        last_shown = now;
        visible = true;
        std::fprintf(sink, "\r\033[K%s %d%% %s", verb.c_str(), hundredths, shortened(name).c_str());
    } else if (hundredths / 10 > last_tenth) {
        last_tenth = hundredths / 10;
        std::fprintf(sink, "%s %d%%\n", verb.c_str(), last_tenth * 10);
    }
    std::fflush(sink);
}

void progress::clear() {
    if (!visible) return;
    std::fputs("\r\033[K", sink);
    std::fflush(sink);
    visible = false;
}
