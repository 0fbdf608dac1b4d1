// morvane-record: films, pictures and contact sheets of the show, drawn without a display.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "morvane/base/program.h"
#include "show/data_files.h"
#include "tools/kit/unfinished_names.h"
#include "tools/record/hash_file.h"
#include "tools/record/metaballs_source.h"
#include "tools/record/off_screen_show.h"
#include "tools/record/record_options.h"
#include "tools/record/recording.h"
#include "tools/record/show_source.h"

namespace {

std::vector<hashed_part> parts_of(const record_options& options) {
    const std::int32_t fps = options.fps;
    if (options.metaballs != 0) return {{part_kind::metaballs, options.metaballs, fps, options.seconds}};
    if (options.movement != 0) return {{part_kind::movement, options.movement, fps, options.seconds}};
    if (options.to) return {{part_kind::show, 0, fps, *options.to}};
    return every_part(fps);
}

frame_source source_of(const record_options& options) {
    if (options.metaballs != 0) return metaballs(options.metaballs, options.seconds, options.fps);
    if (options.movement != 0) return closing_show(options.movement, options.seconds, options.fps);
    return timed_show(options.fps);
}

// A reader of the show's files ends the process where it can't go on, some with 0, which would say here that
// all went well.
int code_of_sudden_end = 1;
bool ended_well = false;

void at_end() {
    if (ended_well) return;
    remove_unfinished();
    std::fflush(nullptr);
    _exit(code_of_sudden_end);
}

int run(const record_options& options) {
    if (const int code = check_outputs(options); code != 0) return code;
    if (!options.compare.empty()) {
        code_of_sudden_end = 2;
        return compare_hashes(options.compare, options.data);
    }
    if (options.metaballs == 0 && !find_data(options.data)) return options.data.empty() ? 1 : 2;
    if (!options.hashes.empty()) return write_hashes(options.hashes, parts_of(options));
    if (options.metaballs == 0 && !needed_files_there()) {
        report_missing_files();
        return 1;
    }
    return record(options, source_of(options));
}

} // namespace

int main(int count, char** words) {
    program::start("morvane-record");
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
    std::atexit(at_end);
    const int code = run(options);
    ended_well = true;
    return code;
}
