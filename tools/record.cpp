// morvane-record: pictures of the show, drawn without a display.
#include <algorithm>
#include <cstdio>

#include "driver/data_files.h"
#include "tools/off_screen_show.h"
#include "tools/picture_file.h"
#include "tools/record_options.h"

namespace {

constexpr std::int32_t frames_per_second = 60;

int record(std::vector<still> stills) {
    std::stable_sort(stills.begin(), stills.end(),
                     [](const still& a, const still& b) { return a.seconds < b.seconds; });
    if (report_missing_files() > 0) return 1;
    off_screen_show recorded(frames_per_second);
    for (const still& each : stills) {
        recorded.draw_up_to(recorded.frame_at(each.seconds));
        const std::string problem = write_picture(each.path, recorded.picture());
        if (!problem.empty()) {
            std::fprintf(stderr, "morvane-record: %s: %s\n", each.path.c_str(), problem.c_str());
            return 1;
        }
        std::printf("%s: the picture at %.2f seconds\n", each.path.c_str(), each.seconds);
    }
    return 0;
}

} // namespace

int main(int count, char** words) {
    const std::span<const char* const> behind_name(words + std::min(count, 1), words + count);
    const record_options options = read_record_options(behind_name, off_screen_show::length());
    if (!options.error.empty()) {
        std::fprintf(stderr, "morvane-record: %s; --help tells more\n", options.error.c_str());
        return 2;
    }
    if (options.help) {
        std::fputs(record_usage, stdout);
        return 0;
    }
    if (options.version) {
        std::printf("morvane-record %s\n", MORVANE_VERSION);
        return 0;
    }
    return record(options.stills);
}
