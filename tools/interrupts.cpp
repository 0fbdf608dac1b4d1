#include "tools/interrupts.h"

#include <csignal>
#include <initializer_list>

namespace {

volatile std::sig_atomic_t asked_to_end = 0;

void note(int) {
    asked_to_end = 1;
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

bool interrupted() {
    return asked_to_end != 0;
}
