// The second movement, from 147.49 to 276.46 seconds.
#pragma once

struct show;

inline constexpr double movement2_end = 276.46;

// Draws the frame of time `t` (seconds, the show's clock) into `canvas`. The scene moves on by each frame
// that shows it, the clip by the time that has passed, and the feedback builds on the frames before, so
// frames are drawn in the order of their times.
void movement2_draw(show& all, float t);
