#include "tools/kit/interrupts.h"

#include <csignal>
#include <initializer_list>

#include "tools/kit/unfinished_names.h"

namespace {

volatile std::sig_atomic_t noted_signal = 0;
volatile std::sig_atomic_t end_at_once = 0;

void end_by(int signal) {
    remove_unfinished();
    std::signal(signal, SIG_DFL);
    raise(signal); // delivered when the handler returns
}

void note_or_end(int signal) {
    if (end_at_once != 0) return end_by(signal);
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
