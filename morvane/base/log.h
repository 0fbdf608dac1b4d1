// The diagnostic channel that every class of the system writes through. All switches are off in a normal run.
#pragma once

#include <cstdint>
#include <cstdio>

enum log_level : std::uint32_t {
    log_trace = 1,   // the signature of a method as it is entered
    log_error = 2,   // an error
    log_warning = 4, // something was not found and the caller carries on
    log_note = 8,    // what the chunk reader of scene files met
    log_debug = 16,  // key values, object names, file extensions
};

// The switches, zero at start. Nothing in the running system sets them; a developer does, in a debugger or in
// a test. `log_file` is an open text stream of whoever sets `to_file`.
struct log_switches {
    bool enabled = false;          // off: no line is written to either sink
    std::uint32_t level_mask = 0;  // a line is written only if its level's bit is set here
    bool to_file = false;          // write lines to `log_file`
    std::FILE* log_file = nullptr; // without a stream, `to_file` writes nothing
    bool to_stdout = false;        // write lines to standard output
};
extern log_switches log_channel;

// True when a line of this level would be written to a sink: ask before you format a costly message.
bool log_wanted(std::uint32_t level);

// Writes `message` behind the tag of `level` to the sinks that are switched on. A message with `critical` 1
// is also printed on standard output whatever the switches hold. Returns 0 after a critical message, else 1,
// so that a caller may return the result as its own failure value. A failed write is ignored.
int log_message(const char* message, std::uint32_t level, int critical);
