#include "tools/kit/quiet_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

quiet_output::quiet_output() : saved_(-1) {
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere < 0) return;
    saved_ = dup(STDOUT_FILENO);
    if (saved_ >= 0) dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
}

quiet_output::~quiet_output() {
    if (saved_ < 0) return;
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
}
