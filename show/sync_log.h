// The time marks of a run and the text file that keeps them.
#pragma once

#include <array>
#include <cstdint>

extern std::array<float, 250> mark_times; // seconds, in order of pressing
extern std::int32_t mark_count;

// Appends `show_time`. A mark beyond the 250th is ignored.
void mark_add();

// Writes the marks and the frame rate from `clock_start_ms` to `clock_end_ms` to `path`, replacing what was
// there. If the file can't be written, says so on standard error and ends the process with exit code 1.
void sync_log_write(const char* path);
