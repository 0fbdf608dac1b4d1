// mopak: keeps files in an archive.
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include "morvane/base/program.h"
#include "tools/mopak/commands.h"
#include "tools/mopak/pack_copy.h"
#include "tools/mopak/report.h"

namespace {

bool only_reads(pack_command command) {
    return command == pack_command::list || command == pack_command::extract ||
           command == pack_command::test || command == pack_command::info;
}

int run(const pack_options& options) {
    if (only_reads(options.command)) remove_left_behind(options.pack);
    switch (options.command) {
    case pack_command::help:
        std::fputs(pack_usage, stdout);
        return 0;
    case pack_command::version:
        std::printf("mopak %s\n", MORVANE_VERSION);
        return 0;
    case pack_command::create:
        return pack_create(options);
    case pack_command::add:
        return pack_add(options);
    case pack_command::list:
        return pack_list(options);
    case pack_command::extract:
        return pack_extract(options);
    case pack_command::test:
        return pack_test(options);
    case pack_command::info:
        return pack_info(options);
    }
    return 2;
}

} // namespace

int main(int count, char** words) {
    program::start("mopak");
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow fails like a full disk
    const std::span<const char* const> behind_name(words + std::min(count, 1), words + count);
    const pack_options options = read_pack_options(behind_name);
    if (!options.error.empty()) {
        std::fprintf(stderr, "mopak: %s; --help tells more\n", printable(options.error).c_str());
        return 2;
    }
    const int code = run(options);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
    report("standard output", in_words("can't be written"));
    return 1;
}
