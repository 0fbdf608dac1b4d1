#include "tools/interrupts.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile std::sig_atomic_t ending_signal = 0;

void note(int signal) {
    ending_signal = signal;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART; // no write is cut short
    sigaction(signal, &action, nullptr);
}

} // namespace

void catch_interrupts() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        handle(signal, note);
    for (const int signal : {SIGPIPE, SIGXFSZ})
        handle(signal, SIG_IGN);
}

int interrupted() {
    return ending_signal;
}
