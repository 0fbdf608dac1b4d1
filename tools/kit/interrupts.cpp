#include "tools/kit/interrupts.h"

#include <time.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <initializer_list>

#include "tools/kit/unfinished_names.h"

namespace {

volatile std::sig_atomic_t noted_signal = 0;
volatile std::sig_atomic_t end_at_once = 0;
volatile std::int64_t noted_at_ms = 0; // read and written in the handler only

std::int64_t now_ms() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

void end_by(int signal) {
    remove_unfinished();
    std::signal(signal, SIG_DFL);
    raise(signal); // delivered when the handler returns
}

void note_or_end(int signal) {
    // Shells and `timeout` send a signal to the program and then to its group: that is still one wish.
    constexpr std::int64_t same_wish_ms = 1000;
    if (noted_signal != 0 && now_ms() - noted_at_ms < same_wish_ms) return;
    if (noted_signal != 0) {
        constexpr char line[] = "interrupted again: what isn't whole is removed\n";
        if (write(STDERR_FILENO, line, sizeof line - 1) < 0) return end_by(signal);
    }
    if (end_at_once != 0) return end_by(signal);
    noted_at_ms = now_ms();
    noted_signal = signal;
    end_at_once = 1;
}

void handle_interrupts() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        action.sa_handler = note_or_end;
        action.sa_flags = SA_RESTART; // no write is cut short
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
}

} // namespace

void catch_interrupts() {
    handle_interrupts();
    for (const int signal : {SIGPIPE, SIGXFSZ})
        std::signal(signal, SIG_IGN);
}

void end_on_interrupts() {
    end_at_once = 1;
    handle_interrupts();
}

int interrupted() {
    return noted_signal;
}
