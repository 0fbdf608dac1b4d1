// morvane-record: films, pictures and contact sheets of the show, drawn without a display.
#include <algorithm>
#include <cstdio>

#include "driver/data_files.h"
#include "tools/metaballs_source.h"
#include "tools/off_screen_show.h"
#include "tools/record_options.h"
#include "tools/recording.h"
#include "tools/show_source.h"

namespace {

frame_source source_of(const record_options& options) {
    if (options.metaballs != 0) return metaballs(options.metaballs, options.seconds, options.fps);
    if (options.movement != 0) return closing_show(options.movement, options.seconds, options.fps);
    return timed_show(options.fps);
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
    if (options.metaballs == 0 && report_missing_files() > 0) return 1;
    return record(options, source_of(options));
}
