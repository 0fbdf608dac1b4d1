#include "tools/mopak/half_written.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace {

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

// What the handler removes. The name is set while the folder is -1.
std::array<char, 256> doomed_name;
std::atomic<int> doomed_folder = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void remove_and_end(int signal) {
    const int folder = doomed_folder.exchange(-1);
    if (folder != -1) unlinkat(folder, doomed_name.data(), 0);
    raise(signal); // whose action is the system's own again
}

void watch(int folder, const std::string& name) {
    doomed_name[name.copy(doomed_name.data(), doomed_name.size() - 1)] = '\0';
    doomed_folder = folder;
    for (const int each : ending_signals) {
        struct sigaction action = {};
        action.sa_handler = remove_and_end;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        struct sigaction before = {};
        sigaction(each, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(each, &action, nullptr); // nohup stays nohup
    }
}

} // namespace

half_written::half_written(int where, const std::string& stem, mode_t mode) : folder(where), file(-1) {
    static unsigned number = 0;
    std::string start = ".";
    start += stem.substr(0, 200) + "." + std::to_string(getpid()) + "-";
    do {
        own_name = start + std::to_string(number++);
        file = openat(folder, own_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    } while (file < 0 && errno == EEXIST);
    if (file >= 0) watch(folder, own_name);
}

half_written::~half_written() {
    if (file < 0) return;
    close(file);
    if (doomed_folder.exchange(-1) != -1) unlinkat(folder, own_name.c_str(), 0);
}

bool half_written::finish(const std::string& to) {
    if (renameat(folder, own_name.c_str(), folder, to.c_str()) != 0) return false;
    doomed_folder = -1;
    return true;
}
