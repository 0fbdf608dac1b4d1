#include <algorithm>
#include <cstdio>

#include "morvane/base/program.h"
#include "morvane/platform/time/winbase.h"
#include "show/data_files.h"
#include "show/run.h"
#include "show/show_options.h"

int main(int count, char** words) {
    program::start("morvane");
    if (const std::optional<int> code = winbase::box_process(count, words)) return *code;
    const show_options options = read_show_options({words + std::min(count, 1), words + count});
    if (!options.error.empty()) {
        std::fprintf(stderr, "morvane: %s; --help tells more\n", options.error.c_str());
        return 2;
    }
    if (options.help) {
        std::fputs(show_usage, stdout);
        return 0;
    }
    if (options.version) {
        std::printf("morvane %s\n", MORVANE_VERSION);
        return 0;
    }
    if (!find_data(options.data)) return options.data.empty() ? 0 : 2;
    return run_show(options);
}
