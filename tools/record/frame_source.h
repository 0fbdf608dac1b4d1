// Where pictures come from: a run of frames with a length and a place in time.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "morvane/gtex/gtex.h"
#include "tools/record/sound_track.h"

// Anything that draws frames can be filmed: fill in one of these.
struct frame_source {
    std::int32_t width = 0, height = 0; // of the pictures, even
    std::int32_t black_rows = 0;        // rows above and below that are always black
    std::int32_t fps = 60;              // frames a second
    double start = 0, end = 0;          // the source's own time, in seconds
    std::int64_t lead = 0;              // frames before `start` that are drawn for what they leave behind

    // Draws the given frame, the first being 0 and frame `lead` standing at `start`. Called for every frame
    // in order. The picture stays until the next call.
    std::function<gtex(std::int64_t frame)> draw = {};

    // Where the frames are composed: the words that lie behind the last picture, with their top bytes.
    gtex canvas = {};

    std::vector<placed_track> tracks = {}; // its music; none: a source without sound
};

// The frame that a display shows at `seconds`: the last one whose time has come.
std::int64_t frame_at(const frame_source& source, double seconds);

// The number of the first frame whose time is `seconds` or later.
std::int64_t frame_from(const frame_source& source, double seconds);

// The time of a frame in seconds.
double time_of(const frame_source& source, std::int64_t frame);
