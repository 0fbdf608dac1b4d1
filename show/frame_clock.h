// The clock of the show: seconds since the start, advanced once a frame, so that all of a frame sees one
// time.
#pragma once

#include <cstdint>

extern std::int64_t clock_frequency; // ticks per second of the high-resolution counter
extern std::int64_t clock_origin;    // counter value at `clock_start`
extern float show_time;              // seconds since `clock_origin`, as of the last `clock_tick`
extern std::int32_t frame_count;     // `clock_tick` calls so far
extern std::int32_t clock_start_ms;  // wall-clock milliseconds at `clock_start`
extern std::int32_t clock_end_ms;    // the same at the end of the run

// Reads frequency and origin from the time source; time and frame count begin at 0.
void clock_start();

// Sets `show_time` from the counter, divided in extended precision and rounded to 32 bits, and counts the
// frame.
void clock_tick();
