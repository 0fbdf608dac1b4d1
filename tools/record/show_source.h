// The show as a source of frames. Reads the data tree in place; one at a time.
#pragma once

#include "tools/record/frame_source.h"

// The frames that the show draws for one of a film with `fps` frames a second: as many as bring it next to
// the 60 a second of a display, for what the show mixes from frame to frame looks as it should at that rate.
std::int32_t drawn_frames_each(std::int32_t fps);

// The timed show, with its music. `fps` is positive.
frame_source timed_show(std::int32_t fps);

// One of the closing movements, 3 to 6, for `seconds`, from the end of the timed show on. The show and the
// closing movements before it, a second of each, lead up to it. No music plays there.
frame_source closing_show(int number, double seconds, std::int32_t fps);

// The timed show with its music, and behind it all closing movements as they follow in a run, each for
// `seconds`.
frame_source whole_run(double seconds, std::int32_t fps);
