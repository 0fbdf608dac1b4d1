// Ctrl-C and its like: SIGINT, SIGTERM, SIGHUP. One that the parent had ignored stays ignored.
#pragma once

// From here on such a signal is only noted. One that follows after a second or later ends the process at
// once, with a line on standard error, and files that are not whole are removed. A closed pipe or a file that
// grows beyond its limit is an error of the write that meets it.
void catch_interrupts();

// From here on the first such signal ends the process and removes files that are not whole.
void end_on_interrupts();

// The number of the signal that was noted; 0: none has come.
int interrupted();

// The exit code of a program that such a signal made to end early, as a shell tells it: 130 behind Ctrl-C,
// 143 behind SIGTERM.
inline int interrupted_exit_code() {
    return 128 + interrupted();
}
