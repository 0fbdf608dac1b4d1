#include "tools/mopak/doomed_files.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>

namespace {

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

// The name is set while the folder is -1.
struct doomed_file {
    std::array<char, 256> name;
    std::atomic<int> folder = -1;
};
static_assert(std::atomic<int>::is_always_lock_free);

std::array<doomed_file, 4> doomed;

extern "C" void remove_and_end(int signal) {
    for (std::size_t i = doomed.size(); i-- > 0;) { // the lock, which came first, goes last
        const int folder = doomed[i].folder.exchange(-1);
        if (folder != -1) unlinkat(folder, doomed[i].name.data(), 0);
    }
    raise(signal); // whose action is the system's own again
}

void watch_signals() {
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

int doom_file(int folder, const std::string& name) {
    std::size_t number = 0;
    while (number < doomed.size() && doomed[number].folder != -1)
        ++number;
    if (number == doomed.size() || name.size() >= doomed[number].name.size()) return -1;
    static bool watching = false;
    if (!watching) watch_signals();
    watching = true;
    doomed_file& file = doomed[number];
    file.name[name.copy(file.name.data(), file.name.size() - 1)] = '\0';
    file.folder = folder;
    return static_cast<int>(number);
}

void forget_doomed(int number) {
    if (number >= 0) doomed[static_cast<std::size_t>(number)].folder = -1;
}
