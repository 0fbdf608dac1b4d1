// The road of one frame, the same in every movement: keys and end time, lock, draw, present, show, tick,
// keys.
#pragma once

#include <limits>

struct show;
namespace ptc {
class Console;
class Surface;
} // namespace ptc

// A function that draws the frame of time `t` into `canvas`, and the time at which the loop leaves it.
struct movement {
    void (*draw)(show& all, float t);
    double end_time = std::numeric_limits<double>::infinity(); // seconds; untimed movements end by key
    void (*before_stop)() = nullptr; // what Escape does in this movement before it stops the run
};

// What the loop draws on: an open console and a surface of 512 by 384.
struct stage {
    ptc::Console& console;
    ptc::Surface& surface;
};

enum class movement_end {
    left,    // by its time, or by a key that waited when the loop came round
    stopped, // by Escape: "sync.txt" is written and the console closed
};

// Draws frames of `what` until it ends. `clock_start` comes before. Marks go to the mark list. Whatever the
// console raises goes through.
movement_end run_movement(const stage& on, show& all, const movement& what);
