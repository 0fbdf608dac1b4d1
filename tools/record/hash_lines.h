// Frames and sound as lines of text.
#pragma once

#include <functional>
#include <string>

#include "tools/record/frame_source.h"

struct hash_line {
    bool frame = true; // or a second of sound
    std::int64_t number = 0;
    double seconds = 0; // where it stands
    std::string place;  // "frame 180 3.000000" or "sound 3"
    std::string hashes; // of the canvas and of the shown picture, or of the sound; 16 hexadecimal digits each
};

// Takes a line. Returns whether to go on.
using hash_sink = std::function<bool(const hash_line& line)>;

// Draws `source` from its start to its end, then reads its sound, and hands over a line for each frame and
// for each second of sound, the last of which may be shorter. The canvas is hashed with its top bytes, the
// picture without them, as a display ignores them; the sound as its samples at 44100 a second, left and right
// by turns, the bits of their floats as words. An interruption ends it as `sink` does. `work` names it to who
// waits.
void draw_hash_lines(const frame_source& source, const char* work, const hash_sink& sink);
