#include "morvane/base/program.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace program {

namespace {

const char* program_name = "morvane";

} // namespace

void start(const char* name) {
    program_name = name;
    // The lowest free descriptor is the one that an opening gets.
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) open("/dev/null", O_RDWR);
}

void complain(std::string_view subject, std::string_view reason) {
    std::fprintf(stderr, "%s: %.*s: %.*s\n", program_name, static_cast<int>(subject.size()), subject.data(),
                 static_cast<int>(reason.size()), reason.data());
}

} // namespace program
